#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

/// What the stand-ins of the system's frameworks recorded, in order.
struct RecordedRequests {
    struct Notification {
        std::string name;
        std::optional<std::string> userInfoJSON;
    };
    struct OpenApplication {
        std::string path;
        bool activates;
        bool addsToRecentItems;
    };

    std::vector<Notification> notifications;
    std::vector<OpenApplication> openedApplications;
    /// "level category message".
    std::vector<std::string> unifiedLog;
};

/// Answers what was recorded since the last call.
RecordedRequests takeRecordedRequests();
