#include "Platform/PropertyListSerialization.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/DataConversion.h"
#import "Cocoa/ErrorConversion.h"
#import "Cocoa/PropertyListConversion.h"
#import "Cocoa/StringConversion.h"

namespace {

/// `error` with the place in the data, which Foundation has only in words for developers.
quorva::Error readingError(NSError* error) {
    quorva::Error result = quorva::platformError(error);
    id const place = [error.userInfo objectForKey:@"NSDebugDescription"];
    if ([place isKindOfClass:[NSString class]]) {
        result.localizedDescription += " " + quorva::utf8String(place);
    }
    return result;
}

}  // namespace

quorva::Result<quorva::PropertyList> quorva::platform::propertyListWithData(const Data& data) {
    @autoreleasepool {
        @try {
            NSError* error = nil;
            id object = [NSPropertyListSerialization propertyListWithData:foundationData(data)
                                                                  options:NSPropertyListImmutable
                                                                   format:nullptr
                                                                    error:&error];
            if (object == nil) {
                return std::unexpected(readingError(error));
            }
            return propertyList(object);
        } @catch (NSException* exception) {
            return std::unexpected(platformError(exception));
        }
    }
}
