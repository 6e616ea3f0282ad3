#include "Platform/Data.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/DataConversion.h"
#import "Cocoa/ErrorConversion.h"
#import "Cocoa/URLConversion.h"

quorva::Result<void> quorva::platform::writeDataAtomically(const Data& data, const FileURL& url) {
    @autoreleasepool {
        @try {
            NSError* error = nil;
            if (![foundationData(data) writeToURL:foundationURL(url)
                                          options:NSDataWritingAtomic
                                            error:&error]) {
                return std::unexpected(platformError(error));
            }
            return {};
        } @catch (NSException* exception) {
            return std::unexpected(platformError(exception));
        }
    }
}
