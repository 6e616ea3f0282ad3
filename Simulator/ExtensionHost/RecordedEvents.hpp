#pragma once

#include <string>
#include <vector>

namespace simulator {

/// What was recorded, each record as the text of a JSON object.
struct RecordedEvents {
    std::vector<std::string> events;
    std::vector<std::string> unifiedLog;
};

/// What was recorded since the call before, in the order in which it happened.
RecordedEvents takeRecordedEvents();

}  // namespace simulator
