#import <AppKit/AppKit.h>

#include <unordered_map>

#include "Cocoa/ObjectHolder.h"
#import "Simulator/GNUstep/MethodExchange.h"

namespace {

/// The identifiers of the menu items that have one. Menus belong to the main thread.
std::unordered_map<NSMenuItem*, quorva::ObjectHolder<NSString>>& identifiers() {
    static auto& map = *new std::unordered_map<NSMenuItem*, quorva::ObjectHolder<NSString>>();
    return map;
}

}  // namespace

@interface NSMenuItem (Simulator)
- (void)simulatorDealloc;
@end

@implementation NSMenuItem (AppKitOfMacOS)

+ (void)load {
    simulator::exchangeMethods(self, @selector(dealloc), @selector(simulatorDealloc));
}

- (void)simulatorDealloc {
    identifiers().erase(self);
    [self simulatorDealloc];
}

- (NSUserInterfaceItemIdentifier)identifier {
    const auto found = identifiers().find(self);
    return found == identifiers().end() ? nil : found->second.get();
}

- (void)setIdentifier:(NSUserInterfaceItemIdentifier)identifier {
    if (identifier == nil) {
        identifiers().erase(self);
    } else {
        NSString* copy = [[identifier copy] autorelease];
        identifiers().insert_or_assign(self, quorva::ObjectHolder<NSString>(copy));
    }
}

@end
