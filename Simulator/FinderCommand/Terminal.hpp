#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace simulator {

enum class Style { bold, dim, heading, good, bad };

/// `text` in `style`, or as it is where standard output is not a terminal or `NO_COLOR` is set.
std::string styled(const std::string& text, Style style);

/// `value` as JSON that may be shown to people too, indented by `indent` spaces, or on one line.
std::string jsonText(const nlohmann::ordered_json& value, int indent = 2);

/// Writes `text` to standard output. Throws when it does not get there.
void print(const std::string& text);

}  // namespace simulator
