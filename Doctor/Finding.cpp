#include "Doctor/Finding.hpp"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

#include "Doctor/NearMiss.hpp"
#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"
#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"
#include "QuorvaFinderExtension/FinderFeatureSettings.hpp"
#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"

namespace quorva::doctor {

namespace {

using Kind = SettingsFinding::Kind;
using IDs = std::vector<std::string_view>;

constexpr std::pair<Kind, FindingKind> kinds[] = {
    {Kind::missingFile, {"missingFile", Severity::note}},
    {Kind::unreadableFile, {"unreadableFile", Severity::finding}},
    {Kind::malformedFile, {"malformedFile", Severity::finding}},
    {Kind::wrongType, {"wrongType", Severity::finding}},
    {Kind::unknownKey, {"unknownKey", Severity::note}},
    {Kind::unknownLayout, {"unknownLayout", Severity::finding}},
    {Kind::unknownFeature, {"unknownFeature", Severity::finding}},
    {Kind::repeatedFeature, {"repeatedFeature", Severity::finding}},
    {Kind::appendedFeature, {"appendedFeature", Severity::note}},
    {Kind::ignoredFeatureOrder, {"ignoredFeatureOrder", Severity::finding, true}},
    {Kind::newFeature, {"newFeature", Severity::finding, true}},
    {Kind::unknownCommand, {"unknownCommand", Severity::finding}},
    {Kind::repeatedCommand, {"repeatedCommand", Severity::finding}},
    {Kind::appendedCommand, {"appendedCommand", Severity::note}},
    {Kind::replacedCommandOrder, {"replacedCommandOrder", Severity::finding}},
    {Kind::newCommand, {"newCommand", Severity::finding, true}},
    {Kind::featureWithoutCommands, {"featureWithoutCommands", Severity::finding, true}},
    {Kind::missingKey, {"missingKey", Severity::finding}},
    {Kind::emptyValue, {"emptyValue", Severity::finding}},
    {Kind::unknownKind, {"unknownKind", Severity::finding}},
    {Kind::catalogueApplication, {"catalogueApplication", Severity::finding}},
    {Kind::defaultApplication, {"defaultApplication", Severity::finding}},
    {Kind::missingApplication, {"missingApplication", Severity::note}},
    {Kind::numberedPreset, {"numberedPreset", Severity::note}},
};

bool isAboutFeatures(const SettingsFinding& finding) {
    return finding.fileName == "FeatureSettings.plist";
}

IDs featureIDs() {
    IDs ids;
    std::ranges::transform(allFinderFeatures, std::back_inserter(ids),
                           [](FinderFeature feature) { return rawValue(feature); });
    return ids;
}

/// The commands that can stand at `path`: those of one feature in its order, and else all.
IDs commandIDs(std::string_view path) {
    const std::string_view key = path.substr(0, path.rfind('['));
    const auto ordered = finderFeatureWithRawValue(key.substr(key.find('.') + 1));
    IDs ids;
    for (const FinderFeature feature : allFinderFeatures) {
        if (!ordered || feature == *ordered) {
            std::ranges::copy(childIDs(feature), std::back_inserter(ids));
        }
    }
    return ids;
}

/// The keys that are known where the finding has one that is not.
IDs knownKeys(const SettingsFinding& finding) {
    const auto listed = [](std::span<const std::string_view> keys) {
        return IDs(keys.begin(), keys.end());
    };
    if (isAboutFeatures(finding)) {
        return listed(featureSettingsKeys);
    }
    if (finding.fileName == "CustomShortcutActions.plist") {
        return listed(customActionKeys);
    }
    if (finding.fileName == "FinderViewPresets.plist") {
        return listed(viewPresetKeys);
    }
    if (finding.path != finding.value) {
        return listed(destinationKeys);
    }
    IDs keys;
    std::ranges::transform(allFinderCustomDestinationKinds, std::back_inserter(keys),
                           [](FinderCustomDestinationKind kind) { return rawValue(kind); });
    return keys;
}

/// What could stand where the finding has something unknown.
IDs candidates(const SettingsFinding& finding) {
    if (finding.kind == Kind::unknownKey) {
        return knownKeys(finding);
    }
    if (finding.kind == Kind::unknownFeature) {
        return featureIDs();
    }
    if (finding.kind == Kind::unknownCommand) {
        return commandIDs(finding.path);
    }
    if (finding.kind == Kind::unknownLayout) {
        return {rawValue(FinderMenuLayout::collapsed), rawValue(FinderMenuLayout::expanded)};
    }
    if (finding.kind == Kind::unknownKind) {
        return {rawValue(FinderCustomShortcutAction::Kind::shortcut),
                rawValue(FinderCustomShortcutAction::Kind::script)};
    }
    return {};
}

/// What is said of the unknown: what was probably meant, or what it is elsewhere.
std::string hint(const SettingsFinding& finding, std::string_view suggestion) {
    if (!suggestion.empty()) {
        return joined({": did you mean ", suggestion, "?"});
    }
    if (const auto feature = featureOfCommand(finding.value)) {
        return joined({": it is a command of ", rawValue(*feature)});
    }
    return finderFeatureWithRawValue(finding.value) ? ": it is a feature" : "";
}

std::string withArticle(std::string_view type) {
    const bool startsWithVowel = type.starts_with('a') || type.starts_with('i');
    return type == "data" ? "data" : joined({startsWithVowel ? "an " : "a ", type});
}

/// What is lost for a value of the wrong type.
std::string ignoredPart(const SettingsFinding& finding) {
    return isAboutFeatures(finding) && !finding.path.empty()
               ? finding.path.substr(0, finding.path.find_first_of(".["))
               : "the whole file";
}

std::string message(const SettingsFinding& finding, std::string_view suggestion) {
    const std::string& value = finding.value;
    const std::string& path = finding.path;
    const std::string colon = path.empty() ? "" : path + ": ";
    switch (finding.kind) {
        case Kind::missingFile:
            return "there is no such file, so the defaults apply";
        case Kind::unreadableFile:
            return joined({"the file can't be read, so the defaults apply: ", value});
        case Kind::malformedFile:
            return joined({"the file is not a property list, so the defaults apply: ", value});
        case Kind::wrongType:
            return joined({path.empty() ? "the root" : path, " is ", withArticle(value),
                           ", must be ", withArticle(finding.wanted), "; ", ignoredPart(finding),
                           " is ignored"});
        case Kind::unknownKey:
            return joined({path, " is a key that nothing reads", hint(finding, suggestion)});
        case Kind::unknownLayout:
            return joined({colon, value, " is not a layout", hint(finding, suggestion)});
        case Kind::unknownFeature:
            return joined({colon, value, " is not a feature", hint(finding, suggestion)});
        case Kind::repeatedFeature:
            return joined({colon, value, " is listed before; this time is ignored"});
        case Kind::appendedFeature:
            return joined({colon, value, " is not listed, and follows at the end"});
        case Kind::ignoredFeatureOrder:
            return joined(
                {path, " is ignored, because it counts only beside a usable enabledFeatureIDs"});
        case Kind::newFeature:
            return joined(
                {colon, value,
                 " is not listed, but shown, because featureOrder does not list it either"});
        case Kind::unknownCommand:
            return joined({colon, value, " is not a command",
                           path.contains('.') ? " of this feature" : "",
                           hint(finding, suggestion)});
        case Kind::repeatedCommand:
            return joined({colon, value, " is listed before, and shown once more"});
        case Kind::appendedCommand:
            return joined({colon, value, " is not listed, and follows at the end"});
        case Kind::replacedCommandOrder:
            return joined({path,
                           " lacks scheduleDelete1Hour or has it where it was first added, so the "
                           "default order replaces it"});
        case Kind::newCommand:
            return joined({colon, value,
                           " is not listed, but on, because childOrderByFeatureID does not list it "
                           "either"});
        case Kind::featureWithoutCommands:
            return joined({colon, "no command of ", value, " is listed, so all of them are on"});
        case Kind::missingKey:
            return joined({path, " is missing; the entry is dropped"});
        case Kind::emptyValue:
            return joined({path, " is empty; the entry is dropped"});
        case Kind::unknownKind:
            return joined({colon, value, " is not a kind, and taken for a shortcut",
                           hint(finding, suggestion)});
        case Kind::catalogueApplication:
            return joined(
                {colon, value, " is an editor that this list may not have; the entry is dropped"});
        case Kind::defaultApplication:
            return joined(
                {colon, value, " is an application that is always listed; the entry is dropped"});
        case Kind::missingApplication:
            return joined({"there is no ", value, ", so this default application is not shown"});
        case Kind::numberedPreset:
            return joined({colon, value, " is shown without its number"});
    }
    std::unreachable();
}

}  // namespace

std::optional<FinderFeature> featureOfCommand(std::string_view id) {
    for (const FinderFeature feature : allFinderFeatures) {
        const IDs ids = childIDs(feature);
        if (std::ranges::find(ids, id) != ids.end()) {
            return feature;
        }
    }
    return std::nullopt;
}

std::string joined(std::initializer_list<std::string_view> strings) {
    std::string result;
    std::ranges::for_each(strings, [&result](std::string_view string) { result += string; });
    return result;
}

FindingKind kindOf(SettingsFinding::Kind kind) {
    return std::ranges::find(kinds, kind, [](const auto& entry) { return entry.first; })->second;
}

bool dropsEntry(SettingsFinding::Kind kind) {
    return kind == Kind::missingKey || kind == Kind::emptyValue ||
           kind == Kind::catalogueApplication || kind == Kind::defaultApplication;
}

Finding described(const SettingsFinding& finding) {
    const std::string_view suggestion = nearMiss(finding.value, candidates(finding));
    const bool isMisspelledKey = finding.kind == Kind::unknownKey && !suggestion.empty();
    return {isMisspelledKey ? misspelledKey : kindOf(finding.kind), finding.path, finding.value,
            std::string(suggestion), message(finding, suggestion)};
}

}  // namespace quorva::doctor
