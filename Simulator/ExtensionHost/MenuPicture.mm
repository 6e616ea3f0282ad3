#import "Simulator/ExtensionHost/MenuPicture.h"

#import <GNUstepGUI/GSTheme.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace {

// In points, as on a Mac.
constexpr CGFloat fontSize = 13;
constexpr CGFloat itemHeight = 22;
constexpr CGFloat separatorHeight = 11;
constexpr CGFloat cornerRadius = 6;
/// Around the items of a menu.
constexpr CGFloat padding = 5;
/// Around each part of an item: the state, the title and the arrow.
constexpr CGFloat horizontalPadding = 12;
/// By which a submenu covers the edge of the menu that it is opened from.
constexpr CGFloat overlap = 3;

/// In pixels. An X server has no wider or higher drawable than 32,767.
constexpr CGFloat longestSide = 10000;
/// Drawing and compressing as many takes seconds, and 100 MB several times over.
constexpr CGFloat largestArea = 25e6;

/// The font of every menu; the glyphs of a character that several languages share are those of the
/// language of the titles.
NSFont* menuFont() {
    const char* const language = std::getenv("SIMULATOR_LANGUAGE");
    const bool isTraditional = language != nullptr && std::string_view(language) == "zh-Hant";
    NSString* const name = isTraditional ? @"NotoSansCJKtc-Regular" : @"NotoSansCJKsc-Regular";
    NSFont* const font = [NSFont fontWithName:name size:fontSize];
    return font != nil ? font : [NSFont menuFontOfSize:fontSize];
}

}  // namespace

/// The look of a Mac's menus. GNUstep's own is that of NeXT.
@interface SimulatorMenuTheme : GSTheme
@end

@implementation SimulatorMenuTheme

- (CGFloat)menuItemHeight {
    return itemHeight;
}

- (CGFloat)menuSeparatorHeight {
    return separatorHeight;
}

- (NSColorList*)colors {
    NSColorList* const list = [[[NSColorList alloc] initWithName:@"System"] autorelease];
    [list setColor:[NSColor whiteColor] forKey:@"selectedMenuItemTextColor"];
    [list setColor:[NSColor colorWithCalibratedWhite:0.7 alpha:1]
            forKey:@"disabledControlTextColor"];
    return list;
}

- (void)drawBackgroundForMenuView:(NSMenuView*)menuView
                        withFrame:(NSRect)bounds
                        dirtyRect:(NSRect)dirtyRect
                       horizontal:(BOOL)isHorizontal {
    // That of the panel shows through.
}

- (void)drawBorderAndBackgroundForMenuItemCell:(NSMenuItemCell*)cell
                                     withFrame:(NSRect)cellFrame
                                        inView:(NSView*)controlView
                                         state:(GSThemeControlState)state
                                  isHorizontal:(BOOL)isHorizontal {
    if ([cell isHighlighted]) {
        [[NSColor colorWithCalibratedRed:0.04 green:0.48 blue:1 alpha:1] set];
        [[NSBezierPath bezierPathWithRoundedRect:NSInsetRect(cellFrame, padding, 0)
                                         xRadius:4
                                         yRadius:4] fill];
    }
    if ([[cell menuItem] hasSubmenu]) {
        const NSRect place = [cell keyEquivalentRectForBounds:cellFrame];
        NSBezierPath* const arrow = [NSBezierPath bezierPath];
        [arrow moveToPoint:NSMakePoint(NSMaxX(place) - 4, NSMidY(place) - 4)];
        [arrow relativeLineToPoint:NSMakePoint(4, 4)];
        [arrow relativeLineToPoint:NSMakePoint(-4, 4)];
        arrow.lineWidth = 1.5;
        [([cell isHighlighted]          ? [NSColor whiteColor]
          : [[cell menuItem] isEnabled] ? [NSColor darkGrayColor]
                                        : [NSColor disabledControlTextColor]) set];
        [arrow stroke];
    }
}

- (void)drawSeparatorItemForMenuItemCell:(NSMenuItemCell*)cell
                               withFrame:(NSRect)cellFrame
                                  inView:(NSView*)controlView
                            isHorizontal:(BOOL)isHorizontal {
    [[NSColor colorWithCalibratedWhite:0.83 alpha:1] set];
    NSRectFill(NSMakeRect(NSMinX(cellFrame) + 2 * padding, NSMidY(cellFrame) - 0.5,
                          NSWidth(cellFrame) - 4 * padding, 1));
}

@end

/// A menu without NeXT's title bar.
@interface SimulatorMenuView : NSMenuView
@end

@implementation SimulatorMenuView

- (void)update {
}

@end

/// A menu on its panel: the view of the menu, and the panel's edge and background around it.
@interface SimulatorMenuPanel : NSView {
   @public
    NSMenuView* menuView;
}
@end

@implementation SimulatorMenuPanel

- (instancetype)initWithMenu:(NSMenu*)menu {
    self = [super initWithFrame:NSZeroRect];
    menuView = [[[SimulatorMenuView alloc] initWithFrame:NSZeroRect] autorelease];
    [menuView setFont:menuFont()];
    [menuView setHorizontalEdgePadding:horizontalPadding];
    [menuView setMenu:menu];
    [menuView sizeToFit];
    const NSSize size = menuView.frame.size;
    [self setFrameSize:NSMakeSize(size.width, size.height + 2 * padding)];
    [menuView setFrameOrigin:NSMakePoint(0, padding)];
    [self addSubview:menuView];
    return self;
}

