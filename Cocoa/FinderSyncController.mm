#include "Platform/FinderSyncController.hpp"

#import <FinderSync/FinderSync.h>
#import <Foundation/Foundation.h>

#import "Cocoa/ErrorConversion.h"
#import "Cocoa/URLConversion.h"

std::optional<std::vector<quorva::FileURL>> quorva::platform::selectedItemURLs() {
    @try {
        NSArray<NSURL*>* urls = [FIFinderSyncController defaultController].selectedItemURLs;
        return urls == nil ? std::nullopt : std::optional(fileURLs(urls));
    } @catch (NSException*) {
        return std::nullopt;
    }
}

std::optional<quorva::FileURL> quorva::platform::targetedURL() {
    @try {
        NSURL* url = [FIFinderSyncController defaultController].targetedURL;
        return url.path.length == 0 ? std::nullopt : std::optional(fileURL(url));
    } @catch (NSException*) {
        return std::nullopt;
    }
}

quorva::Result<void> quorva::platform::setDirectoryURLs(const std::set<FileURL>& urls) {
    @try {
        NSMutableSet<NSURL*>* directoryURLs = [NSMutableSet setWithCapacity:urls.size()];
        for (const FileURL& url : urls) {
            [directoryURLs addObject:foundationURL(url)];
        }
        [FIFinderSyncController defaultController].directoryURLs = directoryURLs;
        return {};
    } @catch (NSException* exception) {
        return std::unexpected(platformError(exception));
    }
}
