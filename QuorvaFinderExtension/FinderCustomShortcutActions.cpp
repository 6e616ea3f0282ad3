#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"

#include <array>
#include <utility>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/RawValue.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

namespace quorva {

namespace {

using Kind = FinderCustomShortcutAction::Kind;

std::string stringOrEmpty(const PropertyList::Dictionary& entry, std::string_view key) {
    const std::string* const string = stringForKey(entry, key);
    return string == nullptr ? std::string() : *string;
}

std::optional<FinderCustomShortcutAction> action(const PropertyList::Dictionary& entry) {
    const std::string* const id = stringForKey(entry, "id");
    const std::string* const name = stringForKey(entry, "name");
    if (id == nullptr || name == nullptr) {
        return std::nullopt;
    }
    FinderCustomShortcutAction action = {
        .id = *id,
        .name = *name,
        .kind = finderCustomShortcutActionKindWithRawValue(stringOrEmpty(entry, "kind"))
                    .value_or(Kind::shortcut),
        .shortcutName = stringOrEmpty(entry, "shortcutName"),
        .scriptPath = stringOrEmpty(entry, "scriptPath"),
    };
    const std::string& runTarget =
        action.kind == Kind::script ? action.scriptPath : action.shortcutName;
    if (runTarget.empty()) {
        return std::nullopt;
    }
    return action;
}

}  // namespace

std::string_view rawValue(Kind kind) {
    return kind == Kind::script ? "script" : "shortcut";
}

std::optional<Kind> finderCustomShortcutActionKindWithRawValue(std::string_view rawValue) {
    return caseWithRawValue(std::array{Kind::shortcut, Kind::script}, rawValue);
}

std::vector<FinderCustomShortcutAction> FinderCustomShortcutActionSettings::actions() {
    const std::optional<PropertyList> root =
        propertyListInFile(settingsFileURL("CustomShortcutActions.plist"));
    const PropertyList::Array* const entries = root ? stringDictionaries(*root) : nullptr;
    return entries == nullptr ? std::vector<FinderCustomShortcutAction>()
                              : validEntries(*entries, action);
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
