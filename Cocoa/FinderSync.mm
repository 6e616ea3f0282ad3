#import "Cocoa/FinderSync.h"

#import <AppKit/AppKit.h>

#import "Cocoa/MenuRendering.h"
#import "Cocoa/PropertyListConversion.h"
#import "Cocoa/StringConversion.h"
#import "Cocoa/SystemEntry.h"

using quorva::enterFromSystem;
using quorva::FinderExtension;
using quorva::foundationString;

namespace {

NSString* settingsChangedNotificationName() {
    return foundationString(FinderExtension::settingsChangedNotificationName);
}

/// `text` as an autoreleased string, nil if that fails.
NSString* containedString(std::string_view operation, std::string_view text) {
    NSString* string = nil;
    enterFromSystem(operation, [&] { string = [foundationString(text) retain]; });
    return [string autorelease];
}

}  // namespace

@implementation FinderSync

- (instancetype)init {
    self = [super init];
    if (self != nil) {
        enterFromSystem("start", [self] { _extension.start(); });
        // An extension is never the active application, and a center that is suspended for that
        // keeps back what is not wanted immediately.
        enterFromSystem("observation of the settings", [self] {
            [[NSDistributedNotificationCenter defaultCenter]
                       addObserver:self
                          selector:@selector(handleSettingsChanged:)
                              name:settingsChangedNotificationName()
                            object:nil
                suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
        });
    }
    return self;
}

- (void)dealloc {
    enterFromSystem("end of the observation of the settings", [&] {
        [[NSDistributedNotificationCenter defaultCenter]
            removeObserver:self
                      name:settingsChangedNotificationName()
                    object:nil];
    });
    [super dealloc];
}

- (NSString*)toolbarItemName {
    return containedString("toolbar item name", FinderExtension::toolbarItemName);
}

- (NSString*)toolbarItemToolTip {
    return containedString("toolbar item tool tip", FinderExtension::toolbarItemToolTip);
}

// Finder shows a toolbar item only when it has an image too.
- (NSImage*)toolbarItemImage {
    NSImage* image = nil;
    enterFromSystem("toolbar item image",
                    [&] { image = [[NSImage imageNamed:NSImageNameActionTemplate] retain]; });
    return [image autorelease];
}

- (NSMenu*)menuForMenuKind:(FIMenuKind)whichMenu {
    NSMenu* menu = nil;
    enterFromSystem("menu request", [&] {
        const auto kind = static_cast<quorva::MenuKind>(whichMenu);
        menu = [quorva::renderedMenu(_extension.menu(kind), self) retain];
    });
    return [menu autorelease];
}

- (void)performFeatureChild:(id)sender {
    enterFromSystem("click", [&] {
        if ([sender isKindOfClass:[NSMenuItem class]]) {
            _extension.performFeatureChild(quorva::menuItem(sender));
        }
    });
}

- (void)handleSettingsChanged:(NSNotification*)notification {
    enterFromSystem("settings change", [&] {
        // Whatever else the sender says, keys that are not strings included, does not count.
        id const reason = [notification.userInfo objectForKey:@"reason"];
        _extension.handleSettingsChanged(quorva::propertyListEntries(
            reason == nil ? nil : [NSDictionary dictionaryWithObject:reason forKey:@"reason"]));
    });
}

@end
