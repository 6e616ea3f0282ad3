#pragma once

#include <optional>
#include <string>

namespace quorva::platform {

/// The short name of the user that this process runs for. Empty, if the platform can't tell.
[[nodiscard]] std::string userName();

/// The home directory that the account of the user `name` has, as the platform
/// says it. Inside the App Sandbox that may be the container, so the caller checks. Absent when
/// there is no such user.
[[nodiscard]] std::optional<std::string> homeDirectoryForUser(const std::string& name);

}  // namespace quorva::platform
