#include "Platform/DistributedNotificationCenter.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/ErrorConversion.h"
#import "Cocoa/StringConversion.h"

quorva::Result<void> quorva::platform::postDistributedNotification(std::string_view name) {
    @try {
        [[NSDistributedNotificationCenter defaultCenter] postNotificationName:foundationString(name)
                                                                       object:nil
                                                                     userInfo:nil
                                                           deliverImmediately:YES];
        return {};
    } @catch (NSException* exception) {
        return std::unexpected(platformError(exception));
    }
}
