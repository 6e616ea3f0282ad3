#include "Doctor/Explanation.hpp"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <utility>
#include <variant>

#include "Doctor/NearMiss.hpp"
#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"
#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"

namespace quorva::doctor {

namespace {

/// Whether `path` is the place of `entry`, or in it.
bool isAt(const UserEntry& entry, std::string_view path) {
    return path == entry.place || path.starts_with(entry.place + ".");
}

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

std::string reasonOfAbsence(const Report& report, std::string_view key) {
    return isInForce(report, key) ? joined({key, " does not list it"}) : "it is off by default";
}

/// Adds what was found of the feature or the command with the identifier of `explanation`.
void addRemarks(Explanation& explanation, const Report& report) {
    for (const FileReport& file : report.files) {
        for (const Finding& finding : file.findings) {
            if (finding.value == explanation.id &&
                (file.name == featuresFile || finding.kind.name == emptySubmenu.name)) {
                explanation.remarks.push_back(joined({file.name, ": ", finding.message}));
            }
        }
    }
}

Explanation explanation(const Report& report, FinderFeature feature) {
    Explanation result;
    result.what = "feature";
    result.id = rawValue(feature);
    result.title = title(feature);
    locate(result, report.menu, {},
           [&](const MenuEntry& entry) { return entry.submenu && entry.id == result.id; });
    const std::vector<FinderFeature>& features = report.settings.features;
    result.isShown = report.isShown(feature);
    if (result.isShown && result.locations.empty()) {
        result.remarks.emplace_back("in the expanded layout its entries stand in the menu itself");
    } else if (!result.isShown) {
        result.reasons.push_back(std::ranges::find(features, feature) == features.end()
                                     ? reasonOfAbsence(report, "enabledFeatureIDs")
                                     : "it has no entries");
    }
    addRemarks(result, report);
    return result;
}

/// Whether the menu shows `command` where `feature` is on with it.
bool canBeShown(FinderFeature feature, const FinderFeatureChild& command) {
    const MenuRequest request{
        MenuKind::contextualMenuForContainer, {}, std::nullopt, SettingsReading()};
    return std::ranges::any_of(
        directMenuItems(request, feature, {command}), [&command](const MenuItem& item) {
            const auto* const context =
                std::get_if<FinderActionContextPointer>(&item.representedObject);
            return context != nullptr && *context != nullptr &&
                   (*context)->actionID() == command.actionID;
        });
}

Explanation explanation(const Report& report, FinderFeature feature,
                        const FinderFeatureChild& command) {
    Explanation result;
    result.what = "command";
    result.id = command.actionID;
    result.title = command.title;
    locate(result, report.menu, {},
           [&](const MenuEntry& entry) { return !entry.submenu && entry.id == command.actionID; });
    if (!report.isShown(feature)) {
        result.reasons.push_back(joined({"its feature ", rawValue(feature), " is not shown"}));
    } else if (!result.isShown) {
        result.reasons.push_back(canBeShown(feature, command)
                                     ? reasonOfAbsence(report, "enabledChildIDs")
                                     : joined({rawValue(feature),
                                               " shows the entries of its list in place of it, "
                                               "which are the user's or else the default ones"}));
    }
    addRemarks(result, report);
    return result;
}

/// Why `entry`, which is not in the menu, is not.
std::vector<std::string> reasonsOfAbsence(const Report& report, const UserEntry& entry) {
    std::vector<std::string> reasons;
    const bool isUsable = report.file(entry.fileName).isUsable;
    for (const SettingsFinding& finding : report.readersFindings) {
        const bool isCause = isUsable ? dropsEntry(finding.kind) && isAt(entry, finding.path)
                                      : finding.kind == SettingsFinding::Kind::wrongType;
        if (isCause && finding.fileName == entry.fileName && reasons.size() < findingLimit) {
            reasons.push_back(described(finding).message);
        }
    }
    if (!entry.isRead) {
        return reasons;
    }
    const std::string& command = entry.commandID;
    if (command.empty() || !report.isShown(featureOfCommand(command))) {
        reasons.emplace_back("the feature that lists it is not shown");
    } else {
        reasons.push_back(
            joined({"its folder has a command of its own, ", entry.commandID,
                    report.shownCommandIDs.contains(entry.commandID) ? "" : ", which is off"}));
    }
    return reasons;
}

Explanation explanation(const Report& report, const UserEntry& entry) {
    Explanation result;
    result.what = "entry";
    result.id = entry.id;
    result.title = entry.name;
    result.place = joined({entry.fileName, ": ", entry.place});
    locate(result, report.menu, {},
           [&entry](const MenuEntry& item) { return item.source == &entry; });
    if (!result.isShown) {
        result.reasons = reasonsOfAbsence(report, entry);
    }
    for (const Finding& finding : report.file(entry.fileName).findings) {
        const bool isReason =
            finding.kind.name == hiddenDestination.name ||
            std::ranges::find(result.reasons, finding.message) != result.reasons.end();
        if (isAt(entry, finding.path) && !isReason) {
            result.remarks.push_back(finding.message);
        }
    }
    return result;
}

/// What of the menu is neither of the catalogue nor of a settings file.
std::vector<Explanation> defaultEntries(const Report& report, std::string_view name) {
    std::vector<Explanation> result;
    const std::vector<FinderCustomDestination> folders =
        FinderCustomDestinationSettings::destinations(FinderCustomDestinationKind::quickOpen);
    const auto isNamed = [&](const MenuEntry& entry) {
        return entry.title == name || entry.id.ends_with(joined({"__", name})) ||
               (entry.id == quickOpenPathActionID &&
                std::ranges::find(folders, FinderCustomDestination{std::string(name), entry.title,
                                                                   entry.destinationPath}) !=
                    folders.end());
    };
    forEachEntry(report.menu, [&](const MenuEntry& entry) {
        const bool isDefault = !entry.submenu && entry.source == nullptr && !entry.id.empty() &&
                               !featureOfCommand(entry.id);
        if (isDefault && isNamed(entry)) {
            Explanation& explanation = result.emplace_back();
            explanation.what = "default entry";
            explanation.id = entry.id;
            explanation.title = entry.title;
            locate(explanation, report.menu, {},
                   [&entry](const MenuEntry& item) { return &item == &entry; });
        }
    });
    return result;
}

/// The default applications that are not installed.
std::vector<Explanation> missingApplications(const Report& report, std::string_view name) {
    std::vector<Explanation> result;
    for (const SettingsFinding& finding : report.readersFindings) {
        if (finding.kind != SettingsFinding::Kind::missingApplication) {
            continue;
        }
        const std::string title = std::filesystem::path(finding.value).stem().string();
        if (name == finding.value || std::ranges::equal(name, title, [](char left, char right) {
                return std::tolower(static_cast<unsigned char>(left)) ==
                       std::tolower(static_cast<unsigned char>(right));
            })) {
            Explanation& explanation = result.emplace_back();
            explanation.what = "default entry";
            explanation.title = title;
            explanation.reasons.push_back(described(finding).message);
        }
    }
    return result;
}

void add(Explanations& explanations, Explanation explanation) {
    explanations.isAnyShown = explanations.isAnyShown || explanation.isShown;
    if (explanations.matches.size() < findingLimit) {
        explanations.matches.push_back(std::move(explanation));
    } else {
        ++explanations.omitted;
    }
}

}  // namespace

Explanations explanations(const Report& report, std::string_view name) {
    Explanations result;
    for (const FinderFeature feature : allFinderFeatures) {
        if (rawValue(feature) == name || title(feature) == name) {
            add(result, explanation(report, feature));
        }
        for (const FinderFeatureChild& command : children(feature)) {
            if (command.actionID == name || command.title == name) {
                add(result, explanation(report, feature, command));
            }
        }
    }
    // A destination's title in the menu is longer than its name.
    std::set<const UserEntry*> named;
    forEachEntry(report.menu, [&](const MenuEntry& entry) {
        if (entry.source != nullptr && (entry.title == name || entry.id == name)) {
            named.insert(entry.source);
        }
    });
    for (const UserEntry& entry : report.userEntries) {
        if (entry.id != name && entry.name != name && !named.contains(&entry)) {
            continue;
        }
        if (result.matches.size() < findingLimit) {
            add(result, explanation(report, entry));
        } else {
            // To explain all of very many would take long.
            ++result.omitted;
            result.isAnyShown = result.isAnyShown || report.shownEntries.contains(&entry);
        }
    }
    for (const auto& others : {defaultEntries(report, name), missingApplications(report, name)}) {
        for (const Explanation& other : others) {
            add(result, other);
        }
    }
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
