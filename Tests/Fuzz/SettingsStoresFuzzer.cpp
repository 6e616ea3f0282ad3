// The user's own entries, whatever the three files hold, are those of a reading that was written
// for this target alone.
#include <algorithm>

#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"
#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"
#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"
#include "Tests/Fuzz/FuzzedMachine.hpp"

namespace quorva {
namespace {

using Destinations = std::vector<FinderCustomDestination>;
using Entries = std::vector<PropertyList::Dictionary>;

/// The dictionaries of strings in `value`. Absent when it holds anything else.
std::optional<Entries> entries(const PropertyList& value) {
    if (value.array() == nullptr) {
        return std::nullopt;
    }
    Entries entries;
    for (const PropertyList& element : *value.array()) {
        if (element.dictionary() == nullptr) {
            return std::nullopt;
        }
        for (const auto& [key, member] : *element.dictionary()) {
            if (member.string() == nullptr) {
                return std::nullopt;
            }
        }
        entries.push_back(*element.dictionary());
    }
    return entries;
}

std::string at(const PropertyList::Dictionary& entry, const char* key) {
    return entry.contains(key) ? *entry.find(key)->second.string() : "";
}

Destinations installedApplications() {
    Destinations installed;
    for (const FinderCustomDestination& application :
         Destinations{{"preview", "预览", "/System/Applications/Preview.app"},
                      {"textedit", "文本编辑", "/System/Applications/TextEdit.app"},
                      {"pages", "Pages", "/Applications/Pages.app"},
                      {"numbers", "Numbers", "/Applications/Numbers.app"},
                      {"keynote", "Keynote", "/Applications/Keynote.app"}}) {
        if (fakePlatform::state().find(application.path) != nullptr) {
            installed.push_back(application);
        }
    }
    return installed;
}

Destinations defaults(FinderCustomDestinationKind kind) {
    const Destinations folders = {{"桌面", "桌面", "/Users/ada/Desktop"},
                                  {"下载", "下载", "/Users/ada/Downloads"},
                                  {"文稿", "文稿", "/Users/ada/Documents"}};
    switch (kind) {
        case FinderCustomDestinationKind::copy:
        case FinderCustomDestinationKind::move:
            return folders;
        case FinderCustomDestinationKind::quickOpen:
            return {{"home", "用户目录", "/Users/ada"},
                    folders[0],
                    folders[1],
                    folders[2],
                    {"pictures", "图片", "/Users/ada/Pictures"},
                    {"applications", "应用程序", "/Applications"}};
        case FinderCustomDestinationKind::openApplication:
            return installedApplications();
    }
    std::abort();
}

Destinations expectedDestinations(const std::optional<PropertyList>& file,
                                  FinderCustomDestinationKind kind) {
    std::optional<Entries> saved;
    if (file && file->dictionary() != nullptr) {
        for (const auto& [key, value] : *file->dictionary()) {
            const std::optional<Entries> list = entries(value);
            if (!list) {
                return defaults(kind);
            }
            if (key == rawValue(kind)) {
                saved = list;
            }
        }
    }
    if (!saved) {
        return defaults(kind);
    }
    const bool isApplication = kind == FinderCustomDestinationKind::openApplication;
    Destinations expected = isApplication ? installedApplications() : Destinations();
    const Destinations builtIn = expected;
    for (const PropertyList::Dictionary& entry : *saved) {
        if (!entry.contains("id") || !entry.contains("name") || !entry.contains("path")) {
            continue;
        }
        const FinderCustomDestination destination = {at(entry, "id"), at(entry, "name"),
                                                     at(entry, "path")};
        const bool isKnownEditor = destination.id == "vscode" || destination.id == "cursor" ||
                                   destination.path == "/Applications/Visual Studio Code.app" ||
                                   destination.path == "/Applications/Cursor.app";
        const bool isBuiltIn = contains(builtIn, destination.id, &FinderCustomDestination::id) ||
                               contains(builtIn, destination.path, &FinderCustomDestination::path);
        if (!isApplication || (!isKnownEditor && !isBuiltIn)) {
            expected.push_back(destination);
        }
    }
    return expected;
}

std::vector<FinderCustomShortcutAction> expectedActions(const std::optional<PropertyList>& file) {
    std::vector<FinderCustomShortcutAction> expected;
    for (const PropertyList::Dictionary& entry :
         (file ? entries(*file) : std::nullopt).value_or(Entries())) {
        const bool isScript = at(entry, "kind") == "script";
        if (entry.contains("id") && entry.contains("name") &&
            !at(entry, isScript ? "scriptPath" : "shortcutName").empty()) {
            expected.push_back({at(entry, "id"), at(entry, "name"),
                                isScript ? FinderCustomShortcutAction::Kind::script
                                         : FinderCustomShortcutAction::Kind::shortcut,
                                at(entry, "shortcutName"), at(entry, "scriptPath")});
        }
    }
    return expected;
}

void checkPresets(const std::optional<PropertyList>& file) {
    const std::vector<FinderViewPresetSetting> presets = FinderViewPresetSettings::presets();
    const std::optional<Entries> saved = file ? entries(*file) : std::nullopt;
    if (!saved) {
        require(presets.size() == 3, "without a usable file there are three presets");
        return;
    }
    auto preset = presets.begin();
    for (const PropertyList::Dictionary& entry : *saved) {
        if (!entry.contains("id") || !entry.contains("name") || !entry.contains("viewMode") ||
            !entry.contains("sortMode")) {
            continue;
        }
        require(preset != presets.end(), "a whole entry is a preset");
        require(preset->id == at(entry, "id") && preset->viewMode == at(entry, "viewMode") &&
                    preset->sortMode == at(entry, "sortMode") &&
                    at(entry, "name").starts_with(preset->name),
                "a preset is its entry, but for what is cut from the name");
        ++preset;
    }
    require(preset == presets.end(), "an entry that lacks a string is not a preset");
}

}  // namespace
}  // namespace quorva

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorva;
    fakePlatform::reset();
    FuzzedValues values(data, size);
    for (const char* const application :
         {"/System/Applications/Preview.app", "/Applications/Pages.app"}) {
        if (values.chance()) {
            fakePlatform::state().putDirectory(application);
        }
    }
    const std::optional<PropertyList> destinations = values.putCustomDestinations();
    const std::optional<PropertyList> actions = values.putCustomShortcutActions();
    const std::optional<PropertyList> presets = values.putViewPresets();
    for (const FinderCustomDestinationKind kind : allFinderCustomDestinationKinds) {
        require(FinderCustomDestinationSettings::destinations(kind) ==
                    expectedDestinations(destinations, kind),
                "the destinations are those of the file, or the defaults");
    }
    require(FinderCustomShortcutActionSettings::actions() == expectedActions(actions),
            "the actions are those of the file that have something to run");
    checkPresets(presets);
    return 0;
}
