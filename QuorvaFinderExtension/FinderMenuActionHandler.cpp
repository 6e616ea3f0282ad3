#include "QuorvaFinderExtension/FinderMenuActionHandler.hpp"

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
#include "QuorvaFinderExtension/FinderSelection.hpp"
#include "QuorvaFinderExtension/MenuTransfer.hpp"
#include "QuorvaFinderExtension/QuorvaActionQueue.hpp"

namespace quorva {

const FinderMenuActionHandler& FinderMenuActionHandler::shared() {
    static const FinderMenuActionHandler handler;
    return handler;
}

void FinderMenuActionHandler::performFeatureChild(const MenuItem& sender, const Menu& menu) const {
    appendDiagnosticLog("clicked sender=" + sender.title);
    const FinderActionContextPointer context = contextOfSender(sender, menu, SettingsReading());
    if (context == nullptr) {
        appendDiagnosticLog("missing context for sender=" + sender.title);
        return;
    }
    QuorvaActionRecord record = {.actionID = context->actionID(),
                                 .title = context->title(),
                                 .selectedURLs = currentFinderSelection(),
                                 .targetedURL = platform::targetedURL(),
                                 .destinationPath = context->destinationPath(),
                                 .presetID = context->presetID()};
    if (record.selectedURLs.empty()) {
        record.selectedURLs = context->selectedURLs();
    }
    if (!record.targetedURL) {
        record.targetedURL = context->targetedURL();
    }
    appendDiagnosticLog(
        "action=" + record.actionID + " title=" + record.title +
        " selected=" + bracketedPaths(record.selectedURLs.urls()) +
        " target=" + (record.targetedURL ? record.targetedURL->path() : "nil") +
        " destination=" + (record.destinationPath.empty() ? "nil" : record.destinationPath));
    if (const Result<void> queued = QuorvaActionQueue::enqueue(record); !queued) {
        const std::string& description = queued.error().localizedDescription;
        appendDiagnosticLog("queue failed: " + record.actionID + " error=" + description);
        appendDiagnosticLog("suppressed queue error alert: " + description);
        return;
    }
    contain("announcing the record", [&record] {
        appendDiagnosticLog("queued action: " + record.actionID);
        if (const auto posted = platform::postDistributedNotification(actionQueuedNotificationName);
            !posted) {
            appendFailureToDiagnosticLog("announcing the record",
                                         posted.error().localizedDescription);
        }
    });
    contain("opening the containing application", [this] { openContainingApp(); });
}

void FinderMenuActionHandler::openContainingApp() const {
    if (platform::runningApplicationCount(containingApplicationIdentifier) > 0) {
        return;
    }
    // The extension's bundle lies in Contents/PlugIns of the application's.
    const FileURL applicationURL = platform::mainBundleURL()
                                       .deletingLastPathComponent()
                                       .deletingLastPathComponent()
                                       .deletingLastPathComponent();
    platform::openApplication(
        applicationURL, {.activates = false, .addsToRecentItems = false},
        [](const std::optional<Error>& error) {
            if (error) {
                appendDiagnosticLog("failed to open app: " + error->localizedDescription);
            }
        });
}

}  // namespace quorva
