#pragma once

#include <string_view>

#include "Platform/Error.hpp"

namespace quorva::platform {

/// Posts the distributed notification `name` with no object, no user info (a sandboxed process may
/// send none) and immediate delivery. Delivery is a hint: nobody need be listening.
[[nodiscard]] Result<void> postDistributedNotification(std::string_view name);

}  // namespace quorva::platform
