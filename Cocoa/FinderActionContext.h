#pragma once

#import <Foundation/Foundation.h>

#include <memory>

#include "QuorvaFinderExtension/FinderActionContext.hpp"

/// A context as an object that a menu item can represent. Immutable; gives back the very context
/// that it was made with.
@interface FinderActionContext : NSObject {
   @private
    std::shared_ptr<const quorva::FinderActionContext> _context;
}

- (instancetype)initWithContext:(std::shared_ptr<const quorva::FinderActionContext>)context;

- (std::shared_ptr<const quorva::FinderActionContext>)context;

@end
