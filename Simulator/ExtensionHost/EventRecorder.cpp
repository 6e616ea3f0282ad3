#include "Simulator/EventRecorder.hpp"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace simulator {
namespace {

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

}  // namespace

void recordEvent(nlohmann::ordered_json event) {
    const std::lock_guard lock(recorder().mutex);
    recorder().recorded.events.push_back(std::move(event));
}

void recordUnifiedLog(nlohmann::ordered_json record) {
    const std::lock_guard lock(recorder().mutex);
    recorder().recorded.unifiedLog.push_back(std::move(record));
}

RecordedEvents takeRecordedEvents() {
    const std::lock_guard lock(recorder().mutex);
    return std::exchange(recorder().recorded, {});
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

}  // namespace simulator
