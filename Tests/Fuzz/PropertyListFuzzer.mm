// Whatever a settings file holds, it is read without harm: as a property list within the limits, or
// not at all.
#import <Foundation/Foundation.h>

#include "Platform/PropertyListSerialization.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#import "Cocoa/PropertyListConversion.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using quorva::PropertyList;

void require(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", promise);
        std::abort();
    }
}

struct Extent {
    std::size_t values = 0;
    std::size_t bytes = 0;
    std::size_t depth = 0;
};

void measure(const PropertyList& value, std::size_t depth, Extent& extent) {
    ++extent.values;
    extent.depth = std::max(extent.depth, depth);
    if (const auto* dictionary = value.dictionary()) {
        for (const auto& [key, element] : *dictionary) {
            measure(element, depth + 1, extent);
        }
    } else if (const auto* array = value.array()) {
        for (const PropertyList& element : *array) {
            measure(element, depth + 1, extent);
        }
    }
}

/// Whether `value` is the same after a conversion to the frameworks' objects and back.
bool survivesConversion(const PropertyList& value) {
    quorva::FoundationObjectConverter converter;
    const auto again = quorva::propertyList(converter.object(value));
    return again && *again == value;
}

/// Whether `value` holds nothing that is not equal to itself and nothing that has no type.
bool isPlain(const PropertyList& value) {
    if (const auto* dictionary = value.dictionary()) {
        return std::ranges::all_of(*dictionary,
                                   [](const auto& entry) { return isPlain(entry.second); });
    }
    if (const auto* array = value.array()) {
        return std::ranges::all_of(*array, isPlain);
    }
    return value.string() != nullptr || value.boolean() != nullptr || value.integer() != nullptr ||
           value.data() != nullptr;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    @autoreleasepool {
        const auto* bytes = reinterpret_cast<const std::byte*>(data);
        const quorva::Data file(bytes, bytes + size);
        const auto list = quorva::platform::propertyListWithData(file);
        if (!list) {
            require(!list.error().localizedDescription.empty(), "a failure says why");
            return 0;
        }
        Extent extent;
        measure(*list, 1, extent);
        require(extent.values <= quorva::propertyListValueLimit, "the values are within the limit");
        require(extent.depth <= quorva::propertyListDepthLimit + 1,
                "the depth is within the limit");
        require(!isPlain(*list) || survivesConversion(*list),
                "a property list survives the conversion");
        const auto second = quorva::platform::propertyListWithData(file);
        require(second.has_value() && (!isPlain(*list) || *second == *list),
                "a file is read the same way twice");
    }
    return 0;
}
