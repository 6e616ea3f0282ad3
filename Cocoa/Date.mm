#include "Platform/Date.hpp"

#import <Foundation/Foundation.h>

double quorva::timeIntervalSince1970() {
    return [NSDate date].timeIntervalSince1970;
}
