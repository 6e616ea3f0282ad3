#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/FileURL.hpp"
#include "QuorvaFinderExtension/FinderFeature.hpp"

namespace quorva {

/// A Finder selection. The entries of one menu share the selection they were built for, so that a
/// selection of thousands of items is held once and not once an entry.
class FinderSelection {
 public:
    FinderSelection() = default;
    FinderSelection(std::vector<FileURL> urls)  // NOLINT(google-explicit-constructor)
        : urls_(std::make_shared<const std::vector<FileURL>>(std::move(urls))) {}

    /// In Finder's order; empty when nothing is selected.
    [[nodiscard]] const std::vector<FileURL>& urls() const {
        static const std::vector<FileURL> none;
        return urls_ == nullptr ? none : *urls_;
    }

    [[nodiscard]] bool empty() const { return urls().empty(); }

    friend bool operator==(const FinderSelection& left, const FinderSelection& right) {
        return left.urls() == right.urls();
    }

 private:
    std::shared_ptr<const std::vector<FileURL>> urls_;
};

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

}  // namespace quorva
