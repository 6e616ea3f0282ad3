#import <Foundation/Foundation.h>

#include <filesystem>

@implementation NSString (FoundationOfMacOS)

/// macOS: follows the links in that part of the path which exists. GNUstep gives up on the whole
/// path when its last component does not exist.
- (NSString*)stringByResolvingSymlinksInPath {
    if (!self.isAbsolutePath) {
        return self.stringByStandardizingPath;
    }
    std::error_code error;
    const auto resolved = std::filesystem::weakly_canonical(self.UTF8String, error);
    return error ? self : [NSString stringWithUTF8String:resolved.c_str()];
}

@end
