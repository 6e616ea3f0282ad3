// Stands in for the containing application: waits for queued actions and performs them. Shows
// nothing and needs no display.

#import <Foundation/Foundation.h>

#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "Simulator/ContainingApplication/ActionQueue.hpp"

namespace {

/// A signal writes to one end of this pipe, and the run loop sees it at the other.
int signalPipe[2] = {-1, -1};

void noteSignal(int) {
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
}

std::filesystem::path applicationSupportFolder() {
    const char* home = std::getenv("HOME");
    if (home == nullptr || *home != '/') {
        const passwd* account = getpwuid(getuid());
        home = account == nullptr ? "/" : account->pw_dir;
    }
    return std::filesystem::path(home) / "Library" / "Application Support" / "Quorva";
}

}  // namespace

@interface SimulatorContainingApplication : NSObject <RunLoopEvents> {
   @public
    BOOL shouldEnd;
   @private
    simulator::ActionQueue* _queue;
}

- (instancetype)initWithQueue:(simulator::ActionQueue*)queue;
- (void)handleActionQueued:(NSNotification*)notification;

@end

@implementation SimulatorContainingApplication

- (instancetype)initWithQueue:(simulator::ActionQueue*)queue {
    self = [super init];
    if (self != nil) {
        _queue = queue;
    }
    return self;
}

- (void)handleActionQueued:(NSNotification*)notification {
    _queue->drain();
}

- (void)receivedEvent:(void*)data
                 type:(RunLoopEventType)type
                extra:(void*)extra
              forMode:(NSString*)mode {
    shouldEnd = YES;
}

@end

int main() {
    if (pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        std::perror("Quorva: no pipe");
        return 1;
    }
    std::signal(SIGTERM, noteSignal);
    std::signal(SIGINT, noteSignal);

    simulator::ActionQueue queue(applicationSupportFolder());
    @autoreleasepool {
        SimulatorContainingApplication* const application =
            [[[SimulatorContainingApplication alloc] initWithQueue:&queue] autorelease];
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
        [runLoop addEvent:reinterpret_cast<void*>(static_cast<std::intptr_t>(signalPipe[0]))
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
