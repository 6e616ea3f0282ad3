#pragma once

#import <AppKit/AppKit.h>

#include <cstddef>
#include <expected>
#include <string>
#include <vector>

namespace simulator {

/// A PNG of `menu` as AppKit's menu classes draw it, in the light look of a Mac, with nothing
/// around it. Each position of `openIndexPath` leads to an item whose submenu is shown open beside
/// it. `scale` is how many pixels a point takes. Fails with one sentence when the picture would be
/// too large.
std::expected<NSData*, std::string> pictureOfMenu(NSMenu* menu,
                                                  const std::vector<std::size_t>& openIndexPath,
                                                  unsigned scale);

}  // namespace simulator
