#pragma once

#include <cstddef>
#include <string_view>

namespace quorva::platform {

/// How many applications with `bundleIdentifier` are running in the user's session. None,
/// if the platform can't tell.
[[nodiscard]] std::size_t runningApplicationCount(std::string_view bundleIdentifier);

}  // namespace quorva::platform
