#import <FinderSync/FIFinderSyncController+Simulator.h>
#import <FinderSync/FinderSync.h>

@implementation FIFinderSync
@end

@implementation FIFinderSyncController

+ (instancetype)defaultController {
    static FIFinderSyncController* const controller = [[self alloc] init];
    return controller;
}

- (instancetype)init {
    self = [super init];
    if (self != nil) {
        directoryURLs_ = [[NSSet alloc] init];
    }
    return self;
}

- (void)dealloc {
    [directoryURLs_ release];
    [selectedItemURLs_ release];
    [targetedURL_ release];
    [super dealloc];
}

- (NSSet<NSURL*>*)directoryURLs {
    return directoryURLs_;
}

- (void)setDirectoryURLs:(NSSet<NSURL*>*)directoryURLs {
    NSSet* const previous = directoryURLs_;
    directoryURLs_ = [directoryURLs copy];
    [previous release];
}

- (NSURL*)targetedURL {
    return targetedURL_;
}

- (NSArray<NSURL*>*)selectedItemURLs {
    return selectedItemURLs_;
}

@end

@implementation FIFinderSyncController (Simulator)

- (void)beginWithSelectedItemURLs:(NSArray<NSURL*>*)selectedItemURLs
                      targetedURL:(NSURL*)targetedURL {
    [self end];
    selectedItemURLs_ = [selectedItemURLs copy];
    targetedURL_ = [targetedURL retain];
}

- (void)end {
    [selectedItemURLs_ release];
    selectedItemURLs_ = nil;
    [targetedURL_ release];
    targetedURL_ = nil;
}

@end
