#include "Platform/Bundle.hpp"

#import <Foundation/Foundation.h>

#include <functional>
#include <map>
#include <string>

#import "Cocoa/ObjectHolder.h"
#import "Cocoa/StringConversion.h"
#import "Cocoa/URLConversion.h"

namespace {

/// `key` as a string of the platform. Kept for as long as the process lives, because making one
/// takes longer than the lookup, and keys are few: they are constants of the program. Only the
/// thread of the menus looks them up.
NSString* keyString(std::string_view key) {
    using Keys = std::map<std::string, quorva::ObjectHolder<NSString>, std::less<>>;
    // Never destroyed: a request may come while the process ends.
    static Keys& keys = *new Keys();
    auto found = keys.find(key);
    if (found == keys.end()) {
        found = keys.emplace(key, quorva::ObjectHolder(quorva::foundationString(key))).first;
    }
    return found->second.get();
}

}  // namespace

quorva::FileURL quorva::platform::mainBundleURL() {
    @try {
        return fileURL([NSBundle mainBundle].bundleURL);
    } @catch (NSException*) {
        return FileURL::directory("/");
    }
}

std::string quorva::platform::localizedString(std::string_view key) {
    @try {
        NSString* const platformKey = keyString(key);
        NSString* const string = [[NSBundle mainBundle] localizedStringForKey:platformKey
                                                                        value:@""
                                                                        table:nil];
        return string == platformKey ? std::string(key) : utf8String(string);
    } @catch (NSException*) {
        return std::string(key);
    }
}
