#pragma once

#import <Foundation/Foundation.h>

#include <map>
#include <optional>

#include "Cocoa/ObjectHolder.h"
#include "Platform/Error.hpp"
#include "Platform/PropertyList.hpp"

namespace quorva {

/// `object` as a property list. Fails when it, or anything in it, is of a class that no property
/// list holds, when a dictionary in it has a key that is no string, and when it goes beyond a
/// limit of `Platform/PropertyListSerialization.hpp`.
///
/// A number that is of the class of booleans is a boolean; one with a floating-point type, or one
/// that is no `std::int64_t`, is a real; every other is an integer.
Result<PropertyList> propertyList(id object);

/// The entries of `dictionary` whose values are property lists. Nothing when `dictionary` is nil,
/// is no dictionary, or has a key that is no string.
std::optional<PropertyList::Dictionary> propertyListEntries(id dictionary);

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
