#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/SettingsFinding.hpp"

namespace quorva {

/// A place in a settings file, to report what is found there. Without a list of findings it stays a
/// file's name: it builds no path, reports nothing, and costs next to nothing.
class SettingsPath {
 public:
    /// The root of the file `fileName`, which is a literal. `findings` may be null, and outlives
    /// the path.
    SettingsPath(std::string_view fileName, SettingsFindings* findings)
        : fileName_(fileName), findings_(findings) {}

    [[nodiscard]] std::string_view fileName() const { return fileName_; }
    /// Whether anyone wants to know.
    [[nodiscard]] bool isObserved() const { return findings_ != nullptr; }

    /// The value under `key` of the dictionary at this path.
    [[nodiscard]] SettingsPath operator[](std::string_view key) const {
        return isObserved() ? appending(path_.empty() ? "" : ".", key, "")
                            : SettingsPath(fileName_, nullptr);
    }
    /// The element at `index` of the array at this path.
    [[nodiscard]] SettingsPath operator[](std::size_t index) const {
        return isObserved() ? appending("[", std::to_string(index), "]")
                            : SettingsPath(fileName_, nullptr);
    }

    void report(SettingsFinding::Kind kind, std::string_view value = {},
                std::string_view wanted = {}) const;

    /// Reports the keys of `dictionary`, which is at this path, that are not among `known`.
    void reportUnknownKeys(const PropertyList::Dictionary& dictionary,
                           std::span<const std::string_view> known) const;

 private:
    [[nodiscard]] SettingsPath appending(std::string_view before, std::string_view step,
                                         std::string_view after) const;

    std::string_view fileName_;
    SettingsFindings* findings_;
    std::string path_;
};

// The value at `path` as one of a type. Null when it is of another one, which is reported.

[[nodiscard]] const PropertyList::Dictionary* dictionaryAt(const SettingsPath& path,
                                                           const PropertyList& value);
[[nodiscard]] const PropertyList::Array* arrayAt(const SettingsPath& path,
                                                 const PropertyList& value);
[[nodiscard]] const std::string* stringAt(const SettingsPath& path, const PropertyList& value);
[[nodiscard]] const bool* booleanAt(const SettingsPath& path, const PropertyList& value);

/// The type of `value`, as a noun: "dictionary", "array", "string", "boolean", "integer", "real",
/// "date", "data", or "value of another type".
[[nodiscard]] std::string_view typeName(const PropertyList& value);

}  // namespace quorva
