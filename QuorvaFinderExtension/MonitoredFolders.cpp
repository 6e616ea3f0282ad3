#include "QuorvaFinderExtension/MonitoredFolders.hpp"

#include <algorithm>
#include <iterator>
#include <string>

#include "Platform/FileManager.hpp"
#include "Platform/PathUtilities.hpp"

namespace quorva {

namespace {

using platform::SearchPathDirectory;

/// Whether `path` can be a user's real home folder, or lie in one: not inside a sandbox container.
bool liesInRealHome(const std::string& path) {
    return path.starts_with("/Users/") && !path.contains("/Library/Containers/");
}

}  // namespace

FileURL realUserHomeURL() {
    const std::string user = platform::userName();
    if (const auto home = platform::homeDirectoryForUser(user); home && liesInRealHome(*home)) {
        return FileURL::directory(*home);
    }
    // The documents folder is left out on purpose.
    for (const SearchPathDirectory directory :
         {SearchPathDirectory::desktop, SearchPathDirectory::downloads, SearchPathDirectory::movies,
          SearchPathDirectory::music, SearchPathDirectory::pictures}) {
        const std::vector<FileURL> urls = platform::urlsForDirectoryInUserDomain(directory);
        if (!urls.empty() && liesInRealHome(urls.front().path())) {
            return urls.front().deletingLastPathComponent();
        }
    }
    return FileURL::directory("/Users/" + user);
}

std::set<FileURL> monitoredDirectoryURLs() {
    const FileURL realHome = realUserHomeURL();
    std::vector<FileURL> urls = {
        FileURL::directory("/Applications"),
        FileURL::directory("/Volumes"),
        platform::homeDirectoryForCurrentUser(),
        realHome,
        realHome.appendingDirectory("Desktop"),
        realHome.appendingDirectory("Documents"),
        realHome.appendingDirectory("Library/Mobile Documents/com~apple~CloudDocs"),
        realHome.appendingDirectory("Library/Mobile Documents/com~apple~CloudDocs/Desktop"),
        realHome.appendingDirectory("Library/Mobile Documents/com~apple~CloudDocs/Documents"),
    };
    for (const SearchPathDirectory directory :
         {SearchPathDirectory::desktop, SearchPathDirectory::documents,
          SearchPathDirectory::downloads, SearchPathDirectory::movies, SearchPathDirectory::music,
          SearchPathDirectory::pictures}) {
        const std::vector<FileURL> standard = platform::urlsForDirectoryInUserDomain(directory);
        if (!standard.empty()) {
            urls.push_back(standard.front());
        }
    }
    if (const auto entries = platform::contentsOfDirectorySkippingHiddenFiles(realHome)) {
        std::ranges::copy_if(*entries, std::back_inserter(urls), &FileURL::hasDirectoryPath);
    }
    return normalizedDirectoryVariants(urls);
}

std::set<FileURL> normalizedDirectoryVariants(const std::vector<FileURL>& urls) {
    std::set<FileURL> variants;
    for (const FileURL& url : urls) {
        variants.insert(url);
        variants.insert(platform::standardizedFileURL(url));
        variants.insert(FileURL::directory(platform::pathByResolvingSymbolicLinks(url.path())));
    }
    return variants;
}

}  // namespace quorva
