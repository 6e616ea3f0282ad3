#pragma once

#import <Foundation/Foundation.h>

/// Keeps the notifications that it receives.
@interface NotificationObserver : NSObject {
   @public
    NSMutableArray<NSNotification*>* received;
}
- (void)receive:(NSNotification*)notification;
@end
