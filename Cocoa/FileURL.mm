#include "Platform/FileURL.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/StringConversion.h"
#import "Cocoa/URLConversion.h"

quorva::FileURL quorva::platform::standardizedFileURL(const FileURL& url) {
    @try {
        const std::string path = utf8String(foundationURL(url).URLByStandardizingPath.path);
        return url.hasDirectoryPath() ? FileURL::directory(path) : FileURL::file(path);
    } @catch (NSException*) {
        return url;
    }
}

std::string quorva::platform::pathByResolvingSymbolicLinks(const std::string& path) {
    @try {
        return utf8String(foundationString(path).stringByResolvingSymlinksInPath);
    } @catch (NSException*) {
        return path;
    }
}
