#import "Cocoa/StringConversion.h"

#include <array>

#include "Cocoa/UTF16.hpp"

NSString* quorva::foundationString(std::string_view text) {
    if (text.empty()) {
        return @"";
    }
    // Most strings are ASCII, which the platform keeps as it is.
    if (isASCII(text)) {
        return [[[NSString alloc] initWithBytes:text.data()
                                         length:text.size()
                                       encoding:NSASCIIStringEncoding] autorelease];
    }
    const UTF16 units = utf16WithUTF8(text);
    return [NSString stringWithCharacters:units.data() length:units.size()];
}

std::string quorva::utf8String(NSString* string) {
    // Enough for most strings, so that those take no memory but the result's.
    std::array<unichar, 256> buffer;
    const NSUInteger length = string.length;
    UTF16 longer(length > buffer.size() ? length : 0);
    unichar* const units = longer.empty() ? buffer.data() : longer.data();
    [string getCharacters:units range:NSMakeRange(0, length)];
    return utf8WithUTF16({units, length});
}
