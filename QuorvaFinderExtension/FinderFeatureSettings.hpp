#pragma once

#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "QuorvaFinderExtension/FinderFeature.hpp"
#include "QuorvaFinderExtension/SettingsFinding.hpp"

namespace quorva {

/// How the features are arranged in the menu.
enum class FinderMenuLayout {
    /// One submenu per feature. The default.
    collapsed,
    /// The entries of every feature inline, with separators between features.
    expanded,
};

/// "collapsed" or "expanded", as in the settings file and in the logs.
[[nodiscard]] std::string_view rawValue(FinderMenuLayout layout);

/// The layout whose raw value is `rawValue`, to the letter. Absent for any other string.
[[nodiscard]] std::optional<FinderMenuLayout> finderMenuLayoutWithRawValue(
    std::string_view rawValue);

/// What the user chose to see in the menu, complete and consistent whatever the settings file held.
struct FinderMenuSettings {
    /// The features to show, in the user's order.
    std::vector<FinderFeature> features;
    /// The commands to show. Catalogue identifiers only when the file listed the enabled commands;
    /// otherwise also the two identifiers of the destination submenus, which the default set holds.
    std::set<std::string, std::less<>> enabledChildIDs;
    /// By the raw value of the feature, the order of its commands; one entry per feature.
    std::map<std::string, std::vector<std::string>, std::less<>> childOrderByFeatureID;
    /// Whether the whole menu is tucked under one item.
    bool groupsFeaturesUnderQuorva;
    FinderMenuLayout menuLayout;

    /// The commands of `feature` to show, in the user's order. A command that the order names twice
    /// is there twice.
    [[nodiscard]] std::vector<FinderFeatureChild> children(FinderFeature feature) const;

    /// The same, from the `commands` of `feature` as the catalogue has them.
    [[nodiscard]] std::vector<FinderFeatureChild> children(
        FinderFeature feature, const std::vector<FinderFeatureChild>& commands) const;

    friend bool operator==(const FinderMenuSettings&, const FinderMenuSettings&) = default;
};

/// The keys of "FeatureSettings.plist".
inline constexpr std::array<std::string_view, 6> featureSettingsKeys = {
    "enabledFeatureIDs",         "featureOrder", "childOrderByFeatureID", "enabledChildIDs",
    "groupsFeaturesUnderQuorva", "menuLayout"};

/// The reader of "FeatureSettings.plist". The containing application is its only writer.
class FinderFeatureSettings {
 public:
    FinderFeatureSettings() = delete;

    /// Reads the file afresh and repairs whatever it holds, possibly stale, partial, or written by
    /// an older version. Never fails: without a usable file the built-in defaults, and for a value
    /// of the wrong type the default of that one key.
    [[nodiscard]] static FinderMenuSettings menuSettings(SettingsFindings* findings = nullptr);
};

}  // namespace quorva
