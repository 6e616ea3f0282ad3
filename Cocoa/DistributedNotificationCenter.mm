#include "Platform/DistributedNotificationCenter.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/StringConversion.h"

void quorva::platform::postDistributedNotification(std::string_view name) {
    @try {
        [[NSDistributedNotificationCenter defaultCenter] postNotificationName:foundationString(name)
                                                                       object:nil
                                                                     userInfo:nil
                                                           deliverImmediately:YES];
    } @catch (NSException* exception) {
        NSLog(@"QuorvaFinderExtension: posting a distributed notification failed: %@",
              exception.reason);
    }
}
