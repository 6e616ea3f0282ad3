#include "Platform/RunningApplication.hpp"

#import <AppKit/AppKit.h>

#import "Cocoa/StringConversion.h"

std::size_t quorva::platform::runningApplicationCount(std::string_view bundleIdentifier) {
    @try {
        return [NSRunningApplication
                   runningApplicationsWithBundleIdentifier:foundationString(bundleIdentifier)]
            .count;
    } @catch (NSException*) {
        return 0;
    }
}
