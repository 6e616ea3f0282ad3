#include "QuorvaFinderExtension/SettingsPath.hpp"

#include <algorithm>
#include <utility>

namespace quorva {

namespace {

/// `typed`, which is `value` as one of the type `wanted`, or null.
template <typename Type>
const Type* reportedWhenNull(const Type* typed, const SettingsPath& path, const PropertyList& value,
                             std::string_view wanted) {
    if (typed == nullptr) {
        path.report(SettingsFinding::Kind::wrongType, typeName(value), wanted);
    }
    return typed;
}

}  // namespace

SettingsPath SettingsPath::appending(std::string_view before, std::string_view step,
                                     std::string_view after) const {
    SettingsPath path = *this;
    path.path_.append(before).append(step).append(after);
    return path;
}

void SettingsPath::report(SettingsFinding::Kind kind, std::string_view value,
                          std::string_view wanted) const {
    if (isObserved()) {
        findings_->push_back({kind, fileName_, path_, std::string(value), wanted});
    }
}

void SettingsPath::reportUnknownKeys(const PropertyList::Dictionary& dictionary,
                                     std::span<const std::string_view> known) const {
    if (!isObserved()) {
        return;
    }
    for (const auto& [key, value] : dictionary) {
        if (std::ranges::find(known, key) == known.end()) {
            (*this)[key].report(SettingsFinding::Kind::unknownKey, key);
        }
    }
}

const PropertyList::Dictionary* dictionaryAt(const SettingsPath& path, const PropertyList& value) {
    return reportedWhenNull(value.dictionary(), path, value, "dictionary");
}

const PropertyList::Array* arrayAt(const SettingsPath& path, const PropertyList& value) {
    return reportedWhenNull(value.array(), path, value, "array");
}

const std::string* stringAt(const SettingsPath& path, const PropertyList& value) {
    return reportedWhenNull(value.string(), path, value, "string");
}

const bool* booleanAt(const SettingsPath& path, const PropertyList& value) {
    return reportedWhenNull(value.boolean(), path, value, "boolean");
}

std::string_view typeName(const PropertyList& value) {
    const std::pair<bool, std::string_view> types[] = {
        {value.dictionary() != nullptr, "dictionary"},
        {value.array() != nullptr, "array"},
        {value.string() != nullptr, "string"},
        {value.boolean() != nullptr, "boolean"},
        {value.integer() != nullptr, "integer"},
        {value.real() != nullptr, "real"},
        {value.date() != nullptr, "date"},
        {value.data() != nullptr, "data"},
        {true, "value of another type"},
    };
    return std::ranges::find(types, true, &std::pair<bool, std::string_view>::first)->second;
}

}  // namespace quorva
