#pragma once

#include <optional>
#include <string>

/// What the extension's process asks of the system, recorded as it happens, for the answers on
/// standard output. Any thread may record. Compiled as plain C++; called from the stand-ins of the
/// system's frameworks.
namespace simulator {

/// A posted distributed notification. `userInfoJSON` is the user info as a JSON object, absent when
/// there was none.
void recordNotification(const std::string& name, const std::optional<std::string>& userInfoJSON);

/// A request to open the application at `path`.
void recordOpenApplication(const std::string& path, bool activates, bool addsToRecentItems);

/// A record of the unified log, with its fields filled in.
void recordUnifiedLog(const std::string& level, const std::string& category,
                      const std::string& message);

/// An asynchronous launch began. Its completion must call `launchEnded`.
void launchBegan();

/// The completion of a launch has returned.
void launchEnded();

/// Waits until every launch that began has ended, or `seconds` have passed.
void waitForLaunches(double seconds);

}  // namespace simulator
