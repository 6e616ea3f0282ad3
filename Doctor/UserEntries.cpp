#include "Doctor/UserEntries.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

namespace quorva::doctor {

namespace {

// The lists of entries: one of destinations for each kind, and two more.
constexpr std::size_t actionList = allFinderCustomDestinationKinds.size();
constexpr std::size_t presetList = actionList + 1;
constexpr std::size_t listCount = presetList + 1;

/// By list, the entry of each item in the menu; null for a default one.
using Sources = std::array<std::vector<const UserEntry*>, listCount>;

std::string stringOrEmpty(const PropertyList::Dictionary& entry, std::string_view key) {
    const std::string* const string = stringForKey(entry, key);
    return string == nullptr ? "" : *string;
}

/// The places of the entries that the reader of `fileName` has dropped.
std::set<std::string_view> droppedEntries(const SettingsFindings& findings,
                                          std::string_view fileName) {
    std::set<std::string_view> places;
    for (const SettingsFinding& finding : findings) {
        if (finding.fileName == fileName && dropsEntry(finding.kind)) {
            const std::string_view path = finding.path;
            places.insert(path.substr(0, path.rfind('.')));
        }
    }
    return places;
}

/// The array that `root` is or, with a key, has under it. Empty when there is none.
PropertyList::Array savedArray(const std::optional<PropertyList>& root, std::string_view key) {
    const PropertyList* value = root ? &*root : nullptr;
    if (value != nullptr && !key.empty()) {
        const PropertyList::Dictionary* const lists = value->dictionary();
        value = lists != nullptr && lists->contains(key) ? &lists->find(key)->second : nullptr;
    }
    const PropertyList::Array* const array = value == nullptr ? nullptr : value->array();
    return array == nullptr ? PropertyList::Array() : *array;
}

/// Adds the entries of a list to the report, and to `sources` those that the menu has, of which
/// there are `count` with the default ones before them.
void addList(Report& report, std::vector<const UserEntry*>& sources, const FileReport& file,
             std::string_view key, const PropertyList::Array& array, std::size_t count) {
    const std::set<std::string_view> dropped = droppedEntries(report.readersFindings, file.name);
    const auto kind = finderCustomDestinationKindWithRawValue(key);
    for (std::size_t index = 0; index < array.size(); ++index) {
        UserEntry& entry = report.userEntries.emplace_back();
        entry.fileName = file.name;
        entry.place = joined({key, "[", std::to_string(index), "]"});
        entry.isRead = file.isUsable && !dropped.contains(entry.place);
        if (const PropertyList::Dictionary* const dictionary = array[index].dictionary()) {
            entry.id = stringOrEmpty(*dictionary, "id");
            entry.name = stringOrEmpty(*dictionary, "name");
            entry.path = stringOrEmpty(*dictionary, "path");
        }
        if (entry.isRead) {
            if (kind && isBuiltInFileDestination({entry.id, entry.name, entry.path}, *kind)) {
                entry.commandID =
                    joined({key, "FilesTo", entry.path.substr(entry.path.rfind('/') + 1)});
            }
            sources.push_back(&entry);
        }
    }
    // What was read and the file differ where it has changed meanwhile.
    sources.insert(sources.begin(), count - std::min(count, sources.size()), nullptr);
    std::erase_if(sources, [](const UserEntry* source) {
        return source != nullptr && !source->commandID.empty();
    });
}

Sources readUserEntries(Report& report, const SettingsReading& reading) {
    const auto rootOf = [](const FileReport& file) {
        return propertyListInFile(SettingsPath(file.name, nullptr));
    };
    Sources sources;
    const FileReport& destinations = report.file(destinationsFile);
    const std::optional<PropertyList> lists = rootOf(destinations);
    for (const FinderCustomDestinationKind kind : allFinderCustomDestinationKinds) {
        addList(report, sources.at(static_cast<std::size_t>(std::to_underlying(kind))),
                destinations, rawValue(kind), savedArray(lists, rawValue(kind)),
                reading.destinations(kind).size());
    }
    const FileReport& actions = report.file(actionsFile);
    addList(report, sources.at(actionList), actions, {}, savedArray(rootOf(actions), {}),
            reading.customActions().size());
    const FileReport& presets = report.file(presetsFile);
    addList(report, sources.at(presetList), presets, {}, savedArray(rootOf(presets), {}),
            reading.viewPresets().size());
    return sources;
}

/// The list that an entry of the menu shows an element of. Absent for what the catalogue has.
std::optional<std::size_t> listOfEntry(std::string_view id) {
    const auto list = [](FinderCustomDestinationKind kind) {
        return static_cast<std::size_t>(std::to_underlying(kind));
    };
    if (id == copyFilesToFolderActionID) {
        return list(FinderCustomDestinationKind::copy);
    }
    if (id == moveFilesToFolderActionID) {
        return list(FinderCustomDestinationKind::move);
    }
    if (id == quickOpenPathActionID) {
        return list(FinderCustomDestinationKind::quickOpen);
    }
    if (id.starts_with(openWithApplicationIdentifierPrefix)) {
        return list(FinderCustomDestinationKind::openApplication);
    }
    if (id.starts_with(runShortcutIdentifierPrefix) || id.starts_with(runScriptIdentifierPrefix)) {
        return actionList;
    }
    return id.starts_with(viewPresetIdentifierPrefix) ? std::optional(presetList) : std::nullopt;
}

void connect(std::vector<MenuEntry>& menu, const Sources& sources) {
    std::array<std::size_t, listCount> shown{};
    forEachEntry(menu, [&](MenuEntry& entry) {
        if (const auto list = entry.submenu ? std::nullopt : listOfEntry(entry.id)) {
            const std::size_t index = shown.at(*list)++;
            const std::vector<const UserEntry*>& entries = sources.at(*list);
            entry.source = index < entries.size() ? entries[index] : nullptr;
        }
    });
}

}  // namespace

void addUserEntries(Report& report, const SettingsReading& reading) {
    connect(report.menu, readUserEntries(report, reading));
}

}  // namespace quorva::doctor
