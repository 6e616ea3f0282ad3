#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorva {

/// What a list of destinations is for.
enum class FinderCustomDestinationKind {
    copy,
    move,
    quickOpen,
    openApplication,
};

/// The key of `kind` in the settings file: the name of its case.
std::string_view rawValue(FinderCustomDestinationKind kind);

/// A named folder or application.
struct FinderCustomDestination {
    /// For an application, what a clicked entry is found by again.
    std::string id;
    /// The title in the menu, used as it is.
    std::string name;
    /// An absolute path, neither normalised nor checked for existence.
    std::string path;

    friend bool operator==(const FinderCustomDestination&,
                           const FinderCustomDestination&) = default;
};

/// The reader of "CustomDestinations.plist": a dictionary from kind to a list of dictionaries with
/// the texts "id", "name" and "path".
class FinderCustomDestinationSettings {
 public:
    FinderCustomDestinationSettings() = delete;

    /// The destinations of `kind` in the order in which they are shown, read afresh.
    ///
    /// Never fails. The defaults of the kind when there is no usable file (one value of the wrong
    /// type anywhere makes the whole file unusable) or when it has no list for the kind; an entry
    /// that lacks a text is skipped; an empty list stays empty. The installed default applications
    /// always come first among the applications, and a user's entry for one of them, or for an
    /// editor that the catalogue knows, is dropped.
    static std::vector<FinderCustomDestination> destinations(FinderCustomDestinationKind kind);
};

}  // namespace quorva
