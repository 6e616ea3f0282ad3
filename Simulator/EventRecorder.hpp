#pragma once

#include <nlohmann/json.hpp>

/// What the extension's process asks of the system, recorded as it happens by the stand-ins of the
/// system's frameworks. Any thread may record. The records are JSON objects in the form of
/// Documentation/ExtensionProtocol.md.
namespace simulator {

struct RecordedEvents {
    /// Posted notifications and requests to open an application.
    nlohmann::ordered_json events = nlohmann::ordered_json::array();
    nlohmann::ordered_json unifiedLog = nlohmann::ordered_json::array();
};

void recordEvent(nlohmann::ordered_json event);
void recordUnifiedLog(nlohmann::ordered_json record);

/// What was recorded since the last call, in the order in which it happened.
RecordedEvents takeRecordedEvents();

/// An asynchronous launch began. Its completion must call `launchEnded`.
void launchBegan();

/// The completion of a launch has returned.
void launchEnded();

/// Waits until every launch that began has ended, or `seconds` have passed.
void waitForLaunches(double seconds);

}  // namespace simulator
