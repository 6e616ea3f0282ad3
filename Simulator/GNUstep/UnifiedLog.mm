#include <os/log.h>

#include <cstdarg>
#include <string>
#include <string_view>

#include "Simulator/EventRecorder.hpp"

@implementation OS_os_log
@end

os_log_t os_log_create(const char* subsystem, const char* category) {
    (void)subsystem;
    os_log_t log = [[OS_os_log alloc] init];
    log->category = category;
    return log;
}

void simulatorLog(os_log_t log, os_log_type_t type, const char* format, ...) {
    std::string message;
    std::va_list arguments;
    va_start(arguments, format);
    for (std::string_view rest = format; !rest.empty();) {
        const std::size_t text = rest.find('%');
        message += rest.substr(0, text);
        const std::size_t brace = rest.find('}', text);
        if (brace == std::string_view::npos) {
            break;
        }
        const bool isBoolean = rest.substr(text, brace - text).contains("bool");
        rest.remove_prefix(brace + 1);
        const std::size_t conversion = rest.find_first_of("uds");
        if (rest.starts_with("lu")) {
            message += std::to_string(va_arg(arguments, unsigned long));
        } else if (rest.starts_with("ld")) {
            message += std::to_string(va_arg(arguments, long));
        } else if (rest.starts_with("s")) {
            message += va_arg(arguments, const char*);
        } else {
            const int value = va_arg(arguments, int);
            message += isBoolean ? (value != 0 ? "true" : "false") : std::to_string(value);
        }
        rest.remove_prefix(conversion + 1);
    }
    va_end(arguments);
    simulator::recordUnifiedLog(type == OS_LOG_TYPE_INFO ? "info" : "default", log->category,
                                message);
}
