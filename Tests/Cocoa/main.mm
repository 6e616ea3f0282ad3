#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "Platform/Bundle.hpp"

int main(int argumentCount, char** arguments) {
    @autoreleasepool {
        // The bundle tests start a copy of this program from a bundle.
        if (argumentCount == 3 && std::string_view(arguments[1]) == "--describe-main-bundle") {
            std::printf("%s\n%s\n%s\n", quorva::platform::mainBundleURL().path().c_str(),
                        quorva::platform::localizedString(arguments[2]).c_str(),
                        [[[NSBundle mainBundle].infoDictionary objectForKey:@"CFBundleIdentifier"]
                            UTF8String]);
            return 0;
        }
        // The tests of notifications start processes that post them.
        if (argumentCount == 5 && std::string_view(arguments[1]) == "--post-notifications") {
            for (int count = std::atoi(arguments[4]); count > 0; --count) {
                [[NSDistributedNotificationCenter defaultCenter]
                    postNotificationName:[NSString stringWithUTF8String:arguments[2]]
                                  object:[NSString stringWithUTF8String:arguments[3]]];
            }
            return 0;
        }
        // Menus need the application object, which needs a display.
        [NSApplication sharedApplication];
        testing::InitGoogleTest(&argumentCount, arguments);
        return RUN_ALL_TESTS();
    }
}
