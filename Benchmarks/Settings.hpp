#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/FinderFeature.hpp"

/// The settings that the benchmarks run with.
namespace benchmarks {

/// Settings files by their names.
using SettingsFiles = std::map<std::string, quorva::PropertyList>;

/// `count` entries with an id, a name, and `fields`, to which the name is added where they are
/// empty or end in a slash.
inline quorva::PropertyList entries(const std::string& name, std::int64_t count,
                                    const std::map<std::string, std::string>& fields) {
    quorva::PropertyList::Array entries;
    for (std::int64_t index = 0; index < count; ++index) {
        const std::string own = name + " " + std::to_string(index);
        quorva::PropertyList::Dictionary entry = {{"id", "5C0E6B1A-" + own}, {"name", own}};
        for (const auto& [key, value] : fields) {
            entry.emplace(key, value.empty() || value.ends_with('/') ? value + own : value);
        }
        entries.emplace_back(std::move(entry));
    }
    return entries;
}

/// `count` destinations.
inline quorva::PropertyList destinations(const std::string& name, std::int64_t count) {
    return entries(name, count, {{"path", "/Volumes/Archive/"}});
}

/// The files of a user who has every feature on, in an order of their own, and `count` entries of
/// each kind. None for a user without entries: the defaults.
inline SettingsFiles settingsFiles(std::int64_t count, const std::string& layout) {
    using quorva::PropertyList;
    if (count == 0) {
        return layout == "collapsed"
                   ? SettingsFiles()
                   : SettingsFiles{{"FeatureSettings.plist",
                                    PropertyList::Dictionary{{"menuLayout", layout}}}};
    }
    PropertyList::Array features;
    PropertyList::Array commands;
    PropertyList::Dictionary order;
    for (const quorva::FinderFeature feature : quorva::allFinderFeatures) {
        features.emplace_back(rawValue(feature));
        PropertyList::Array own;
        for (const std::string_view id : childIDs(feature)) {
            own.emplace_back(id);
            commands.emplace_back(id);
        }
        order.emplace(rawValue(feature), std::move(own));
    }
    return {
        {"FeatureSettings.plist", PropertyList::Dictionary{{"menuLayout", layout},
                                                           {"groupsFeaturesUnderQuorva", true},
                                                           {"featureOrder", features},
                                                           {"enabledFeatureIDs", features},
                                                           {"enabledChildIDs", commands},
                                                           {"childOrderByFeatureID", order}}},
        {"CustomDestinations.plist",
         PropertyList::Dictionary{{"copy", destinations("Project", count)},
                                  {"move", destinations("Project", count)},
                                  {"quickOpen", destinations("Place", count)},
                                  {"openApplication", destinations("Application", count)}}},
        {"CustomShortcutActions.plist",
         entries("Action", count, {{"kind", "shortcut"}, {"shortcutName", ""}})},
        {"FinderViewPresets.plist",
         entries("View", count, {{"viewMode", "list"}, {"sortMode", "name"}})},
    };
}

}  // namespace benchmarks
