#include "QuorvaFinderExtension/FinderSyncMenus.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "QuorvaFinderExtension/DiagnosticLog.hpp"
#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"
#include "QuorvaFinderExtension/FinderSync.hpp"
#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"
#include "QuorvaFinderExtension/L10n.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"

namespace quorva {

namespace {

using Destinations = std::vector<FinderCustomDestination>;

/// Entries that are enabled whatever is selected, on purpose.
bool isAlwaysEnabled(std::string_view actionID) {
    return actionID == "copyFilesToPath" || actionID == "moveFilesToPath" ||
           actionID == copyFilesToFolderActionID || actionID == moveFilesToFolderActionID;
}

/// What an entry does, but for the selection and the target.
struct Entry {
    std::string actionID;
    std::string title;
    FinderFeatureAction action;
    std::string destinationPath;
};

MenuItem contextItem(Entry entry, const FinderSelection& selectedURLs,
                     const std::optional<FileURL>& targetedURL) {
    MenuItem item;
    item.title = entry.title;
    item.action = MenuItem::Action::performFeatureChild;
    item.enabled =
        isAlwaysEnabled(entry.actionID) || isEnabled(entry.action, selectedURLs, targetedURL);
    item.representedObject = std::make_shared<const FinderActionContext>(
        std::move(entry.actionID), std::move(entry.title), entry.action, selectedURLs, targetedURL,
        std::move(entry.destinationPath), std::string());
    return item;
}

MenuItem childItem(const FinderFeatureChild& child, const FinderSelection& selectedURLs,
                   const std::optional<FileURL>& targetedURL) {
    return contextItem({child.actionID, child.title, child.action, {}}, selectedURLs, targetedURL);
}

/// The paths of the built-in destinations of `kind`.
std::vector<std::string> builtInFileDestinationPaths(FinderCustomDestinationKind kind) {
    if (kind != FinderCustomDestinationKind::copy && kind != FinderCustomDestinationKind::move) {
        return {};
    }
    const FileURL home = realUserHomeURL();
    return {home.appendingDirectory("Desktop").path(), home.appendingDirectory("Downloads").path(),
            home.appendingDirectory("Documents").path()};
}

bool isAmong(const std::vector<std::string>& paths, const FinderCustomDestination& destination) {
    return std::ranges::find(paths, destination.path) != paths.end();
}

/// The destinations of `kind` that are not built in. The real home is looked up once, however many
/// destinations there are.
Destinations userDestinations(FinderCustomDestinationKind kind) {
    Destinations destinations = FinderCustomDestinationSettings::destinations(kind);
    const std::vector<std::string> builtIn = builtInFileDestinationPaths(kind);
    std::erase_if(destinations, [&builtIn](const FinderCustomDestination& destination) {
        return isAmong(builtIn, destination);
    });
    return destinations;
}

std::string destinationTitle(const FinderCustomDestination& destination,
                             FinderCustomDestinationKind kind) {
    switch (kind) {
        case FinderCustomDestinationKind::copy:
            return L10n::t("复制到") + destination.name;
        case FinderCustomDestinationKind::move:
            return L10n::t("移动到") + destination.name;
        case FinderCustomDestinationKind::quickOpen:
        case FinderCustomDestinationKind::openApplication:
            return destination.name;
    }
    std::unreachable();
}

/// Adds the item that opens the submenu of the user's own destinations, if there are any.
void addDestinationSubmenu(Menu& menu, std::string_view titleKey, std::string_view actionID,
                           FinderCustomDestinationKind kind, const FinderSelection& selectedURLs,
                           const std::optional<FileURL>& targetedURL) {
    if (!hasCustomDestinationItems(kind)) {
        return;
    }
    Menu submenu = {L10n::t(titleKey), {}};
    addDestinationItems(submenu, actionID, kind, selectedURLs, targetedURL);
    menu.items.push_back(MenuItem::opening(std::move(submenu)));
}

std::string presetList(const std::vector<FinderViewPresetSetting>& presets) {
    std::vector<std::string> strings;
    strings.reserve(presets.size());
    for (const FinderViewPresetSetting& preset : presets) {
        strings.push_back(preset.id + ":" + preset.name);
    }
    return bracketedList(strings);
}

PropertyList paths(const FinderSelection& selectedURLs) {
    PropertyList::Array paths;
    paths.reserve(selectedURLs.urls().size());
    for (const FileURL& url : selectedURLs.urls()) {
        paths.emplace_back(url.path());
    }
    return paths;
}

}  // namespace

std::vector<MenuItem> featureMenuItems(const FinderMenuSettings& settings,
                                       const std::vector<FinderFeature>& features,
                                       const FinderSelection& selectedURLs,
                                       const std::optional<FileURL>& targetedURL) {
    std::vector<MenuItem> items;
    for (const FinderFeature feature : features) {
        Menu submenu = {title(feature), directMenuItems(feature, settings.children(feature),
                                                        selectedURLs, targetedURL)};
        if (feature != FinderFeature::customActions || !submenu.items.empty()) {
            items.push_back(MenuItem::opening(std::move(submenu)));
        }
    }
    return items;
}

std::vector<MenuItem> directMenuItems(FinderFeature feature,
                                      const std::vector<FinderFeatureChild>& children,
                                      const FinderSelection& selectedURLs,
                                      const std::optional<FileURL>& targetedURL) {
    if (feature == FinderFeature::quickOpen) {
        return quickOpenMenuItems(children, selectedURLs, targetedURL);
    }
    if (feature == FinderFeature::viewOptions) {
        return finderViewPresetMenuItems(selectedURLs, targetedURL);
    }
    if (feature == FinderFeature::customActions) {
        return customShortcutMenuItems(selectedURLs, targetedURL);
    }
    Menu run;
    for (const FinderFeatureChild& child : children) {
        run.items.push_back(childItem(child, selectedURLs, targetedURL));
    }
    if (feature == FinderFeature::openWith) {
        addOpenWithApplicationItems(run, selectedURLs, targetedURL);
    } else if (feature == FinderFeature::copyFile) {
        addDestinationSubmenu(run, "复制到文件夹", copyFilesToFolderActionID,
                              FinderCustomDestinationKind::copy, selectedURLs, targetedURL);
    } else if (feature == FinderFeature::organizeFile) {
        addDestinationSubmenu(run, "移动到文件夹", moveFilesToFolderActionID,
                              FinderCustomDestinationKind::move, selectedURLs, targetedURL);
    }
    return std::move(run.items);
}

void addDestinationItems(Menu& menu, std::string_view actionID, FinderCustomDestinationKind kind,
                         const FinderSelection& selectedURLs,
                         const std::optional<FileURL>& targetedURL) {
    const FinderFeatureAction action = kind == FinderCustomDestinationKind::copy
                                           ? FinderFeatureAction::copyToFolder()
                                           : FinderFeatureAction::moveToFolder();
    for (const FinderCustomDestination& destination : userDestinations(kind)) {
        menu.items.push_back(contextItem(
            {std::string(actionID), destinationTitle(destination, kind), action, destination.path},
            selectedURLs, targetedURL));
    }
}

std::vector<MenuItem> quickOpenMenuItems(const std::vector<FinderFeatureChild>& children,
                                         const FinderSelection& selectedURLs,
                                         const std::optional<FileURL>& targetedURL) {
    std::vector<MenuItem> items;
    for (const FinderCustomDestination& destination :
         FinderCustomDestinationSettings::destinations(FinderCustomDestinationKind::quickOpen)) {
        items.push_back(contextItem({std::string(quickOpenPathActionID), destination.name,
                                     FinderFeatureAction::openFolder(), destination.path},
                                    selectedURLs, targetedURL));
    }
    for (const FinderFeatureChild& child : children) {
        if (child.actionID == "quickOpenClipboardPath" || child.actionID == "quickOpenTypedPath") {
            items.push_back(childItem(child, selectedURLs, targetedURL));
        }
    }
    return items;
}

std::vector<MenuItem> openWithApplicationMenuItems(const FinderSelection& selectedURLs,
                                                   const std::optional<FileURL>& targetedURL) {
    std::vector<MenuItem> items;
    for (const FinderCustomDestination& destination : FinderCustomDestinationSettings::destinations(
             FinderCustomDestinationKind::openApplication)) {
        MenuItem item =
            contextItem({std::string(openWithApplicationActionID), destination.name,
                         FinderFeatureAction::openWithApplicationPath(), destination.path},
                        selectedURLs, targetedURL);
        item.identifier = openWithApplicationIdentifier(destination);
        items.push_back(std::move(item));
    }
    return items;
}

void addOpenWithApplicationItems(Menu& menu, const FinderSelection& selectedURLs,
                                 const std::optional<FileURL>& targetedURL) {
    std::ranges::move(openWithApplicationMenuItems(selectedURLs, targetedURL),
                      std::back_inserter(menu.items));
}

std::vector<MenuItem> finderViewPresetMenuItems(const FinderSelection& selectedURLs,
                                                const std::optional<FileURL>& targetedURL) {
    const std::vector<FinderViewPresetSetting> presets = FinderViewPresetSettings::presets();
    appendDiagnosticLog("view preset menu presets=" + presetList(presets));
    const PropertyList selectedPaths = paths(selectedURLs);
    const std::string targetedPath = targetedURL ? targetedURL->path() : std::string();
    std::vector<MenuItem> items;
    for (const FinderViewPresetSetting& preset : presets) {
        const std::string identifier = viewPresetIdentifier(preset);
        const std::int64_t tag = viewPresetTagBase + static_cast<std::int64_t>(items.size());
        appendDiagnosticLog("view preset item title=" + preset.name + " actionID=" + identifier +
                            " tag=" + std::to_string(tag));
        MenuItem item;
        item.title = preset.name;
        item.action = MenuItem::Action::performFeatureChild;
        item.identifier = identifier;
        item.tag = tag;
        // The preset is in the identifier and the tag; "presetID" stays empty on purpose.
        item.representedObject = PropertyList::Dictionary{
            {"actionID", identifier},         {"title", preset.name},
            {"selectedPaths", selectedPaths}, {"targetedPath", targetedPath},
            {"destinationPath", ""},          {"presetID", ""},
        };
        items.push_back(std::move(item));
    }
    return items;
}

std::vector<MenuItem> customShortcutMenuItems(const FinderSelection& selectedURLs,
                                              const std::optional<FileURL>& targetedURL) {
    std::vector<MenuItem> items;
    for (const FinderCustomShortcutAction& action : FinderCustomShortcutActionSettings::actions()) {
        const std::string identifier = customActionIdentifier(action);
        MenuItem item =
            contextItem({identifier, action.name, FinderFeatureAction::requiresSelection(), {}},
                        selectedURLs, targetedURL);
        item.identifier = identifier;
        items.push_back(std::move(item));
    }
    return items;
}

bool isEnabled(const FinderFeatureAction& action, const FinderSelection& selectedURLs,
               const std::optional<FileURL>& targetedURL) {
    using Case = FinderFeatureAction::Case;
    switch (action.actionCase()) {
        case Case::createFile:
        case Case::createFolder:
        case Case::openFolder:
        case Case::finderViewOption:
        case Case::alwaysEnabled:
            return true;
        case Case::copyBesideOriginal:
        case Case::copyToFolder:
        case Case::revealInFinder:
        case Case::moveToFolder:
        case Case::moveSelectionToNewFolder:
        case Case::requiresSelection:
            return !selectedURLs.empty();
        case Case::copyPath:
        case Case::openInApplication:
        case Case::openInTerminal:
        case Case::openWithApplicationPath:
            return !selectedURLs.empty() || targetedURL.has_value();
    }
    std::unreachable();
}

bool hasCustomDestinationItems(FinderCustomDestinationKind kind) {
    return !userDestinations(kind).empty();
}

bool isBuiltInFileDestination(const FinderCustomDestination& destination,
                              FinderCustomDestinationKind kind) {
    return isAmong(builtInFileDestinationPaths(kind), destination);
}

}  // namespace quorva
