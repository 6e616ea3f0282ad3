#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace simulator {

enum class Style { bold, dim, heading, good, bad };

/// `text` in `style`, or as it is where standard output is not a terminal or `NO_COLOR` is set.
std::string styled(std::string_view text, Style style);

/// `value` as indented JSON that may be shown to people too.
std::string jsonText(const nlohmann::ordered_json& value);

/// Writes `text` to standard output. Throws CommandError when it does not get there.
void print(const std::string& text);

}  // namespace simulator
