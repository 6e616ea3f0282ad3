#import <Foundation/Foundation.h>

#include <optional>
#include <string>

#include "Simulator/EventRecorder.hpp"
#import "Simulator/GNUstep/MethodExchange.h"

namespace {

std::optional<std::string> jsonText(NSDictionary* userInfo) {
    if (userInfo == nil) {
        return std::nullopt;
    }
    NSError* error = nil;
    NSData* data = [NSJSONSerialization dataWithJSONObject:userInfo options:0 error:&error];
    return std::string(static_cast<const char*>(data.bytes), data.length);
}

}  // namespace

@interface NSDistributedNotificationCenter (Simulator)
- (void)simulatorPostNotificationName:(NSString*)name
                               object:(NSString*)object
                             userInfo:(NSDictionary*)userInfo
                   deliverImmediately:(BOOL)deliverImmediately;
- (void)simulatorAddObserver:(id)observer
                    selector:(SEL)selector
                        name:(NSString*)name
                      object:(NSString*)object
          suspensionBehavior:(NSNotificationSuspensionBehavior)behavior;
@end

/// macOS: the daemon is always there, and neither posting nor observing fails. GNUstep raises when
/// it can't reach or start its daemon. What is posted is recorded first.
@implementation NSDistributedNotificationCenter (Simulator)

+ (void)load {
    simulator::exchangeMethods(
        self, @selector(postNotificationName:object:userInfo:deliverImmediately:),
        @selector(simulatorPostNotificationName:object:userInfo:deliverImmediately:));
    simulator::exchangeMethods(
        self, @selector(addObserver:selector:name:object:suspensionBehavior:),
        @selector(simulatorAddObserver:selector:name:object:suspensionBehavior:));
}

- (void)simulatorPostNotificationName:(NSString*)name
                               object:(NSString*)object
                             userInfo:(NSDictionary*)userInfo
                   deliverImmediately:(BOOL)deliverImmediately {
    @try {
        simulator::recordNotification(name.UTF8String, jsonText(userInfo));
        [self simulatorPostNotificationName:name
                                     object:object
                                   userInfo:userInfo
                         deliverImmediately:deliverImmediately];
    } @catch (NSException* exception) {
        NSLog(@"notification %@ was not delivered: %@", name, exception.reason);
    }
}

- (void)simulatorAddObserver:(id)observer
                    selector:(SEL)selector
                        name:(NSString*)name
                      object:(NSString*)object
          suspensionBehavior:(NSNotificationSuspensionBehavior)behavior {
    @try {
        [self simulatorAddObserver:observer
                          selector:selector
                              name:name
                            object:object
                suspensionBehavior:behavior];
    } @catch (NSException* exception) {
        NSLog(@"notification %@ is not observed: %@", name, exception.reason);
    }
}

@end