/// How far below the upper edge of the panel the item at `index` begins.
- (CGFloat)depthOfItemAtIndex:(NSInteger)index {
    return NSHeight(self.frame) - padding - NSMaxY([menuView rectOfItemAtIndex:index]);
}

- (void)drawRect:(NSRect)dirtyRect {
    NSBezierPath* const outline =
        [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(self.bounds, 0.5, 0.5)
                                        xRadius:cornerRadius
                                        yRadius:cornerRadius];
    [[NSColor colorWithCalibratedWhite:0.97 alpha:1] set];
    [outline fill];
    [[NSColor colorWithCalibratedWhite:0.72 alpha:1] set];
    outline.lineWidth = 1;
    [outline stroke];
}

@end

namespace {

/// Undoes that the colours of what was drawn are multiplied by their opacity: those of a PNG
/// aren't.
void setStraightColors(NSBitmapImageRep* bitmap) {
    unsigned char* const end = bitmap.bitmapData + bitmap.bytesPerRow * bitmap.pixelsHigh;
    for (unsigned char* pixel = bitmap.bitmapData; pixel < end; pixel += 4) {
        for (int color = 0; color < 3 && pixel[3] != 0; ++color) {
            pixel[color] = static_cast<unsigned char>(std::min(255, pixel[color] * 255 / pixel[3]));
        }
    }
}

std::unexpected<std::string> tooLarge() {
    return std::unexpected<std::string>(
        "the picture would be wider or higher than 10,000 pixels or have more than 25 million");
}

/// Gives AppKit the look of a Mac's menus for as long as the process runs.
void useMenuTheme() {
    static const bool isInUse = [] {
        NSBundle* const bundle = [NSBundle bundleForClass:[GSTheme class]];
        [GSTheme setTheme:[[[SimulatorMenuTheme alloc] initWithBundle:bundle] autorelease]];
        // The theme draws an arrow that is sharp at every scale.
        NSImage* const arrow = [NSImage imageNamed:@"NSMenuArrow"];
        for (NSImageRep* pixels in [[arrow.representations copy] autorelease]) {
            [arrow removeRepresentation:pixels];
        }
        return true;
    }();
    static_cast<void>(isInUse);
}

}  // namespace

std::expected<NSData*, std::string> simulator::pictureOfMenu(
    NSMenu* menu, const std::vector<std::size_t>& openIndexPath, unsigned scale) {
    useMenuTheme();
    // Their vertical coordinates go downwards until the height of the picture is known.
    std::vector<SimulatorMenuPanel*> panels;
    NSPoint corner = NSZeroPoint;
    NSRect covered = NSZeroRect;
    for (std::size_t level = 0;; ++level) {
        // To lay so many out would take long.
        if (static_cast<CGFloat>(menu.numberOfItems) * separatorHeight * scale > longestSide) {
            return tooLarge();
        }
        SimulatorMenuPanel* const panel =
            [[[SimulatorMenuPanel alloc] initWithMenu:menu] autorelease];
        [panel setFrameOrigin:corner];
        panels.push_back(panel);
        covered = NSUnionRect(covered, panel.frame);
        if (level == openIndexPath.size()) {
            break;
        }
        const auto index = static_cast<NSInteger>(openIndexPath[level]);
        [panel->menuView setHighlightedItemIndex:index];
        corner.x = NSMaxX(panel.frame) - overlap;
        // The first item of the submenu is as high as the one that opens it.
        corner.y += [panel depthOfItemAtIndex:index] - [panel depthOfItemAtIndex:0];
        menu = [[menu itemAtIndex:index] submenu];
    }
    const NSRect frame =
        NSMakeRect(0, 0, std::ceil(NSWidth(covered) * scale), std::ceil(NSHeight(covered) * scale));
    if (std::max(NSWidth(frame), NSHeight(frame)) > longestSide ||
        NSWidth(frame) * NSHeight(frame) > largestArea) {
        return tooLarge();
    }

    NSWindow* const window = [[[NSWindow alloc] initWithContentRect:frame
                                                          styleMask:NSBorderlessWindowMask
                                                            backing:NSBackingStoreBuffered
                                                              defer:NO] autorelease];
    window.releasedWhenClosed = NO;
    window.opaque = NO;
    window.backgroundColor = [NSColor clearColor];
    NSView* const view = window.contentView;
    [view setBoundsSize:NSMakeSize(NSWidth(frame) / scale, NSHeight(frame) / scale)];
    for (SimulatorMenuPanel* const panel : panels) {
        const NSRect place = panel.frame;
        [panel setFrameOrigin:NSMakePoint(NSMinX(place), NSHeight(view.bounds) - NSMaxY(place))];
        [view addSubview:panel];
    }
    [view display];
    [view lockFocus];
    NSBitmapImageRep* const bitmap =
        [[[NSBitmapImageRep alloc] initWithFocusedViewRect:view.bounds] autorelease];
    [view unlockFocus];
    setStraightColors(bitmap);
    return [bitmap representationUsingType:NSPNGFileType properties:@{}];
}
