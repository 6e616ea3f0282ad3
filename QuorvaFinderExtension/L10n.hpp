#pragma once

#include <string>
#include <string_view>

/// The one localisation lookup.
namespace quorva::L10n {

/// The text for `key` in the main bundle's default string table. Keys are the Simplified Chinese
/// texts themselves, so a key without a translation is its own text.
std::string t(std::string_view key);

}  // namespace quorva::L10n
