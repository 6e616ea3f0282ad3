#pragma once

#include <string>
#include <string_view>

namespace simulator {

/// The answer to one line of standard input, without a line feed, as
/// Documentation/ExtensionProtocol.md describes it. Never throws for whatever `line` holds.
std::string answer(std::string_view line);

}  // namespace simulator
