#pragma once

#include <optional>

#include "Platform/FileURL.hpp"
#include "QuorvaFinderExtension/FinderSelection.hpp"
#include "QuorvaFinderExtension/SettingsReading.hpp"

namespace quorva {

/// Where Finder shows the menu. The values are FinderSync's `FIMenuKind`; a value that is not among
/// them is possible, because the system may add kinds.
enum class MenuKind : unsigned long {
    contextualMenuForItems = 0,
    contextualMenuForContainer = 1,
    contextualMenuForSidebar = 2,
    toolbarItemMenu = 3,
};

/// What one menu is built from. Nothing of it outlives the menu request but what the entries carry.
struct MenuRequest {
    /// Logged, and makes no other difference.
    MenuKind kind;
    FinderSelection selectedURLs;
    /// The folder on which the menu was opened. Absent when Finder gives none.
    std::optional<FileURL> targetedURL;
    SettingsReading settings;
};

}  // namespace quorva
