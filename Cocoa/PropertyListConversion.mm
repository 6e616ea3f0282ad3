#import "Cocoa/PropertyListConversion.h"

#include <cstring>

#import "Cocoa/DataConversion.h"
#import "Cocoa/StringConversion.h"
#include "Platform/PropertyListSerialization.hpp"

namespace quorva {
namespace {

/// One conversion from Foundation, which counts the values it has met.
class PropertyListConverter {
   public:
    Result<PropertyList> propertyList(id object, std::size_t depth) {
        if (++valueCount_ > propertyListValueLimit) {
            return std::unexpected(Error{"The property list holds too many values."});
        }
        if (depth > propertyListDepthLimit) {
            return PropertyList(PropertyList::Unsupported());
        }
        if ([object isKindOfClass:stringClass_]) {
            return admits([object length]) ? Result<PropertyList>(utf8String(object)) : tooMuch();
        }
        if ([object isKindOfClass:dictionaryClass_]) {
            return dictionary(object, depth);
        }
        if ([object isKindOfClass:[NSArray class]]) {
            return array(object, depth);
        }
        if ([object isKindOfClass:[NSData class]]) {
            return admits([object length]) ? Result<PropertyList>(bytes(object)) : tooMuch();
        }
        if ([object isKindOfClass:[NSNumber class]]) {
            return number(object);
        }
        if ([object isKindOfClass:[NSDate class]]) {
            return PropertyList(PropertyList::Date{[object timeIntervalSince1970]});
        }
        return PropertyList(PropertyList::Unsupported());
    }

   private:
    /// Counts a string or data, which share one limit.
    bool admits(NSUInteger length) {
        byteCount_ += length;
        return byteCount_ <= propertyListByteLimit;
    }

    static Result<PropertyList> tooMuch() {
        return std::unexpected(Error{"The property list holds too much text or data."});
    }

    Result<PropertyList> dictionary(NSDictionary* dictionary, std::size_t depth) {
        PropertyList::Dictionary entries;
        for (id key in dictionary) {
            if (![key isKindOfClass:stringClass_]) {
                return PropertyList(PropertyList::Unsupported());
            }
            if (!admits([key length])) {
                return tooMuch();
            }
            Result<PropertyList> value = propertyList([dictionary objectForKey:key], depth + 1);
            if (!value) {
                return value;
            }
            entries.insert_or_assign(utf8String(key), *std::move(value));
        }
        return PropertyList(std::move(entries));
    }

    Result<PropertyList> array(NSArray* array, std::size_t depth) {
        PropertyList::Array elements;
        elements.reserve(array.count);
        for (id element in array) {
            Result<PropertyList> value = propertyList(element, depth + 1);
            if (!value) {
                return value;
            }
            elements.push_back(*std::move(value));
        }
        return PropertyList(std::move(elements));
    }

    static PropertyList number(NSNumber* number) {
        if ([number isKindOfClass:[[NSNumber numberWithBool:YES] class]]) {
            return static_cast<bool>(number.boolValue);
        }
        const bool isReal = std::strchr("fd", number.objCType[0]) != nullptr;
        const bool isTooLarge =
            number.objCType[0] == 'Q' && number.unsignedLongLongValue > INT64_MAX;
        if (isReal || isTooLarge) {
            return number.doubleValue;
        }
        return std::int64_t{number.longLongValue};
    }

    /// Looked up once, because that takes longer than the rest of converting a short string.
    const Class stringClass_ = [NSString class];
    const Class dictionaryClass_ = [NSDictionary class];
    std::size_t valueCount_ = 0;
    std::size_t byteCount_ = 0;
};

}  // namespace
}  // namespace quorva

quorva::Result<quorva::PropertyList> quorva::propertyList(id object) {
    return PropertyListConverter().propertyList(object, 1);
}

std::optional<quorva::PropertyList::Dictionary> quorva::propertyListEntries(id dictionary) {
    if (![dictionary isKindOfClass:[NSDictionary class]]) {
        return std::nullopt;
    }
    PropertyList::Dictionary entries;
    for (id key in dictionary) {
        if (![key isKindOfClass:[NSString class]]) {
            return std::nullopt;
        }
        if (Result<PropertyList> value = propertyList([dictionary objectForKey:key])) {
            entries.insert_or_assign(utf8String(key), std::move(*value));
        }
    }
    return entries;
}

id quorva::FoundationObjectConverter::object(const PropertyList& value) {
    if (const auto* entries = value.dictionary()) {
        return dictionary(*entries);
    }
    if (const auto* elements = value.array()) {
        return array(*elements);
    }
    if (const auto* string = value.string()) {
        return foundationString(*string);
    }
    if (const auto* boolean = value.boolean()) {
        return [NSNumber numberWithBool:*boolean];
    }
    if (const auto* integer = value.integer()) {
        return [NSNumber numberWithLongLong:*integer];
    }
    if (const auto* real = value.real()) {
        return [NSNumber numberWithDouble:*real];
    }
    if (const auto* date = value.date()) {
        return [NSDate dateWithTimeIntervalSince1970:date->timeIntervalSince1970];
    }
    if (const auto* data = value.data()) {
        return foundationData(*data);
    }
    return [NSNull null];
}

NSDictionary* quorva::FoundationObjectConverter::dictionary(
    const PropertyList::Dictionary& entries) {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionaryWithCapacity:entries.size()];
    for (const auto& [key, value] : entries) {
        [dictionary setObject:object(value) forKey:foundationString(key)];
    }
    return dictionary;
}

NSArray* quorva::FoundationObjectConverter::array(const PropertyList::Array& elements) {
    ObjectHolder<NSArray>& converted = arrays_[&elements];
    if (converted.get() == nil) {
        NSMutableArray* array = [NSMutableArray arrayWithCapacity:elements.size()];
        for (const PropertyList& element : elements) {
            [array addObject:object(element)];
        }
        converted = ObjectHolder<NSArray>(array);
    }
    return converted.get();
}
