#include "Platform/FileManager.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/ErrorConversion.h"
#import "Cocoa/StringConversion.h"
#import "Cocoa/URLConversion.h"

quorva::FileURL quorva::platform::homeDirectoryForCurrentUser() {
    @try {
        return FileURL::directory(
            utf8String([NSFileManager defaultManager].homeDirectoryForCurrentUser.path));
    } @catch (NSException*) {
        return FileURL::directory("/");
    }
}

std::vector<quorva::FileURL> quorva::platform::urlsForDirectoryInUserDomain(
    SearchPathDirectory directory) {
    @try {
        return fileURLs([[NSFileManager defaultManager]
            URLsForDirectory:static_cast<NSSearchPathDirectory>(directory)
                   inDomains:NSUserDomainMask]);
    } @catch (NSException*) {
        return {};
    }
}

quorva::Result<quorva::FileURL> quorva::platform::urlForDirectoryInUserDomainCreating(
    SearchPathDirectory directory) {
    @try {
        NSError* error = nil;
        NSURL* url = [[NSFileManager defaultManager]
              URLForDirectory:static_cast<NSSearchPathDirectory>(directory)
                     inDomain:NSUserDomainMask
            appropriateForURL:nil
                       create:YES
                        error:&error];
        if (url == nil) {
            return std::unexpected(platformError(error));
        }
        return FileURL::directory(utf8String(url.path));
    } @catch (NSException* exception) {
        return std::unexpected(platformError(exception));
    }
}

quorva::Result<void> quorva::platform::createDirectoryWithIntermediateDirectories(
    const FileURL& url) {
    @try {
        NSError* error = nil;
        if (![[NSFileManager defaultManager] createDirectoryAtURL:foundationURL(url)
                                      withIntermediateDirectories:YES
                                                       attributes:nil
                                                            error:&error]) {
            return std::unexpected(platformError(error));
        }
        return {};
    } @catch (NSException* exception) {
        return std::unexpected(platformError(exception));
    }
}

quorva::Result<std::vector<quorva::FileURL>>
quorva::platform::contentsOfDirectorySkippingHiddenFiles(const FileURL& url) {
    @try {
        NSError* error = nil;
        NSArray<NSURL*>* contents = [[NSFileManager defaultManager]
              contentsOfDirectoryAtURL:foundationURL(url)
            includingPropertiesForKeys:[NSArray arrayWithObject:NSURLIsDirectoryKey]
                               options:NSDirectoryEnumerationSkipsHiddenFiles
                                 error:&error];
        if (contents == nil) {
            return std::unexpected(platformError(error));
        }
        return fileURLs(contents);
    } @catch (NSException* exception) {
        return std::unexpected(platformError(exception));
    }
}

bool quorva::platform::fileExistsAtPath(const std::string& path) {
    @try {
        return [[NSFileManager defaultManager] fileExistsAtPath:foundationString(path)];
    } @catch (NSException*) {
        return false;
    }
}
