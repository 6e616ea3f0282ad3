#import "Cocoa/URLConversion.h"

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
        if (url.path.length > 0) {
            result.push_back(fileURL(url));
        }
    }
    return result;
}
