#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Doctor/Report.hpp"

namespace quorva::doctor {

/// Why something is in the menu, or is not.
struct Explanation {
    /// "feature", "command", "entry" for one of a settings file, or "default entry".
    std::string_view what;
    /// Empty for an entry that has none.
    std::string id;
    std::string title;
    /// Of an entry, its file and where in it.
    std::string place;
    bool isShown = false;
    /// The titles on the way to each item that shows it.
    std::vector<std::vector<std::string>> locations;
    /// When those can be clicked. Of no meaning where there are none, and for a feature.
    Enabled enabled = Enabled::always;
    /// Sentences that say why it is not shown. Empty when it is.
    std::vector<std::string> reasons;
    /// Sentences that say what else there is to know of it.
    std::vector<std::string> remarks;
};

struct Explanations {
    /// No more than `findingLimit`.
    std::vector<Explanation> matches;
    /// How many there are beyond these.
    std::size_t omitted = 0;
    /// Whether any is shown, of those beyond the limit too.
    bool isAnyShown = false;
};

/// What has the identifier or the title `name`.
[[nodiscard]] Explanations explanations(const Report& report, std::string_view name);

/// The identifier that is nearly `name`. Empty when there is none.
[[nodiscard]] std::string suggestion(const Report& report, std::string_view name);

}  // namespace quorva::doctor
