#import <AppKit/AppKit.h>

#import "Simulator/GNUstep/MethodExchange.h"

@interface NSImage (Simulator)
+ (NSImage*)simulatorImageNamed:(NSString*)name;
@end

/// macOS: brings the template images of its own controls. GNUstep declares the name of the action
/// image and has no image; an empty one of the usual size stands for it.
@implementation NSImage (Simulator)

+ (void)load {
    simulator::exchangeMethods(object_getClass(self), @selector(imageNamed:),
                               @selector(simulatorImageNamed:));
}

+ (NSImage*)simulatorImageNamed:(NSString*)name {
    NSImage* image = [self simulatorImageNamed:name];
    if (image == nil && [name isEqualToString:NSImageNameActionTemplate]) {
        image = [[[NSImage alloc] initWithSize:NSMakeSize(18, 18)] autorelease];
    }
    return image;
}

@end
