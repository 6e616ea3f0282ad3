#import <AppKit/AppKit.h>

/// macOS: gives each character a font that has it. GNUstep searches all fonts for each character of
/// every menu made, which takes ten times as long as all else together; the pictures of menus have
/// one font for all characters.
@implementation NSMutableAttributedString (AppKitOfMacOS)

- (void)fixFontAttributeInRange:(NSRange)range {
}

@end
