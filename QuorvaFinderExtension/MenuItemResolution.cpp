#include "QuorvaFinderExtension/MenuItemResolution.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <utility>
#include <vector>

#include "QuorvaFinderExtension/DiagnosticLog.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

namespace quorva {

namespace {

/// A context with neither selection nor target: both come from Finder at the click.
FinderActionContextPointer context(std::string actionID, std::string title,
                                   FinderFeatureAction action, std::string destinationPath = {},
                                   std::string presetID = {}) {
    return std::make_shared<const FinderActionContext>(
        std::move(actionID), std::move(title), action, FinderSelection(), std::nullopt,
        std::move(destinationPath), std::move(presetID));
}

FinderActionContextPointer openWithApplicationContext(const FinderCustomDestination& application) {
    return context(std::string(openWithApplicationActionID), application.name,
                   FinderFeatureAction::openWithApplicationPath(), application.path);
}

FinderActionContextPointer viewPresetContext(const FinderViewPresetSetting& preset) {
    return context(viewPresetIdentifier(preset), preset.name,
                   FinderFeatureAction::finderViewOption(), {}, preset.id);
}

FinderActionContextPointer customActionContext(const FinderCustomShortcutAction& action,
                                               std::string actionID) {
    return context(std::move(actionID), action.name, FinderFeatureAction::requiresSelection());
}

/// The first of `entries` whose `id` is `id`, null when none is.
template <typename Entry>
const Entry* entryWithID(const std::vector<Entry>& entries, std::string_view id) {
    const auto found = std::ranges::find(entries, id, &Entry::id);
    return found == entries.end() ? nullptr : &*found;
}

/// What follows `prefix` in `text`. Absent when `text` does not start with it.
std::optional<std::string_view> afterPrefix(std::string_view text, std::string_view prefix) {
    if (!text.starts_with(prefix)) {
        return std::nullopt;
    }
    return text.substr(prefix.size());
}

std::string stringForKey(const PropertyList::Dictionary& dictionary, std::string_view key,
                         const std::string& otherwise) {
    const std::string* const string = quorva::stringForKey(dictionary, key);
    return string == nullptr ? otherwise : *string;
}

/// The selection that a dictionary carries. A list that holds anything but strings is not a
/// selection.
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

FinderActionContextPointer actionContextFromDictionary(const PropertyList::Dictionary& dictionary,
                                                       const std::string& itemTitle) {
    const std::string* const actionID = stringForKey(dictionary, "actionID");
    if (actionID == nullptr) {
        return nullptr;
    }
    const std::string targetedPath = stringForKey(dictionary, "targetedPath", "");
    // A view preset arrives here with an identifier that the catalogue does not know. Its kind of
    // action is never used, so any will do; this is the one it has always had.
    const FinderFeatureAction action = actionForID(*actionID).value_or(
        FinderFeatureAction::copyPath(FinderPathCopyFormat::fullPath));
    return std::make_shared<const FinderActionContext>(
        *actionID, stringForKey(dictionary, "title", itemTitle), action, selection(dictionary),
        targetedPath.empty() ? std::nullopt : std::optional(FileURL::file(targetedPath)),
        stringForKey(dictionary, "destinationPath", ""), stringForKey(dictionary, "presetID", ""));
}

/// Gives each title in `meanings` that has no meaning yet the first of `entries` that has it, with
/// the context that `makeContext` makes of it. Returns how many it gave.
template <typename Entries, typename Title, typename MakeContext>
std::size_t takeTitles(TitleMeanings& meanings, const Entries& entries, Title title,
                       TitleMeaning::Source source, MakeContext makeContext) {
    std::size_t taken = 0;
    for (const auto& entry : entries) {
        const auto found = meanings.find(std::string_view(std::invoke(title, entry)));
        if (found != meanings.end() && found->second.source == TitleMeaning::Source::nothing) {
            found->second.source = source;
            found->second.context = makeContext(entry);
            ++taken;
        }
    }
    return taken;
}

}  // namespace

FinderActionContextPointer actionContext(const MenuItem& item, const SettingsReading& settings) {
    if (const auto* const attached =
            std::get_if<FinderActionContextPointer>(&item.representedObject)) {
        return *attached;
    }
    if (const auto* const dictionary =
            std::get_if<PropertyList::Dictionary>(&item.representedObject)) {
        return actionContextFromDictionary(*dictionary, item.title);
    }
    if (auto context = actionContextFromMenuIdentifier(item.identifier, settings)) {
        return context;
    }
    if (auto context = actionContextFromMenuTag(item.tag, settings)) {
        return context;
    }
    return actionContextFromMenuTitle(item.title, settings);
}

FinderActionContextPointer actionContextFromMenuIdentifier(
    const std::optional<std::string>& identifier, const SettingsReading& settings) {
    if (!identifier) {
        return nullptr;
    }
    if (const auto id = afterPrefix(*identifier, openWithApplicationIdentifierPrefix)) {
        const FinderCustomDestination* const application =
            entryWithID(settings.destinations(FinderCustomDestinationKind::openApplication), *id);
        if (application == nullptr) {
            return nullptr;
        }
        appendDiagnosticLog("resolved open-with app from identifier=" + *identifier +
                            " destination=" + application->path);
        return openWithApplicationContext(*application);
    }
    if (auto context = customActionContext(*identifier, settings)) {
        appendDiagnosticLog("resolved custom action from identifier=" + *identifier);
        return context;
    }
    if (const auto id = afterPrefix(*identifier, viewPresetIdentifierPrefix)) {
        const FinderViewPresetSetting* const preset = entryWithID(settings.viewPresets(), *id);
        if (preset == nullptr) {
            return nullptr;
        }
        appendDiagnosticLog("resolved view preset from identifier=" + *identifier);
        return viewPresetContext(*preset);
    }
    return nullptr;
}

FinderActionContextPointer actionContextFromMenuTag(std::int64_t tag,
                                                    const SettingsReading& settings) {
    std::int64_t index = 0;
    if (__builtin_sub_overflow(tag, viewPresetTagBase, &index)) {
        std::abort();
    }
    if (index < 0) {
        return nullptr;
    }
    const std::vector<FinderViewPresetSetting>& presets = settings.viewPresets();
    if (std::cmp_greater_equal(index, presets.size())) {
        return nullptr;
    }
    const FinderViewPresetSetting& preset = presets[static_cast<std::size_t>(index)];
    appendDiagnosticLog("resolved view preset from tag=" + std::to_string(tag) +
                        " actionID=" + viewPresetIdentifier(preset));
    return viewPresetContext(preset);
}

FinderActionContextPointer actionContextFromMenuTitle(const std::string& title,
                                                      const SettingsReading& settings) {
    TitleMeanings meanings = {{title, {}}};
    findTitleMeanings(meanings, settings);
    const TitleMeaning& meaning = meanings.begin()->second;
    const FinderActionContextPointer& context = meaning.context;
    switch (meaning.source) {
        case TitleMeaning::Source::customAction:
            appendDiagnosticLog("resolved custom action from title=" + title +
                                " actionID=" + context->actionID());
            break;
        case TitleMeaning::Source::application:
            appendDiagnosticLog("resolved open-with app from title=" + title +
                                " destination=" + context->destinationPath());
            break;
        case TitleMeaning::Source::viewPreset:
            appendDiagnosticLog("resolved view preset from title=" + title +
                                " actionID=" + context->actionID());
            break;
        case TitleMeaning::Source::command:
        case TitleMeaning::Source::nothing:
            break;
    }
    return context;
}

void findTitleMeanings(TitleMeanings& meanings, const SettingsReading& settings) {
    using Source = TitleMeaning::Source;
    std::size_t unknown = meanings.size();
    if (unknown == 0) {
        return;
    }
    unknown -= takeTitles(meanings, settings.customActions(), &FinderCustomShortcutAction::name,
                          Source::customAction, [](const FinderCustomShortcutAction& action) {
                              return customActionContext(action, customActionIdentifier(action));
                          });
    if (unknown == 0) {
        return;
    }
    unknown -=
        takeTitles(meanings, settings.destinations(FinderCustomDestinationKind::openApplication),
                   &FinderCustomDestination::name, Source::application, openWithApplicationContext);
    if (unknown == 0) {
        return;
    }
    unknown -= takeTitles(meanings, settings.viewPresets(), &FinderViewPresetSetting::name,
                          Source::viewPreset, viewPresetContext);
    if (unknown == 0) {
        return;
    }
    for (const FinderFeature feature : allFinderFeatures) {
        unknown -= takeTitles(meanings, settings.commands(feature), &FinderFeatureChild::title,
                              Source::command, [](const FinderFeatureChild& child) {
                                  return context(child.actionID, child.title, child.action);
                              });
        if (unknown == 0) {
            return;
        }
    }
}

FinderActionContextPointer customActionContext(std::string_view actionID,
                                               const SettingsReading& settings) {
    auto id = afterPrefix(actionID, runShortcutIdentifierPrefix);
    if (!id) {
        id = afterPrefix(actionID, runScriptIdentifierPrefix);
    }
    if (!id) {
        return nullptr;
    }
    const FinderCustomShortcutAction* const action = entryWithID(settings.customActions(), *id);
    return action == nullptr ? nullptr : customActionContext(*action, std::string(actionID));
}

std::optional<FinderFeatureAction> actionForID(std::string_view actionID) {
    if (actionID == openWithApplicationActionID) {
        return FinderFeatureAction::openWithApplicationPath();
    }
    for (const FinderFeature feature : allFinderFeatures) {
        for (const FinderFeatureChild& child : children(feature)) {
            if (child.actionID == actionID) {
                return child.action;
            }
        }
    }
    return std::nullopt;
}

}  // namespace quorva
