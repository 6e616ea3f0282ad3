#include "QuorvaFinderExtension/SettingsReading.hpp"

#include <cstddef>
#include <utility>

namespace quorva {

namespace {

/// What `value` holds, made by `read` where it holds nothing yet.
template <typename Value, typename Read>
const Value& valueOrRead(std::optional<Value>& value, Read read) {
    if (!value) {
        value.emplace(read());
    }
    return *value;
}

}  // namespace

const FinderMenuSettings& SettingsReading::menuSettings() const {
    return valueOrRead(menuSettings_,
                       [this] { return FinderFeatureSettings::menuSettings(findings_); });
}

const std::vector<FinderFeatureChild>& SettingsReading::commands(FinderFeature feature) const {
    return valueOrRead(commands_.at(static_cast<std::size_t>(std::to_underlying(feature))),
                       [feature] { return children(feature); });
}

const FinderCustomDestinationFile& SettingsReading::destinationFile() const {
    return valueOrRead(destinationFile_, [this] { return FinderCustomDestinationFile(findings_); });
}

const std::vector<FinderCustomDestination>& SettingsReading::destinations(
    FinderCustomDestinationKind kind) const {
    return valueOrRead(destinations_.at(static_cast<std::size_t>(std::to_underlying(kind))),
                       [&] { return destinationFile().destinations(kind); });
}

bool SettingsReading::hasDefaultDestinations(FinderCustomDestinationKind kind) const {
    return destinationFile().hasDefaults(kind);
}

const std::vector<FinderCustomShortcutAction>& SettingsReading::customActions() const {
    return valueOrRead(customActions_,
                       [this] { return FinderCustomShortcutActionSettings::actions(findings_); });
}

const std::vector<FinderViewPresetSetting>& SettingsReading::viewPresets() const {
    return valueOrRead(viewPresets_,
                       [this] { return FinderViewPresetSettings::presets(findings_); });
}

}  // namespace quorva
