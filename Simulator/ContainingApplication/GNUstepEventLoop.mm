#import <Foundation/Foundation.h>

#include <sys/eventfd.h>

#include <csignal>
#include <cstdint>
#include <initializer_list>

#include "Simulator/ContainingApplication/EventLoop.hpp"

/// Notes the wish that the application may end.
@interface SimulatorEndingWish : NSObject <RunLoopEvents> {
   @public
    BOOL expressed;
}
@end

@implementation SimulatorEndingWish

- (void)receivedEvent:(void*)data
                 type:(RunLoopEventType)type
                extra:(void*)extra
              forMode:(NSString*)mode {
    expressed = YES;
}

@end

namespace {

/// Readable once a signal has asked to end. Read at the run loop, so that the queue is not left in
/// the middle of a record. There before the program begins, as the queue is drained before the
/// loop.
const struct EndingRequest {
    EndingRequest();
    const int descriptor = eventfd(0, EFD_CLOEXEC);
} endingRequest;

EndingRequest::EndingRequest() {
    for (const int signal : {SIGTERM, SIGINT}) {
        std::signal(signal, [](int) { eventfd_write(endingRequest.descriptor, 1); });
    }
}

}  // namespace

// Without NSApplication, which needs a display.
void simulator::runEventLoop() {
    SimulatorEndingWish* const wish = [[[SimulatorEndingWish alloc] init] autorelease];
    NSRunLoop* const runLoop = [NSRunLoop currentRunLoop];
    [runLoop addEvent:reinterpret_cast<void*>(static_cast<std::intptr_t>(endingRequest.descriptor))
                 type:ET_RDESC
              watcher:wish
              forMode:NSDefaultRunLoopMode];
    while (!wish->expressed) {
        @autoreleasepool {
            [runLoop runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantFuture]];
        }
    }
}
