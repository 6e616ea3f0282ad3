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
bool contains(const Range& range, std::string_view id) {
    return std::ranges::find(range, id) != std::ranges::end(range);
}

/// The value under `key` as `convert` understands it; a value that it does not is as good as none.
template <typename Convert>
auto value(const PropertyList::Dictionary& dictionary, std::string_view key, Convert convert)
    -> decltype(convert(std::declval<const PropertyList&>())) {
    const auto found = dictionary.find(key);
    if (found == dictionary.end()) {
        return {};
    }
    return convert(found->second);
}

std::optional<IDs> ids(const PropertyList& value) {
    const PropertyList::Array* const array = value.array();
    if (array == nullptr) {
        return std::nullopt;
    }
    IDs ids;
    ids.reserve(array->size());
    for (const PropertyList& element : *array) {
        const std::string* const id = element.string();
        if (id == nullptr) {
            return std::nullopt;
        }
        ids.push_back(*id);
    }
    return ids;
}

std::optional<IDsByFeatureID> idsByFeatureID(const PropertyList& value) {
    const PropertyList::Dictionary* const dictionary = value.dictionary();
    if (dictionary == nullptr) {
        return std::nullopt;
    }
    IDsByFeatureID result;
    for (const auto& [featureID, element] : *dictionary) {
        std::optional<IDs> featureChildIDs = ids(element);
        if (!featureChildIDs) {
            return std::nullopt;
        }
        result.emplace(featureID, *std::move(featureChildIDs));
    }
    return result;
}

std::optional<bool> boolean(const PropertyList& value) {
    const bool* const boolean = value.boolean();
    return boolean == nullptr ? std::nullopt : std::optional(*boolean);
}

std::optional<FinderMenuLayout> layout(const PropertyList& value) {
    const std::string* const name = value.string();
    return name == nullptr ? std::nullopt : finderMenuLayoutWithRawValue(*name);
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

std::vector<FinderFeature> normalizedFeatureOrder(const IDs& saved) {
    std::vector<FinderFeature> order;
    const auto appendOnce = [&order](FinderFeature feature) {
        if (std::ranges::find(order, feature) == order.end()) {
            order.push_back(feature);
        }
    };
    for (const std::string& id : saved) {
        if (const std::optional<FinderFeature> feature = finderFeatureWithRawValue(id)) {
            appendOnce(*feature);
        }
    }
    std::ranges::for_each(defaultOrderedFeatures, appendOnce);
    return order;
}

IDs normalizedChildOrder(const IDs* saved, FinderFeature feature) {
    const std::vector<std::string_view> catalogue = childIDs(feature);
    IDs defaults(catalogue.begin(), catalogue.end());
    if (saved == nullptr) {
        return defaults;
    }
    if (feature == FinderFeature::scheduledDeletion &&
        (!contains(*saved, "scheduleDelete1Hour") ||
         std::ranges::equal(*saved, legacyScheduledDeletionOrder))) {
        return defaults;
    }
    IDs order;
    const auto isOfFeature = [&defaults](const std::string& id) { return contains(defaults, id); };
    std::ranges::copy_if(*saved, std::back_inserter(order), isOfFeature);
    const IDSet kept(order.begin(), order.end());
    const auto isMissing = [&kept](const std::string& id) { return !kept.contains(id); };
    std::ranges::copy_if(defaults, std::back_inserter(order), isMissing);
    return order;
}

IDsByFeatureID normalizedChildOrderByFeatureID(const IDsByFeatureID& saved) {
    IDsByFeatureID result;
    for (const FinderFeature feature : allFinderFeatures) {
        const auto found = saved.find(rawValue(feature));
        result.emplace(
            rawValue(feature),
            normalizedChildOrder(found == saved.end() ? nullptr : &found->second, feature));
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

/// A command that is on by default and that the saved settings never listed was added in a later
/// version and starts enabled; one that the user once listed and switched off stays off.
IDSet enabledChildIDs(const std::optional<IDs>& savedEnabledIDs,
                      const IDsByFeatureID& savedChildOrder) {
    IDSet enabled = defaultEnabledChildIDs();
    if (!savedEnabledIDs) {
        return enabled;
    }
    for (const auto& [featureID, order] : savedChildOrder) {
        std::ranges::for_each(order, [&enabled](const std::string& id) { enabled.erase(id); });
    }
    enabled.insert(savedEnabledIDs->begin(), savedEnabledIDs->end());
    return validChildIDs(enabled);
}

/// A visible feature never ends up with no enabled command: one that has none gets them all.
IDSet enabledChildIDsWithVisibleEnabledFeatures(IDSet enabled,
                                                const std::vector<FinderFeature>& features,
                                                const IDsByFeatureID& childOrderByFeatureID) {
    for (const FinderFeature feature : features) {
        const IDs& featureChildIDs = childOrderByFeatureID.find(rawValue(feature))->second;
        const auto isEnabled = [&enabled](const std::string& id) { return enabled.contains(id); };
        if (std::ranges::none_of(featureChildIDs, isEnabled)) {
            enabled.insert(featureChildIDs.begin(), featureChildIDs.end());
        }
    }
    return enabled;
}

std::vector<FinderFeature> visibleFeatures(const std::optional<IDs>& enabledFeatureIDs,
                                           const IDs& savedOrder) {
    if (!enabledFeatureIDs) {
        return defaultFeatures();
    }
    IDSet enabled = newFeatureIDs(savedOrder);
    enabled.insert(enabledFeatureIDs->begin(), enabledFeatureIDs->end());
    std::vector<FinderFeature> features = normalizedFeatureOrder(savedOrder);
    std::erase_if(features, [&enabled](FinderFeature feature) {
        return !enabled.contains(rawValue(feature));
    });
    return features;
}

/// The settings for what the file holds. The grouping differs on purpose: a file that does not say
/// leaves the menu ungrouped, no file groups it.
FinderMenuSettings settings(const PropertyList::Dictionary& file, bool groupsByDefault) {
    const IDs savedOrder = value(file, "featureOrder", ids).value_or(IDs());
    const IDsByFeatureID savedChildOrder =
        value(file, "childOrderByFeatureID", idsByFeatureID).value_or(IDsByFeatureID());
    std::vector<FinderFeature> features =
        visibleFeatures(value(file, "enabledFeatureIDs", ids), savedOrder);
    IDsByFeatureID childOrder = normalizedChildOrderByFeatureID(savedChildOrder);
    IDSet enabled = enabledChildIDsWithVisibleEnabledFeatures(
        enabledChildIDs(value(file, "enabledChildIDs", ids), savedChildOrder), features,
        childOrder);
    return {
        .features = std::move(features),
        .enabledChildIDs = std::move(enabled),
        .childOrderByFeatureID = std::move(childOrder),
        .groupsFeaturesUnderQuorva =
            value(file, "groupsFeaturesUnderQuorva", boolean).value_or(groupsByDefault),
        .menuLayout = value(file, "menuLayout", layout).value_or(FinderMenuLayout::collapsed),
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

FinderMenuSettings FinderFeatureSettings::menuSettings() {
    const std::optional<PropertyList> root =
        propertyListInFile(settingsFileURL("FeatureSettings.plist"));
    if (!root || root->dictionary() == nullptr) {
        return settings({}, true);
    }
    return settings(*root->dictionary(), false);
}

}  // namespace quorva
