#pragma once

#import <FinderSync/FinderSync.h>

#include <optional>

#include "QuorvaFinderExtension/FinderSync.hpp"

/// The principal class of the extension, which the system creates by its name. It passes everything
/// on to `quorva::FinderSync`, and lets no exception out of a method that the system calls.
@interface FinderSync : FIFinderSync {
   @private
    std::optional<quorva::FinderSync> _finderSync;
    /// What Finder was last given, for the items that come back from it.
    quorva::Menu _menu;
}

- (void)performFeatureChild:(id)sender;

- (void)handleSettingsChanged:(NSNotification*)notification;

@end
