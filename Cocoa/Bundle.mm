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
        NSString* const keyString = foundationString(key);
        NSString* const string = [[NSBundle mainBundle] localizedStringForKey:keyString
                                                                        value:@""
                                                                        table:nil];
        return string == keyString ? std::string(key) : utf8String(string);
    } @catch (NSException*) {
        return std::string(key);
    }
}
