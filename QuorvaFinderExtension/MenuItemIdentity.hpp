#pragma once

#include <cstdint>
#include <string_view>

/// How an item says which entry it is, besides its attached object: identifiers of a prefix and the
/// entry's own id, and tags that count view presets. The builders write it, the resolution of a
/// click reads it.
namespace quorva {

inline constexpr std::string_view openWithApplicationIdentifierPrefix = "openWithApplicationPath__";
inline constexpr std::string_view runShortcutIdentifierPrefix = "runShortcut__";
inline constexpr std::string_view runScriptIdentifierPrefix = "runScript__";
inline constexpr std::string_view viewPresetIdentifierPrefix = "finderViewPreset__";

/// The tag of the first view preset.
inline constexpr std::int64_t viewPresetTagBase = 700000;

/// The action identifiers of entries that are not in the catalogue.
inline constexpr std::string_view openWithApplicationActionID = "openWithApplicationPath";
inline constexpr std::string_view quickOpenPathActionID = "quickOpenPath";
inline constexpr std::string_view copyFilesToFolderActionID = "copyFilesToFolder";
inline constexpr std::string_view moveFilesToFolderActionID = "moveFilesToFolder";

}  // namespace quorva
