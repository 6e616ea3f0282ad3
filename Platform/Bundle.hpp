#pragma once

#include <string>
#include <string_view>

#include "Platform/FileURL.hpp"

namespace quorva::platform {

/// The bundle that this process runs from: the extension's own, not the containing application's.
/// The root, if the platform can't tell.
[[nodiscard]] FileURL mainBundleURL();

/// The string for `key` in the main bundle's default string table, in the user's language. `key`
/// itself when there is no translation. To be called on the main thread.
[[nodiscard]] std::string localizedString(std::string_view key);

}  // namespace quorva::platform
