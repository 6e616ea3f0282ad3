#include "Platform/Data.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/DataConversion.h"
#import "Cocoa/ErrorConversion.h"
#import "Cocoa/URLConversion.h"

quorva::Result<quorva::Data> quorva::dataWithContentsOfURL(const FileURL& url) {
    @try {
        NSError* error = nil;
        NSData* data = [NSData dataWithContentsOfURL:foundationURL(url) options:0 error:&error];
        if (data == nil) {
            return std::unexpected(platformError(error));
        }
        return bytes(data);
    } @catch (NSException* exception) {
        return std::unexpected(platformError(exception));
    }
}

quorva::Result<void> quorva::writeDataAtomically(const Data& data, const FileURL& url) {
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
