#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"

#include <optional>
#include <utility>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/SettingsFolder.hpp"

namespace quorva {

namespace {

std::string textForKey(const StringDictionary& entry, std::string_view key) {
    const std::string* const text = valueForKey(entry, key);
    return text == nullptr ? std::string() : *text;
}

std::optional<FinderCustomShortcutAction> action(const StringDictionary& entry) {
    using Kind = FinderCustomShortcutAction::Kind;
    const std::string* const id = valueForKey(entry, "id");
    const std::string* const name = valueForKey(entry, "name");
    if (id == nullptr || name == nullptr) {
        return std::nullopt;
    }
    FinderCustomShortcutAction action = {
        .id = *id,
        .name = *name,
        .kind = textForKey(entry, "kind") == "script" ? Kind::script : Kind::shortcut,
        .shortcutName = textForKey(entry, "shortcutName"),
        .scriptPath = textForKey(entry, "scriptPath"),
    };
    const std::string& runTarget =
        action.kind == Kind::script ? action.scriptPath : action.shortcutName;
    if (runTarget.empty()) {
        return std::nullopt;
    }
    return action;
}

}  // namespace

std::vector<FinderCustomShortcutAction> FinderCustomShortcutActionSettings::actions() {
    const std::optional<PropertyList> root =
        propertyListInFile(settingsFileURL("CustomShortcutActions.plist"));
    const auto entries = root ? stringDictionaries(*root) : std::nullopt;
    if (!entries) {
        return {};
    }
    std::vector<FinderCustomShortcutAction> actions;
    for (const StringDictionary& entry : *entries) {
        if (auto valid = action(entry)) {
            actions.push_back(*std::move(valid));
        }
    }
    return actions;
}

}  // namespace quorva
