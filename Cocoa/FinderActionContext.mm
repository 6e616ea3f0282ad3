#import "Cocoa/FinderActionContext.h"

#include <utility>

@implementation FinderActionContext

- (instancetype)initWithContext:(std::shared_ptr<const quorva::FinderActionContext>)context {
    self = [super init];
    if (self != nil) {
        _context = std::move(context);
    }
    return self;
}

- (std::shared_ptr<const quorva::FinderActionContext>)context {
    return _context;
}

@end
