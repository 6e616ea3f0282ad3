#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"

#include <array>
#include <utility>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/RawValue.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

namespace quorva {

namespace {

using Finding = SettingsFinding::Kind;
using Kind = FinderCustomShortcutAction::Kind;

std::string stringOrEmpty(const PropertyList::Dictionary& entry, std::string_view key) {
    const std::string* const string = stringForKey(entry, key);
    return string == nullptr ? std::string() : *string;
}

Kind kindOfEntry(const SettingsPath& path, const PropertyList::Dictionary& entry) {
    const std::string* const name = stringForKey(entry, "kind");
    if (name == nullptr) {
        return Kind::shortcut;
    }
    const std::optional<Kind> kind = finderCustomShortcutActionKindWithRawValue(*name);
    if (!kind) {
        path["kind"].report(Finding::unknownKind, *name);
    }
    return kind.value_or(Kind::shortcut);
}

std::optional<FinderCustomShortcutAction> action(const SettingsPath& path,
                                                 const PropertyList::Dictionary& entry) {
    path.reportUnknownKeys(entry, customActionKeys);
    const std::string* const id = requiredStringForKey(path, entry, "id");
    const std::string* const name = requiredStringForKey(path, entry, "name");
    const Kind kind = kindOfEntry(path, entry);
    const std::string_view runTargetKey = kind == Kind::script ? "scriptPath" : "shortcutName";
    const std::string* const runTarget = requiredStringForKey(path, entry, runTargetKey);
    if (id == nullptr || name == nullptr || runTarget == nullptr) {
        return std::nullopt;
    }
    if (runTarget->empty()) {
        path[runTargetKey].report(Finding::emptyValue);
        return std::nullopt;
    }
    return FinderCustomShortcutAction{
        .id = *id,
        .name = *name,
        .kind = kind,
        .shortcutName = stringOrEmpty(entry, "shortcutName"),
        .scriptPath = stringOrEmpty(entry, "scriptPath"),
    };
}

}  // namespace

std::string_view rawValue(Kind kind) {
    return kind == Kind::script ? "script" : "shortcut";
}

std::optional<Kind> finderCustomShortcutActionKindWithRawValue(std::string_view rawValue) {
    return caseWithRawValue(std::array{Kind::shortcut, Kind::script}, rawValue);
}

std::vector<FinderCustomShortcutAction> FinderCustomShortcutActionSettings::actions(
    SettingsFindings* findings) {
    const SettingsPath file("CustomShortcutActions.plist", findings);
    const std::optional<PropertyList> root = propertyListInFile(file);
    const PropertyList::Array* const entries = root ? stringDictionaries(file, *root) : nullptr;
    return entries == nullptr ? std::vector<FinderCustomShortcutAction>()
                              : validEntries(file, *entries, action);
}

}  // namespace quorva

std::size_t std::hash<quorva::FinderCustomShortcutAction>::operator()(
    const quorva::FinderCustomShortcutAction& action) const noexcept {
    std::size_t result = 0;
    for (const std::string_view field :
         {std::string_view(action.id), std::string_view(action.name), quorva::rawValue(action.kind),
          std::string_view(action.shortcutName), std::string_view(action.scriptPath)}) {
        result = result * 31 + std::hash<std::string_view>()(field);
    }
    return result;
}
