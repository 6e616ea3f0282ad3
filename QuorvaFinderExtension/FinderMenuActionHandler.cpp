#include "QuorvaFinderExtension/FinderMenuActionHandler.hpp"

#include <memory>
#include <optional>
#include <string>

#include "Platform/Bundle.hpp"
#include "Platform/DistributedNotificationCenter.hpp"
#include "Platform/FinderSyncController.hpp"
#include "Platform/RunningApplication.hpp"
#include "Platform/Workspace.hpp"
#include "QuorvaFinderExtension/Containment.hpp"
#include "QuorvaFinderExtension/DiagnosticLog.hpp"
#include "QuorvaFinderExtension/FinderActionContext.hpp"
#include "QuorvaFinderExtension/FinderSync.hpp"
#include "QuorvaFinderExtension/MenuItemResolution.hpp"
#include "QuorvaFinderExtension/QuorvaActionQueue.hpp"

namespace quorva {

const FinderMenuActionHandler& FinderMenuActionHandler::shared() {
    static const FinderMenuActionHandler handler;
    return handler;
}

void FinderMenuActionHandler::performFeatureChild(const MenuItem& sender) const {
    appendDiagnosticLog("clicked sender=" + sender.title);
    const std::shared_ptr<const FinderActionContext> context = actionContext(sender);
    if (context == nullptr) {
        appendDiagnosticLog("missing context for sender=" + sender.title);
        return;
    }
    FinderSelection selection = currentFinderSelection();
    if (selection.empty()) {
        selection = context->selectedURLs();
    }
    std::optional<FileURL> target = targetedURL();
    if (!target) {
        target = context->targetedURL();
    }
    appendDiagnosticLog("action=" + context->actionID() + " title=" + context->title() +
                        " selected=" + bracketedPaths(selection.urls()) +
                        " target=" + (target ? target->path() : "nil") + " destination=" +
                        (context->destinationPath().empty() ? "nil" : context->destinationPath()));
    const Result<void> queued =
        QuorvaActionQueue::enqueue(context->actionID(), context->title(), selection.urls(), target,
                                   context->destinationPath(), context->presetID());
    if (!queued) {
        const std::string& description = queued.error().localizedDescription;
        appendDiagnosticLog("queue failed: " + context->actionID() + " error=" + description);
        appendDiagnosticLog("suppressed queue error alert: " + description);
        return;
    }
    appendDiagnosticLog("queued action: " + context->actionID());
    postDistributedNotification(actionQueuedNotificationName);
    openContainingApp();
}

void FinderMenuActionHandler::openContainingApp() const {
    if (runningApplicationCount(containingApplicationIdentifier) > 0) {
        return;
    }
    // The extension's bundle lies in Contents/PlugIns of the application's.
    const FileURL applicationURL = mainBundleURL()
                                       .deletingLastPathComponent()
                                       .deletingLastPathComponent()
                                       .deletingLastPathComponent();
    openApplication(
        applicationURL, {.activates = false, .addsToRecentItems = false},
        [](const std::optional<Error>& error) {
            contain([&error] {
                if (error) {
                    appendDiagnosticLog("failed to open app: " + error->localizedDescription);
                }
            });
        });
}

}  // namespace quorva
