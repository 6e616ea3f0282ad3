#pragma once

#include <string_view>

namespace quorva::platform {

/// The unified system log. Each operation emits one record at level info with every field public.
///
/// The system keeps the format and the fields of a record apart and wants each format as a literal
/// where the record is made, so there is one operation per record rather than one that takes a
/// string.
class Logger {
 public:
    /// `subsystem` and `category` are copied.
    Logger(const char* subsystem, const char* category) noexcept;
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;
    ~Logger();

    /// "Menu requested. kind=%{public}lu, selected=%{public}ld, targeted=%{public}s,
    /// features=%{public}ld, grouped=%{bool,public}d, layout=%{public}s"
    void menuRequested(unsigned long kind, long selected, std::string_view targeted, long features,
                       bool grouped, std::string_view layout) const;

    /// "FinderSync refreshed directories. reason=%{public}s, count=%{public}ld"
    void refreshedDirectories(std::string_view reason, long count) const;

 private:
    /// The platform's log object.
    void* log_;
};

}  // namespace quorva::platform
