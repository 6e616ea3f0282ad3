#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Platform/Data.hpp"

namespace quorva {

/// A property-list value: what the settings files hold, what a notification's user info and a menu
/// item's dictionary are made of, and what a queue record is written from.
///
/// An immutable value. Copies share their dictionaries and arrays, so a copy costs the same however
/// many values it holds.
/// The accessors return null when the value is of another type; no type is ever converted to
/// another (the integer 1 is not a boolean).
class PropertyList {
 public:
    using Dictionary = std::map<std::string, PropertyList, std::less<>>;
    using Array = std::vector<PropertyList>;

    /// A point in time, in seconds since 1970-01-01 00:00:00 UTC.
    struct Date {
        double timeIntervalSince1970;

        friend bool operator==(const Date&, const Date&) = default;
    };

    /// A value that the platform has and that this type does not: of another class, with keys that
    /// are not strings, or nested too deeply. No accessor returns it, so it counts as a value of
    /// the wrong type wherever one is wanted.
    struct Unsupported {
        friend bool operator==(const Unsupported&, const Unsupported&) = default;
    };

    // Implicit on purpose: dictionaries and arrays are written as literals of plain values.
    PropertyList(Dictionary dictionary);  // NOLINT(google-explicit-constructor)
    PropertyList(Array array);            // NOLINT(google-explicit-constructor)
    PropertyList(std::string string)      // NOLINT(google-explicit-constructor)
        : value_(std::move(string)) {}
    PropertyList(std::string_view string)  // NOLINT(google-explicit-constructor)
        : value_(std::string(string)) {}
    PropertyList(const char* string)  // NOLINT(google-explicit-constructor)
        : value_(std::string(string)) {}
    PropertyList(std::same_as<bool> auto boolean)  // NOLINT(google-explicit-constructor)
        : value_(boolean) {}
    PropertyList(std::same_as<std::int64_t> auto integer)  // NOLINT(google-explicit-constructor)
        : value_(integer) {}
    PropertyList(std::same_as<double> auto real)  // NOLINT(google-explicit-constructor)
        : value_(real) {}
    PropertyList(Date date) : value_(date) {}             // NOLINT(google-explicit-constructor)
    PropertyList(Data data) : value_(std::move(data)) {}  // NOLINT(google-explicit-constructor)
    PropertyList(Unsupported value) : value_(value) {}    // NOLINT(google-explicit-constructor)

    [[nodiscard]] const Dictionary* dictionary() const;
    [[nodiscard]] const Array* array() const;
    [[nodiscard]] const std::string* string() const { return std::get_if<std::string>(&value_); }
    [[nodiscard]] const bool* boolean() const { return std::get_if<bool>(&value_); }
    [[nodiscard]] const std::int64_t* integer() const { return std::get_if<std::int64_t>(&value_); }
    [[nodiscard]] const double* real() const { return std::get_if<double>(&value_); }
    [[nodiscard]] const Date* date() const { return std::get_if<Date>(&value_); }
    [[nodiscard]] const Data* data() const { return std::get_if<Data>(&value_); }

    /// By value, containers included.
    friend bool operator==(const PropertyList& left, const PropertyList& right);

 private:
    using Value = std::variant<std::shared_ptr<const Dictionary>, std::shared_ptr<const Array>,
                               std::string, bool, std::int64_t, double, Date, Data, Unsupported>;

    Value value_;
};

inline PropertyList::PropertyList(Dictionary dictionary)
    : value_(std::make_shared<const Dictionary>(std::move(dictionary))) {}

inline PropertyList::PropertyList(Array array)
    : value_(std::make_shared<const Array>(std::move(array))) {}

inline const PropertyList::Dictionary* PropertyList::dictionary() const {
    const auto* shared = std::get_if<std::shared_ptr<const Dictionary>>(&value_);
    return shared == nullptr ? nullptr : shared->get();
}

inline const PropertyList::Array* PropertyList::array() const {
    const auto* shared = std::get_if<std::shared_ptr<const Array>>(&value_);
    return shared == nullptr ? nullptr : shared->get();
}

inline bool operator==(const PropertyList& left, const PropertyList& right) {
    if (left.dictionary() != nullptr && right.dictionary() != nullptr) {
        return *left.dictionary() == *right.dictionary();
    }
    if (left.array() != nullptr && right.array() != nullptr) {
        return *left.array() == *right.array();
    }
    return left.value_ == right.value_;
}

}  // namespace quorva
