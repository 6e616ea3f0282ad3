#pragma once

#include <functional>
#include <optional>

#include "Platform/Error.hpp"
#include "Platform/FileURL.hpp"

namespace quorva::platform {

/// How an application is opened.
struct OpenConfiguration {
    /// Whether the application comes to the front.
    bool activates;
    /// Whether it is added to the recent items.
    bool addsToRecentItems;

    friend bool operator==(const OpenConfiguration&, const OpenConfiguration&) = default;
};

/// Asks the system to open the application whose bundle is at `url`, and returns at once.
///
/// `completion` is called exactly once, with the error or with nothing on success, possibly on
/// another thread and possibly after everything else that the caller knew is gone: it must own
/// whatever it uses and must not throw.
void openApplication(const FileURL& url, const OpenConfiguration& configuration,
                     std::function<void(const std::optional<Error>& error)> completion);

}  // namespace quorva::platform
