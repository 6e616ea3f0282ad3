#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorva {

/// UTF-16 code units in memory order, as the platform's strings hold them.
using UTF16 = std::vector<std::uint16_t>;

/// Whether each byte of `text` is a character of its own.
bool isASCII(std::string_view text);

/// `text` in UTF-16. Each byte that is not part of well-formed UTF-8 becomes U+FFFD.
UTF16 utf16WithUTF8(std::string_view text);

/// `text` in UTF-8. Each surrogate without its partner becomes U+FFFD.
std::string utf8WithUTF16(std::span<const std::uint16_t> text);

}  // namespace quorva
