#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorva {

/// A difference between what a settings file says and what is made of it. The readers repair, drop
/// and complete without a word; this is what they tell whoever asks why the menu is as it is.
struct SettingsFinding {
    enum class Kind {
        // About the whole file, with an empty path.

        /// There is no file. `value` says so in the system's words.
        missingFile,
        /// There is something, but it can't be read, is not a file, or is too large. `value` says
        /// why.
        unreadableFile,
        /// The file is not a property list. `value` says why.
        malformedFile,

        // About any value.

        /// The value is a `value` and not a `wanted`, both as `typeName` has them. It costs the
        /// whole file or, below the root of the settings of the features, its whole key.
        wrongType,
        /// No reader knows the key `value`, which is the last one of the path.
        unknownKey,

        // About the settings of the features.

        /// The layout `value` is not one, so the default stands.
        unknownLayout,
        /// `value` is not a feature, and is ignored.
        unknownFeature,
        /// The order has named the feature `value` before; this time is ignored.
        repeatedFeature,
        /// The feature `value` is not in the saved order and follows at its end.
        appendedFeature,
        /// The order is not consulted, because the file does not list the enabled features.
        ignoredFeatureOrder,
        /// The feature `value` is not among the enabled ones, but shown: it is on by default, and
        /// the saved order does not know it.
        newFeature,
        /// `value` is not a command, or not one of the feature, and is ignored.
        unknownCommand,
        /// The order has named the command `value` before; it is shown once more.
        repeatedCommand,
        /// The command `value` is not in the saved order and follows at its end.
        appendedCommand,
        /// The saved order is older than one of the commands, or has it where it was added then, so
        /// the order of the catalogue replaces it.
        replacedCommandOrder,
        /// The command `value` is not among the enabled ones, but on: it is so by default, and no
        /// saved order knows it.
        newCommand,
        /// The visible feature `value` has no enabled command, so all of its commands are on.
        featureWithoutCommands,

        // About the entries of the other files.

        /// The entry lacks the key, the last one of the path, and is dropped.
        missingKey,
        /// What the entry runs is empty, so it is dropped.
        emptyValue,
        /// The kind `value` is not one, so the entry is taken for a shortcut.
        unknownKind,
        /// The application `value` is one that the catalogue knows, so the entry is dropped.
        catalogueApplication,
        /// The application `value` shares its identifier or its path with an installed one that is
        /// always shown, so the entry is dropped.
        defaultApplication,
        /// The default application at `value` is not installed, and not shown.
        missingApplication,
        /// The number at the end of the preset's name `value` is not shown.
        numberedPreset,
    };

    Kind kind;
    /// The name of the file, without its folder. A literal.
    std::string_view fileName;
    /// Where in the file, as in "copy[2].path". Empty for the root.
    std::string path;
    /// What was found there, as `kind` says. Empty where it says nothing.
    std::string value;
    /// A literal; empty but for `wrongType`.
    std::string_view wanted;

    friend bool operator==(const SettingsFinding&, const SettingsFinding&) = default;
};

/// What the readers append to, in the order in which they come across it.
using SettingsFindings = std::vector<SettingsFinding>;

}  // namespace quorva
