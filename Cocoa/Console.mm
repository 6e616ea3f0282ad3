#include "Platform/Console.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/StringConversion.h"

void quorva::platform::logToConsole(std::string_view message) {
    @try {
        NSLog(@"QuorvaFinderExtension: %@", foundationString(message));
    } @catch (NSException*) {
        // The console is where a failure would be reported.
    }
}
