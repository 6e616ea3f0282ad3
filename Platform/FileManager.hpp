#pragma once

#include <string>
#include <vector>

#include "Platform/Error.hpp"
#include "Platform/FileURL.hpp"

namespace quorva::platform {

/// The standard directories that the platform is asked for. The values are Foundation's
/// `NSSearchPathDirectory`.
enum class SearchPathDirectory : unsigned long {
    documents = 9,
    desktop = 12,
    applicationSupport = 14,
    downloads = 15,
    movies = 17,
    music = 18,
    pictures = 19,
};

/// The home directory of the current user as this process sees it: inside the App Sandbox, the
/// process's container. The root, if the platform can't tell.
[[nodiscard]] FileURL homeDirectoryForCurrentUser();

/// The user-domain locations of `directory`, best first. Empty when the platform knows none. The
/// directories need not exist.
[[nodiscard]] std::vector<FileURL> urlsForDirectoryInUserDomain(SearchPathDirectory directory);

/// The user-domain location of `directory`, created when it does not exist. Fails when it cannot be
/// created.
[[nodiscard]] Result<FileURL> urlForDirectoryInUserDomainCreating(SearchPathDirectory directory);

/// Creates the directory at `url` and those above it that are missing, with the platform's default
/// attributes. A directory that stands there already is a success; a file in its place is a
/// failure.
[[nodiscard]] Result<void> createDirectoryWithIntermediateDirectories(const FileURL& url);

/// The entries of the directory at `url`, without hidden ones, in no particular order, each saying
/// whether it is a directory. Does not descend. Fails when there is no such directory or it may not
/// be read.
[[nodiscard]] Result<std::vector<FileURL>> contentsOfDirectorySkippingHiddenFiles(
    const FileURL& url);

/// Whether anything stands at `path`, a directory included. A link to nothing is nothing, and so is
/// what the platform fails to tell.
[[nodiscard]] bool fileExistsAtPath(const std::string& path);

}  // namespace quorva::platform
