#include "Platform/PropertyListSerialization.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/DataConversion.h"
#import "Cocoa/ErrorConversion.h"
#import "Cocoa/PropertyListConversion.h"

quorva::Result<quorva::PropertyList> quorva::platform::propertyListWithData(const Data& data) {
    @autoreleasepool {
        @try {
            NSError* error = nil;
            id object = [NSPropertyListSerialization propertyListWithData:foundationData(data)
                                                                  options:NSPropertyListImmutable
                                                                   format:nullptr
                                                                    error:&error];
            if (object == nil) {
                return std::unexpected(platformError(error));
            }
            return propertyList(object);
        } @catch (NSException* exception) {
            return std::unexpected(platformError(exception));
        }
    }
}
