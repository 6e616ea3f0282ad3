#include "QuorvaFinderExtension/SettingsFile.hpp"

#include <algorithm>

#include "Platform/Data.hpp"
#include "Platform/FileManager.hpp"
#include "Platform/PropertyListSerialization.hpp"

namespace quorva {

namespace {

bool isStringDictionary(const SettingsPath& path, const PropertyList& value) {
    const PropertyList::Dictionary* const dictionary = dictionaryAt(path, value);
    return dictionary != nullptr && std::ranges::all_of(*dictionary, [&path](const auto& entry) {
               return stringAt(path[entry.first], entry.second) != nullptr;
           });
}

}  // namespace

FileURL settingsFileURL(std::string_view fileName) {
    return platform::homeDirectoryForCurrentUser()
        .appendingDirectory("Library/Application Support/Quorva")
        .appendingFile(fileName);
}

std::optional<PropertyList> propertyListInFile(const SettingsPath& file) {
    const FileURL url = settingsFileURL(file.fileName());
    const Result<Data> data = platform::dataWithContentsOfRegularFile(url, settingsFileByteLimit);
    if (!data) {
        if (file.isObserved()) {
            file.report(platform::fileExistsAtPath(url.path())
                            ? SettingsFinding::Kind::unreadableFile
                            : SettingsFinding::Kind::missingFile,
                        data.error().localizedDescription);
        }
        return std::nullopt;
    }
    Result<PropertyList> propertyList = platform::propertyListWithData(*data);
    if (!propertyList) {
        file.report(SettingsFinding::Kind::malformedFile,
                    propertyList.error().localizedDescription);
        return std::nullopt;
    }
    return *std::move(propertyList);
}

const PropertyList::Array* stringDictionaries(const SettingsPath& path, const PropertyList& value) {
    const PropertyList::Array* const array = arrayAt(path, value);
    if (array == nullptr) {
        return nullptr;
    }
    for (std::size_t index = 0; index < array->size(); ++index) {
        if (!isStringDictionary(path[index], (*array)[index])) {
            return nullptr;
        }
    }
    return array;
}

const std::string* stringForKey(const PropertyList::Dictionary& dictionary, std::string_view key) {
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : found->second.string();
}

const std::string* requiredStringForKey(const SettingsPath& path,
                                        const PropertyList::Dictionary& entry,
                                        std::string_view key) {
    const std::string* const string = stringForKey(entry, key);
    if (string == nullptr) {
        path[key].report(SettingsFinding::Kind::missingKey);
    }
    return string;
}

}  // namespace quorva
