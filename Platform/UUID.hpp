#pragma once

#include <string>

namespace quorva {

/// A new random UUID in canonical text form: 36 characters, upper-case hexadecimal digits in groups
/// of 8-4-4-4-12 with hyphens between.
std::string newUUIDString();

}  // namespace quorva
