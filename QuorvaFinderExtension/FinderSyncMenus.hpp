#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "Platform/FileURL.hpp"
#include "QuorvaFinderExtension/FinderActionContext.hpp"
#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"
#include "QuorvaFinderExtension/FinderFeature.hpp"
#include "QuorvaFinderExtension/FinderFeatureSettings.hpp"
#include "QuorvaFinderExtension/Menu.hpp"

/// The builders of the menu's entries. Each reads the settings that it shows afresh and returns new
/// items. `selectedURLs` and `targetedURL` are those of the menu request throughout.
namespace quorva {

/// The collapsed layout: one item with a submenu per feature. A feature stays visible when its
/// submenu is empty, except `customActions`, which then yields nothing.
std::vector<MenuItem> featureMenuItems(const FinderMenuSettings& settings,
                                       const std::vector<FinderFeature>& features,
                                       const FinderSelection& selectedURLs,
                                       const std::optional<FileURL>& targetedURL);

/// The expanded layout: the entries of one feature inline, possibly none.
std::vector<MenuItem> directMenuItems(FinderFeature feature,
                                      const std::vector<FinderFeatureChild>& children,
                                      const FinderSelection& selectedURLs,
                                      const std::optional<FileURL>& targetedURL);

/// Appends to `menu` one item per copy or move destination that is not built in; nothing when there
/// is none. `actionID` goes into the items' contexts.
void addDestinationItems(Menu& menu, std::string_view actionID, FinderCustomDestinationKind kind,
                         const FinderSelection& selectedURLs,
                         const std::optional<FileURL>& targetedURL);

/// The quick-open locations, then those of `children` that ask for a path. The other children stand
/// for fixed locations, whose place the list of locations takes.
std::vector<MenuItem> quickOpenMenuItems(const std::vector<FinderFeatureChild>& children,
                                         const FinderSelection& selectedURLs,
                                         const std::optional<FileURL>& targetedURL);

/// One item per application to open the selection with.
std::vector<MenuItem> openWithApplicationMenuItems(const FinderSelection& selectedURLs,
                                                   const std::optional<FileURL>& targetedURL);

/// Appends those items to `menu`.
void addOpenWithApplicationItems(Menu& menu, const FinderSelection& selectedURLs,
                                 const std::optional<FileURL>& targetedURL);

/// One item per view preset, always enabled. They carry a dictionary and a tag.
std::vector<MenuItem> finderViewPresetMenuItems(const FinderSelection& selectedURLs,
                                                const std::optional<FileURL>& targetedURL);

/// One item per custom action.
std::vector<MenuItem> customShortcutMenuItems(const FinderSelection& selectedURLs,
                                              const std::optional<FileURL>& targetedURL);

/// Whether an entry with `action` can act now. The case alone decides.
bool isEnabled(const FinderFeatureAction& action, const FinderSelection& selectedURLs,
               const std::optional<FileURL>& targetedURL);

/// Whether `kind` has a destination that the user added beyond the built-in ones.
bool hasCustomDestinationItems(FinderCustomDestinationKind kind);

/// Whether `destination` is the real home's Desktop, Downloads or Documents folder, to the letter
/// of its path. The catalogue has copy and move commands for these; the other kinds have no
/// built-in destinations.
bool isBuiltInFileDestination(const FinderCustomDestination& destination,
                              FinderCustomDestinationKind kind);

}  // namespace quorva
