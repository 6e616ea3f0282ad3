#include "QuorvaFinderExtension/MenuItemResolution.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <utility>
#include <vector>

#include "QuorvaFinderExtension/DiagnosticLog.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"

namespace quorva {

namespace {

using ContextPointer = std::shared_ptr<const FinderActionContext>;

/// A context with neither selection nor target: both come from Finder at the click.
ContextPointer context(std::string actionID, std::string title, FinderFeatureAction action,
                       std::string destinationPath = {}, std::string presetID = {}) {
    return std::make_shared<const FinderActionContext>(
        std::move(actionID), std::move(title), action, FinderSelection(), std::nullopt,
        std::move(destinationPath), std::move(presetID));
}

ContextPointer openWithApplicationContext(const FinderCustomDestination& application) {
    return context(std::string(openWithApplicationActionID), application.name,
                   FinderFeatureAction::openWithApplicationPath(), application.path);
}

ContextPointer viewPresetContext(const FinderViewPresetSetting& preset) {
    return context(viewPresetIdentifier(preset), preset.name,
                   FinderFeatureAction::finderViewOption(), {}, preset.id);
}

/// The first of `entries` whose `field` equals `text`.
template <typename Entry>
std::optional<Entry> first(std::vector<Entry> entries, std::string Entry::* field,
                           std::string_view text) {
    const auto found = std::ranges::find(entries, text, field);
    if (found == entries.end()) {
        return std::nullopt;
    }
    return std::move(*found);
}

std::optional<FinderCustomDestination> application(std::string FinderCustomDestination::* field,
                                                   std::string_view text) {
    return first(
        FinderCustomDestinationSettings::destinations(FinderCustomDestinationKind::openApplication),
        field, text);
}

std::optional<FinderViewPresetSetting> viewPreset(std::string FinderViewPresetSetting::* field,
                                                  std::string_view text) {
    return first(FinderViewPresetSettings::presets(), field, text);
}

std::optional<FinderCustomShortcutAction> customAction(
    std::string FinderCustomShortcutAction::* field, std::string_view text) {
    return first(FinderCustomShortcutActionSettings::actions(), field, text);
}

/// What follows `prefix` in `text`. Absent when `text` does not start with it.
std::optional<std::string_view> afterPrefix(std::string_view text, std::string_view prefix) {
    if (!text.starts_with(prefix)) {
        return std::nullopt;
    }
    return text.substr(prefix.size());
}

const std::string* stringForKey(const PropertyList::Dictionary& dictionary, std::string_view key) {
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : found->second.string();
}

std::string stringForKey(const PropertyList::Dictionary& dictionary, std::string_view key,
                         const std::string& otherwise) {
    const std::string* const string = stringForKey(dictionary, key);
    return string == nullptr ? otherwise : *string;
}

/// The selection that a dictionary carries. A list that holds anything but texts is no selection.
FinderSelection selection(const PropertyList::Dictionary& dictionary) {
    const auto paths = dictionary.find("selectedPaths");
    if (paths == dictionary.end() || paths->second.array() == nullptr) {
        return {};
    }
    std::vector<FileURL> urls;
    for (const PropertyList& path : *paths->second.array()) {
        if (path.string() == nullptr) {
            return {};
        }
        urls.push_back(FileURL::file(*path.string()));
    }
    return urls;
}

ContextPointer actionContextFromDictionary(const PropertyList::Dictionary& dictionary,
                                           const std::string& itemTitle) {
    const std::string* const actionID = stringForKey(dictionary, "actionID");
    if (actionID == nullptr) {
        return nullptr;
    }
    const std::string targetedPath = stringForKey(dictionary, "targetedPath", "");
    // A view preset arrives here with an identifier that the catalogue does not know. Its kind of
    // action is never used, so any will do; this one has always been it.
    const FinderFeatureAction action = actionForID(*actionID).value_or(
        FinderFeatureAction::copyPath(FinderPathCopyFormat::fullPath));
    return std::make_shared<const FinderActionContext>(
        *actionID, stringForKey(dictionary, "title", itemTitle), action, selection(dictionary),
        targetedPath.empty() ? std::nullopt : std::optional(FileURL::file(targetedPath)),
        stringForKey(dictionary, "destinationPath", ""), stringForKey(dictionary, "presetID", ""));
}

/// The first catalogue command, in the order of the enumeration, for which `matches` holds.
template <typename Predicate>
std::optional<FinderFeatureChild> firstChild(Predicate matches) {
    for (const FinderFeature feature : allFinderFeatures) {
        for (FinderFeatureChild& child : children(feature)) {
            if (matches(child)) {
                return std::move(child);
            }
        }
    }
    return std::nullopt;
}

}  // namespace

ContextPointer actionContext(const MenuItem& item) {
    if (const auto* const attached = std::get_if<ContextPointer>(&item.representedObject)) {
        return *attached;
    }
    if (const auto* const attached =
            std::get_if<PropertyList::Dictionary>(&item.representedObject)) {
        return actionContextFromDictionary(*attached, item.title);
    }
    if (ContextPointer context = actionContextFromMenuIdentifier(item.identifier)) {
        return context;
    }
    if (ContextPointer context = actionContextFromMenuTag(item.tag)) {
        return context;
    }
    return actionContextFromMenuTitle(item.title);
}

ContextPointer actionContextFromMenuIdentifier(const std::optional<std::string>& identifier) {
    if (!identifier) {
        return nullptr;
    }
    if (const auto id = afterPrefix(*identifier, openWithApplicationIdentifierPrefix)) {
        const auto found = application(&FinderCustomDestination::id, *id);
        if (!found) {
            return nullptr;
        }
        appendDiagnosticLog("resolved open-with app from identifier=" + *identifier +
                            " destination=" + found->path);
        return openWithApplicationContext(*found);
    }
    if (ContextPointer context = customActionContext(*identifier)) {
        appendDiagnosticLog("resolved custom action from identifier=" + *identifier);
        return context;
    }
    if (const auto id = afterPrefix(*identifier, viewPresetIdentifierPrefix)) {
        const auto found = viewPreset(&FinderViewPresetSetting::id, *id);
        if (!found) {
            return nullptr;
        }
        appendDiagnosticLog("resolved view preset from identifier=" + *identifier);
        return viewPresetContext(*found);
    }
    return nullptr;
}

ContextPointer actionContextFromMenuTag(std::int64_t tag) {
    std::int64_t index = 0;
    if (__builtin_sub_overflow(tag, viewPresetTagBase, &index)) {
        std::abort();
    }
    const std::vector<FinderViewPresetSetting> presets = FinderViewPresetSettings::presets();
    if (index < 0 || std::cmp_greater_equal(index, presets.size())) {
        return nullptr;
    }
    const FinderViewPresetSetting& preset = presets[static_cast<std::size_t>(index)];
    appendDiagnosticLog("resolved view preset from tag=" + std::to_string(tag) +
                        " actionID=" + viewPresetIdentifier(preset));
    return viewPresetContext(preset);
}

ContextPointer actionContextFromMenuTitle(const std::string& title) {
    if (const auto found = customAction(&FinderCustomShortcutAction::name, title)) {
        const std::string actionID = customActionIdentifier(*found);
        appendDiagnosticLog("resolved custom action from title=" + title + " actionID=" + actionID);
        return context(actionID, title, FinderFeatureAction::requiresSelection());
    }
    if (const auto found = application(&FinderCustomDestination::name, title)) {
        appendDiagnosticLog("resolved open-with app from title=" + title +
                            " destination=" + found->path);
        return openWithApplicationContext(*found);
    }
    if (const auto found = viewPreset(&FinderViewPresetSetting::name, title)) {
        appendDiagnosticLog("resolved view preset from title=" + title +
                            " actionID=" + viewPresetIdentifier(*found));
        return viewPresetContext(*found);
    }
    if (const auto child = firstChild(
            [&title](const FinderFeatureChild& candidate) { return candidate.title == title; })) {
        return context(child->actionID, child->title, child->action);
    }
    return nullptr;
}

ContextPointer customActionContext(std::string_view actionID) {
    auto id = afterPrefix(actionID, runShortcutIdentifierPrefix);
    if (!id) {
        id = afterPrefix(actionID, runScriptIdentifierPrefix);
    }
    if (!id) {
        return nullptr;
    }
    const auto found = customAction(&FinderCustomShortcutAction::id, *id);
    if (!found) {
        return nullptr;
    }
    return context(std::string(actionID), found->name, FinderFeatureAction::requiresSelection());
}

std::optional<FinderFeatureAction> actionForID(std::string_view actionID) {
    if (actionID == openWithApplicationActionID) {
        return FinderFeatureAction::openWithApplicationPath();
    }
    const auto child = firstChild(
        [actionID](const FinderFeatureChild& candidate) { return candidate.actionID == actionID; });
    return child ? std::optional(child->action) : std::nullopt;
}

}  // namespace quorva
