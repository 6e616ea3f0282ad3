#include "Platform/JSONSerialization.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/DataConversion.h"
#import "Cocoa/ErrorConversion.h"
#import "Cocoa/PropertyListConversion.h"

quorva::Result<quorva::Data> quorva::platform::jsonDataPrettyPrintedWithSortedKeys(
    const PropertyList& object) {
    @autoreleasepool {
        @try {
            NSError* error = nil;
            FoundationObjectConverter converter;
            NSData* data = [NSJSONSerialization
                dataWithJSONObject:converter.object(object)
                           options:NSJSONWritingPrettyPrinted | NSJSONWritingSortedKeys
                             error:&error];
            if (data == nil) {
                return std::unexpected(platformError(error));
            }
            return bytes(data);
        } @catch (NSException* exception) {
            return std::unexpected(platformError(exception));
        }
    }
}
