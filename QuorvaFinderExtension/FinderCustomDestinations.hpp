#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/SettingsPath.hpp"

namespace quorva {

/// What a list of destinations is for.
enum class FinderCustomDestinationKind {
    copy,
    move,
    quickOpen,
    openApplication,
};

/// Every kind, in declaration order.
inline constexpr std::array<FinderCustomDestinationKind, 4> allFinderCustomDestinationKinds = {
    FinderCustomDestinationKind::copy, FinderCustomDestinationKind::move,
    FinderCustomDestinationKind::quickOpen, FinderCustomDestinationKind::openApplication};

/// The key of `kind` in the settings file: the name of its case.
[[nodiscard]] std::string_view rawValue(FinderCustomDestinationKind kind);

/// The kind whose raw value is `rawValue`, to the letter. Absent for any other string.
[[nodiscard]] std::optional<FinderCustomDestinationKind> finderCustomDestinationKindWithRawValue(
    std::string_view rawValue);

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

/// The keys of an entry of "CustomDestinations.plist".
inline constexpr std::array<std::string_view, 3> destinationKeys = {"id", "name", "path"};

/// One reading of "CustomDestinations.plist": a dictionary from kind to a list of dictionaries with
/// the strings "id", "name" and "path". What it gives for one kind comes from the same version of
/// the file as what it gives for another.
class FinderCustomDestinationFile {
 public:
    /// Reads the file. `findings` may be null, and outlives the reading.
    explicit FinderCustomDestinationFile(SettingsFindings* findings = nullptr);

    /// The destinations of `kind` in the order in which they are shown.
    ///
    /// Never fails. The defaults of the kind when there is no usable file (one value of the wrong
    /// type anywhere makes the whole file unusable) or when it has no list for the kind; an entry
    /// that lacks a string is skipped; an empty list stays empty. The installed default
    /// applications always come first among the applications, and a user's entry for one of them,
    /// or for an editor that the catalogue knows, is dropped.
    [[nodiscard]] std::vector<FinderCustomDestination> destinations(
        FinderCustomDestinationKind kind) const;

    /// Whether `destinations(kind)` are the built-in defaults because the file has no list for
    /// `kind`.
    [[nodiscard]] bool hasDefaults(FinderCustomDestinationKind kind) const;

 private:
    /// The list of `kind` in the file, null when the file has none. Lives as long as the reading.
    [[nodiscard]] const PropertyList::Array* savedEntries(FinderCustomDestinationKind kind) const;

    /// The defaults of `kind`.
    [[nodiscard]] std::vector<FinderCustomDestination> defaultDestinations(
        FinderCustomDestinationKind kind) const;

    /// The standard folders that are copied and moved to, looked up when they are first wanted.
    [[nodiscard]] const std::vector<FinderCustomDestination>& standardFolders() const;

    SettingsPath file_;
    /// Absent when there is no usable file.
    std::optional<PropertyList> root_;
    mutable std::optional<std::vector<FinderCustomDestination>> standardFolders_;
};

/// The destinations of the user.
class FinderCustomDestinationSettings {
 public:
    FinderCustomDestinationSettings() = delete;

    /// The destinations of `kind`, as `FinderCustomDestinationFile` gives them, read afresh.
    [[nodiscard]] static std::vector<FinderCustomDestination> destinations(
        FinderCustomDestinationKind kind);
};

}  // namespace quorva
