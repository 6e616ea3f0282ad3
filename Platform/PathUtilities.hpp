#pragma once

#include <optional>
#include <string>

namespace quorva::platform {

/// The short name of the user that this process runs for. Empty, if the platform can't tell.
[[nodiscard]] std::string userName();

/// The home directory that the account of the user `name` has. Where the platform names a container
/// for it, as it does inside the App Sandbox, it is that of the account database; should that know
/// no such user, it is the container after all, so the caller checks. Absent when there is no such
/// user.
[[nodiscard]] std::optional<std::string> homeDirectoryForUser(const std::string& name);

}  // namespace quorva::platform
