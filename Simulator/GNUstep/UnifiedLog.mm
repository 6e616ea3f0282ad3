#import <Foundation/Foundation.h>
#include <os/log.h>

#include <cstdarg>
#include <cstdio>
#include <regex>
#include <string>
#include <string_view>

#import "Cocoa/StringConversion.h"
#include "Simulator/EventRecorder.hpp"

namespace {

struct Arguments {
    std::va_list list;
};

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wformat-nonliteral"
template <typename Argument>
std::string formatted(const std::string& conversion, Argument argument) {
    const int length = std::snprintf(nullptr, 0, conversion.c_str(), argument);
    std::string text(static_cast<std::size_t>(std::max(length, 0)), '\0');
    std::snprintf(text.data(), text.size() + 1, conversion.c_str(), argument);
    return text;
}
#pragma clang diagnostic pop

/// A field of a format, filled in with the next of `arguments`. Its parts are the words in braces,
/// flags with width and precision, the length, and the conversion.
std::string filledIn(const std::smatch& field, Arguments& arguments) {
    const std::string words = field[1];
    const std::string length = field[3];
    const std::string conversion = "%" + field[2].str() + length + field[4].str();
    bool isPublic = words.find("public") != std::string::npos;
    const bool isPrivate =
        words.find("private") != std::string::npos || words.find("sensitive") != std::string::npos;
    const char kind = field[4].str()[0];
    if (kind == '%') {
        return "%";
    }
    std::string text;
    if (kind == '@') {
        text = quorva::utf8String([va_arg(arguments.list, id) description]);
    } else if (kind == 's') {
        text = formatted(conversion, va_arg(arguments.list, const char*));
    } else if (std::string_view("aAeEfFgG").contains(kind)) {
        isPublic = true;
        text = formatted(conversion, va_arg(arguments.list, double));
    } else {
        isPublic = true;
        const bool isLong = !length.empty() && length[0] != 'h';
        const long value =
            isLong ? va_arg(arguments.list, long) : long{va_arg(arguments.list, int)};
        text = words.find("bool") != std::string::npos   ? (value != 0 ? "true" : "false")
               : words.find("BOOL") != std::string::npos ? (value != 0 ? "YES" : "NO")
               : isLong                                  ? formatted(conversion, value)
                        : formatted(conversion, static_cast<int>(value));
    }
    return isPublic && !isPrivate ? text : "<private>";
}

const char* nameOfLevel(os_log_type_t type) {
    return type == OS_LOG_TYPE_INFO    ? "info"
           : type == OS_LOG_TYPE_DEBUG ? "debug"
           : type == OS_LOG_TYPE_ERROR ? "error"
           : type == OS_LOG_TYPE_FAULT ? "fault"
                                       : "default";
}

}  // namespace

@implementation OS_os_log
@end

os_log_t os_log_create(const char* subsystem, const char* category) {
    os_log_t log = [[OS_os_log alloc] init];
    log->subsystem = subsystem;
    log->category = category;
    return log;
}

void os_log_with_type(os_log_t log, os_log_type_t type, const char* format, ...) {
    static const std::regex fieldPattern(
        R"(%(?:\{([^}]*)\})?([-+ #0-9.]*)(hh|h|ll|l|q|j|z|t)?([a-zA-Z@%]))");
    Arguments arguments;
    va_start(arguments.list, format);
    const std::string whole = format;
    std::string message;
    auto rest = whole.begin();
    for (auto field = std::sregex_iterator(rest, whole.end(), fieldPattern);
         field != std::sregex_iterator(); ++field) {
        message.append(rest, (*field)[0].first).append(filledIn(*field, arguments));
        rest = (*field)[0].second;
    }
    message.append(rest, whole.end());
    va_end(arguments.list);
    simulator::recordUnifiedLog({{"subsystem", log->subsystem},
                                 {"category", log->category},
                                 {"level", nameOfLevel(type)},
                                 {"message", message}});
}
