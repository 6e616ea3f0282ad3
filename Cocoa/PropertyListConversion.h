#pragma once

#import <Foundation/Foundation.h>

#include <map>
#include <optional>

#include "Cocoa/ObjectHolder.h"
#include "Platform/Error.hpp"
#include "Platform/PropertyList.hpp"

namespace quorva {

/// `object` as a property list. Fails when it holds more values or bytes than the limits of
/// `Platform/PropertyListSerialization.hpp`. What is of a class that no property list holds, is a
/// dictionary with a key that is not a string, or lies too deep is `Unsupported` where it stands.
///
/// A number that is of the class of booleans is a boolean; one with a floating-point type, or one
/// that does not fit `std::int64_t`, is a real; every other is an integer.
[[nodiscard]] Result<PropertyList> propertyList(id object);

/// The entries of `dictionary`, but for those that go beyond a limit. Nothing when `dictionary` is
/// nil, is not a dictionary, or has a key that is not a string.
[[nodiscard]] std::optional<PropertyList::Dictionary> propertyListEntries(id dictionary);

/// Makes Foundation objects of property lists. An array that several of them share is made once; so
/// the property lists must live as long as the converter.
class FoundationObjectConverter {
   public:
    id object(const PropertyList& value);
    NSDictionary* dictionary(const PropertyList::Dictionary& entries);

   private:
    NSArray* array(const PropertyList::Array& elements);

    std::map<const PropertyList::Array*, ObjectHolder<NSArray>> arrays_;
};

}  // namespace quorva
