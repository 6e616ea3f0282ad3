#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Doctor/Finding.hpp"
#include "QuorvaFinderExtension/FinderFeatureSettings.hpp"
#include "QuorvaFinderExtension/SettingsFinding.hpp"

namespace quorva::doctor {

/// When an entry of the menu can be clicked.
enum class Enabled { always, withSelectionOrTarget, withSelection, never };

/// As in JSON and in the documentation.
[[nodiscard]] std::string_view rawValue(Enabled enabled);

/// An entry that a settings file lists, whether or not it is in the menu.
struct UserEntry {
    std::string_view fileName;
    /// Where in the file, as in "copy[2]".
    std::string place;
    /// Empty where the entry has none.
    std::string id;
    std::string name;
    /// Of a destination. Empty where the entry has none.
    std::string path;
    /// Whether the readers take it.
    bool isRead = false;
    /// The command that the catalogue has for its folder, for which the menu leaves it out. Empty
    /// where there is none.
    std::string commandID;
};

struct MenuEntry {
    std::string title;
    bool isSeparator = false;
    /// Of what opens a submenu, the identifier of the feature, if it is one; of every other entry
    /// the identifier of what it does.
    std::string id;
    /// The folder or application of a destination entry; empty for every other.
    std::string destinationPath;
    /// The entry of a settings file that it shows; null for every other.
    const UserEntry* source = nullptr;
    Enabled enabled = Enabled::never;
    std::optional<std::vector<MenuEntry>> submenu;
};

struct KindCount {
    Severity severity;
    std::size_t count;
};

struct FileReport {
    std::string_view name;
    std::string path;
    bool isFound = false;
    /// "XML", "binary" or "old-style". Empty for a file that can't be read.
    std::string_view encoding;
    bool isUsable = false;
    /// Of each kind no more than `findingLimit`: the findings first, then the notes.
    std::vector<Finding> findings;
    /// How many there are of each kind, by its name.
    std::map<std::string_view, KindCount> counts;

    [[nodiscard]] std::size_t count(Severity severity) const;
};

/// How many findings of one kind are told of one file; of a hundred thousand nobody reads more.
inline constexpr std::size_t findingLimit = 10;

// The settings files, in the order in which they are told of.
inline constexpr std::string_view featuresFile = "FeatureSettings.plist";
inline constexpr std::string_view destinationsFile = "CustomDestinations.plist";
inline constexpr std::string_view actionsFile = "CustomShortcutActions.plist";
inline constexpr std::string_view presetsFile = "FinderViewPresets.plist";

/// What the settings of a home say, and what the extension makes of them.
struct Report {
    Report() = default;
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    std::vector<FileReport> files;
    FinderMenuSettings settings;
    /// The menu's entries point into it.
    std::deque<UserEntry> userEntries;
    std::vector<MenuEntry> menu;
    // What of the features, of the catalogue's commands and of the user's entries is in the menu.
    std::vector<FinderFeature> shownFeatures;
    std::set<std::string_view> shownCommandIDs;
    std::set<const UserEntry*> shownEntries;
    /// What the readers tell, in their order, but for what makes no difference to the menu.
    SettingsFindings readersFindings;

    [[nodiscard]] FileReport& file(std::string_view name);
    [[nodiscard]] const FileReport& file(std::string_view name) const;
    [[nodiscard]] bool isShown(std::optional<FinderFeature> feature) const;
    [[nodiscard]] std::size_t count(Severity severity) const;
};

/// Calls `visit` with every entry of `entries` and its submenus, in menu order.
template <typename Entries, typename Visit>
void forEachEntry(Entries& entries, const Visit& visit) {
    for (auto& entry : entries) {
        visit(entry);
        if (entry.submenu) {
            forEachEntry(*entry.submenu, visit);
        }
    }
}

/// Whether the settings of the features have a usable value under `key`.
[[nodiscard]] bool isInForce(const Report& report, std::string_view key);

/// Reads the settings and makes the menu, as the extension does.
void examine(Report& report);

}  // namespace quorva::doctor
