// Stands in for the containing application: waits for queued actions and performs them. Shows
// nothing and needs no display.

#import <Foundation/Foundation.h>

#include <sys/eventfd.h>

#include <csignal>
#include <cstdint>
#include <initializer_list>

#include "Simulator/ContainingApplication/ActionQueue.hpp"

/// Drains the queue when told that something was queued, and notes the wish that it may end.
@interface SimulatorContainingApplication : NSObject <RunLoopEvents> {
   @public
    BOOL shouldEnd;
}
@end

@implementation SimulatorContainingApplication

- (void)handleActionQueued:(NSNotification*)notification {
    simulator::drainQueue();
}

- (void)receivedEvent:(void*)data
                 type:(RunLoopEventType)type
                extra:(void*)extra
              forMode:(NSString*)mode {
    shouldEnd = YES;
}

@end

namespace {

/// Readable once a signal has asked to end. Read at the run loop, so that the queue is not left in
/// the middle of a record.
const int endingDescriptor = eventfd(0, EFD_CLOEXEC);

}  // namespace

int main() {
    for (const int signal : {SIGTERM, SIGINT}) {
        std::signal(signal, [](int) { eventfd_write(endingDescriptor, 1); });
    }
    @autoreleasepool {
        SimulatorContainingApplication* const application =
            [[[SimulatorContainingApplication alloc] init] autorelease];
        @try {
            [[NSDistributedNotificationCenter defaultCenter]
                addObserver:application
                   selector:@selector(handleActionQueued:)
                       name:@"app.ferrolin.Quorva.ActionQueued"
                     object:nil];
        } @catch (NSException* exception) {
            NSLog(@"queued actions will not be noticed: %@", exception.reason);
        }
        // After the observer is there: what is queued meanwhile is noticed one way or the other.
        simulator::drainQueue();

        NSRunLoop* const runLoop = [NSRunLoop currentRunLoop];
        [runLoop addEvent:reinterpret_cast<void*>(static_cast<std::intptr_t>(endingDescriptor))
                     type:ET_RDESC
                  watcher:application
                  forMode:NSDefaultRunLoopMode];
        while (!application->shouldEnd) {
            @autoreleasepool {
                [runLoop runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantFuture]];
            }
        }
    }
    return 0;
}
