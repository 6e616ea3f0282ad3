#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "QuorvaFinderExtension/SettingsFinding.hpp"

namespace quorva {

/// A named combination of a Finder view style and a sort order, applied by the containing
/// application.
struct FinderViewPresetSetting {
    std::string id;
    /// The title in the menu.
    std::string name;
    /// Passed through uninterpreted.
    std::string viewMode;
    /// Passed through uninterpreted.
    std::string sortMode;

    friend bool operator==(const FinderViewPresetSetting&,
                           const FinderViewPresetSetting&) = default;
};

/// The keys of an entry of "FinderViewPresets.plist".
inline constexpr std::array<std::string_view, 4> viewPresetKeys = {"id", "name", "viewMode",
                                                                   "sortMode"};

/// The reader of "FinderViewPresets.plist": a list of dictionaries of strings.
class FinderViewPresetSettings {
 public:
    FinderViewPresetSettings() = delete;

    /// The presets in the order in which they are shown, read afresh.
    ///
    /// Never fails. Three defaults when there is no usable file (one value of the wrong type
    /// anywhere makes the whole file unusable); an entry that lacks a string is skipped, and a
    /// usable file with no valid entry gives no presets. A name of the form "style · order 2",
    /// which the containing application gives to a copy, loses its number.
    [[nodiscard]] static std::vector<FinderViewPresetSetting> presets(
        SettingsFindings* findings = nullptr);
};

}  // namespace quorva
