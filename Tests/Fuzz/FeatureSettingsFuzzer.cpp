// The feature settings, whatever their file holds, are complete and consistent, and written back
// they are read as they are.
#include <algorithm>
#include <set>

#include "QuorvaFinderExtension/FinderFeatureSettings.hpp"
#include "Tests/Fuzz/FuzzedMachine.hpp"

namespace quorva {
namespace {

constexpr std::array<std::string_view, 2> destinationSubmenus = {"copyFilesToFolder",
                                                                 "moveFilesToFolder"};

bool isDestinationSubmenu(std::string_view id) {
    return contains(destinationSubmenus, id);
}

std::set<std::string_view> catalogue() {
    std::set<std::string_view> ids;
    for (const FinderFeature feature : allFinderFeatures) {
        const std::vector<std::string_view> featureIDs = childIDs(feature);
        ids.insert(featureIDs.begin(), featureIDs.end());
    }
    return ids;
}

void checkConsistency(const FinderMenuSettings& settings) {
    const std::set<FinderFeature> shown(settings.features.begin(), settings.features.end());
    require(shown.size() == settings.features.size(), "a feature is shown once");
    const std::set<std::string_view> known = catalogue();
    for (const std::string& id : settings.enabledChildIDs) {
        require(known.contains(id) || isDestinationSubmenu(id), "an enabled command is known");
    }
    require(settings.childOrderByFeatureID.size() == allFinderFeatures.size(),
            "each feature has an order");
    for (const FinderFeature feature : allFinderFeatures) {
        const auto order = settings.childOrderByFeatureID.find(rawValue(feature));
        require(order != settings.childOrderByFeatureID.end(), "each feature has an order");
        const std::vector<std::string_view> ids = childIDs(feature);
        const std::set<std::string_view> ordered(order->second.begin(), order->second.end());
        require(ordered == std::set(ids.begin(), ids.end()),
                "an order holds the commands of its feature, each of them, and no others");
        const auto isEnabled = [&](const std::string& id) {
            return settings.enabledChildIDs.contains(id);
        };
        require(!shown.contains(feature) || ids.empty() ||
                    std::ranges::any_of(order->second, isEnabled),
                "a feature that is shown has an enabled command");
        std::vector<std::string> children;
        for (const FinderFeatureChild& child : settings.children(feature)) {
            children.push_back(child.actionID);
        }
        std::vector<std::string> expected;
        std::ranges::copy_if(order->second, std::back_inserter(expected), isEnabled);
        require(children == expected, "the commands shown are the enabled ones in their order");
    }
}

/// The value under `key` of `file`, null when there is none.
const PropertyList* valueForKey(const std::optional<PropertyList>& file, std::string_view key) {
    const PropertyList::Dictionary* const root = file ? file->dictionary() : nullptr;
    const auto found =
        root == nullptr ? PropertyList::Dictionary::const_iterator() : root->find(key);
    return root == nullptr || found == root->end() ? nullptr : &found->second;
}

bool isListOfStrings(const PropertyList* value) {
    return value != nullptr && value->array() != nullptr &&
           std::ranges::all_of(*value->array(), [](const PropertyList& element) {
               return element.string() != nullptr;
           });
}

void checkAgainstFile(const FinderMenuSettings& settings, const std::optional<PropertyList>& file) {
    const bool isUsable = file && file->dictionary() != nullptr;
    const PropertyList* const grouped = valueForKey(file, "groupsFeaturesUnderQuorva");
    require(
        settings.groupsFeaturesUnderQuorva ==
            (grouped != nullptr && grouped->boolean() != nullptr ? *grouped->boolean() : !isUsable),
        "the grouping is the file's, or else on without a file and off with one");
    const PropertyList* const layout = valueForKey(file, "menuLayout");
    require(
        (settings.menuLayout == FinderMenuLayout::expanded) ==
            (layout != nullptr && layout->string() != nullptr && *layout->string() == "expanded"),
        "the layout is the file's, or else the collapsed one");
    const PropertyList* const enabled = valueForKey(file, "enabledFeatureIDs");
    if (!isListOfStrings(enabled)) {
        require(settings.features.size() == 13 &&
                    !contains(settings.features, FinderFeature::developerTools),
                "without a list of features the default ones are shown");
        return;
    }
    for (const PropertyList& id : *enabled->array()) {
        const std::optional<FinderFeature> feature = finderFeatureWithRawValue(*id.string());
        require(!feature || contains(settings.features, *feature),
                "a feature that is switched on is shown");
    }
}

PropertyList::Array strings(const auto& ids) {
    PropertyList::Array array;
    for (const auto& id : ids) {
        array.emplace_back(id);
    }
    return array;
}

/// The file from which `settings` are read as they are.
PropertyList writtenBack(const FinderMenuSettings& settings) {
    PropertyList::Array features;
    PropertyList::Array order;
    for (const FinderFeature feature : settings.features) {
        features.emplace_back(rawValue(feature));
    }
    order = features;
    for (const FinderFeature feature : allFinderFeatures) {
        if (!contains(settings.features, feature)) {
            order.emplace_back(rawValue(feature));
        }
    }
    PropertyList::Dictionary childOrder;
    for (const auto& [feature, ids] : settings.childOrderByFeatureID) {
        childOrder.emplace(feature, strings(ids));
    }
    return PropertyList::Dictionary{
        {"enabledFeatureIDs", features},
        {"featureOrder", order},
        {"enabledChildIDs", strings(settings.enabledChildIDs)},
        {"childOrderByFeatureID", childOrder},
        {"groupsFeaturesUnderQuorva", settings.groupsFeaturesUnderQuorva},
        {"menuLayout", rawValue(settings.menuLayout)},
    };
}

void checkSecondReading(FinderMenuSettings settings) {
    fakePlatform::state().putPropertyList(settingsFolder + "/FeatureSettings.plist",
                                          writtenBack(settings));
    // A list of commands that was read holds only those of the catalogue.
    std::erase_if(settings.enabledChildIDs, isDestinationSubmenu);
    // An order that is the one of before the command for an hour counts as not chosen.
    std::vector<std::string>& deletion =
        settings.childOrderByFeatureID.find("scheduledDeletion")->second;
    if (deletion == std::vector<std::string>{"scheduleDelete7Days", "scheduleDelete30Days",
                                             "scheduleDelete90Days", "scheduleDelete1Hour"}) {
        const std::vector<std::string_view> ids = childIDs(FinderFeature::scheduledDeletion);
        deletion.assign(ids.begin(), ids.end());
    }
    require(FinderFeatureSettings::menuSettings() == settings,
            "settings that are written back are read as they are");
}

}  // namespace
}  // namespace quorva

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorva;
    fakePlatform::reset();
    const std::optional<PropertyList> file = FuzzedValues(data, size).putFeatureSettings();
    const FinderMenuSettings settings = FinderFeatureSettings::menuSettings();
    checkConsistency(settings);
    checkAgainstFile(settings, file);
    checkSecondReading(settings);
    return 0;
}
