#import <Foundation/Foundation.h>

#include <filesystem>
#include <vector>

@implementation NSString (FoundationOfMacOS)

/// macOS: a string of exactly these units. GNUstep takes a first U+FEFF or U+FFFE for a byte order
/// mark and drops it, and in the other order swaps all bytes.
+ (instancetype)stringWithCharacters:(const unichar*)units length:(NSUInteger)length {
    if (length == 0 || (units[0] != 0xFEFF && units[0] != 0xFFFE)) {
        return [[[self alloc] initWithCharacters:units length:length] autorelease];
    }
    std::vector<unichar> behindASpace{' '};
    behindASpace.insert(behindASpace.end(), units, units + length);
    NSMutableString* string =
        [[[NSMutableString alloc] initWithCharacters:behindASpace.data()
                                              length:behindASpace.size()] autorelease];
    [string deleteCharactersInRange:NSMakeRange(0, 1)];
    return string;
}

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
