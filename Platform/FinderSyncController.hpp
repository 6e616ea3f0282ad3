#pragma once

#include <optional>
#include <set>
#include <vector>

#include "Platform/Error.hpp"
#include "Platform/FileURL.hpp"

namespace quorva::platform {

/// The items selected in the Finder window, in Finder's order. Absent when Finder gives none, and
/// at every moment other than a menu request or a click.
[[nodiscard]] std::optional<std::vector<FileURL>> selectedItemURLs();

/// The folder that the Finder window shows. Absent when Finder gives none, and at every moment
/// other than a menu request or a click.
[[nodiscard]] std::optional<FileURL> targetedURL();

/// Replaces the set of folders for which Finder asks this extension for menus.
[[nodiscard]] Result<void> setDirectoryURLs(const std::set<FileURL>& urls);

}  // namespace quorva::platform
