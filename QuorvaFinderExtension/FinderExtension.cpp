#include "QuorvaFinderExtension/FinderExtension.hpp"

#include <set>
#include <string>
#include <utility>

#include "Platform/FinderSyncController.hpp"
#include "QuorvaFinderExtension/DiagnosticLog.hpp"
#include "QuorvaFinderExtension/FinderMenuActionHandler.hpp"
#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "QuorvaFinderExtension/MenuTransfer.hpp"
#include "QuorvaFinderExtension/MonitoredFolders.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

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

}  // namespace

FinderExtension::FinderExtension() noexcept
    : logger_("app.ferrolin.Quorva.FinderExtension", "FinderSync") {}

void FinderExtension::start() const {
    refreshMonitoredDirectories("started");
}

const Menu& FinderExtension::menu(MenuKind kind) {
    const MenuRequest request = {kind, currentFinderSelection(), platform::targetedURL(), {}};
    const FinderMenuSettings& settings = request.settings.menuSettings();
    const std::string targetedPath = request.targetedURL ? request.targetedURL->path() : "nil";
    const std::string layout(rawValue(settings.menuLayout));
    logger_.menuRequested(std::to_underlying(kind),
                          static_cast<long>(request.selectedURLs.urls().size()), targetedPath,
                          static_cast<long>(settings.features.size()),
                          settings.groupsFeaturesUnderQuorva, layout);
    appendDiagnosticLog("menu kind=" + description(kind) + " selected=" +
                        bracketedPaths(request.selectedURLs.urls()) + " target=" + targetedPath +
                        " grouped=" + (settings.groupsFeaturesUnderQuorva ? "true" : "false") +
                        " layout=" + layout);
    Menu menu = assembledMenu(request);
    tagAmbiguousItems(menu, request.settings);
    menu_ = std::move(menu);
    return menu_;
}

void FinderExtension::performFeatureChild(const MenuItem& sender) const {
    FinderMenuActionHandler::shared().performFeatureChild(sender, menu_);
}

void FinderExtension::handleSettingsChanged(
    const std::optional<PropertyList::Dictionary>& userInfo) const {
    const std::string* const given = userInfo ? stringForKey(*userInfo, "reason") : nullptr;
    const std::string reason = given == nullptr ? "unknown" : *given;
    appendDiagnosticLog("settings changed notification reason=" + reason);
    refreshMonitoredDirectories("settings-changed:" + reason);
}

void FinderExtension::refreshMonitoredDirectories(std::string_view reason) const {
    const std::set<FileURL> urls = monitoredDirectoryURLs();
    if (const auto set = platform::setDirectoryURLs(urls); !set) {
        appendFailureToDiagnosticLog("setting the monitored folders",
                                     set.error().localizedDescription);
    }
    logger_.refreshedDirectories(reason, static_cast<long>(urls.size()));
    // URLs are ordered by their paths first, so this is ascending order.
    appendDiagnosticLog(std::string(reason) +
                        " monitored=" + bracketedPaths({urls.begin(), urls.end()}));
}

}  // namespace quorva
