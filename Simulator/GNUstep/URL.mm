#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace {

std::string percentEncoded(std::string_view path) {
    constexpr std::string_view unreserved =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : path) {
        if (unreserved.find(character) != std::string_view::npos) {
            encoded += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            encoded += {'%', digits[byte >> 4], digits[byte & 0xF]};
        }
    }
    return encoded;
}

}  // namespace

@implementation NSURL (FoundationOfMacOS)

/// macOS: takes the caller's word for what the path names. GNUstep looks, and makes a directory URL
/// whenever there is a directory; and it takes a URL's path apart on the stack, which a path of
/// many megabytes exhausts.
+ (instancetype)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDirectory {
    constexpr NSUInteger lengthLimit = 1 << 20;
    if (path.length > lengthLimit) {
        [NSException raise:NSInvalidArgumentException format:@"The path is too long."];
    }
    if (!path.isAbsolutePath) {
        NSString* folder = [NSFileManager defaultManager].currentDirectoryPath;
        path = [folder stringByAppendingPathComponent:path];
    }
    std::string url = "file://" + percentEncoded(path.UTF8String);
    while (url.size() > sizeof "file:///" - 1 && url.ends_with('/')) {
        url.pop_back();
    }
    if (isDirectory && !url.ends_with('/')) {
        url += '/';
    }
    return [self URLWithString:[NSString stringWithUTF8String:url.c_str()]];
}

- (BOOL)hasDirectoryPath {
    return [self.absoluteString hasSuffix:@"/"];
}

@end
