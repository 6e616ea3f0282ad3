#include "Platform/Date.hpp"

#import <Foundation/Foundation.h>

double quorva::platform::timeIntervalSince1970() {
    return [NSDate date].timeIntervalSince1970;
}
