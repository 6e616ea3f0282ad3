#pragma once

#include <string>
#include <string_view>

/// The one localisation lookup.
namespace quorva::L10n {

/// The string for `key` in the main bundle's default string table. Keys are the Simplified Chinese
/// titles themselves, so a key without a translation is its own title.
[[nodiscard]] std::string t(std::string_view key);

}  // namespace quorva::L10n
