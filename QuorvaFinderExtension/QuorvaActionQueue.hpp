#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Error.hpp"
#include "Platform/FileURL.hpp"

namespace quorva {

/// The queue of actions for the containing application: a folder with one JSON file per click. The
/// extension only adds to it.
class QuorvaActionQueue {
 public:
    QuorvaActionQueue() = delete;

    /// The folder "Quorva/ActionQueue" in Application Support, or a folder below "/tmp" when
    /// Application Support can't be had. Looked up anew at every call; the folder need not exist.
    static FileURL directoryURL();

    /// Writes one record under a name that no other record has. `targetedURL` is absent when no
    /// folder was targeted; `destinationPath` and `presetID` are empty for entries without one.
    ///
    /// The record is written whole or not at all. Fails with the platform's error when the folder
    /// can't be created or the record can't be written.
    static Result<void> enqueue(const std::string& actionID, const std::string& title,
                                const std::vector<FileURL>& selectedURLs,
                                const std::optional<FileURL>& targetedURL,
                                const std::string& destinationPath, const std::string& presetID);
};

}  // namespace quorva
