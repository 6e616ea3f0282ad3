#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Doctor/Explanation.hpp"
#include "Doctor/Platform.hpp"
#include "Doctor/Report.hpp"

namespace quorva::doctor {

// JSON for programs, as Documentation/Doctor.md has it, that may be shown to people too.

[[nodiscard]] std::string json(const Homes& homes, const Report& report);

[[nodiscard]] std::string json(const Report& report, std::string_view name,
                               const Explanations& explanations);

}  // namespace quorva::doctor
