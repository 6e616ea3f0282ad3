#pragma once

// AppKit as far as the extension uses it, written from the public documentation. See
// MacOSCheck/README.md.

#import <Foundation/Foundation.h>

#define APPKIT_EXTERN FOUNDATION_EXPORT

#pragma clang assume_nonnull begin

@class NSImage;
@class NSMenu;

typedef NSString* NSUserInterfaceItemIdentifier;

@protocol NSUserInterfaceItemIdentification
@property (nullable, copy) NSUserInterfaceItemIdentifier identifier;
@end

@protocol NSValidatedUserInterfaceItem
@property (nullable, readonly) SEL action;
@property (readonly) NSInteger tag;
@end

typedef NSInteger NSControlStateValue;
static const NSControlStateValue NSControlStateValueMixed = -1;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;

NS_SWIFT_UI_ACTOR
@interface NSMenuItem : NSObject <NSCopying,
                                  NSCoding,
                                  NSValidatedUserInterfaceItem,
                                  NSUserInterfaceItemIdentification>
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)string
                       action:(nullable SEL)selector
                keyEquivalent:(NSString*)charCode;
@property (nullable, assign) NSMenu* menu;
@property (readonly) BOOL hasSubmenu;
@property (nullable, strong) NSMenu* submenu;
@property (copy) NSString* title;
@property (getter=isSeparatorItem, readonly) BOOL separatorItem;
@property (copy) NSString* keyEquivalent;
@property (nullable, strong) NSImage* image;
@property NSControlStateValue state;
@property (getter=isEnabled) BOOL enabled;
@property (getter=isAlternate) BOOL alternate;
@property NSInteger indentationLevel;
@property (nullable, weak) id target;
@property (nullable) SEL action;
@property NSInteger tag;
@property (nullable, strong) id representedObject;
@property (getter=isHidden) BOOL hidden;
@property (nullable, copy) NSString* toolTip;
@end

NS_SWIFT_UI_ACTOR
@interface NSMenu : NSObject <NSCopying, NSCoding, NSUserInterfaceItemIdentification>
- (instancetype)initWithTitle:(NSString*)title;
@property (copy) NSString* title;
@property (nullable, assign) NSMenu* supermenu;
- (void)insertItem:(NSMenuItem*)newItem atIndex:(NSInteger)index;
- (void)addItem:(NSMenuItem*)newItem;
- (NSMenuItem*)addItemWithTitle:(NSString*)string
                         action:(nullable SEL)selector
                  keyEquivalent:(NSString*)charCode;
- (void)removeItemAtIndex:(NSInteger)index;
- (void)removeItem:(NSMenuItem*)item;
- (void)setSubmenu:(nullable NSMenu*)menu forItem:(NSMenuItem*)item;
@property (copy) NSArray<NSMenuItem*>* itemArray;
@property (readonly) NSInteger numberOfItems;
- (nullable NSMenuItem*)itemAtIndex:(NSInteger)index;
@property BOOL autoenablesItems;
- (void)update;
@end

NS_SWIFT_UI_ACTOR
@interface NSApplication : NSObject
@property (class, readonly, strong) NSApplication* sharedApplication;
- (void)run;
@end

typedef NSString* NSImageName;
APPKIT_EXTERN NSImageName const NSImageNameActionTemplate;
APPKIT_EXTERN NSImageName const NSImageNameShareTemplate;
APPKIT_EXTERN NSImageName const NSImageNameFolder;

@interface NSImage : NSObject <NSCopying, NSSecureCoding>
+ (nullable NSImage*)imageNamed:(NSImageName)name;
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description
    API_AVAILABLE(macos(11.0));
@end

@interface NSRunningApplication : NSObject
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:
    (NSString*)bundleIdentifier;
@property (readonly, getter=isTerminated) BOOL terminated;
@property (nullable, readonly, copy) NSString* bundleIdentifier;
@property (nullable, readonly, copy) NSURL* bundleURL;
@end

API_AVAILABLE(macos(10.15))
@interface NSWorkspaceOpenConfiguration : NSObject <NSCopying>
+ (instancetype)configuration;
@property BOOL promptsUserIfNeeded;
@property BOOL addsToRecentItems;
@property BOOL activates;
@property BOOL hides;
@property BOOL hidesOthers;
@property BOOL createsNewApplicationInstance;
@end

@interface NSWorkspace : NSObject
@property (class, readonly, strong) NSWorkspace* sharedWorkspace;
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^_Nullable)(NSRunningApplication* _Nullable app,
                                                NSError* _Nullable error))completionHandler
    API_AVAILABLE(macos(10.15));
@end

#pragma clang assume_nonnull end
