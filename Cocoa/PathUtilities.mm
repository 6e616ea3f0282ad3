#include "Platform/PathUtilities.hpp"

#import <Foundation/Foundation.h>

#include "Cocoa/AccountDatabase.hpp"
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
        if (home == nil) {
            return std::nullopt;
        }
        std::string path = utf8String(home);
        // Inside the App Sandbox Foundation names the container, whoever the user is.
        return path.contains("/Library/Containers/")
                   ? homeDirectoryInAccountDatabase(name).value_or(path)
                   : path;
    } @catch (NSException*) {
        return std::nullopt;
    }
}
