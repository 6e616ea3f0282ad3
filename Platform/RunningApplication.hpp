#pragma once

#include <cstddef>
#include <string_view>

namespace quorva {

/// How many applications with `bundleIdentifier` are running in the user's session. None,
/// should the platform fail to tell.
std::size_t runningApplicationCount(std::string_view bundleIdentifier);

}  // namespace quorva
