#pragma once

#include <algorithm>
#include <optional>
#include <string_view>

namespace quorva {

/// The one of `cases` whose `rawValue` equals `text`, to the letter. Absent for any other string.
template <typename Cases, typename Case = typename Cases::value_type>
std::optional<Case> caseWithRawValue(const Cases& cases, std::string_view text) {
    const auto found =
        std::ranges::find(cases, text, [](Case candidate) { return rawValue(candidate); });
    return found == cases.end() ? std::nullopt : std::optional(*found);
}

}  // namespace quorva
