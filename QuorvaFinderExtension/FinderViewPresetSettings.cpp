#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/L10n.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

namespace quorva {

namespace {

std::vector<FinderViewPresetSetting> defaultPresets() {
    return {
        {"list-modified", L10n::t("列表 · 最近修改"), "list", "modificationDate"},
        {"icon-name", L10n::t("图标 · 按名称"), "icon", "name"},
        {"column-name", L10n::t("分栏 · 按名称"), "column", "name"},
    };
}

/// Whether `text` holds a line terminator, as regular expressions count them.
bool holdsLineTerminator(std::string_view text) {
    constexpr std::string_view singleByteTerminators = "\n\v\f\r";
    constexpr std::string_view nextLine = "\u0085";
    constexpr std::string_view lineSeparator = "\u2028";
    constexpr std::string_view paragraphSeparator = "\u2029";
    return text.find_first_of(singleByteTerminators) != std::string_view::npos ||
           text.contains(nextLine) || text.contains(lineSeparator) ||
           text.contains(paragraphSeparator);
}

/// The name without the number at its end, if it is of the form "^(.+ · .+) [0-9]+$".
///
/// Matched by hand and from the end: a name can be of any length and no regular-expression engine
/// of the standard library takes linear time and constant stack.
std::string_view withoutCopyNumber(std::string_view name) {
    constexpr std::string_view digits = "0123456789";
    constexpr std::string_view separator = " · ";
    const std::size_t beforeDigits = name.find_last_not_of(digits);
    if (beforeDigits == std::string_view::npos || beforeDigits + 1 == name.size() ||
        name[beforeDigits] != ' ') {
        return name;
    }
    const std::string_view kept = name.substr(0, beforeDigits);
    const std::size_t found = kept.find(separator, 1);
    if (found == std::string_view::npos || found + separator.size() == kept.size() ||
        holdsLineTerminator(kept)) {
        return name;
    }
    return kept;
}

std::optional<FinderViewPresetSetting> preset(const SettingsPath& path,
                                              const PropertyList::Dictionary& entry) {
    path.reportUnknownKeys(entry, viewPresetKeys);
    const std::string* const id = requiredStringForKey(path, entry, "id");
    const std::string* const name = requiredStringForKey(path, entry, "name");
    const std::string* const viewMode = requiredStringForKey(path, entry, "viewMode");
    const std::string* const sortMode = requiredStringForKey(path, entry, "sortMode");
    if (id == nullptr || name == nullptr || viewMode == nullptr || sortMode == nullptr) {
        return std::nullopt;
    }
    const std::string_view shownName = withoutCopyNumber(*name);
    if (shownName != *name) {
        path["name"].report(SettingsFinding::Kind::numberedPreset, *name);
    }
    return FinderViewPresetSetting{*id, std::string(shownName), *viewMode, *sortMode};
}

}  // namespace

std::vector<FinderViewPresetSetting> FinderViewPresetSettings::presets(SettingsFindings* findings) {
    const SettingsPath file("FinderViewPresets.plist", findings);
    const std::optional<PropertyList> root = propertyListInFile(file);
    const PropertyList::Array* const entries = root ? stringDictionaries(file, *root) : nullptr;
    return entries == nullptr ? defaultPresets() : validEntries(file, *entries, preset);
}

}  // namespace quorva
