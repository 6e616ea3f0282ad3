#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Doctor/Explanation.hpp"
#include "Doctor/Platform.hpp"
#include "Doctor/Report.hpp"

namespace quorva::doctor {

// What people read. No terminal acts on anything of the settings in it.

[[nodiscard]] std::string text(const Homes& homes, const Report& report, bool isColoured);

[[nodiscard]] std::string text(const Report& report, std::string_view name,
                               const Explanations& explanations, bool isColoured);

/// `text` as no terminal acts on it, but for its line breaks.
[[nodiscard]] std::string escapedLines(std::string_view text);

}  // namespace quorva::doctor
