#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "Platform/Bundle.hpp"
#include "Tests/Cocoa/TestProgram.hpp"

namespace {

std::filesystem::path program;

}  // namespace

const std::filesystem::path& testProgram() {
    return program;
}

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
                                  object:[NSString stringWithUTF8String:arguments[3]]
                                userInfo:nil
                      deliverImmediately:NO];
            }
            return 0;
        }
        // Menus need the application object, which needs a display on Linux.
        [NSApplication sharedApplication];
        program = std::filesystem::absolute(arguments[0]);
        testing::InitGoogleTest(&argumentCount, arguments);
        return RUN_ALL_TESTS();
    }
}
