#import "Cocoa/FinderActionContextObject.h"

#include <utility>

@implementation FinderActionContextObject

- (instancetype)initWithContext:(quorva::FinderActionContextPointer)context {
    self = [super init];
    if (self != nil) {
        _context = std::move(context);
    }
    return self;
}

- (quorva::FinderActionContextPointer)context {
    return _context;
}

@end
