#pragma once

// macOS: the unified log. GNUstep has none; here each record goes to the event recorder.

#import <Foundation/NSObject.h>

#include <cstdint>
#include <string>

@class OS_os_log;
typedef OS_os_log* os_log_t;
typedef std::uint8_t os_log_type_t;

enum : os_log_type_t {
    OS_LOG_TYPE_DEFAULT = 0x00,
    OS_LOG_TYPE_INFO = 0x01,
    OS_LOG_TYPE_DEBUG = 0x02,
    OS_LOG_TYPE_ERROR = 0x10,
    OS_LOG_TYPE_FAULT = 0x11,
};

/// A log object: where a record comes from.
@interface OS_os_log : NSObject {
   @public
    std::string subsystem;
    std::string category;
}
@end

extern "C" {

/// Returns a log object that the caller owns, never nil.
os_log_t os_log_create(const char* subsystem, const char* category);

/// Emits a record with the fields of `format` filled in, as macOS shows it to a reader without
/// privileges: a field marked private or sensitive, and a string or an object that is not marked
/// public, is "<private>". Numbers are public. `%{bool}d` is "true" or "false", `%{BOOL}d` "YES" or
/// "NO"; other words in the braces don't count. Neither `%m` nor `%p` is known.
void os_log_with_type(os_log_t log, os_log_type_t type, const char* format, ...)
    __attribute__((format(os_log, 3, 4)));
}

#define os_log_info(log, format, ...) \
    os_log_with_type(log, OS_LOG_TYPE_INFO, format __VA_OPT__(, ) __VA_ARGS__)
