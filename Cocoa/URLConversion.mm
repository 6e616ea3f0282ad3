#import "Cocoa/URLConversion.h"

#include <utility>

#import "Cocoa/StringConversion.h"

NSURL* quorva::foundationURL(const FileURL& url) {
    return [NSURL fileURLWithPath:foundationString(url.path()) isDirectory:url.hasDirectoryPath()];
}

quorva::FileURL quorva::fileURL(NSURL* url) {
    const std::string path = utf8String(url.path);
    return url.hasDirectoryPath ? FileURL::directory(path) : FileURL::file(path);
}

std::vector<quorva::FileURL> quorva::fileURLs(NSArray<NSURL*>* urls) {
    std::vector<FileURL> result;
    result.reserve(urls.count);
    for (NSURL* url in urls) {
        if (FileURL file = fileURL(url); !file.path().empty()) {
            result.push_back(std::move(file));
        }
    }
    return result;
}
