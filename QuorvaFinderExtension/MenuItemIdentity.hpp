#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"
#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"
#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"

/// How an item says which entry it is, besides its attached object: an identifier made of a prefix
/// and the entry's own id, and a tag that counts view presets. The builders of the menu write it,
/// the resolution of a click reads it.
namespace quorva {

inline constexpr std::string_view openWithApplicationIdentifierPrefix = "openWithApplicationPath__";
inline constexpr std::string_view runShortcutIdentifierPrefix = "runShortcut__";
inline constexpr std::string_view runScriptIdentifierPrefix = "runScript__";
inline constexpr std::string_view viewPresetIdentifierPrefix = "finderViewPreset__";

/// The tag of the first view preset.
inline constexpr std::int64_t viewPresetTagBase = 700000;

/// The action identifiers of entries that are not catalogue commands.
inline constexpr std::string_view openWithApplicationActionID = "openWithApplicationPath";
inline constexpr std::string_view quickOpenPathActionID = "quickOpenPath";
inline constexpr std::string_view copyFilesToFolderActionID = "copyFilesToFolder";
inline constexpr std::string_view moveFilesToFolderActionID = "moveFilesToFolder";

/// The identifier of the item that opens with `application`.
inline std::string openWithApplicationIdentifier(const FinderCustomDestination& application) {
    return std::string(openWithApplicationIdentifierPrefix).append(application.id);
}

/// The identifier of the item that runs `action`, which is its action identifier too.
inline std::string customActionIdentifier(const FinderCustomShortcutAction& action) {
    const bool isScript = action.kind == FinderCustomShortcutAction::Kind::script;
    return std::string(isScript ? runScriptIdentifierPrefix : runShortcutIdentifierPrefix)
        .append(action.id);
}

/// The identifier of the item that applies `preset`, which is its action identifier too.
inline std::string viewPresetIdentifier(const FinderViewPresetSetting& preset) {
    return std::string(viewPresetIdentifierPrefix).append(preset.id);
}

}  // namespace quorva
