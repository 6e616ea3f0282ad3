#include "QuorvaFinderExtension/SettingsFolder.hpp"

#include "Platform/FileManager.hpp"
#include "Platform/PropertyListSerialization.hpp"

namespace quorva {

namespace {

std::optional<StringDictionary> stringDictionary(const PropertyList& value) {
    const PropertyList::Dictionary* const dictionary = value.dictionary();
    if (dictionary == nullptr) {
        return std::nullopt;
    }
    StringDictionary result;
    for (const auto& [key, element] : *dictionary) {
        const std::string* const text = element.string();
        if (text == nullptr) {
            return std::nullopt;
        }
        result.emplace_hint(result.end(), key, *text);
    }
    return result;
}

}  // namespace

FileURL settingsFileURL(std::string_view fileName) {
    return homeDirectoryForCurrentUser()
        .appendingDirectory("Library/Application Support/Quorva")
        .appendingFile(fileName);
}

std::optional<PropertyList> propertyListInFile(const FileURL& url) {
    const Result<Data> data = dataWithContentsOfURL(url);
    if (!data) {
        return std::nullopt;
    }
    Result<PropertyList> propertyList = propertyListWithData(*data);
    if (!propertyList) {
        return std::nullopt;
    }
    return *std::move(propertyList);
}

std::optional<std::vector<StringDictionary>> stringDictionaries(const PropertyList& value) {
    const PropertyList::Array* const array = value.array();
    if (array == nullptr) {
        return std::nullopt;
    }
    std::vector<StringDictionary> result;
    result.reserve(array->size());
    for (const PropertyList& element : *array) {
        std::optional<StringDictionary> dictionary = stringDictionary(element);
        if (!dictionary) {
            return std::nullopt;
        }
        result.push_back(*std::move(dictionary));
    }
    return result;
}

const std::string* valueForKey(const StringDictionary& dictionary, std::string_view key) {
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : &found->second;
}

}  // namespace quorva
