#include "Platform/Logger.hpp"

#import <Foundation/Foundation.h>
#include <os/log.h>

#include <string>

namespace {

os_log_t logObject(void* log) {
    return static_cast<os_log_t>(log);
}

}  // namespace

quorva::platform::Logger::Logger(const char* subsystem, const char* category) noexcept
    : log_(os_log_create(subsystem, category)) {}

quorva::platform::Logger::~Logger() {
    [logObject(log_) release];
}

void quorva::platform::Logger::menuRequested(unsigned long kind, long selected,
                                             std::string_view targeted, long features, bool grouped,
                                             std::string_view layout) const {
    os_log_info(logObject(log_),
                "Menu requested. kind=%{public}lu, selected=%{public}ld, targeted=%{public}s, "
                "features=%{public}ld, grouped=%{bool,public}d, layout=%{public}s",
                kind, selected, std::string(targeted).c_str(), features, grouped,
                std::string(layout).c_str());
}

void quorva::platform::Logger::refreshedDirectories(std::string_view reason, long count) const {
    os_log_info(logObject(log_),
                "FinderSync refreshed directories. reason=%{public}s, count=%{public}ld",
                std::string(reason).c_str(), count);
}
