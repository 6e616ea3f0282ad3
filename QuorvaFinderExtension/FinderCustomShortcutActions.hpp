#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QuorvaFinderExtension/SettingsFinding.hpp"

namespace quorva {

/// An action of the user's own: a system shortcut or a script, run on the selected items by the
/// containing application.
struct FinderCustomShortcutAction {
    enum class Kind {
        /// Runs the shortcut named `shortcutName`.
        shortcut,
        /// Runs the script at `scriptPath`.
        script,
    };

    std::string id;
    /// The title in the menu; may be empty.
    std::string name;
    Kind kind;
    /// Empty when not given; kept whatever the kind.
    std::string shortcutName;
    /// Empty when not given; kept whatever the kind.
    std::string scriptPath;

    friend bool operator==(const FinderCustomShortcutAction&,
                           const FinderCustomShortcutAction&) = default;
};

/// "shortcut" or "script", as in the settings file.
[[nodiscard]] std::string_view rawValue(FinderCustomShortcutAction::Kind kind);

/// The kind whose raw value is `rawValue`, to the letter. Absent for any other string.
[[nodiscard]] std::optional<FinderCustomShortcutAction::Kind>
finderCustomShortcutActionKindWithRawValue(std::string_view rawValue);

/// The keys of an entry of "CustomShortcutActions.plist".
inline constexpr std::array<std::string_view, 5> customActionKeys = {"id", "name", "kind",
                                                                     "shortcutName", "scriptPath"};

/// The reader of "CustomShortcutActions.plist": a list of dictionaries of strings.
class FinderCustomShortcutActionSettings {
 public:
    FinderCustomShortcutActionSettings() = delete;

    /// The user's actions in the order in which they are shown, read afresh.
    ///
    /// Never fails. Empty when there is no usable file (one value of the wrong type anywhere makes
    /// the whole file unusable). An entry without "id" or "name", or with nothing to run for its
    /// kind, is skipped; a kind that is missing or unknown is a shortcut.
    [[nodiscard]] static std::vector<FinderCustomShortcutAction> actions(
        SettingsFindings* findings = nullptr);
};

}  // namespace quorva

/// Over every field, in their order.
template <>
struct std::hash<quorva::FinderCustomShortcutAction> {
    std::size_t operator()(const quorva::FinderCustomShortcutAction& action) const noexcept;
};
