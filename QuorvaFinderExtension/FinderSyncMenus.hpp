#pragma once

#include <string_view>
#include <vector>

#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"
#include "QuorvaFinderExtension/FinderFeature.hpp"
#include "QuorvaFinderExtension/Menu.hpp"
#include "QuorvaFinderExtension/MenuRequest.hpp"

/// The menu of a request, and the builders of its entries. Each shows the settings, the selection
/// and the target of the request and returns new items.
namespace quorva {

/// The whole menu, in the layout that the settings say, and under one item if they say so.
[[nodiscard]] Menu assembledMenu(const MenuRequest& request);

/// The collapsed layout: one item with a submenu per feature. A feature stays visible when its
/// submenu is empty, except `customActions`, which then yields nothing.
[[nodiscard]] std::vector<MenuItem> featureMenuItems(const MenuRequest& request,
                                                     const FinderMenuSettings& settings,
                                                     const std::vector<FinderFeature>& features);

/// The expanded layout: the entries of one feature inline, possibly none.
[[nodiscard]] std::vector<MenuItem> directMenuItems(
    const MenuRequest& request, FinderFeature feature,
    const std::vector<FinderFeatureChild>& children);

/// Appends to `menu` one item per copy or move destination that is not built in; nothing when there
/// is none. `actionID` goes into the items' contexts.
void addDestinationItems(Menu& menu, const MenuRequest& request, std::string_view actionID,
                         FinderCustomDestinationKind kind);

/// The quick-open locations, then those of `children` that ask for a path. The other children stand
/// for fixed locations, whose place the list of locations takes.
[[nodiscard]] std::vector<MenuItem> quickOpenMenuItems(
    const MenuRequest& request, const std::vector<FinderFeatureChild>& children);

/// One item per application to open the selection with.
[[nodiscard]] std::vector<MenuItem> openWithApplicationMenuItems(const MenuRequest& request);

/// Appends those items to `menu`.
void addOpenWithApplicationItems(Menu& menu, const MenuRequest& request);

/// One item per view preset, always enabled. They carry a dictionary and a tag.
[[nodiscard]] std::vector<MenuItem> finderViewPresetMenuItems(const MenuRequest& request);

/// One item per custom action.
[[nodiscard]] std::vector<MenuItem> customShortcutMenuItems(const MenuRequest& request);

/// Whether an entry with `action` can act now. The case alone decides.
[[nodiscard]] bool isEnabled(const FinderFeatureAction& action, const MenuRequest& request);

/// Whether `kind` has a destination that the user added beyond the built-in ones.
[[nodiscard]] bool hasCustomDestinationItems(const MenuRequest& request,
                                             FinderCustomDestinationKind kind);

/// Whether `destination` is the real home's Desktop, Downloads or Documents folder, to the letter
/// of its path. The catalogue has copy and move commands for these; the other kinds have no
/// built-in destinations.
[[nodiscard]] bool isBuiltInFileDestination(const FinderCustomDestination& destination,
                                            FinderCustomDestinationKind kind);

}  // namespace quorva
