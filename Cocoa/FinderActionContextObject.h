#pragma once

#import <Foundation/Foundation.h>

#include "QuorvaFinderExtension/FinderActionContext.hpp"

/// A context as an object that a menu item can represent. Immutable; gives back the very context
/// that it was made with.
@interface FinderActionContextObject : NSObject {
   @private
    quorva::FinderActionContextPointer _context;
}

- (instancetype)initWithContext:(quorva::FinderActionContextPointer)context;

- (quorva::FinderActionContextPointer)context;

@end
