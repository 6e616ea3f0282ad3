#include "QuorvaFinderExtension/FinderSync.hpp"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "Platform/FileManager.hpp"
#include "Platform/FinderSyncController.hpp"
#include "Platform/PathUtilities.hpp"
#include "QuorvaFinderExtension/Containment.hpp"
#include "QuorvaFinderExtension/DiagnosticLog.hpp"
#include "QuorvaFinderExtension/FinderFeatureSettings.hpp"
#include "QuorvaFinderExtension/FinderMenuActionHandler.hpp"
#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "QuorvaFinderExtension/L10n.hpp"

namespace quorva {

namespace {

std::string description(MenuKind kind) {
    switch (kind) {
        case MenuKind::contextualMenuForItems:
            return "contextualMenuForItems";
        case MenuKind::contextualMenuForContainer:
            return "contextualMenuForContainer";
        case MenuKind::contextualMenuForSidebar:
            return "contextualMenuForSidebar";
        case MenuKind::toolbarItemMenu:
            return "toolbarItemMenu";
    }
    return "FIMenuKind(" + std::to_string(std::to_underlying(kind)) + ")";
}

std::vector<MenuItem> expandedMenuItems(const FinderMenuSettings& settings,
                                        const FinderSelection& selectedURLs,
                                        const std::optional<FileURL>& targetedURL) {
    std::vector<MenuItem> items;
    for (const FinderFeature feature : settings.features) {
        std::vector<MenuItem> run =
            directMenuItems(feature, settings.children(feature), selectedURLs, targetedURL);
        if (!run.empty() && !items.empty()) {
            items.push_back(MenuItem::separator());
        }
        std::ranges::move(run, std::back_inserter(items));
    }
    return items;
}

Menu assembledMenu(const FinderMenuSettings& settings, const FinderSelection& selectedURLs,
                   const std::optional<FileURL>& targetedURL) {
    Menu menu = {"Quorva", {}};
    if (settings.features.empty()) {
        MenuItem notice;
        notice.title = L10n::t("没有已启用功能");
        notice.enabled = false;
        menu.items.push_back(std::move(notice));
        return menu;
    }
    std::vector<MenuItem> items =
        settings.menuLayout == FinderMenuLayout::expanded
            ? expandedMenuItems(settings, selectedURLs, targetedURL)
            : featureMenuItems(settings, settings.features, selectedURLs, targetedURL);
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

/// Whether `path` can be a user's real home folder, or lie in one: not inside a sandbox container.
bool liesInRealHome(const std::string& path) {
    return path.starts_with("/Users/") && !path.contains("/Library/Containers/");
}

}  // namespace

FinderSync::FinderSync() noexcept : logger_("app.ferrolin.Quorva.FinderExtension", "FinderSync") {
    contain([this] { refreshMonitoredDirectories("started"); });
}

Menu FinderSync::menu(MenuKind kind) const noexcept {
    Menu menu = {"Quorva", {}};
    contain([&] {
        const FinderSelection selectedURLs = currentFinderSelection();
        const std::optional<FileURL> target = targetedURL();
        const FinderMenuSettings settings = FinderFeatureSettings::menuSettings();
        const std::string targetedPath = target ? target->path() : "nil";
        const std::string layout(rawValue(settings.menuLayout));
        logger_.menuRequested(std::to_underlying(kind),
                              static_cast<long>(selectedURLs.urls().size()), targetedPath,
                              static_cast<long>(settings.features.size()),
                              settings.groupsFeaturesUnderQuorva, layout);
        appendDiagnosticLog("menu kind=" + description(kind) + " selected=" +
                            bracketedPaths(selectedURLs.urls()) + " target=" + targetedPath +
                            " grouped=" + (settings.groupsFeaturesUnderQuorva ? "true" : "false") +
                            " layout=" + layout);
        menu = assembledMenu(settings, selectedURLs, target);
    });
    return menu;
}

void FinderSync::performFeatureChild(const MenuItem& sender) const noexcept {
    contain([&sender] { FinderMenuActionHandler::shared().performFeatureChild(sender); });
}

void FinderSync::handleSettingsChanged(
    const std::optional<PropertyList::Dictionary>& userInfo) noexcept {
    contain([&] {
        std::string reason = "unknown";
        if (userInfo) {
            const auto found = userInfo->find("reason");
            if (found != userInfo->end() && found->second.string() != nullptr) {
                reason = *found->second.string();
            }
        }
        appendDiagnosticLog("settings changed notification reason=" + reason);
        refreshMonitoredDirectories("settings-changed:" + reason);
    });
}

void FinderSync::refreshMonitoredDirectories(std::string_view reason) {
    const std::set<FileURL> urls = monitoredDirectoryURLs();
    setDirectoryURLs(urls);
    logger_.refreshedDirectories(reason, static_cast<long>(urls.size()));
    // URLs are ordered by their paths first, so this is ascending text order.
    appendDiagnosticLog(std::string(reason) +
                        " monitored=" + bracketedPaths({urls.begin(), urls.end()}));
}

FileURL realUserHomeURL() {
    const std::string user = userName();
    if (const auto home = homeDirectoryForUser(user); home && liesInRealHome(*home)) {
        return FileURL::directory(*home);
    }
    // The documents folder is left out on purpose.
    for (const SearchPathDirectory directory :
         {SearchPathDirectory::desktop, SearchPathDirectory::downloads, SearchPathDirectory::movies,
          SearchPathDirectory::music, SearchPathDirectory::pictures}) {
        const std::vector<FileURL> urls = urlsForDirectoryInUserDomain(directory);
        if (!urls.empty() && liesInRealHome(urls.front().path())) {
            return urls.front().deletingLastPathComponent();
        }
    }
    return FileURL::directory("/Users/" + user);
}

std::set<FileURL> monitoredDirectoryURLs() {
    const FileURL realHome = realUserHomeURL();
    std::vector<FileURL> urls = {
        FileURL::directory("/Applications"),
        FileURL::directory("/Volumes"),
        homeDirectoryForCurrentUser(),
        realHome,
        realHome.appendingDirectory("Desktop"),
        realHome.appendingDirectory("Documents"),
        realHome.appendingDirectory("Library/Mobile Documents/com~apple~CloudDocs"),
        realHome.appendingDirectory("Library/Mobile Documents/com~apple~CloudDocs/Desktop"),
        realHome.appendingDirectory("Library/Mobile Documents/com~apple~CloudDocs/Documents"),
    };
    for (const SearchPathDirectory directory :
         {SearchPathDirectory::desktop, SearchPathDirectory::documents,
          SearchPathDirectory::downloads, SearchPathDirectory::movies, SearchPathDirectory::music,
          SearchPathDirectory::pictures}) {
        const std::vector<FileURL> standard = urlsForDirectoryInUserDomain(directory);
        if (!standard.empty()) {
            urls.push_back(standard.front());
        }
    }
    if (const auto entries = contentsOfDirectorySkippingHiddenFiles(realHome)) {
        std::ranges::copy_if(*entries, std::back_inserter(urls), &FileURL::hasDirectoryPath);
    }
    return normalizedDirectoryVariants(urls);
}

std::set<FileURL> normalizedDirectoryVariants(const std::vector<FileURL>& urls) {
    std::set<FileURL> variants;
    for (const FileURL& url : urls) {
        variants.insert(url);
        variants.insert(standardizedFileURL(url));
        variants.insert(FileURL::directory(pathByResolvingSymbolicLinks(url.path())));
    }
    return variants;
}

FinderSelection currentFinderSelection() {
    std::optional<std::vector<FileURL>> urls = selectedItemURLs();
    if (!urls) {
        return {};
    }
    return *std::move(urls);
}

}  // namespace quorva
