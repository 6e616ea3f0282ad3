#import <AppKit/AppKit.h>

/// macOS: the name of a system image. GNUstep declares it and leaves it undefined.
NSString* const NSImageNameActionTemplate = @"NSActionTemplate";
