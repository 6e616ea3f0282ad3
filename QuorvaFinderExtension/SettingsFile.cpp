#include "QuorvaFinderExtension/SettingsFile.hpp"

#include <algorithm>

#include "Platform/Data.hpp"
#include "Platform/FileManager.hpp"
#include "Platform/PropertyListSerialization.hpp"

namespace quorva {

namespace {

bool isStringDictionary(const PropertyList& value) {
    const PropertyList::Dictionary* const dictionary = value.dictionary();
    return dictionary != nullptr && std::ranges::all_of(*dictionary, [](const auto& entry) {
               return entry.second.string() != nullptr;
           });
}

}  // namespace

FileURL settingsFileURL(std::string_view fileName) {
    return platform::homeDirectoryForCurrentUser()
        .appendingDirectory("Library/Application Support/Quorva")
        .appendingFile(fileName);
}

std::optional<PropertyList> propertyListInFile(const FileURL& url) {
    const Result<Data> data = platform::dataWithContentsOfRegularFile(url, settingsFileByteLimit);
    if (!data) {
        return std::nullopt;
    }
    Result<PropertyList> propertyList = platform::propertyListWithData(*data);
    if (!propertyList) {
        return std::nullopt;
    }
    return *std::move(propertyList);
}

const PropertyList::Array* stringDictionaries(const PropertyList& value) {
    const PropertyList::Array* const array = value.array();
    return array != nullptr && std::ranges::all_of(*array, isStringDictionary) ? array : nullptr;
}

const std::string* stringForKey(const PropertyList::Dictionary& dictionary, std::string_view key) {
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : found->second.string();
}

}  // namespace quorva
