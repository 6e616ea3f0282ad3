#include "Platform/PathUtilities.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/StringConversion.h"

std::string quorva::platform::userName() {
    @try {
        return utf8String(NSUserName());
    } @catch (NSException*) {
        return {};
    }
}

std::optional<std::string> quorva::platform::homeDirectoryForUser(const std::string& name) {
    @try {
        NSString* home = NSHomeDirectoryForUser(foundationString(name));
        return home == nil ? std::nullopt : std::optional(utf8String(home));
    } @catch (NSException*) {
        return std::nullopt;
    }
}
