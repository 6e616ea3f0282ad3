#pragma once

#include <string>

namespace quorva::platform {

/// A new random UUID in its canonical form: 36 characters, upper-case hexadecimal digits in groups
/// of 8-4-4-4-12 with hyphens between.
[[nodiscard]] std::string newUUIDString();

}  // namespace quorva::platform
