#include "Simulator/EventRecorder.hpp"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <nlohmann/json.hpp>
#include <utility>

#include "Simulator/ExtensionHost/RecordedEvents.hpp"

namespace simulator {
namespace {

using json = nlohmann::ordered_json;

struct Recorder {
    std::mutex mutex;
    std::condition_variable launchHasEnded;
    RecordedEvents recorded;
    int launchesUnderWay = 0;
};

Recorder& recorder() {
    static Recorder& instance = *new Recorder;  // launches may outlive the end of main
    return instance;
}

std::string text(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

void record(std::vector<std::string> RecordedEvents::* list, const json& value) {
    std::string line = text(value);
    const std::lock_guard lock(recorder().mutex);
    (recorder().recorded.*list).push_back(std::move(line));
}

}  // namespace

void recordNotification(const std::string& name, const std::optional<std::string>& userInfoJSON) {
    json userInfo;
    if (userInfoJSON) {
        userInfo = json::parse(*userInfoJSON, nullptr, false);
        if (userInfo.is_discarded()) {
            userInfo = json::object();
        }
    }
    record(&RecordedEvents::events,
           {{"event", "notification"}, {"name", name}, {"userInfo", std::move(userInfo)}});
}

void recordOpenApplication(const std::string& path, bool activates, bool addsToRecentItems) {
    record(&RecordedEvents::events, {{"event", "openApplication"},
                                     {"path", path},
                                     {"activates", activates},
                                     {"addsToRecentItems", addsToRecentItems}});
}

void recordUnifiedLog(const std::string& level, const std::string& category,
                      const std::string& message) {
    record(&RecordedEvents::unifiedLog,
           {{"level", level}, {"category", category}, {"message", message}});
}

void launchBegan() {
    const std::lock_guard lock(recorder().mutex);
    ++recorder().launchesUnderWay;
}

void launchEnded() {
    const std::lock_guard lock(recorder().mutex);
    --recorder().launchesUnderWay;
    recorder().launchHasEnded.notify_all();
}

void waitForLaunches(double seconds) {
    std::unique_lock lock(recorder().mutex);
    recorder().launchHasEnded.wait_for(lock, std::chrono::duration<double>(seconds),
                                       [] { return recorder().launchesUnderWay == 0; });
}

RecordedEvents takeRecordedEvents() {
    const std::lock_guard lock(recorder().mutex);
    return std::exchange(recorder().recorded, {});
}

}  // namespace simulator
