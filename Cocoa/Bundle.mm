#include "Platform/Bundle.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/StringConversion.h"
#import "Cocoa/URLConversion.h"

quorva::FileURL quorva::platform::mainBundleURL() {
    @try {
        return fileURL([NSBundle mainBundle].bundleURL);
    } @catch (NSException*) {
        return FileURL::directory("/");
    }
}

std::string quorva::platform::localizedString(std::string_view key) {
    @try {
        return utf8String([[NSBundle mainBundle] localizedStringForKey:foundationString(key)
                                                                 value:@""
                                                                 table:nil]);
    } @catch (NSException*) {
        return std::string(key);
    }
}
