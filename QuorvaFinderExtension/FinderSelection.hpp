#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Platform/FileURL.hpp"
#include "Platform/FinderSyncController.hpp"

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

/// The items selected in Finder now. Empty when Finder gives none.
[[nodiscard]] inline FinderSelection currentFinderSelection() {
    return platform::selectedItemURLs().value_or(std::vector<FileURL>());
}

}  // namespace quorva
