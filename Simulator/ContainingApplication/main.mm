// Stands in for the containing application: waits for queued actions and performs them. Shows
// nothing and needs no display.

#import <Foundation/Foundation.h>

#include <pwd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>

#include "Simulator/ContainingApplication/ActionQueue.hpp"

/// Drains the queue when told that something was queued, and notes the wish that it may end.
@interface SimulatorContainingApplication : NSObject <RunLoopEvents> {
   @public
    simulator::ActionQueue* queue;
    BOOL shouldEnd;
}
@end

@implementation SimulatorContainingApplication

- (void)handleActionQueued:(NSNotification*)notification {
    queue->drain();
}

- (void)receivedEvent:(void*)data
                 type:(RunLoopEventType)type
                extra:(void*)extra
              forMode:(NSString*)mode {
    shouldEnd = YES;
}

@end

int main() {
    // Read at the run loop, so that the queue is not left in the middle of a record.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGTERM);
    sigaddset(&ending, SIGINT);
    sigprocmask(SIG_BLOCK, &ending, nullptr);
    const int signals = signalfd(-1, &ending, SFD_CLOEXEC);

    const char* home = std::getenv("HOME");
    if (home == nullptr || *home != '/') {
        const passwd* account = getpwuid(getuid());
        home = account == nullptr ? "/" : account->pw_dir;
    }
    simulator::ActionQueue queue(std::filesystem::path(home) /
                                 "Library/Application Support/Quorva");
    @autoreleasepool {
        SimulatorContainingApplication* const application =
            [[[SimulatorContainingApplication alloc] init] autorelease];
        application->queue = &queue;
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
        queue.drain();

        NSRunLoop* const runLoop = [NSRunLoop currentRunLoop];
        [runLoop addEvent:reinterpret_cast<void*>(static_cast<std::intptr_t>(signals))
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
