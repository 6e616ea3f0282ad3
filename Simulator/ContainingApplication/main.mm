// Stands in for the containing application: waits for queued actions and performs them. Shows
// nothing. On Linux it belongs to the simulator; on a Mac `make run` embeds the extension in it.

#import <Foundation/Foundation.h>

#include "Simulator/ContainingApplication/ActionQueue.hpp"
#include "Simulator/ContainingApplication/EventLoop.hpp"

/// Drains the queue when told that something was queued.
@interface ContainingApplication : NSObject
@end

@implementation ContainingApplication

- (void)handleActionQueued:(NSNotification*)notification {
    simulator::drainQueue();
}

@end

int main() {
    @autoreleasepool {
        ContainingApplication* const application =
            [[[ContainingApplication alloc] init] autorelease];
        @try {
            [[NSDistributedNotificationCenter defaultCenter]
                       addObserver:application
                          selector:@selector(handleActionQueued:)
                              name:@"app.ferrolin.Quorva.ActionQueued"
                            object:nil
                suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
        } @catch (NSException* exception) {
            NSLog(@"queued actions will not be noticed: %@", exception.reason);
        }
        // After the observer is there: what is queued meanwhile is noticed one way or the other.
        simulator::drainQueue();
        simulator::runEventLoop();
    }
    return 0;
}
