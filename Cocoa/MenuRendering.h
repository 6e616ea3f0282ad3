#pragma once

#import <AppKit/AppKit.h>

#include "QuorvaFinderExtension/Menu.hpp"

namespace quorva {

/// `menu` as AppKit shows it. `target` receives `performFeatureChild:` from the items that have an
/// action. No menu enables its items by itself, so the state of each item is the one it was given.
NSMenu* renderedMenu(const Menu& menu, id target);

/// What a clicked `item` carries. Without its submenu: an item that opens one is not clicked.
MenuItem menuItem(NSMenuItem* item);

}  // namespace quorva
