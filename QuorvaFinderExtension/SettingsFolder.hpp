#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/FileURL.hpp"
#include "Platform/PropertyList.hpp"

/// What the readers of the settings files share.
namespace quorva {

/// The file `fileName` in the folder where the containing application keeps the settings:
/// "Library/Application Support/Quorva" in the home folder.
FileURL settingsFileURL(std::string_view fileName);

/// The property list in the file at `url`, read afresh. Absent when there is no such file or it
/// can't be read or parsed.
std::optional<PropertyList> propertyListInFile(const FileURL& url);

/// A dictionary whose values are all texts, as the entries of the settings files are.
using StringDictionary = std::map<std::string, std::string, std::less<>>;

/// `value` as a list of dictionaries of texts. Absent when it is of any other shape, be it by one
/// value.
std::optional<std::vector<StringDictionary>> stringDictionaries(const PropertyList& value);

/// The text under `key`, null when there is none.
const std::string* valueForKey(const StringDictionary& dictionary, std::string_view key);

}  // namespace quorva
