#pragma once

#import <AppKit/AppKit.h>

/// An application that runs as a process of its own. GNUstep's class knows none.
@interface SimulatorRunningApplication : NSRunningApplication {
   @private
    pid_t _processIdentifier;
    NSString* _bundlePath;
}

- (instancetype)initWithProcessIdentifier:(pid_t)processIdentifier bundlePath:(NSString*)bundlePath;

@end
