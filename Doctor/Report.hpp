#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
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
    /// Whether it is left out of the menu because the catalogue has a command for its folder.
    bool isHidden = false;
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

// The settings files behind that of the features, as indices.
inline constexpr std::size_t destinationsFile = 1;
inline constexpr std::size_t actionsFile = 2;
inline constexpr std::size_t presetsFile = 3;

/// What the settings of a home say, and what the extension makes of them.
struct Report {
    Report() = default;
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    /// In the order of the indices above.
    std::vector<FileReport> files;
    FinderMenuSettings settings;
    /// The menu's entries point into it.
    std::deque<UserEntry> userEntries;
    std::vector<MenuEntry> menu;
    /// Everything that the readers tell, in their order.
    SettingsFindings readersFindings;

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
