#include "Platform/UUID.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/StringConversion.h"

std::string quorva::platform::newUUIDString() {
    return utf8String([NSUUID UUID].UUIDString);
}
