#import <AppKit/AppKit.h>

/// macOS: the template image of an action menu. GNUstep declares the name and has neither the name
/// nor the image; the arrow of its pop-up menus stands for it.
NSString* const NSImageNameActionTemplate = @"common_3DArrowDown";
