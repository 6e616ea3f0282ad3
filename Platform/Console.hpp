#pragma once

#include <string_view>

namespace quorva {

/// Sends `message` to the system console, as `NSLog` does.
void logToConsole(std::string_view message);

}  // namespace quorva
