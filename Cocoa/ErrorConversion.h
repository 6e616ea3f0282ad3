#pragma once

#import <Foundation/Foundation.h>

#include "Platform/Error.hpp"

namespace quorva {

/// `error` by its localized description. nil stands for a failure that gave no reason.
Error platformError(NSError* error);

/// `exception` by its reason.
Error platformError(NSException* exception);

}  // namespace quorva
