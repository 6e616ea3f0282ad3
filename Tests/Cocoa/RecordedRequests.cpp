#include "Tests/Cocoa/RecordedRequests.hpp"

#include <chrono>
#include <condition_variable>
#include <utility>

#include "Simulator/EventRecorder.hpp"

namespace {

std::mutex mutex;
std::condition_variable launchHasEnded;
RecordedRequests requests;
int runningLaunches = 0;

}  // namespace

RecordedRequests takeRecordedRequests() {
    const std::lock_guard lock(mutex);
    return std::exchange(requests, {});
}

void simulator::recordNotification(const std::string& name,
                                   const std::optional<std::string>& userInfoJSON) {
    const std::lock_guard lock(mutex);
    requests.notifications.push_back({name, userInfoJSON});
}

void simulator::recordOpenApplication(const std::string& path, bool activates,
                                      bool addsToRecentItems) {
    const std::lock_guard lock(mutex);
    requests.openedApplications.push_back({path, activates, addsToRecentItems});
}

void simulator::recordUnifiedLog(const std::string& level, const std::string& category,
                                 const std::string& message) {
    const std::lock_guard lock(mutex);
    requests.unifiedLog.push_back(level + " " + category + " " + message);
}

void simulator::launchBegan() {
    const std::lock_guard lock(mutex);
    ++runningLaunches;
}

void simulator::launchEnded() {
    const std::lock_guard lock(mutex);
    --runningLaunches;
    launchHasEnded.notify_all();
}

void simulator::waitForLaunches(double seconds) {
    std::unique_lock lock(mutex);
    launchHasEnded.wait_for(lock, std::chrono::duration<double>(seconds),
                            [] { return runningLaunches == 0; });
}
