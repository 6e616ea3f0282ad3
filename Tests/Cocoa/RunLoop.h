#pragma once

#import <Foundation/Foundation.h>

/// Runs the run loop until `condition` holds or twenty seconds have passed. Returns whether it
/// holds.
template <typename Condition>
bool runLoopUntil(Condition condition) {
    NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:20];
    while (!condition() && end.timeIntervalSinceNow > 0) {
        @autoreleasepool {
            [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                                     beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.05]];
        }
    }
    return condition();
}
