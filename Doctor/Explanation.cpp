#include "Doctor/Explanation.hpp"

#include <algorithm>
#include <cstddef>
#include <functional>

#include "Doctor/NearMiss.hpp"

namespace quorva::doctor {

namespace {

using IsSearched = std::function<bool(const MenuEntry&)>;

void locate(Explanation& explanation, const std::vector<MenuEntry>& menu,
            const std::vector<std::string>& titles, const IsSearched& isSearched) {
    for (const MenuEntry& entry : menu) {
        std::vector<std::string> path = titles;
        path.push_back(entry.title);
        if (isSearched(entry)) {
            explanation.isShown = true;
            explanation.enabled = entry.enabled;
            explanation.locations.push_back(path);
        }
        if (entry.submenu) {
            locate(explanation, *entry.submenu, path, isSearched);
        }
    }
}

bool shows(const Report& report, FinderFeature feature) {
    return std::ranges::find(report.settings.features, feature) != report.settings.features.end();
}

/// Adds what the readers have found of `id`.
void addFindings(Explanation& explanation, const Report& report, std::string_view id) {
    for (const SettingsFinding& finding : report.readersFindings) {
        if (finding.value == id) {
            explanation.reasons.push_back(
                joined({finding.fileName, ": ", described(finding).message}));
        }
    }
}

std::string reasonOfAbsence(const Report& report, std::string_view key) {
    return isInForce(report, key) ? joined({key, " does not list it"}) : "it is off by default";
}

Explanation explanation(const Report& report, FinderFeature feature) {
    Explanation result;
    result.what = "feature";
    result.id = rawValue(feature);
    result.title = title(feature);
    locate(result, report.menu, {},
           [&](const MenuEntry& entry) { return entry.submenu && entry.id == result.id; });
    if (!shows(report, feature)) {
        result.reasons.push_back(reasonOfAbsence(report, "enabledFeatureIDs"));
    } else if (report.settings.menuLayout == FinderMenuLayout::expanded) {
        result.isShown = true;
        result.reasons.emplace_back("in the expanded layout its entries stand in the menu itself");
    } else if (!result.isShown) {
        result.reasons.emplace_back("it has no entries");
    }
    addFindings(result, report, result.id);
    return result;
}

Explanation explanation(const Report& report, FinderFeature feature,
                        const FinderFeatureChild& command) {
    Explanation result;
    result.what = "command";
    result.id = command.actionID;
    result.title = command.title;
    locate(result, report.menu, {},
           [&](const MenuEntry& entry) { return !entry.submenu && entry.id == command.actionID; });
    if (!shows(report, feature)) {
        result.reasons.push_back(joined({"its feature ", rawValue(feature), " is not shown"}));
    } else if (!report.settings.enabledChildIDs.contains(command.actionID)) {
        result.reasons.push_back(reasonOfAbsence(report, "enabledChildIDs"));
    } else if (!result.isShown) {
        result.reasons.push_back(joined(
            {"the feature ", rawValue(feature), " shows what the settings list in place of it"}));
    }
    addFindings(result, report, command.actionID);
    return result;
}

Explanation explanation(const Report& report, const UserEntry& entry) {
    Explanation result;
    result.what = "entry";
    result.id = entry.id;
    result.title = entry.name;
    result.place = joined({entry.fileName, ": ", entry.place});
    locate(result, report.menu, {},
           [&entry](const MenuEntry& item) { return item.source == &entry; });
    const FileReport& file = report.file(entry.fileName);
    if (result.isShown) {
        return result;
    }
    for (const SettingsFinding& finding : report.readersFindings) {
        const bool isOfEntry =
            finding.path == entry.place || finding.path.starts_with(entry.place + ".");
        if (finding.fileName == entry.fileName &&
            (isOfEntry || (!file.isUsable && finding.kind == SettingsFinding::Kind::wrongType))) {
            result.reasons.push_back(described(finding).message);
        }
    }
    if (entry.isRead) {
        result.reasons.emplace_back(!entry.commandID.empty()
                                        ? "its folder has a command of its own"
                                        : "the feature that lists it is not shown");
    }
    return result;
}

/// What of the menu is neither of the catalogue nor of a settings file.
void addDefaults(std::vector<Explanation>& result, const Report& report, std::string_view name) {
    forEachEntry(report.menu, [&](const MenuEntry& entry) {
        const bool isDefault = !entry.submenu && entry.source == nullptr && !entry.id.empty() &&
                               !featureOfCommand(entry.id);
        if (!isDefault || (entry.title != name && !entry.id.ends_with(joined({"__", name})))) {
            return;
        }
        Explanation& explanation = result.emplace_back();
        explanation.what = "default entry";
        explanation.id = entry.id;
        explanation.title = entry.title;
        locate(explanation, report.menu, {},
               [&entry](const MenuEntry& item) { return &item == &entry; });
    });
}

}  // namespace

std::vector<Explanation> explanations(const Report& report, std::string_view name) {
    std::vector<Explanation> result;
    for (const FinderFeature feature : allFinderFeatures) {
        if (rawValue(feature) == name || title(feature) == name) {
            result.push_back(explanation(report, feature));
        }
        for (const FinderFeatureChild& command : children(feature)) {
            if (command.actionID == name || command.title == name) {
                result.push_back(explanation(report, feature, command));
            }
        }
    }
    std::vector<const UserEntry*> entries;
    for (const UserEntry& entry : report.userEntries) {
        if (entry.id == name || entry.name == name) {
            entries.push_back(&entry);
        }
    }
    // A destination's title in the menu is longer than its name.
    forEachEntry(report.menu, [&](const MenuEntry& entry) {
        if (entry.source != nullptr && (entry.title == name || entry.id == name) &&
            std::ranges::find(entries, entry.source) == entries.end()) {
            entries.push_back(entry.source);
        }
    });
    for (const UserEntry* const entry : entries) {
        if (result.size() == findingLimit) {
            break;
        }
        result.push_back(explanation(report, *entry));
    }
    addDefaults(result, report, name);
    return result;
}

std::string suggestion(const Report& report, std::string_view name) {
    std::vector<std::string_view> candidates;
    for (const FinderFeature feature : allFinderFeatures) {
        candidates.push_back(rawValue(feature));
        const std::vector<std::string_view> commands = childIDs(feature);
        candidates.insert(candidates.end(), commands.begin(), commands.end());
    }
    for (const UserEntry& entry : report.userEntries) {
        candidates.insert(candidates.end(), {entry.id, entry.name});
    }
    return std::string(nearMiss(name, candidates));
}

}  // namespace quorva::doctor
