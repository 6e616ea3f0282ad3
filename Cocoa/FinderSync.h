#pragma once

#import <FinderSync/FinderSync.h>

#include "QuorvaFinderExtension/FinderExtension.hpp"

/// The principal class of the extension, which the system creates by its name. It passes everything
/// on to `quorva::FinderExtension`, and lets no exception out of a method that the system calls.
@interface FinderSync : FIFinderSync {
   @private
    quorva::FinderExtension _extension;
}

- (void)performFeatureChild:(id)sender;

- (void)handleSettingsChanged:(NSNotification*)notification;

@end
