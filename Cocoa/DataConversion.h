#pragma once

#import <Foundation/Foundation.h>

#include "Platform/Data.hpp"

namespace quorva {

/// A copy of the bytes of `data`.
NSData* foundationData(const Data& data);

/// A copy of the bytes of `data`.
Data bytes(NSData* data);

}  // namespace quorva
