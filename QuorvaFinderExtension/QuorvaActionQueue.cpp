#include "QuorvaFinderExtension/QuorvaActionQueue.hpp"

#include <utility>

#include "Platform/Data.hpp"
#include "Platform/Date.hpp"
#include "Platform/FileManager.hpp"
#include "Platform/JSONSerialization.hpp"
#include "Platform/PropertyList.hpp"
#include "Platform/UUID.hpp"

namespace quorva {

FileURL QuorvaActionQueue::directoryURL() {
    const Result<FileURL> applicationSupport =
        urlForDirectoryInUserDomainCreating(SearchPathDirectory::applicationSupport);
    if (!applicationSupport) {
        return FileURL::directory("/tmp/quorva-action-queue");
    }
    return applicationSupport->appendingDirectory("Quorva").appendingDirectory("ActionQueue");
}

Result<void> QuorvaActionQueue::enqueue(const std::string& actionID, const std::string& title,
                                        const std::vector<FileURL>& selectedURLs,
                                        const std::optional<FileURL>& targetedURL,
                                        const std::string& destinationPath,
                                        const std::string& presetID) {
    const FileURL directory = directoryURL();
    if (Result<void> created = createDirectoryWithIntermediateDirectories(directory); !created) {
        return created;
    }
    PropertyList::Array selectedPaths;
    selectedPaths.reserve(selectedURLs.size());
    for (const FileURL& url : selectedURLs) {
        selectedPaths.emplace_back(url.path());
    }
    const Result<Data> json = jsonDataPrettyPrintedWithSortedKeys(PropertyList::Dictionary{
        {"actionID", actionID},
        {"title", title},
        {"selectedPaths", std::move(selectedPaths)},
        {"targetedPath", targetedURL ? targetedURL->path() : std::string()},
        {"destinationPath", destinationPath},
        {"presetID", presetID},
        {"createdAt", timeIntervalSince1970()},
    });
    if (!json) {
        return std::unexpected(json.error());
    }
    return writeDataAtomically(*json, directory.appendingFile(newUUIDString() + ".json"));
}

}  // namespace quorva
