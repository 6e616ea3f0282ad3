#pragma once

#include <string>
#include <string_view>

namespace simulator {

/// Whether `text` is well-formed UTF-8.
bool isUTF8(std::string_view text);

/// `text` as it may be shown to people: a control character, a line or paragraph separator, and a
/// character that changes the direction of writing become "\u" and four hexadecimal digits, as in
/// "\u001b"; bytes that are not UTF-8 become "\ufffd". No terminal acts on the result.
/// JSON means the same afterwards.
std::string escaped(std::string_view text);

}  // namespace simulator
