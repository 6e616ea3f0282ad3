#pragma once

#include <array>
#include <optional>
#include <vector>

#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"
#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"
#include "QuorvaFinderExtension/FinderFeatureSettings.hpp"
#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"

namespace quorva {

/// The settings as one menu request or one click finds them. Each file is read when it is first
/// asked for and not again, so that what is built from a reading never mixes two versions of a
/// file, and each title of the catalogue is looked up once. Made for one request and gone with it:
/// the next one reads anew.
///
/// The references that it returns live as long as the reading. Used from one thread.
class SettingsReading {
 public:
    SettingsReading() = default;
    /// A reading that adds to `findings`, which outlives it, how the settings differ from what the
    /// files say.
    explicit SettingsReading(SettingsFindings& findings) : findings_(&findings) {}
    SettingsReading(const SettingsReading&) = delete;
    SettingsReading& operator=(const SettingsReading&) = delete;

    [[nodiscard]] const FinderMenuSettings& menuSettings() const;
    /// The commands of `feature`, as the catalogue has them.
    [[nodiscard]] const std::vector<FinderFeatureChild>& commands(FinderFeature feature) const;
    [[nodiscard]] const std::vector<FinderCustomDestination>& destinations(
        FinderCustomDestinationKind kind) const;
    /// Whether those of `kind` are the built-in defaults and not the user's.
    [[nodiscard]] bool hasDefaultDestinations(FinderCustomDestinationKind kind) const;
    [[nodiscard]] const std::vector<FinderCustomShortcutAction>& customActions() const;
    [[nodiscard]] const std::vector<FinderViewPresetSetting>& viewPresets() const;

 private:
    const FinderCustomDestinationFile& destinationFile() const;

    SettingsFindings* findings_ = nullptr;
    mutable std::optional<FinderMenuSettings> menuSettings_;
    mutable std::array<std::optional<std::vector<FinderFeatureChild>>, allFinderFeatures.size()>
        commands_;
    mutable std::optional<FinderCustomDestinationFile> destinationFile_;
    mutable std::array<std::optional<std::vector<FinderCustomDestination>>,
                       allFinderCustomDestinationKinds.size()>
        destinations_;
    mutable std::optional<std::vector<FinderCustomShortcutAction>> customActions_;
    mutable std::optional<std::vector<FinderViewPresetSetting>> viewPresets_;
};

}  // namespace quorva
