#include "QuorvaFinderExtension/FinderSyncMenus.hpp"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "QuorvaFinderExtension/DiagnosticLog.hpp"
#include "QuorvaFinderExtension/L10n.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"
#include "QuorvaFinderExtension/MonitoredFolders.hpp"

namespace quorva {

namespace {

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

MenuItem contextItem(const MenuRequest& request, Entry entry) {
    MenuItem item;
    item.title = entry.title;
    item.action = MenuItem::Action::performFeatureChild;
    item.enabled = isAlwaysEnabled(entry.actionID) || isEnabled(entry.action, request);
    item.representedObject = std::make_shared<const FinderActionContext>(
        std::move(entry.actionID), std::move(entry.title), entry.action, request.selectedURLs,
        request.targetedURL, std::move(entry.destinationPath), std::string());
    return item;
}

MenuItem childItem(const MenuRequest& request, const FinderFeatureChild& child) {
    return contextItem(request, {child.actionID, child.title, child.action, {}});
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

/// What stands before the name of a destination in its title.
std::string destinationTitlePrefix(FinderCustomDestinationKind kind) {
    switch (kind) {
        case FinderCustomDestinationKind::copy:
            return L10n::t("复制到");
        case FinderCustomDestinationKind::move:
            return L10n::t("移动到");
        case FinderCustomDestinationKind::quickOpen:
        case FinderCustomDestinationKind::openApplication:
            return {};
    }
    std::unreachable();
}

/// Adds the item that opens the submenu of the user's own destinations, if there are any.
void addDestinationSubmenu(Menu& menu, const MenuRequest& request, std::string_view titleKey,
                           std::string_view actionID, FinderCustomDestinationKind kind) {
    Menu submenu;
    addDestinationItems(submenu, request, actionID, kind);
    if (!submenu.items.empty()) {
        submenu.title = L10n::t(titleKey);
        menu.items.push_back(MenuItem::opening(std::move(submenu)));
    }
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

/// The expanded layout: the entries of every feature, with separators between features.
std::vector<MenuItem> expandedMenuItems(const MenuRequest& request) {
    const FinderMenuSettings& settings = request.settings.menuSettings();
    std::vector<MenuItem> items;
    for (const FinderFeature feature : settings.features) {
        std::vector<MenuItem> run = directMenuItems(
            request, feature, settings.children(feature, request.settings.commands(feature)));
        if (!run.empty() && !items.empty()) {
            items.push_back(MenuItem::separator());
        }
        std::ranges::move(run, std::back_inserter(items));
    }
    return items;
}

}  // namespace

Menu assembledMenu(const MenuRequest& request) {
    const FinderMenuSettings& settings = request.settings.menuSettings();
    Menu menu = {"Quorva", {}};
    if (settings.features.empty()) {
        MenuItem notice;
        notice.title = L10n::t("没有已启用功能");
        notice.enabled = false;
        menu.items.push_back(std::move(notice));
        return menu;
    }
    std::vector<MenuItem> items = settings.menuLayout == FinderMenuLayout::expanded
                                      ? expandedMenuItems(request)
                                      : featureMenuItems(request, settings, settings.features);
    const std::string count = std::to_string(items.size());
    if (settings.groupsFeaturesUnderQuorva) {
        appendDiagnosticLog("menu grouped under Quorva topLevel=1 submenuItems=" + count);
        menu.items.push_back(MenuItem::opening({"Quorva", std::move(items)}));
    } else {
        appendDiagnosticLog("menu topLevel=" + count);
        menu.items = std::move(items);
    }
    return menu;
}

std::vector<MenuItem> featureMenuItems(const MenuRequest& request,
                                       const FinderMenuSettings& settings,
                                       const std::vector<FinderFeature>& features) {
    std::vector<MenuItem> items;
    items.reserve(features.size());
    for (const FinderFeature feature : features) {
        Menu submenu = {
            title(feature),
            directMenuItems(request, feature,
                            settings.children(feature, request.settings.commands(feature)))};
        if (feature != FinderFeature::customActions || !submenu.items.empty()) {
            items.push_back(MenuItem::opening(std::move(submenu)));
        }
    }
    return items;
}

std::vector<MenuItem> directMenuItems(const MenuRequest& request, FinderFeature feature,
                                      const std::vector<FinderFeatureChild>& children) {
    if (feature == FinderFeature::quickOpen) {
        return quickOpenMenuItems(request, children);
    }
    if (feature == FinderFeature::viewOptions) {
        return finderViewPresetMenuItems(request);
    }
    if (feature == FinderFeature::customActions) {
        return customShortcutMenuItems(request);
    }
    Menu run;
    run.items.reserve(children.size());
    for (const FinderFeatureChild& child : children) {
        run.items.push_back(childItem(request, child));
    }
    if (feature == FinderFeature::openWith) {
        addOpenWithApplicationItems(run, request);
    } else if (feature == FinderFeature::copyFile) {
        addDestinationSubmenu(run, request, "复制到文件夹", copyFilesToFolderActionID,
                              FinderCustomDestinationKind::copy);
    } else if (feature == FinderFeature::organizeFile) {
        addDestinationSubmenu(run, request, "移动到文件夹", moveFilesToFolderActionID,
                              FinderCustomDestinationKind::move);
    }
    return std::move(run.items);
}

void addDestinationItems(Menu& menu, const MenuRequest& request, std::string_view actionID,
                         FinderCustomDestinationKind kind) {
    const FinderFeatureAction action = kind == FinderCustomDestinationKind::copy
                                           ? FinderFeatureAction::copyToFolder()
                                           : FinderFeatureAction::moveToFolder();
    const std::string prefix = destinationTitlePrefix(kind);
    const std::vector<std::string> builtIn = builtInFileDestinationPaths(kind);
    for (const FinderCustomDestination& destination : request.settings.destinations(kind)) {
        if (!isAmong(builtIn, destination)) {
            menu.items.push_back(contextItem(
                request,
                {std::string(actionID), prefix + destination.name, action, destination.path}));
        }
    }
}

std::vector<MenuItem> quickOpenMenuItems(const MenuRequest& request,
                                         const std::vector<FinderFeatureChild>& children) {
    const std::vector<FinderCustomDestination>& destinations =
        request.settings.destinations(FinderCustomDestinationKind::quickOpen);
    std::vector<MenuItem> items;
    items.reserve(destinations.size() + children.size());
    for (const FinderCustomDestination& destination : destinations) {
        items.push_back(
            contextItem(request, {std::string(quickOpenPathActionID), destination.name,
                                  FinderFeatureAction::openFolder(), destination.path}));
    }
    for (const FinderFeatureChild& child : children) {
        if (child.actionID == "quickOpenClipboardPath" || child.actionID == "quickOpenTypedPath") {
            items.push_back(childItem(request, child));
        }
    }
    return items;
}

std::vector<MenuItem> openWithApplicationMenuItems(const MenuRequest& request) {
    const std::vector<FinderCustomDestination>& applications =
        request.settings.destinations(FinderCustomDestinationKind::openApplication);
    std::vector<MenuItem> items;
    items.reserve(applications.size());
    for (const FinderCustomDestination& application : applications) {
        MenuItem item = contextItem(
            request, {std::string(openWithApplicationActionID), application.name,
                      FinderFeatureAction::openWithApplicationPath(), application.path});
        item.identifier = openWithApplicationIdentifier(application);
        items.push_back(std::move(item));
    }
    return items;
}

void addOpenWithApplicationItems(Menu& menu, const MenuRequest& request) {
    std::ranges::move(openWithApplicationMenuItems(request), std::back_inserter(menu.items));
}

std::vector<MenuItem> finderViewPresetMenuItems(const MenuRequest& request) {
    const std::vector<FinderViewPresetSetting>& presets = request.settings.viewPresets();
    appendDiagnosticLog("view preset menu presets=" + presetList(presets));
    const PropertyList selectedPaths = paths(request.selectedURLs);
    const std::string targetedPath = request.targetedURL ? request.targetedURL->path() : "";
    std::vector<MenuItem> items;
    items.reserve(presets.size());
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

std::vector<MenuItem> customShortcutMenuItems(const MenuRequest& request) {
    const std::vector<FinderCustomShortcutAction>& actions = request.settings.customActions();
    std::vector<MenuItem> items;
    items.reserve(actions.size());
    for (const FinderCustomShortcutAction& action : actions) {
        const std::string identifier = customActionIdentifier(action);
        MenuItem item = contextItem(
            request, {identifier, action.name, FinderFeatureAction::requiresSelection(), {}});
        item.identifier = identifier;
        items.push_back(std::move(item));
    }
    return items;
}

bool isEnabled(const FinderFeatureAction& action, const MenuRequest& request) {
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
            return !request.selectedURLs.empty();
        case Case::copyPath:
        case Case::openInApplication:
        case Case::openInTerminal:
        case Case::openWithApplicationPath:
            return !request.selectedURLs.empty() || request.targetedURL.has_value();
    }
    std::unreachable();
}

bool hasCustomDestinationItems(const MenuRequest& request, FinderCustomDestinationKind kind) {
    return !std::ranges::all_of(request.settings.destinations(kind),
                                std::bind_front(isAmong, builtInFileDestinationPaths(kind)));
}

bool isBuiltInFileDestination(const FinderCustomDestination& destination,
                              FinderCustomDestinationKind kind) {
    return isAmong(builtInFileDestinationPaths(kind), destination);
}

}  // namespace quorva
