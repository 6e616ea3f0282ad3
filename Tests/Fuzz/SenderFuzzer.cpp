// A click on whatever item acts on one entry that there is, or on none: the item as Finder gives it
// back on the very entry that was clicked, as long as the settings are those of the menu.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include "QuorvaFinderExtension/FinderExtension.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"
#include "Tests/Fuzz/FuzzedMachine.hpp"

namespace quorva {
namespace {

using fakePlatform::state;

/// What a record says of the entry: action, title, destination.
using EntryRecord = std::tuple<std::string, std::string, std::string>;

struct Clickable {
    MenuItem item;
    EntryRecord record;
};

void collect(const Menu& menu, std::vector<Clickable>& clickables) {
    for (const MenuItem& item : menu.items) {
        if (item.submenu) {
            collect(*item.submenu, clickables);
        }
        if (item.action == MenuItem::Action::none) {
            continue;
        }
        const auto* const context =
            std::get_if<FinderActionContextPointer>(&item.representedObject);
        if (context != nullptr) {
            clickables.push_back(
                {item,
                 {(*context)->actionID(), (*context)->title(), (*context)->destinationPath()}});
        } else {
            require(item.identifier.has_value(), "an item without context is a preset's");
            clickables.push_back({item, {*item.identifier, item.title, ""}});
        }
    }
}

std::set<EntryRecord> commands() {
    std::set<EntryRecord> records;
    for (const FinderFeature feature : allFinderFeatures) {
        for (const FinderFeatureChild& child : children(feature)) {
            records.emplace(child.actionID, child.title, "");
        }
    }
    return records;
}

/// The records of all entries that there are now, whether or not the menu shows them.
std::set<EntryRecord> entriesNow() {
    std::set<EntryRecord> records = commands();
    const SettingsReading settings;
    for (const FinderCustomShortcutAction& action : settings.customActions()) {
        for (const std::string_view prefix :
             {runShortcutIdentifierPrefix, runScriptIdentifierPrefix}) {
            records.emplace(std::string(prefix) + action.id, action.name, "");
        }
    }
    for (const FinderCustomDestination& application :
         settings.destinations(FinderCustomDestinationKind::openApplication)) {
        records.emplace(openWithApplicationActionID, application.name, application.path);
    }
    for (const FinderViewPresetSetting& preset : settings.viewPresets()) {
        records.emplace(viewPresetIdentifier(preset), preset.name, "");
    }
    return records;
}

/// The record that a click wrote. Absent when it wrote none.
std::optional<EntryRecord> click(const FinderExtension& extension, const MenuItem& sender) {
    extension.performFeatureChild(sender);
    const std::vector<std::string> files = state().filesBelow(settingsFolder + "/ActionQueue");
    require(files.size() <= 1, "a click writes one record at most");
    require(state().notifications.size() == files.size() && state().launches.size() == files.size(),
            "a record is announced and the application opened, and only then");
    if (files.empty()) {
        return std::nullopt;
    }
    const auto json = nlohmann::json::parse(*state().contents(files.front()));
    return EntryRecord(json.at("actionID"), json.at("title"), json.at("destinationPath"));
}

/// Whether a click on a destination or place may act as the catalogue's command of its title.
bool mayBeCommand(const EntryRecord& clicked, const EntryRecord& record) {
    const auto& [actionID, title, destination] = clicked;
    const bool isDestination = actionID == copyFilesToFolderActionID ||
                               actionID == moveFilesToFolderActionID ||
                               actionID == quickOpenPathActionID;
    return isDestination && title == std::get<1>(record) && commands().contains(record);
}

MenuItem arbitrarySender(FuzzedValues& values, const std::vector<Clickable>& clickables) {
    MenuItem sender;
    const auto anyItem = [&] { return clickables[values.number(clickables.size() - 1)].item; };
    const bool isOfMenu = !clickables.empty() && values.chance();
    sender.title = isOfMenu ? anyItem().title : values.identifier();
    if (values.chance()) {
        constexpr std::array<std::string_view, 5> prefixes = {
            openWithApplicationIdentifierPrefix, runShortcutIdentifierPrefix,
            runScriptIdentifierPrefix, viewPresetIdentifierPrefix, ""};
        sender.identifier = isOfMenu && values.chance()
                                ? anyItem().identifier
                                : values.word(prefixes) + values.identifier();
    }
    switch (values.number(3)) {
        case 0:
            break;
        case 1:
            sender.tag = viewPresetTagBase + static_cast<std::int64_t>(values.number(8)) - 1;
            break;
        case 2:
            sender.tag = static_cast<std::int64_t>(values.number(8));
            break;
        default:
            // A tag that is even lower ends the process, as is documented.
            sender.tag = std::max(values.integer(), INT64_MIN + viewPresetTagBase);
    }
    switch (values.number(7)) {
        case 0:
            sender.representedObject = ForeignObject{};
            break;
        case 1:
            if (const PropertyList value = values.value(); value.dictionary() != nullptr) {
                sender.representedObject = *value.dictionary();
            }
            break;
        case 2: {
            PropertyList::Dictionary dictionary;
            for (const char* const key : {"actionID", "title", "targetedPath", "destinationPath"}) {
                dictionary.emplace(key, values.mostly([&] { return values.identifier(); }));
            }
            dictionary.emplace("selectedPaths", values.identifiers());
            sender.representedObject = dictionary;
            break;
        }
        default:
            break;
    }
    return sender;
}

void checkArbitrarySender(const MenuItem& sender, const std::vector<Clickable>& clickables,
                          const std::optional<EntryRecord>& record) {
    if (const auto* const dictionary =
            std::get_if<PropertyList::Dictionary>(&sender.representedObject)) {
        const auto actionID = dictionary->find("actionID");
        const std::string* const string =
            actionID == dictionary->end() ? nullptr : actionID->second.string();
        require(!record || (string != nullptr && std::get<0>(*record) == *string),
                "a dictionary acts as it says");
        return;
    }
    if (!record) {
        return;
    }
    std::set<EntryRecord> entries = entriesNow();
    for (const Clickable& clickable : clickables) {
        entries.insert(clickable.record);
    }
    require(entries.contains(*record), "a record is that of an entry");
}

}  // namespace
}  // namespace quorva

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorva;
    fakePlatform::reset();
    FuzzedValues values(data, size);
    values.putFeatureSettings();
    values.putCustomDestinations();
    values.putCustomShortcutActions();
    values.putViewPresets();
    if (values.chance()) {
        state().selectedItemURLs = {FileURL::file("/a"), FileURL::file("/b")};
    }
    FinderExtension extension;
    std::vector<Clickable> clickables;
    collect(extension.menu(MenuKind::contextualMenuForItems), clickables);
    const bool isChanged = values.number(3) == 0;
    if (isChanged) {
        values.putCustomDestinations();
        values.putViewPresets();
    }
    if (clickables.empty() || values.number(3) == 0) {
        const MenuItem sender = arbitrarySender(values, clickables);
        // A click may write text that JSON has no form for, which refuses the record.
        checkArbitrarySender(sender, clickables, click(extension, sender));
        return 0;
    }
    const Clickable& clicked = clickables[values.number(clickables.size() - 1)];
    MenuItem sender;
    sender.title = clicked.item.title;
    sender.action = clicked.item.action;
    sender.enabled = clicked.item.enabled;
    sender.tag = clicked.item.tag;
    const std::optional<EntryRecord> record = click(extension, sender);
    if (isChanged) {
        checkArbitrarySender(sender, clickables, record);
    } else if (!record) {
        const auto& [actionID, title, destination] = clicked.record;
        require(!isText(actionID) || !isText(title) || !isText(destination),
                "a click is recorded where JSON has a form for the entry");
    } else {
        require(*record == clicked.record || mayBeCommand(clicked.record, *record),
                "a click acts on the entry that was clicked");
    }
    return 0;
}
