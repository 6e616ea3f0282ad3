#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "QuorvaFinderExtension/FinderFeature.hpp"
#include "QuorvaFinderExtension/SettingsFinding.hpp"

namespace quorva::doctor {

enum class Severity {
    /// The settings say something that the menu does not do, or what is clicked is ambiguous.
    finding,
    /// As designed: there is nothing to mend.
    note,
};

struct FindingKind {
    /// As in JSON and in the documentation.
    std::string_view name;
    Severity severity;
    /// Whether it mostly follows from a finding of another kind, and so stands behind those.
    bool isConsequence = false;
};

/// The kind of what a reader of the settings has found.
[[nodiscard]] FindingKind kindOf(SettingsFinding::Kind kind);

/// Whether what is told costs the entry that it is about.
[[nodiscard]] bool dropsEntry(SettingsFinding::Kind kind);

// What no reader looks at, because it shows in the menu only.

/// A key that no reader knows, and that is nearly one that it does.
inline constexpr FindingKind misspelledKey = {"misspelledKey", Severity::finding};
/// A file that nothing reads, whose name is nearly that of a settings file that is missing.
inline constexpr FindingKind misnamedFile = {"misnamedFile", Severity::finding};
inline constexpr FindingKind relativePath = {"relativePath", Severity::note};
inline constexpr FindingKind sharedID = {"sharedID", Severity::finding};
inline constexpr FindingKind emptySubmenu = {"emptySubmenu", Severity::finding};
inline constexpr FindingKind hiddenDestination = {"hiddenDestination", Severity::note};
inline constexpr FindingKind absentApplication = {"absentApplication", Severity::note};
inline constexpr FindingKind sharedTitle = {"sharedTitle", Severity::note};

/// What is reported of a settings file.
struct Finding {
    FindingKind kind;
    /// Where in the file, as in "copy[2].path". Empty for the root.
    std::string path;
    /// What was found there; the table of the kinds says what. Empty where it says nothing.
    std::string value;
    /// What was probably meant. Empty where that can't be told.
    std::string suggestion;
    /// The whole of it as a sentence, without the name of the file.
    std::string message;
};

/// `finding` in words, with what was probably meant.
[[nodiscard]] Finding described(const SettingsFinding& finding);

/// The feature that has the command `id`. Absent when none has.
[[nodiscard]] std::optional<FinderFeature> featureOfCommand(std::string_view id);

/// The strings one after the other.
[[nodiscard]] std::string joined(std::initializer_list<std::string_view> strings);

}  // namespace quorva::doctor
