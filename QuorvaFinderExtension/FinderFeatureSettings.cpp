#include "QuorvaFinderExtension/FinderFeatureSettings.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"
#include "QuorvaFinderExtension/RawValue.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

namespace quorva {

namespace {

using Finding = SettingsFinding::Kind;
using IDs = std::vector<std::string>;
using IDSet = std::set<std::string, std::less<>>;
using IDsByFeatureID = std::map<std::string, IDs, std::less<>>;

constexpr std::array<FinderFeature, 14> defaultOrderedFeatures = {
    FinderFeature::quickOpen,         FinderFeature::createFile,     FinderFeature::organizeFile,
    FinderFeature::copyFile,          FinderFeature::batchRename,    FinderFeature::archiveTools,
    FinderFeature::scheduledDeletion, FinderFeature::imageTools,     FinderFeature::pdfTools,
    FinderFeature::copyPath,          FinderFeature::openWith,       FinderFeature::viewOptions,
    FinderFeature::customActions,     FinderFeature::developerTools,
};

/// The order of the deletion commands before there was one for an hour, as it was saved once that
/// command had been added behind the others.
constexpr std::string_view legacyScheduledDeletionOrder[] = {
    "scheduleDelete7Days",
    "scheduleDelete30Days",
    "scheduleDelete90Days",
    "scheduleDelete1Hour",
};

bool isEnabledByDefault(FinderFeature feature) {
    return feature != FinderFeature::developerTools;
}

/// Two of these are not catalogue commands: they stand for the destination submenus, and stay in
/// the set as long as no saved list replaces it.
IDSet defaultEnabledChildIDs() {
    IDSet ids = {std::string(copyFilesToFolderActionID), std::string(moveFilesToFolderActionID)};
    for (const FinderFeature feature : allFinderFeatures) {
        const std::vector<std::string_view> enabled = childIDsEnabledByDefault(feature);
        ids.insert(enabled.begin(), enabled.end());
    }
    return ids;
}

template <typename Range>
bool contains(const Range& range, const auto& value) {
    return std::ranges::find(range, value) != std::ranges::end(range);
}

/// The value under `key` of the file as `convert` understands it; one that it does not counts as
/// absent.
template <typename Convert>
auto value(const SettingsPath& file, const PropertyList::Dictionary& root, std::string_view key,
           Convert convert) -> std::invoke_result_t<Convert, SettingsPath, const PropertyList&> {
    const auto found = root.find(key);
    if (found == root.end()) {
        return {};
    }
    return convert(file[key], found->second);
}

std::optional<IDs> ids(const SettingsPath& path, const PropertyList& value) {
    const PropertyList::Array* const array = arrayAt(path, value);
    if (array == nullptr) {
        return std::nullopt;
    }
    IDs ids;
    ids.reserve(array->size());
    for (const PropertyList& element : *array) {
        const std::string* const id = stringAt(path[ids.size()], element);
        if (id == nullptr) {
            return std::nullopt;
        }
        ids.push_back(*id);
    }
    return ids;
}

std::optional<IDsByFeatureID> idsByFeatureID(const SettingsPath& path, const PropertyList& value) {
    const PropertyList::Dictionary* const dictionary = dictionaryAt(path, value);
    if (dictionary == nullptr) {
        return std::nullopt;
    }
    IDsByFeatureID result;
    for (const auto& [featureID, element] : *dictionary) {
        std::optional<IDs> featureChildIDs = ids(path[featureID], element);
        if (!featureChildIDs) {
            return std::nullopt;
        }
        result.emplace(featureID, *std::move(featureChildIDs));
    }
    return result;
}

std::optional<bool> boolean(const SettingsPath& path, const PropertyList& value) {
    const bool* const boolean = booleanAt(path, value);
    return boolean == nullptr ? std::nullopt : std::optional(*boolean);
}

std::optional<FinderMenuLayout> layout(const SettingsPath& path, const PropertyList& value) {
    const std::string* const name = stringAt(path, value);
    if (name == nullptr) {
        return std::nullopt;
    }
    const std::optional<FinderMenuLayout> layout = finderMenuLayoutWithRawValue(*name);
    if (!layout) {
        path.report(Finding::unknownLayout, *name);
    }
    return layout;
}

std::vector<FinderFeature> defaultFeatures() {
    std::vector<FinderFeature> features;
    std::ranges::copy_if(defaultOrderedFeatures, std::back_inserter(features), isEnabledByDefault);
    return features;
}

/// The features that are on by default and that an older saved order did not know about.
IDSet newFeatureIDs(const IDs& savedOrder) {
    IDSet result;
    if (savedOrder.empty()) {
        return result;
    }
    const IDSet saved(savedOrder.begin(), savedOrder.end());
    for (const FinderFeature feature : defaultOrderedFeatures) {
        if (isEnabledByDefault(feature) && !saved.contains(rawValue(feature))) {
            result.emplace(rawValue(feature));
        }
    }
    return result;
}

std::vector<FinderFeature> normalizedFeatureOrder(const SettingsPath& path, const IDs& saved) {
    std::vector<FinderFeature> order;
    const auto isNamed = [&order](FinderFeature feature) { return contains(order, feature); };
    for (std::size_t index = 0; index < saved.size(); ++index) {
        const std::optional<FinderFeature> feature = finderFeatureWithRawValue(saved[index]);
        if (!feature) {
            path[index].report(Finding::unknownFeature, saved[index]);
        } else if (isNamed(*feature)) {
            path[index].report(Finding::repeatedFeature, saved[index]);
        } else {
            order.push_back(*feature);
        }
    }
    for (const FinderFeature feature : defaultOrderedFeatures) {
        if (!isNamed(feature)) {
            order.push_back(feature);
            if (!saved.empty()) {
                path.report(Finding::appendedFeature, rawValue(feature));
            }
        }
    }
    return order;
}

IDs normalizedChildOrder(const SettingsPath& path, const IDs* saved, FinderFeature feature) {
    const std::vector<std::string_view> catalogue = childIDs(feature);
    IDs defaults(catalogue.begin(), catalogue.end());
    if (saved == nullptr) {
        return defaults;
    }
    if (feature == FinderFeature::scheduledDeletion &&
        (!contains(*saved, "scheduleDelete1Hour") ||
         std::ranges::equal(*saved, legacyScheduledDeletionOrder))) {
        path.report(Finding::replacedCommandOrder);
        return defaults;
    }
    IDs order;
    IDSet kept;
    for (std::size_t index = 0; index < saved->size(); ++index) {
        const std::string& id = (*saved)[index];
        if (!contains(defaults, id)) {
            path[index].report(Finding::unknownCommand, id);
            continue;
        }
        order.push_back(id);
        if (!kept.insert(id).second) {
            path[index].report(Finding::repeatedCommand, id);
        }
    }
    for (const std::string& id : defaults) {
        if (!kept.contains(id)) {
            order.push_back(id);
            path.report(Finding::appendedCommand, id);
        }
    }
    return order;
}

IDsByFeatureID normalizedChildOrderByFeatureID(const SettingsPath& path,
                                               const IDsByFeatureID& saved) {
    IDsByFeatureID result;
    for (const FinderFeature feature : allFinderFeatures) {
        const std::string_view id = rawValue(feature);
        const auto found = saved.find(id);
        result.emplace(id, normalizedChildOrder(
                               path[id], found == saved.end() ? nullptr : &found->second, feature));
    }
    for (const auto& [id, order] : saved) {
        if (!result.contains(id)) {
            path[id].report(Finding::unknownFeature, id);
        }
    }
    return result;
}

IDSet validChildIDs(const IDSet& ids) {
    IDSet result;
    for (const FinderFeature feature : allFinderFeatures) {
        for (const std::string_view id : childIDs(feature)) {
            if (ids.contains(id)) {
                result.emplace(id);
            }
        }
    }
    return result;
}

/// Reports the commands of `saved` that there are not, and those of `added` that it lacks.
void reportEnabledChildIDs(const SettingsPath& path, const IDs& saved, const IDSet& added) {
    const IDSet savedIDs(saved.begin(), saved.end());
    IDSet known = validChildIDs(savedIDs);
    // The entries of the destination submenus have these, and no settings switch them off.
    known.emplace(copyFilesToFolderActionID);
    known.emplace(moveFilesToFolderActionID);
    for (std::size_t index = 0; index < saved.size(); ++index) {
        if (!known.contains(saved[index])) {
            path[index].report(Finding::unknownCommand, saved[index]);
        }
    }
    for (const std::string& id : validChildIDs(added)) {
        if (!savedIDs.contains(id)) {
            path.report(Finding::newCommand, id);
        }
    }
}

/// A command that is on by default and that the saved settings never listed was added in a later
/// version and starts enabled; one that the user once listed and switched off stays off.
IDSet enabledChildIDs(const SettingsPath& path, const std::optional<IDs>& savedEnabledIDs,
                      const IDsByFeatureID& savedChildOrder) {
    IDSet enabled = defaultEnabledChildIDs();
    if (!savedEnabledIDs) {
        return enabled;
    }
    for (const auto& [featureID, order] : savedChildOrder) {
        std::ranges::for_each(order, [&enabled](const std::string& id) { enabled.erase(id); });
    }
    if (path.isObserved()) {
        reportEnabledChildIDs(path, *savedEnabledIDs, enabled);
    }
    enabled.insert(savedEnabledIDs->begin(), savedEnabledIDs->end());
    return validChildIDs(enabled);
}

/// A visible feature never ends up with no enabled command: one that has none gets them all.
IDSet enabledChildIDsWithVisibleEnabledFeatures(const SettingsPath& path, IDSet enabled,
                                                const std::vector<FinderFeature>& features,
                                                const IDsByFeatureID& childOrderByFeatureID) {
    for (const FinderFeature feature : features) {
        const IDs& featureChildIDs = childOrderByFeatureID.find(rawValue(feature))->second;
        const auto isEnabled = [&enabled](const std::string& id) { return enabled.contains(id); };
        if (!featureChildIDs.empty() && std::ranges::none_of(featureChildIDs, isEnabled)) {
            path.report(Finding::featureWithoutCommands, rawValue(feature));
            enabled.insert(featureChildIDs.begin(), featureChildIDs.end());
        }
    }
    return enabled;
}

/// Reports the features of `saved` that there are not, and those of `added` that it lacks.
void reportEnabledFeatureIDs(const SettingsPath& path, const IDs& saved, const IDSet& added) {
    for (std::size_t index = 0; index < saved.size(); ++index) {
        if (!finderFeatureWithRawValue(saved[index])) {
            path[index].report(Finding::unknownFeature, saved[index]);
        }
    }
    for (const std::string& id : added) {
        if (!contains(saved, id)) {
            path.report(Finding::newFeature, id);
        }
    }
}

std::vector<FinderFeature> visibleFeatures(const SettingsPath& file,
                                           const std::optional<IDs>& enabledFeatureIDs,
                                           const IDs& savedOrder) {
    const SettingsPath order = file["featureOrder"];
    if (!enabledFeatureIDs) {
        if (!savedOrder.empty()) {
            order.report(Finding::ignoredFeatureOrder);
        }
        return defaultFeatures();
    }
    IDSet enabled = newFeatureIDs(savedOrder);
    if (file.isObserved()) {
        reportEnabledFeatureIDs(file["enabledFeatureIDs"], *enabledFeatureIDs, enabled);
    }
    enabled.insert(enabledFeatureIDs->begin(), enabledFeatureIDs->end());
    std::vector<FinderFeature> features = normalizedFeatureOrder(order, savedOrder);
    std::erase_if(features, [&enabled](FinderFeature feature) {
        return !enabled.contains(rawValue(feature));
    });
    return features;
}

/// The settings for what the file holds. The grouping differs on purpose: a file that does not say
/// leaves the menu ungrouped, no file groups it.
FinderMenuSettings settings(const SettingsPath& file, const PropertyList::Dictionary& root,
                            bool groupsByDefault) {
    file.reportUnknownKeys(root, featureSettingsKeys);
    const SettingsPath enabledChildIDsPath = file["enabledChildIDs"];
    const IDs savedOrder = value(file, root, "featureOrder", ids).value_or(IDs());
    const IDsByFeatureID savedChildOrder =
        value(file, root, "childOrderByFeatureID", idsByFeatureID).value_or(IDsByFeatureID());
    std::vector<FinderFeature> features =
        visibleFeatures(file, value(file, root, "enabledFeatureIDs", ids), savedOrder);
    IDsByFeatureID childOrder =
        normalizedChildOrderByFeatureID(file["childOrderByFeatureID"], savedChildOrder);
    IDSet enabled = enabledChildIDsWithVisibleEnabledFeatures(
        enabledChildIDsPath,
        enabledChildIDs(enabledChildIDsPath, value(file, root, "enabledChildIDs", ids),
                        savedChildOrder),
        features, childOrder);
    return {
        .features = std::move(features),
        .enabledChildIDs = std::move(enabled),
        .childOrderByFeatureID = std::move(childOrder),
        .groupsFeaturesUnderQuorva =
            value(file, root, "groupsFeaturesUnderQuorva", boolean).value_or(groupsByDefault),
        .menuLayout = value(file, root, "menuLayout", layout).value_or(FinderMenuLayout::collapsed),
    };
}

}  // namespace

std::string_view rawValue(FinderMenuLayout layout) {
    return layout == FinderMenuLayout::expanded ? "expanded" : "collapsed";
}

std::optional<FinderMenuLayout> finderMenuLayoutWithRawValue(std::string_view rawValue) {
    return caseWithRawValue(std::array{FinderMenuLayout::collapsed, FinderMenuLayout::expanded},
                            rawValue);
}

std::vector<FinderFeatureChild> FinderMenuSettings::children(FinderFeature feature) const {
    return children(feature, quorva::children(feature));
}

std::vector<FinderFeatureChild> FinderMenuSettings::children(
    FinderFeature feature, const std::vector<FinderFeatureChild>& commands) const {
    std::vector<FinderFeatureChild> shown;
    const auto appendIfEnabled = [&](std::string_view id) {
        const auto command = std::ranges::find(commands, id, &FinderFeatureChild::actionID);
        if (command != commands.end() && enabledChildIDs.contains(id)) {
            shown.push_back(*command);
        }
    };
    const auto order = childOrderByFeatureID.find(rawValue(feature));
    if (order != childOrderByFeatureID.end()) {
        std::ranges::for_each(order->second, appendIfEnabled);
    } else {
        std::ranges::for_each(childIDs(feature), appendIfEnabled);
    }
    return shown;
}

FinderMenuSettings FinderFeatureSettings::menuSettings(SettingsFindings* findings) {
    const SettingsPath file("FeatureSettings.plist", findings);
    const std::optional<PropertyList> root = propertyListInFile(file);
    const PropertyList::Dictionary* const values = root ? dictionaryAt(file, *root) : nullptr;
    return values == nullptr ? settings(file, {}, true) : settings(file, *values, false);
}

}  // namespace quorva
