#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Platform/FileURL.hpp"
#include "QuorvaFinderExtension/FinderFeature.hpp"
#include "QuorvaFinderExtension/FinderSelection.hpp"

namespace quorva {

/// What an entry of the menu does. Immutable, and shared by whoever holds it.
class FinderActionContext {
 public:
    FinderActionContext(std::string actionID, std::string title, FinderFeatureAction action,
                        FinderSelection selectedURLs, std::optional<FileURL> targetedURL,
                        std::string destinationPath, std::string presetID)
        : actionID_(std::move(actionID)),
          title_(std::move(title)),
          action_(action),
          selectedURLs_(std::move(selectedURLs)),
          targetedURL_(std::move(targetedURL)),
          destinationPath_(std::move(destinationPath)),
          presetID_(std::move(presetID)) {}

    /// What the containing application carries out.
    [[nodiscard]] const std::string& actionID() const { return actionID_; }

    /// The title of the entry.
    [[nodiscard]] const std::string& title() const { return title_; }

    /// What kind of action it is. Not part of a queue record.
    [[nodiscard]] const FinderFeatureAction& action() const { return action_; }

    /// The selection when the menu was requested. Empty also in a context that was rebuilt from an
    /// identifier, a tag or a title.
    [[nodiscard]] const FinderSelection& selectedURLs() const { return selectedURLs_; }

    /// The folder on which the menu was opened. Absent when unknown, as in a rebuilt context.
    [[nodiscard]] const std::optional<FileURL>& targetedURL() const { return targetedURL_; }

    /// The folder or application of a destination entry; empty for every other.
    [[nodiscard]] const std::string& destinationPath() const { return destinationPath_; }

    /// The identifier of a view preset whose entry was found again by its identifier, tag or title.
    /// Empty for every other entry, and for one that came with its dictionary.
    [[nodiscard]] const std::string& presetID() const { return presetID_; }

    friend bool operator==(const FinderActionContext&, const FinderActionContext&) = default;

 private:
    std::string actionID_;
    std::string title_;
    FinderFeatureAction action_;
    FinderSelection selectedURLs_;
    std::optional<FileURL> targetedURL_;
    std::string destinationPath_;
    std::string presetID_;
};

/// A context as the items of a menu and the resolution of a click share it. Null is no context.
using FinderActionContextPointer = std::shared_ptr<const FinderActionContext>;

}  // namespace quorva
