#pragma once

// FinderSync as far as the extension uses it, written from the public documentation. See
// MacOSCheck/README.md.

#import <AppKit/AppKit.h>

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSUInteger, FIMenuKind) {
    FIMenuKindContextualMenuForItems = 0,
    FIMenuKindContextualMenuForContainer = 1,
    FIMenuKindContextualMenuForSidebar = 2,
    FIMenuKindToolbarItemMenu = 3,
};

@interface FIFinderSyncController : NSExtensionContext
+ (instancetype)defaultController;
@property (null_resettable, copy) NSSet<NSURL*>* directoryURLs;
- (nullable NSURL*)targetedURL;
- (nullable NSArray<NSURL*>*)selectedItemURLs;
@property (class, readonly, getter=isExtensionEnabled) BOOL extensionEnabled;
+ (void)showExtensionManagementInterface;
@end

@protocol FIFinderSync <NSObject>
@optional
- (nullable NSMenu*)menuForMenuKind:(FIMenuKind)menu;
- (void)beginObservingDirectoryAtURL:(NSURL*)url;
- (void)endObservingDirectoryAtURL:(NSURL*)url;
- (void)requestBadgeIdentifierForURL:(NSURL*)url;
@property (nonatomic, readonly, copy) NSString* toolbarItemName;
@property (nonatomic, readonly, copy) NSImage* toolbarItemImage;
@property (nonatomic, readonly, copy) NSString* toolbarItemToolTip;
@end

@interface FIFinderSync : NSObject <FIFinderSync, NSExtensionRequestHandling>
@end

#pragma clang assume_nonnull end
