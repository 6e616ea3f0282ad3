#pragma once

#include <optional>
#include <string>

namespace quorva::platform {

/// The short name of the user that this process runs for. Empty, should the platform fail to tell.
[[nodiscard]] std::string userName();

/// The home directory that the account of the user `name` has, which for a sandboxed process is not
/// its own. Absent when there is no such user.
[[nodiscard]] std::optional<std::string> homeDirectoryForUser(const std::string& name);

}  // namespace quorva::platform
