#import <Foundation/Foundation.h>

#include <cmath>

#import "Simulator/GNUstep/JSONConversion.h"

namespace {

std::string refuse(id object) {
    [NSException raise:NSInvalidArgumentException
                format:@"Invalid type in JSON write (%@)", [object class]];
    return {};
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
/// not have, and returns an error for a number that is not finite. GNUstep does none of these.
+ (NSData*)dataWithJSONObject:(id)object
                      options:(NSJSONWritingOptions)options
                        error:(NSError**)error {
    if (![object isKindOfClass:[NSArray class]] && ![object isKindOfClass:[NSDictionary class]]) {
        [NSException raise:NSInvalidArgumentException
                    format:@"Invalid top-level type in JSON write"];
    }
    const nlohmann::json value = simulator::jsonWithFoundationObject(object, refuse);
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
