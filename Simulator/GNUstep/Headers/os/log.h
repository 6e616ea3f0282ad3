#pragma once

// macOS: the unified log. GNUstep has none; here each record goes to the event recorder.

#import <Foundation/NSObject.h>

#include <cstdint>
#include <string>

@class OS_os_log;
typedef OS_os_log* os_log_t;
typedef std::uint8_t os_log_type_t;

enum : os_log_type_t { OS_LOG_TYPE_DEFAULT = 0x00, OS_LOG_TYPE_INFO = 0x01 };

/// A log object: where a record comes from.
@interface OS_os_log : NSObject {
   @public
    std::string category;
}
@end

extern "C" {

/// Answers a log object that the caller owns, never nil.
os_log_t os_log_create(const char* subsystem, const char* category);

/// Emits a record with `format` filled in. Understands the fields `%{public}lu`, `%{public}ld`,
/// `%{public}s` and `%{bool,public}d`, in any order of the words in braces. macOS shows a field
/// without "public" as "<private>".
void simulatorLog(os_log_t log, os_log_type_t type, const char* format, ...)
    __attribute__((format(os_log, 3, 4)));
}

#define os_log_info(log, format, ...) \
    simulatorLog(log, OS_LOG_TYPE_INFO, format __VA_OPT__(, ) __VA_ARGS__)
