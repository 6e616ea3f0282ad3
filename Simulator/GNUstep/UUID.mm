#import <Foundation/Foundation.h>

#include <random>

@implementation NSUUID (FoundationOfMacOS)

/// macOS: a random UUID of version 4. GNUstep's says neither its version nor its variant.
+ (instancetype)UUID {
    std::random_device random;
    unsigned char bytes[16];
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(random());
    }
    bytes[6] = (bytes[6] & 0x0F) | 0x40;
    bytes[8] = (bytes[8] & 0x3F) | 0x80;
    return [[[self alloc] initWithUUIDBytes:bytes] autorelease];
}

@end
