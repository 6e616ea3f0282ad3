#pragma once

#include <string_view>

namespace quorva::platform {

/// Posts the distributed notification `name` with no object, no user info (a sandboxed process may
/// send none) and immediate delivery. Delivery is a hint: nobody need be listening, and a failure
/// to post is written to the console and not reported.
void postDistributedNotification(std::string_view name);

}  // namespace quorva::platform
