#import "Tests/Cocoa/NotificationObserver.h"

@implementation NotificationObserver

- (instancetype)init {
    self = [super init];
    if (self != nil) {
        received = [[NSMutableArray alloc] init];
    }
    return self;
}

- (void)dealloc {
    [received release];
    [super dealloc];
}

- (void)receive:(NSNotification*)notification {
    [received addObject:notification];
}

@end
