#pragma once

#import <FinderSync/FinderSync.h>

#pragma clang assume_nonnull begin

/// What stands in for Finder at the other end of the controller.
@interface FIFinderSyncController (Simulator)

/// Gives the controller what Finder would give it, for the length of a menu request or a click.
/// Either may be nil: Finder has no selection or no target.
- (void)beginWithSelectedItemURLs:(nullable NSArray<NSURL*>*)selectedItemURLs
                      targetedURL:(nullable NSURL*)targetedURL;

/// The menu request or the click is over.
- (void)end;

@end

#pragma clang assume_nonnull end
