#include "Doctor/Report.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <iterator>
#include <system_error>
#include <utility>
#include <variant>

#include "Doctor/NearMiss.hpp"
#include "Doctor/UserEntries.hpp"
#include "Platform/Data.hpp"
#include "Platform/FileManager.hpp"
#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

namespace quorva::doctor {

namespace {

using Kind = SettingsFinding::Kind;

constexpr std::array fileNames = {featuresFile, destinationsFile, actionsFile, presetsFile};

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

/// Adds what is at `place`, in words.
void add(FileReport& file, FindingKind kind, const std::string& place, const std::string& value,
         std::initializer_list<std::string_view> words) {
    add(file, {kind, place, value, {}, joined({place, place.empty() ? "" : ": ", joined(words)})});
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
            (finding.path.empty() || finding.fileName != featuresFile));
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
    forEachEntry(report.menu, [&](const MenuEntry& entry) {
        if (entry.submenu && entry.submenu->empty()) {
            add(report.file(entry.id == "viewOptions" ? presetsFile : destinationsFile),
                emptySubmenu, {}, entry.id, {entry.id, " is shown, but its submenu is empty"});
        }
        if (entry.source == nullptr) {
            return;
        }
        const UserEntry& source = *entry.source;
        FileReport& file = report.file(source.fileName);
        if (entry.destinationPath.empty() && !entry.id.empty()) {
            // What a record says of these is their identifier.
            const UserEntry* const first = sourcesByID.try_emplace(entry.id, &source).first->second;
            if (first != &source) {
                add(file, sharedID, source.place, source.id,
                    {first->place, " has the id ", source.id, " too, so both send the actionID ",
                     entry.id});
            }
        }
        if (const std::size_t count = titles.at(entry.title); count > 1) {
            add(file, sharedTitle, source.place, entry.title,
                {std::to_string(count), " entries have the title ", entry.title});
        }
    });
}

void addMisnamedFiles(Report& report) {
    const std::string folder = settingsFileURL("").path();
    std::error_code error;
    for (std::filesystem::directory_iterator file(folder, error), end; !error && file != end;
         file.increment(error)) {
        const std::string name = file->path().filename().string();
        const std::string_view meant = nearMiss(name, fileNames);
        if (!meant.empty() && !report.file(meant).isFound) {
            const std::string words =
                joined({"there is a ", name, ", which nothing reads: did you mean ", meant, "?"});
            add(report.file(meant), {misnamedFile, {}, name, std::string(meant), words});
        }
    }
}

void addEntryFindings(Report& report) {
    FileReport& file = report.file(destinationsFile);
    for (const UserEntry& entry : report.userEntries) {
        if (entry.isRead && entry.fileName == destinationsFile && !entry.path.starts_with('/')) {
            add(file, relativePath, entry.place, entry.path,
                {entry.path, " is not an absolute path, and is handed over as it is"});
        }
        const std::string& command = entry.commandID;
        if (!command.empty() && report.isShown(featureOfCommand(command))) {
            add(file, hiddenDestination, entry.place, entry.path,
                {entry.path, " is not in the submenu, because it has a command of its own",
                 report.shownCommandIDs.contains(command) ? "" : ", which is off"});
        }
        if (report.shownEntries.contains(&entry) && entry.place.starts_with("openApplication") &&
            !platform::fileExistsAtPath(entry.path)) {
            add(file, absentApplication, entry.place, entry.path,
                {"there is no ", entry.path, "; the entry is shown all the same"});
        }
    }
}

/// Adds what of the catalogue and of the user's entries is in the menu.
void addShown(Report& report, const MenuRequest& request) {
    std::ranges::copy_if(
        report.settings.features, std::back_inserter(report.shownFeatures),
        [&](FinderFeature feature) {
            return report.settings.menuLayout == FinderMenuLayout::expanded
                       ? !directMenuItems(request, feature, report.settings.children(feature))
                              .empty()
                       : !featureMenuItems(request, report.settings, {feature}).empty();
        });
    forEachEntry(report.menu, [&report](const MenuEntry& entry) {
        if (entry.source != nullptr) {
            report.shownEntries.insert(entry.source);
        } else if (!entry.submenu) {
            report.shownCommandIDs.insert(entry.id);
        }
    });
}

/// Whether `finding` is of something that is in the menu, as far as it says that it is.
bool isInEffect(const Report& report, const SettingsFinding& finding) {
    const Kind kind = finding.kind;
    const auto isShown = [&report](std::string_view id) {
        return report.shownCommandIDs.contains(id);
    };
    const std::optional<FinderFeature> feature = finderFeatureWithRawValue(finding.value);
    if (feature && (kind == Kind::newFeature || kind == Kind::appendedFeature)) {
        return report.isShown(feature);
    }
    if (feature && kind == Kind::featureWithoutCommands) {
        return std::ranges::any_of(childIDs(*feature), isShown);
    }
    if (kind == Kind::newCommand || kind == Kind::repeatedCommand ||
        kind == Kind::appendedCommand) {
        return isShown(finding.value);
    }
    return kind != Kind::replacedCommandOrder || report.isShown(FinderFeature::scheduledDeletion);
}

void addReadersFindings(Report& report) {
    // Where no commands are listed, none of a feature may be.
    const bool listsCommands = isInForce(report, "enabledChildIDs");
    std::erase_if(report.readersFindings, [&](const SettingsFinding& finding) {
        return !isInEffect(report, finding) ||
               (finding.kind == Kind::featureWithoutCommands && !listsCommands);
    });
    for (const SettingsFinding& finding : report.readersFindings) {
        addReadersFinding(report.file(finding.fileName), finding);
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

FileReport& Report::file(std::string_view name) {
    return *std::ranges::find(files, name, &FileReport::name);
}

const FileReport& Report::file(std::string_view name) const {
    return *std::ranges::find(files, name, &FileReport::name);
}

bool Report::isShown(std::optional<FinderFeature> feature) const {
    return feature && std::ranges::find(shownFeatures, *feature) != shownFeatures.end();
}

std::size_t Report::count(Severity severity) const {
    std::size_t sum = 0;
    for (const FileReport& file : files) {
        sum += file.count(severity);
    }
    return sum;
}

bool isInForce(const Report& report, std::string_view key) {
    const std::optional<PropertyList> root =
        propertyListInFile(SettingsPath(featuresFile, nullptr));
    return root && root->dictionary() != nullptr && root->dictionary()->contains(key) &&
           std::ranges::none_of(report.readersFindings, [&](const SettingsFinding& finding) {
               return finding.fileName == featuresFile && finding.path.starts_with(key) &&
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
    addShown(report, request);
    addReadersFindings(report);
    addMisnamedFiles(report);
    addEntryFindings(report);
    addMenuFindings(report);
}

}  // namespace quorva::doctor
