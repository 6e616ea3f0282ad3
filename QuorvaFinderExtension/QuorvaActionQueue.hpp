#pragma once

#include <optional>
#include <string>

#include "Platform/Error.hpp"
#include "Platform/FileURL.hpp"
#include "QuorvaFinderExtension/FinderSelection.hpp"

namespace quorva {

/// What a click hands to the containing application.
struct QuorvaActionRecord {
    std::string actionID;
    std::string title;
    FinderSelection selectedURLs;
    /// Absent when no folder was targeted.
    std::optional<FileURL> targetedURL;
    /// Empty for entries without one.
    std::string destinationPath;
    /// Empty for entries without one.
    std::string presetID;
};

/// The queue of actions for the containing application: a folder with one JSON file per click. The
/// extension only adds to it.
class QuorvaActionQueue {
 public:
    QuorvaActionQueue() = delete;

    /// The folder "Quorva/ActionQueue" in Application Support, or a folder below "/tmp" when
    /// Application Support can't be had. Looked up anew at every call; the folder need not exist.
    [[nodiscard]] static FileURL directoryURL();

    /// Writes `record`, with the time, under a name that no other record has.
    ///
    /// The record is written whole or not at all. Fails with the platform's error when the folder
    /// can't be created or the record can't be written.
    [[nodiscard]] static Result<void> enqueue(const QuorvaActionRecord& record);
};

}  // namespace quorva
