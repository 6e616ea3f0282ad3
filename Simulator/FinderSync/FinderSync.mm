#import <FinderSync/FIFinderSyncController+Simulator.h>
#import <FinderSync/FinderSync.h>

#import "Cocoa/ObjectHolder.h"

namespace {

/// The state of the default controller, which is the only one.
quorva::ObjectHolder<NSSet> directoryURLs;
quorva::ObjectHolder<NSArray> selectedItemURLs;
quorva::ObjectHolder<NSURL> targetedURL;

}  // namespace

@implementation FIFinderSync

- (void)beginRequestWithExtensionContext:(NSExtensionContext*)context {
}

@end

@implementation FIFinderSyncController

+ (instancetype)defaultController {
    static FIFinderSyncController* const controller = [[self alloc] init];
    return controller;
}

- (NSSet<NSURL*>*)directoryURLs {
    NSSet* urls = directoryURLs.get();
    return urls == nil ? [NSSet set] : urls;
}

- (void)setDirectoryURLs:(NSSet<NSURL*>*)urls {
    directoryURLs = quorva::ObjectHolder<NSSet>([[urls copy] autorelease]);
}

- (NSURL*)targetedURL {
    return targetedURL.get();
}

- (NSArray<NSURL*>*)selectedItemURLs {
    return selectedItemURLs.get();
}

@end

@implementation FIFinderSyncController (Simulator)

- (void)beginWithSelectedItemURLs:(NSArray<NSURL*>*)selected targetedURL:(NSURL*)targeted {
    selectedItemURLs = quorva::ObjectHolder<NSArray>([[selected copy] autorelease]);
    targetedURL = quorva::ObjectHolder<NSURL>(targeted);
}

- (void)end {
    [self beginWithSelectedItemURLs:nil targetedURL:nil];
}

@end
