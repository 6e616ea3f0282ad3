#pragma once

#include <string_view>

namespace quorva::platform {

/// Sends `message` to the system console behind the extension's name and a colon, as `NSLog` does.
void logToConsole(std::string_view message);

}  // namespace quorva::platform
