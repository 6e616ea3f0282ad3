#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "QuorvaFinderExtension/FinderActionContext.hpp"
#include "QuorvaFinderExtension/Menu.hpp"
#include "QuorvaFinderExtension/SettingsReading.hpp"

/// Turning a clicked item back into the context of what it does. A null pointer is "nothing": the
/// item, the identifier, the tag or the title names no entry that exists now.
///
/// `settings` is the reading of the click, so an item resolves against the settings of the moment
/// of the click. A context that is rebuilt from an identifier, a tag or a title has no selection
/// and no target.
namespace quorva {

/// The attached object, or else the identifier, the tag and the title, whichever first names an
/// entry. An attached dictionary ends the search even when it is malformed.
[[nodiscard]] FinderActionContextPointer actionContext(const MenuItem& item,
                                                       const SettingsReading& settings);

[[nodiscard]] FinderActionContextPointer actionContextFromMenuIdentifier(
    const std::optional<std::string>& identifier, const SettingsReading& settings);

/// Ends the process when `tag` is so low that the index of a preset can't be computed.
[[nodiscard]] FinderActionContextPointer actionContextFromMenuTag(std::int64_t tag,
                                                                  const SettingsReading& settings);

[[nodiscard]] FinderActionContextPointer actionContextFromMenuTitle(
    const std::string& title, const SettingsReading& settings);

/// What a title stands for.
struct TitleMeaning {
    enum class Source { nothing, customAction, application, viewPreset, command };

    Source source = Source::nothing;
    /// Null for `nothing`.
    FinderActionContextPointer context;
    /// How many items of a menu have the title.
    std::size_t uses = 0;
};

using TitleMeanings = std::unordered_map<std::string_view, TitleMeaning>;

/// Fills in what each title that is a key of `meanings` stands for: the first entry that has it,
/// of the custom actions, the applications, the view presets and the commands of the catalogue, in
/// this order. A file is not read once every title is known.
void findTitleMeanings(TitleMeanings& meanings, const SettingsReading& settings);

/// The custom action that an action identifier of either prefix names, whatever the action's kind.
[[nodiscard]] FinderActionContextPointer customActionContext(std::string_view actionID,
                                                             const SettingsReading& settings);

/// The kind of action that `actionID` stands for. Absent when it is not one of the catalogue's and
/// not that of an open-with entry.
[[nodiscard]] std::optional<FinderFeatureAction> actionForID(std::string_view actionID);

}  // namespace quorva
