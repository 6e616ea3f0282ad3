#pragma once

// GNUstep's AppKit, and what macOS 12 has beyond it.

#import <Foundation/Foundation.h>

#include_next <AppKit/AppKit.h>

/// macOS: menu items have an identifier, nil when none was set.
@interface NSMenuItem (AppKitOfMacOS)
@property (copy) NSUserInterfaceItemIdentifier identifier;
@end

/// macOS: how an application is opened.
@interface NSWorkspaceOpenConfiguration : NSObject {
    BOOL _activates;
    BOOL _addsToRecentItems;
}

+ (instancetype)configuration;

@property BOOL activates;
@property BOOL addsToRecentItems;

@end

@interface NSWorkspace (AppKitOfMacOS)

/// macOS: returns at once; `completionHandler` is called on a concurrent queue, with the running
/// application or with an error.
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:
               (void (^)(NSRunningApplication* application, NSError* error))completionHandler;

@end
