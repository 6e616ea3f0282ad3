#import <Foundation/Foundation.h>

#include <cmath>
#include <nlohmann/json.hpp>

#import "Cocoa/StringConversion.h"

namespace {

nlohmann::json jsonValue(id object) {
    if ([object isKindOfClass:[NSString class]]) {
        return quorva::utf8String(object);
    }
    if ([object isKindOfClass:[NSNumber class]]) {
        NSNumber* number = object;
        if ([number isKindOfClass:[[NSNumber numberWithBool:YES] class]]) {
            return static_cast<bool>(number.boolValue);
        }
        if (number.objCType[0] == 'f' || number.objCType[0] == 'd') {
            return number.doubleValue;
        }
        return number.objCType[0] == 'Q' ? nlohmann::json(number.unsignedLongLongValue)
                                         : nlohmann::json(number.longLongValue);
    }
    if ([object isKindOfClass:[NSArray class]]) {
        nlohmann::json array = nlohmann::json::array();
        for (id element in static_cast<NSArray*>(object)) {
            array.push_back(jsonValue(element));
        }
        return array;
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        nlohmann::json members = nlohmann::json::object();
        for (id key in static_cast<NSDictionary*>(object)) {
            if (![key isKindOfClass:[NSString class]]) {
                [NSException raise:NSInvalidArgumentException
                            format:@"Invalid (non-string) key in JSON dictionary"];
            }
            members[quorva::utf8String(key)] = jsonValue([object objectForKey:key]);
        }
        return members;
    }
    if (object != [NSNull null]) {
        [NSException raise:NSInvalidArgumentException
                    format:@"Invalid type in JSON write (%@)", [object class]];
    }
    return nullptr;
}

bool holdsNonFiniteNumber(const nlohmann::json& value) {
    if (value.is_structured()) {
        return std::ranges::any_of(value, holdsNonFiniteNumber);
    }
    return value.is_number_float() && !std::isfinite(value.get<double>());
}

}  // namespace

@implementation NSJSONSerialization (FoundationOfMacOS)

/// macOS: can sort the keys, indents, and writes UTF-8 as it is; raises for a type that JSON does
/// not have, and answers an error for a number that is not finite. GNUstep does none of these.
+ (NSData*)dataWithJSONObject:(id)object
                      options:(NSJSONWritingOptions)options
                        error:(NSError**)error {
    if (![object isKindOfClass:[NSArray class]] && ![object isKindOfClass:[NSDictionary class]]) {
        [NSException raise:NSInvalidArgumentException
                    format:@"Invalid top-level type in JSON write"];
    }
    const nlohmann::json value = jsonValue(object);
    if (holdsNonFiniteNumber(value)) {
        if (error != nullptr) {
            *error = [NSError
                errorWithDomain:NSCocoaErrorDomain
                           code:3852
                       userInfo:[NSDictionary
                                    dictionaryWithObject:@"Invalid number value in JSON write"
                                                  forKey:NSLocalizedDescriptionKey]];
        }
        return nil;
    }
    const int indentation = (options & NSJSONWritingPrettyPrinted) != 0 ? 2 : -1;
    const std::string text = value.dump(indentation, ' ', /*ensure_ascii=*/false,
                                        nlohmann::json::error_handler_t::replace);
    return [NSData dataWithBytes:text.data() length:text.size()];
}

@end
