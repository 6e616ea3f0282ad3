#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace quorva {

/// `text` as a string of the platform, counted by its bytes: a NUL is a character like any other.
/// Never nil; bytes that are not UTF-8 become U+FFFD.
NSString* foundationString(std::string_view text);

/// `string` in UTF-8. Surrogates without a partner become U+FFFD; nil is the empty string.
std::string utf8String(NSString* string);

}  // namespace quorva
