#pragma once

#include "QuorvaFinderExtension/Menu.hpp"
#include "QuorvaFinderExtension/SettingsReading.hpp"

/// A menu's way to Finder and back.
///
/// Finder shows the menu in its own process and gives back an item made anew: with the title and
/// the tag, without the represented object and the identifier. The resolution of a bare title knows
/// the user's custom actions, applications and view presets and the commands of the catalogue, but
/// not the copy and move destinations and the places of quick-open, and of two entries with one
/// title only the first. What is here makes a click act on the entry that was clicked, or on none.
namespace quorva {

/// Gives a tag of its own, 1, 2, 3, … in the order of the menu, to each entry that its title alone
/// would not lead back to: because the title stands for another entry, or because it stands for
/// none and another entry of the menu has it too.
///
/// The view presets keep the tags that they have, and no tag lies in their range. The places that
/// are there by default and that the catalogue has a command for keep none: the command is the
/// better choice, because it means the user's folder where the place is one of the container.
///
/// `settings` is the reading that the menu was built from.
void tagAmbiguousItems(Menu& menu, const SettingsReading& settings);

/// The context of the entry that was clicked. Null when it can't be told.
///
/// `sender` is the item as Finder gave it back, `menu` what Finder was given last, and `settings`
/// the reading of the click. A sender with neither represented object nor identifier is the entry
/// of `menu` that has its title and its own tag; a view preset's tag counts so only when the
/// presets have been reordered since, that is, when tag and title are those of two presets. Every
/// other sender is resolved by what it carries. What then names nothing is the one destination or
/// place of `menu` that has its title.
[[nodiscard]] FinderActionContextPointer contextOfSender(const MenuItem& sender, const Menu& menu,
                                                         const SettingsReading& settings);

}  // namespace quorva
