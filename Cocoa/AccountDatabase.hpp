#pragma once

#include <optional>
#include <string>

namespace quorva {

/// The home directory that the account database has for the user `name`. Absent when it knows no
/// such user, or can't be asked.
[[nodiscard]] std::optional<std::string> homeDirectoryInAccountDatabase(const std::string& name);

}  // namespace quorva
