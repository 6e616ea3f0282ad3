#import "Cocoa/FinderSync.h"

#import <AppKit/AppKit.h>

#include "Cocoa/DeliveredMenuItem.hpp"
#import "Cocoa/MenuRendering.h"
#import "Cocoa/PropertyListConversion.h"
#import "Cocoa/StringConversion.h"
#include "QuorvaFinderExtension/Containment.hpp"

@implementation FinderSync

- (instancetype)init {
    self = [super init];
    if (self != nil) {
        @autoreleasepool {
            _finderSync.emplace();
            quorva::contain([&] {
                @try {
                    [[NSDistributedNotificationCenter defaultCenter]
                        addObserver:self
                           selector:@selector(handleSettingsChanged:)
                               name:[FinderSync settingsChangedNotificationName]
                             object:nil];
                } @catch (NSException* exception) {
                    NSLog(@"observing the settings failed: %@", exception.reason);
                }
            });
        }
    }
    return self;
}

- (void)dealloc {
    @autoreleasepool {
        quorva::contain([&] {
            @try {
                [[NSDistributedNotificationCenter defaultCenter]
                    removeObserver:self
                              name:[FinderSync settingsChangedNotificationName]
                            object:nil];
            } @catch (NSException* exception) {
                NSLog(@"ending the observation of the settings failed: %@", exception.reason);
            }
        });
    }
    [super dealloc];
}

+ (NSString*)settingsChangedNotificationName {
    return quorva::foundationString(quorva::FinderSync::settingsChangedNotificationName);
}

- (NSString*)toolbarItemName {
    return quorva::foundationString(quorva::FinderSync::toolbarItemName);
}

- (NSString*)toolbarItemToolTip {
    return quorva::foundationString(quorva::FinderSync::toolbarItemToolTip);
}

// Finder shows a toolbar item only when it has an image too.
- (NSImage*)toolbarItemImage {
    return [NSImage imageNamed:NSImageNameActionTemplate];
}

- (NSMenu*)menuForMenuKind:(FIMenuKind)whichMenu {
    NSMenu* menu = nil;
    @autoreleasepool {
        quorva::contain([&] {
            @try {
                quorva::Menu requested =
                    _finderSync->menu(static_cast<quorva::MenuKind>(whichMenu));
                menu = [quorva::renderedMenu(requested, self) retain];
                _menu = std::move(requested);
            } @catch (NSException* exception) {
                NSLog(@"rendering the menu failed: %@", exception.reason);
            }
        });
    }
    return [menu autorelease];
}

- (void)performFeatureChild:(id)sender {
    @autoreleasepool {
        quorva::contain([&] {
            @try {
                if ([sender isKindOfClass:[NSMenuItem class]]) {
                    _finderSync->performFeatureChild(
                        quorva::deliveredMenuItem(quorva::menuItem(sender), _menu));
                }
            } @catch (NSException* exception) {
                NSLog(@"reading the clicked item failed: %@", exception.reason);
            }
        });
    }
}

- (void)handleSettingsChanged:(NSNotification*)notification {
    @autoreleasepool {
        quorva::contain([&] {
            @try {
                _finderSync->handleSettingsChanged(
                    quorva::propertyListEntries(notification.userInfo));
            } @catch (NSException* exception) {
                NSLog(@"reading the notification failed: %@", exception.reason);
            }
        });
    }
}

@end
