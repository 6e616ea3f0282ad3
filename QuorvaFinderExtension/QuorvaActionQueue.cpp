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
    const Result<FileURL> applicationSupport = platform::urlForDirectoryInUserDomainCreating(
        platform::SearchPathDirectory::applicationSupport);
    if (!applicationSupport) {
        return FileURL::directory("/tmp/quorva-action-queue");
    }
    return applicationSupport->appendingDirectory("Quorva").appendingDirectory("ActionQueue");
}

Result<void> QuorvaActionQueue::enqueue(const QuorvaActionRecord& record) {
    const FileURL directory = directoryURL();
    if (Result<void> created = platform::createDirectoryWithIntermediateDirectories(directory);
        !created) {
        return created;
    }
    PropertyList::Array selectedPaths;
    selectedPaths.reserve(record.selectedURLs.urls().size());
    for (const FileURL& url : record.selectedURLs.urls()) {
        selectedPaths.emplace_back(url.path());
    }
    const Result<Data> json =
        platform::jsonDataPrettyPrintedWithSortedKeys(PropertyList::Dictionary{
            {"actionID", record.actionID},
            {"title", record.title},
            {"selectedPaths", std::move(selectedPaths)},
            {"targetedPath", record.targetedURL ? record.targetedURL->path() : std::string()},
            {"destinationPath", record.destinationPath},
            {"presetID", record.presetID},
            {"createdAt", platform::timeIntervalSince1970()},
        });
    if (!json) {
        return std::unexpected(json.error());
    }
    return platform::writeDataAtomically(
        *json, directory.appendingFile(platform::newUUIDString() + ".json"));
}

}  // namespace quorva
