#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "Platform/FileURL.hpp"
#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/SettingsPath.hpp"

/// What the readers of the settings files share.
namespace quorva {

/// How large a settings file may be, in bytes. Real ones have a few thousand; the limit is what
/// keeps whatever lies in a settings file's place from filling the extension's memory.
inline constexpr std::size_t settingsFileByteLimit = std::size_t{64} * 1024 * 1024;

/// The file `fileName` in the folder where the containing application keeps the settings:
/// "Library/Application Support/Quorva" in the home folder.
[[nodiscard]] FileURL settingsFileURL(std::string_view fileName);

/// The property list in the settings file `file`, read afresh. Absent when there is no such file,
/// when what stands there is not a regular file, is too large, or can't be read or parsed.
[[nodiscard]] std::optional<PropertyList> propertyListInFile(const SettingsPath& file);

/// `value`, which is at `path`, as a list of dictionaries of strings, as the entries of the
/// settings files are. Null when it has any other shape, even in one value. Lives as long as
/// `value`.
[[nodiscard]] const PropertyList::Array* stringDictionaries(const SettingsPath& path,
                                                            const PropertyList& value);

/// The string under `key`. Null when there is none, or when the value is not a string.
[[nodiscard]] const std::string* stringForKey(const PropertyList::Dictionary& dictionary,
                                              std::string_view key);

/// The same for an entry at `path` that is dropped without it.
[[nodiscard]] const std::string* requiredStringForKey(const SettingsPath& path,
                                                      const PropertyList::Dictionary& entry,
                                                      std::string_view key);

/// What `convert` makes of each of `entries`, which are dictionaries in the array at `path`,
/// without those that it returns nothing for.
template <typename Convert>
auto validEntries(const SettingsPath& path, const PropertyList::Array& entries,
                  const Convert& convert) {
    std::vector<typename std::invoke_result_t<const Convert&, const SettingsPath&,
                                              const PropertyList::Dictionary&>::value_type>
        values;
    values.reserve(entries.size());
    for (std::size_t index = 0; index < entries.size(); ++index) {
        if (auto value = convert(path[index], *entries[index].dictionary())) {
            values.push_back(*std::move(value));
        }
    }
    return values;
}

}  // namespace quorva
