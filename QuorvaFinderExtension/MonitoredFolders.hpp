#pragma once

#include <set>
#include <vector>

#include "Platform/FileURL.hpp"

namespace quorva {

/// The user's real home folder. Inside the App Sandbox the platform reports the container instead,
/// so the account's home and the standard folders are consulted for one that is not in a container.
[[nodiscard]] FileURL realUserHomeURL();

/// The folders for which Finder asks this extension for menus.
[[nodiscard]] std::set<FileURL> monitoredDirectoryURLs();

/// `urls`, each as it is, in standard form, and with symbolic links resolved as a directory.
[[nodiscard]] std::set<FileURL> normalizedDirectoryVariants(const std::vector<FileURL>& urls);

}  // namespace quorva
