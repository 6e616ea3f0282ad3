#pragma once

#include "QuorvaFinderExtension/Menu.hpp"

namespace quorva {

/// `sender` with the context that Finder dropped from it, where that can be told.
///
/// Finder gives back a rebuilt item with neither the represented object nor the identifier. The
/// entries of the copy and move destinations and of quick-open have nothing else that says what
/// they do. So a sender without a represented object gets the context of its entry in `menu`, which
/// is the menu that Finder was last given, when exactly one item with an action has the title and
/// the tag of the sender and that item is one of those entries. Every other sender is answered as
/// it is.
MenuItem deliveredMenuItem(MenuItem sender, const Menu& menu);

}  // namespace quorva
