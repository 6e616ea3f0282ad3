#include "Doctor/Report.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <set>
#include <utility>
#include <variant>

#include "Doctor/UserEntries.hpp"
#include "Platform/Data.hpp"
#include "Platform/FileManager.hpp"
#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

namespace quorva::doctor {

namespace {

using Kind = SettingsFinding::Kind;

constexpr std::array<std::string_view, 4> fileNames = {
    "FeatureSettings.plist", "CustomDestinations.plist", "CustomShortcutActions.plist",
    "FinderViewPresets.plist"};

std::string_view encodingOf(const Data& data) {
    std::string head;
    for (const std::byte byte : data) {
        const char character = static_cast<char>(byte);
        // Neither the marks and the zero bytes of UTF-16 nor the mark of UTF-8.
        if (head.size() < 8 && character > ' ') {
            head += character;
        }
        if (head.size() == 8) {
            break;
        }
    }
    if (head.starts_with("bplist")) {
        return "binary";
    }
    return head.starts_with("<?") || head.starts_with("<!") || head.starts_with("<plist")
               ? "XML"
               : "old-style";
}

/// Whether something that can't be reached stands at `path`, or on the way to it, and not nothing.
bool isOutOfReach(const std::string& path) {
    struct stat status{};
    return ::lstat(path.c_str(), &status) == 0 || errno != ENOENT;
}

/// Causes stand before what follows from them, and findings before notes.
int rank(const Finding& finding) {
    if (finding.kind.severity == Severity::note) {
        return 2;
    }
    return finding.kind.isConsequence ? 1 : 0;
}

void add(FileReport& file, Finding finding) {
    const auto count =
        file.counts.try_emplace(finding.kind.name, finding.kind.severity, std::size_t{0}).first;
    if (++count->second.count <= findingLimit) {
        file.findings.insert(std::ranges::upper_bound(file.findings, rank(finding), {}, rank),
                             std::move(finding));
    }
}

void addReadersFinding(FileReport& file, const SettingsFinding& finding) {
    // A reader makes no difference between what is not there and what it may not see.
    if (finding.kind == Kind::missingFile && isOutOfReach(file.path)) {
        add(file, described({Kind::unreadableFile, finding.fileName, {}, finding.value, {}}));
        return;
    }
    const auto counted = file.counts.find(kindOf(finding.kind).name);
    // To describe all of very many would take long; what a key is shows only then.
    if (finding.kind != Kind::unknownKey && counted != file.counts.end() &&
        counted->second.count >= findingLimit) {
        ++counted->second.count;
    } else {
        add(file, described(finding));
    }
}

bool isOfWholeFile(const SettingsFinding& finding) {
    return finding.kind == Kind::missingFile || finding.kind == Kind::unreadableFile ||
           finding.kind == Kind::malformedFile ||
           (finding.kind == Kind::wrongType &&
            (finding.path.empty() || finding.fileName != fileNames.front()));
}

FileReport fileReport(std::string_view name, const SettingsFindings& findings) {
    FileReport file;
    file.name = name;
    file.path = settingsFileURL(name).path();
    file.isFound = isOutOfReach(file.path);
    file.isUsable = std::ranges::none_of(findings, [name](const SettingsFinding& finding) {
        return finding.fileName == name && isOfWholeFile(finding);
    });
    if (const auto data =
            platform::dataWithContentsOfRegularFile(settingsFileURL(name), settingsFileByteLimit)) {
        file.encoding = encodingOf(*data);
    }
    return file;
}

/// When an entry with `action` can be clicked that can't be with nothing selected and no target.
Enabled enabled(const FinderFeatureAction& action) {
    static const MenuRequest targeted{
        MenuKind::contextualMenuForContainer, {}, FileURL::directory("/"), SettingsReading()};
    static const MenuRequest selected{MenuKind::contextualMenuForItems,
                                      FinderSelection({FileURL::file("/a")}), std::nullopt,
                                      SettingsReading()};
    if (isEnabled(action, targeted)) {
        return Enabled::withSelectionOrTarget;
    }
    return isEnabled(action, selected) ? Enabled::withSelection : Enabled::never;
}

/// The identifier of the feature among `features` with this title. Empty when there is none.
std::string_view featureIDWithTitle(const std::vector<FinderFeature>& features,
                                    std::string_view wanted) {
    const auto found =
        std::ranges::find(features, wanted, [](FinderFeature feature) { return title(feature); });
    return found == features.end() ? std::string_view() : rawValue(*found);
}

/// The items of `menu`, made with nothing selected and no target.
std::vector<MenuEntry> menuEntries(const Menu& menu, const std::vector<FinderFeature>& features) {
    std::vector<MenuEntry> entries;
    entries.reserve(menu.items.size());
    for (const MenuItem& item : menu.items) {
        MenuEntry& entry = entries.emplace_back();
        entry.title = item.title;
        entry.isSeparator = item.isSeparator;
        entry.enabled = item.enabled ? Enabled::always : Enabled::never;
        entry.id = item.identifier.value_or(std::string());
        const auto* const context =
            std::get_if<FinderActionContextPointer>(&item.representedObject);
        if (context != nullptr && *context != nullptr) {
            entry.destinationPath = (*context)->destinationPath();
            entry.id = item.identifier.value_or((*context)->actionID());
            if (!item.enabled) {
                entry.enabled = enabled((*context)->action());
            }
        }
        if (item.submenu) {
            entry.id = featureIDWithTitle(features, item.title);
            entry.submenu = menuEntries(*item.submenu, features);
        }
    }
    return entries;
}

void addMenuFindings(Report& report) {
    std::map<std::string_view, std::size_t> titles;
    forEachEntry(report.menu, [&titles](const MenuEntry& entry) {
        titles[entry.title] += entry.submenu || entry.isSeparator ? 0 : 1;
    });
    std::map<std::string_view, const UserEntry*> sourcesByID;
    const auto file = [&report](std::string_view name) -> FileReport& {
        return *std::ranges::find(report.files, name, &FileReport::name);
    };
    forEachEntry(report.menu, [&](const MenuEntry& entry) {
        if (entry.submenu && entry.submenu->empty()) {
            add(report.files[entry.id == "viewOptions" ? presetsFile : destinationsFile],
                {emptySubmenu, {}, entry.id, {}, entry.id + " is shown, but its submenu is empty"});
        }
        if (entry.source == nullptr) {
            return;
        }
        const UserEntry& source = *entry.source;
        if (entry.destinationPath.empty() && !entry.id.empty()) {
            // What a record says of these is their identifier.
            const UserEntry* const first = sourcesByID.try_emplace(entry.id, &source).first->second;
            if (first != &source) {
                add(file(source.fileName),
                    {sharedID,
                     source.place,
                     source.id,
                     {},
                     joined({source.place, ": ", first->place, " has the id ", source.id,
                             " too, so a click does not tell which of them is meant"})});
            }
        }
        if (const std::size_t count = titles.at(entry.title); count > 1) {
            add(file(source.fileName), {sharedTitle,
                                        source.place,
                                        entry.title,
                                        {},
                                        joined({source.place, ": ", std::to_string(count),
                                                " entries have the title ", entry.title})});
        }
    });
}

void addEntryFindings(Report& report) {
    FileReport& file = report.files[destinationsFile];
    for (const UserEntry& entry : report.userEntries) {
        if (entry.isRead && entry.isHidden) {
            add(file, {hiddenDestination,
                       entry.place,
                       entry.path,
                       {},
                       joined({entry.place, ": ", entry.path,
                               " is not in the submenu, because it has a command of its own"})});
        }
        if (entry.isRead && entry.place.starts_with("openApplication") &&
            !platform::fileExistsAtPath(entry.path)) {
            add(file, {absentApplication,
                       entry.place,
                       entry.path,
                       {},
                       joined({entry.place, ": there is no ", entry.path,
                               "; the entry is shown all the same"})});
        }
    }
}

void addReadersFindings(Report& report) {
    std::set<std::string_view> shownIDs;
    forEachEntry(report.menu, [&shownIDs](const MenuEntry& entry) { shownIDs.insert(entry.id); });
    const bool listsCommands = isInForce(report, "enabledChildIDs");
    for (const SettingsFinding& finding : report.readersFindings) {
        // A command of a feature that is not shown comes back unseen, and where no commands are
        // listed, none of a feature may be.
        if ((finding.kind != Kind::newCommand || shownIDs.contains(finding.value)) &&
            (finding.kind != Kind::featureWithoutCommands || listsCommands)) {
            addReadersFinding(*std::ranges::find(report.files, finding.fileName, &FileReport::name),
                              finding);
        }
    }
}

}  // namespace

std::string_view rawValue(Enabled enabled) {
    switch (enabled) {
        case Enabled::always:
            return "always";
        case Enabled::withSelectionOrTarget:
            return "withSelectionOrTarget";
        case Enabled::withSelection:
            return "withSelection";
        case Enabled::never:
            return "never";
    }
    std::unreachable();
}

std::size_t FileReport::count(Severity severity) const {
    std::size_t sum = 0;
    for (const auto& [kind, counted] : counts) {
        sum += counted.severity == severity ? counted.count : 0;
    }
    return sum;
}

std::size_t Report::count(Severity severity) const {
    std::size_t sum = 0;
    for (const FileReport& file : files) {
        sum += file.count(severity);
    }
    return sum;
}

bool isInForce(const Report& report, std::string_view key) {
    const std::string_view file = report.files.front().name;
    const std::optional<PropertyList> root = propertyListInFile(SettingsPath(file, nullptr));
    return root && root->dictionary() != nullptr && root->dictionary()->contains(key) &&
           std::ranges::none_of(report.readersFindings, [&](const SettingsFinding& finding) {
               return finding.fileName == file && finding.path.starts_with(key) &&
                      finding.kind == SettingsFinding::Kind::wrongType;
           });
}

void examine(Report& report) {
    const MenuRequest request{MenuKind::contextualMenuForContainer,
                              {},
                              std::nullopt,
                              SettingsReading(report.readersFindings)};
    report.settings = request.settings.menuSettings();
    std::ranges::for_each(allFinderCustomDestinationKinds,
                          [&request](auto kind) { (void)request.settings.destinations(kind); });
    (void)request.settings.customActions();
    (void)request.settings.viewPresets();
    for (const std::string_view name : fileNames) {
        report.files.push_back(fileReport(name, report.readersFindings));
    }
    report.menu = menuEntries(assembledMenu(request), report.settings.features);
    addUserEntries(report, request.settings);
    addReadersFindings(report);
    addEntryFindings(report);
    addMenuFindings(report);
}

}  // namespace quorva::doctor
