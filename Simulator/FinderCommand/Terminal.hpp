#pragma once

#include <string>
#include <string_view>

namespace simulator {

enum class Style { bold, dim, heading, good, bad };

/// `text` in `style`, or as it is where standard output is no terminal or `NO_COLOR` is set.
std::string styled(std::string_view text, Style style);

}  // namespace simulator
