#import "Cocoa/StringConversion.h"

#include "Cocoa/UTF16.hpp"

NSString* quorva::foundationString(std::string_view text) {
    const UTF16 units = utf16WithUTF8(text);
    // An empty vector has no address to give.
    return units.empty() ? @"" : [NSString stringWithCharacters:units.data() length:units.size()];
}

std::string quorva::utf8String(NSString* string) {
    UTF16 units(string.length);
    if (units.empty()) {
        return {};
    }
    [string getCharacters:units.data() range:NSMakeRange(0, units.size())];
    return utf8WithUTF16(units);
}
