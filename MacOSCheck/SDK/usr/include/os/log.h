#pragma once

// Unified logging as far as the extension uses it, written from the public documentation. See
// MacOSCheck/README.md.

#include <os/availability.h>
#include <os/object.h>
#include <stdbool.h>
#include <stdint.h>

OS_OBJECT_DECL(os_log);

typedef uint8_t os_log_type_t;
enum : os_log_type_t {
    OS_LOG_TYPE_DEFAULT = 0x00,
    OS_LOG_TYPE_INFO = 0x01,
    OS_LOG_TYPE_DEBUG = 0x02,
    OS_LOG_TYPE_ERROR = 0x10,
    OS_LOG_TYPE_FAULT = 0x11,
};

#if defined(__cplusplus)
extern "C" {
#endif

extern void* __dso_handle;

os_log_t os_log_create(const char* subsystem, const char* category) OS_OBJECT_RETURNS_RETAINED
    API_AVAILABLE(macos(10.12));
bool os_log_type_enabled(os_log_t log, os_log_type_t type) API_AVAILABLE(macos(10.12));
void _os_log_impl(void* dso, os_log_t log, os_log_type_t type, const char* format, uint8_t* buf,
                  uint32_t size) API_AVAILABLE(macos(10.12));

#if defined(__cplusplus)
}
#endif

#define os_log_with_type(log, type, format, ...)                                            \
    __extension__({                                                                         \
        os_log_t _log = (log);                                                              \
        os_log_type_t _type = (type);                                                       \
        if (os_log_type_enabled(_log, _type)) {                                             \
            __attribute__((section("__TEXT,__oslogstring,cstring_literals"),                \
                           internal_linkage)) static const char _format[] = format;         \
            uint8_t _buffer[__builtin_os_log_format_buffer_size(format, ##__VA_ARGS__)];    \
            _os_log_impl(&__dso_handle, _log, _type, _format,                               \
                         (uint8_t*)__builtin_os_log_format(_buffer, format, ##__VA_ARGS__), \
                         (uint32_t)sizeof(_buffer));                                        \
        }                                                                                   \
    })

#define os_log_info(log, format, ...) os_log_with_type(log, OS_LOG_TYPE_INFO, format, ##__VA_ARGS__)
#define os_log(log, format, ...) os_log_with_type(log, OS_LOG_TYPE_DEFAULT, format, ##__VA_ARGS__)
#define os_log_error(log, format, ...) \
    os_log_with_type(log, OS_LOG_TYPE_ERROR, format, ##__VA_ARGS__)
