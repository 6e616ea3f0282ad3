#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

// The part of macOS's FinderSync framework that an extension with a menu uses, written from the
// public documentation. The check for the Mac and the simulator share it.

#pragma clang assume_nonnull begin

/// Where Finder shows the menu that it asks for.
typedef NS_ENUM(NSUInteger, FIMenuKind) {
    /// The context menu of the selected items.
    FIMenuKindContextualMenuForItems = 0,
    /// The context menu of the window's background.
    FIMenuKindContextualMenuForContainer = 1,
    /// The context menu of an item in the sidebar.
    FIMenuKindContextualMenuForSidebar = 2,
    /// The menu of the extension's toolbar item.
    FIMenuKindToolbarItemMenu = 3,
};

/// What Finder sends an extension. All of it is optional.
@protocol FIFinderSync
@optional

/// The menu for what `selectedItemURLs` and `targetedURL` of the controller name now.
- (nullable NSMenu*)menuForMenuKind:(FIMenuKind)menu;

/// The user began to look at the contents of a monitored folder.
- (void)beginObservingDirectoryAtURL:(NSURL*)url;

/// The user no longer looks at the contents of the folder.
- (void)endObservingDirectoryAtURL:(NSURL*)url;

/// Finder is about to show an item and asks for its badge.
- (void)requestBadgeIdentifierForURL:(NSURL*)url;

/// The name of the toolbar item, as it stands in the customisation sheet.
@property (nonatomic, readonly, copy) NSString* toolbarItemName;

/// The image of the toolbar item.
@property (nonatomic, readonly, copy) NSImage* toolbarItemImage;

/// The tool tip of the toolbar item.
@property (nonatomic, readonly, copy) NSString* toolbarItemToolTip;

@end

/// The superclass of an extension's principal class.
@interface FIFinderSync : NSObject <FIFinderSync, NSExtensionRequestHandling>
@end

/// The extension's way to Finder.
@interface FIFinderSyncController : NSExtensionContext

+ (instancetype)defaultController;

/// The folders for which Finder asks this extension. Those inside them count too.
@property (null_resettable, copy) NSSet<NSURL*>* directoryURLs;

/// The folder that the window shows. Nil except during a menu request and a click.
- (nullable NSURL*)targetedURL;

/// The selected items. Nil except during a menu request and a click.
- (nullable NSArray<NSURL*>*)selectedItemURLs;

@end

#pragma clang assume_nonnull end
