#include "Simulator/ExtensionHost/Extension.hpp"

#import <AppKit/AppKit.h>
#import <FinderSync/FIFinderSyncController+Simulator.h>
#import <FinderSync/FinderSync.h>
#import <Foundation/Foundation.h>
#import <objc/runtime.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

#import "Cocoa/FinderActionContextObject.h"
#import "Cocoa/StringConversion.h"

// The principal class is known by its name alone; here the method is only a name too.
#pragma clang diagnostic ignored "-Wundeclared-selector"

/// Notes that a descriptor has become readable.
@interface SimulatorReadabilityWatcher : NSObject <RunLoopEvents> {
   @public
    BOOL isReadable;
}
@end

@implementation SimulatorReadabilityWatcher

- (void)receivedEvent:(void*)data
                 type:(RunLoopEventType)type
                extra:(void*)extra
              forMode:(NSString*)mode {
    isReadable = YES;
}

@end

namespace {

using quorva::foundationString;
using quorva::utf8String;
using simulator::Value;

FIFinderSync* principalObject = nil;
NSMenu* lastMenu = nil;

/// Carries out `entry`, which calls into the extension.
template <typename Entry>
void enter(const char* what, Entry entry) {
    @autoreleasepool {
        @try {
            entry();
        } @catch (NSException* exception) {
            std::fprintf(stderr, "the extension ended: %s raised %s: %s\n", what,
                         utf8String(exception.name).c_str(), utf8String(exception.reason).c_str());
            _exit(1);
        }
    }
}

/// Finder's selection and target, given for as long as this lives.
class FinderStateScope {
   public:
    explicit FinderStateScope(const simulator::FinderState& state) {
        NSMutableArray<NSURL*>* urls = nil;
        if (state.selectedPaths) {
            urls = [NSMutableArray arrayWithCapacity:state.selectedPaths->size()];
            for (const std::string& path : *state.selectedPaths) {
                [urls addObject:[NSURL fileURLWithPath:foundationString(path)]];
            }
        }
        NSURL* const target = state.targetedPath
                                  ? [NSURL fileURLWithPath:foundationString(*state.targetedPath)
                                               isDirectory:YES]
                                  : nil;
        [[FIFinderSyncController defaultController] beginWithSelectedItemURLs:urls
                                                                  targetedURL:target];
    }
    FinderStateScope(const FinderStateScope&) = delete;
    FinderStateScope& operator=(const FinderStateScope&) = delete;
    ~FinderStateScope() { [[FIFinderSyncController defaultController] end]; }
};

Value value(id object) {
    if ([object isKindOfClass:[NSString class]]) {
        return {utf8String(object)};
    }
    if ([object isKindOfClass:[NSNumber class]]) {
        NSNumber* const number = object;
        if ([number isKindOfClass:[[NSNumber numberWithBool:YES] class]]) {
            return {static_cast<bool>(number.boolValue)};
        }
        switch (number.objCType[0]) {
            case 'f':
            case 'd':
                return {number.doubleValue};
            case 'Q':
            case 'L':
                return {static_cast<std::uint64_t>(number.unsignedLongLongValue)};
            default:
                return {static_cast<std::int64_t>(number.longLongValue)};
        }
    }
    if ([object isKindOfClass:[NSArray class]]) {
        Value::Array array;
        for (id element in static_cast<NSArray*>(object)) {
            array.push_back(value(element));
        }
        return {std::move(array)};
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        Value::Dictionary dictionary;
        for (id key in static_cast<NSDictionary*>(object)) {
            dictionary.emplace(utf8String([key description]),
                               value([static_cast<NSDictionary*>(object) objectForKey:key]));
        }
        return {std::move(dictionary)};
    }
    if (object == [NSNull null]) {
        return {};
    }
    return {utf8String([object description])};
}

id foundationObject(const Value& value);

NSDictionary* foundationDictionary(const Value::Dictionary& entries) {
    NSMutableDictionary* const dictionary =
        [NSMutableDictionary dictionaryWithCapacity:entries.size()];
    for (const auto& [key, entry] : entries) {
        [dictionary setObject:foundationObject(entry) forKey:foundationString(key)];
    }
    return dictionary;
}

id foundationObject(const Value& value) {
    if (const auto* boolean = std::get_if<bool>(&value.content)) {
        return [NSNumber numberWithBool:*boolean];
    }
    if (const auto* integer = std::get_if<std::int64_t>(&value.content)) {
        return [NSNumber numberWithLongLong:*integer];
    }
    if (const auto* integer = std::get_if<std::uint64_t>(&value.content)) {
        return [NSNumber numberWithUnsignedLongLong:*integer];
    }
    if (const auto* real = std::get_if<double>(&value.content)) {
        return [NSNumber numberWithDouble:*real];
    }
    if (const auto* text = std::get_if<std::string>(&value.content)) {
        return foundationString(*text);
    }
    if (const auto* elements = std::get_if<Value::Array>(&value.content)) {
        NSMutableArray* const array = [NSMutableArray arrayWithCapacity:elements->size()];
        for (const Value& element : *elements) {
            [array addObject:foundationObject(element)];
        }
        return array;
    }
    if (const auto* entries = std::get_if<Value::Dictionary>(&value.content)) {
        return foundationDictionary(*entries);
    }
    return [NSNull null];
}

simulator::RepresentedObject representedObject(id object) {
    if (object == nil) {
        return {};
    }
    if ([object isKindOfClass:[FinderActionContextObject class]]) {
        return [static_cast<FinderActionContextObject*>(object) context];
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        return std::get<Value::Dictionary>(value(object).content);
    }
    return simulator::OtherObject{utf8String([object description])};
}

id foundationObject(const simulator::RepresentedObject& object) {
    if (const auto* context =
            std::get_if<std::shared_ptr<const quorva::FinderActionContext>>(&object)) {
        return [[[FinderActionContextObject alloc] initWithContext:*context] autorelease];
    }
    if (const auto* entries = std::get_if<Value::Dictionary>(&object)) {
        return foundationDictionary(*entries);
    }
    if (const auto* other = std::get_if<simulator::OtherObject>(&object)) {
        return
            [[[NSAttributedString alloc] initWithString:foundationString(other->text)] autorelease];
    }
    return nil;
}

simulator::ShownMenu shownMenu(NSMenu* menu);

simulator::ShownItem shownItem(NSMenuItem* item) {
    simulator::ShownItem shown;
    if ([item isSeparatorItem]) {
        shown.isSeparator = true;
        return shown;
    }
    shown.title = utf8String(item.title);
    shown.enabled = [item isEnabled];
    shown.keyEquivalent = utf8String(item.keyEquivalent);
    if (item.identifier != nil) {
        shown.identifier = utf8String(item.identifier);
    }
    shown.tag = item.tag;
    shown.representedObject = representedObject(item.representedObject);
    if ([item hasSubmenu]) {
        shown.submenu = shownMenu(item.submenu);
    }
    if (item.action != nullptr && !sel_isEqual(item.action, @selector(submenuAction:))) {
        shown.action = utf8String(NSStringFromSelector(item.action));
        if (item.target != nil) {
            shown.target = utf8String(NSStringFromClass([item.target class]));
        }
    }
    return shown;
}

simulator::ShownMenu shownMenu(NSMenu* menu) {
    simulator::ShownMenu shown;
    shown.title = utf8String(menu.title);
    // A menu that enables its items by itself does so just before it is shown.
    if (menu.autoenablesItems) {
        [menu update];
    }
    NSArray* const items = menu.itemArray;
    shown.items.reserve(items.count);
    for (NSMenuItem* item in items) {
        shown.items.push_back(shownItem(item));
    }
    return shown;
}

/// The item of the last menu at `indexPath`, as the user reaches it: through submenus that open.
std::expected<NSMenuItem*, std::string> clickableItem(const std::vector<std::size_t>& indexPath) {
    if (lastMenu == nil) {
        return std::unexpected("there is no menu to click in: request one first");
    }
    NSMenu* menu = lastMenu;
    NSMenuItem* item = nil;
    for (const std::size_t index : indexPath) {
        if (menu == nil || index >= static_cast<std::size_t>(menu.numberOfItems)) {
            return std::unexpected("the index path leads to no item of the last menu");
        }
        item = static_cast<NSMenuItem*>([menu itemAtIndex:static_cast<NSInteger>(index)]);
        if ([item isSeparatorItem]) {
            return std::unexpected("the index path leads to a separator");
        }
        if (![item isEnabled]) {
            return std::unexpected("the index path leads to or through a disabled item");
        }
        menu = [item hasSubmenu] ? item.submenu : nil;
    }
    if (menu != nil) {
        return std::unexpected("the index path leads to an item that opens a submenu");
    }
    if (item.action == nullptr) {
        return std::unexpected("the index path leads to an item without an action");
    }
    return item;
}

}  // namespace

std::expected<void, std::string> simulator::startExtension() {
    std::expected<void, std::string> result;
    enter("starting", [&] {
        // Without a window manager to ask, GNUstep complains of every style of window.
        [[NSUserDefaults standardUserDefaults] registerDefaults:@{
            @"GSX11HandlesWindowDecorations" : @(NO)
        }];
        [NSApplication sharedApplication];
        NSDictionary* const description =
            [[NSBundle mainBundle].infoDictionary objectForKey:@"NSExtension"];
        if (![description isKindOfClass:[NSDictionary class]]) {
            result = std::unexpected("Info.plist has no NSExtension dictionary");
            return;
        }
        NSString* const name = [description objectForKey:@"NSExtensionPrincipalClass"];
        if (![name isKindOfClass:[NSString class]]) {
            result = std::unexpected("Info.plist names no NSExtensionPrincipalClass");
            return;
        }
        const Class principalClass = NSClassFromString(name);
        if (![principalClass isSubclassOfClass:[FIFinderSync class]]) {
            result = std::unexpected(utf8String(name) + " is no subclass of FIFinderSync");
            return;
        }
        principalObject = [[principalClass alloc] init];
        if (principalObject == nil) {
            result = std::unexpected(utf8String(name) + " could not be created");
        }
    });
    return result;
}

std::optional<simulator::ShownMenu> simulator::requestMenu(unsigned long kind,
                                                           const FinderState& state) {
    std::optional<ShownMenu> shown;
    enter("menuForMenuKind:", [&] {
        [lastMenu release];
        lastMenu = nil;
        {
            const FinderStateScope scope(state);
            lastMenu = [[principalObject menuForMenuKind:static_cast<FIMenuKind>(kind)] retain];
        }
        if (lastMenu != nil) {
            shown = shownMenu(lastMenu);
        }
    });
    return shown;
}

std::expected<void, std::string> simulator::clickItem(const std::vector<std::size_t>& indexPath,
                                                      Delivery delivery, const FinderState& state) {
    std::expected<void, std::string> result;
    enter("performFeatureChild:", [&] {
        const auto clickable = clickableItem(indexPath);
        if (!clickable) {
            result = std::unexpected(clickable.error());
            return;
        }
        NSMenuItem* sender = *clickable;
        id target = sender.target;
        if (delivery == Delivery::finder) {
            NSMenuItem* const rebuilt = [[[NSMenuItem alloc] initWithTitle:sender.title
                                                                    action:sender.action
                                                             keyEquivalent:@""] autorelease];
            rebuilt.enabled = [sender isEnabled];
            rebuilt.tag = sender.tag;
            rebuilt.state = sender.state;
            rebuilt.indentationLevel = sender.indentationLevel;
            sender = rebuilt;
            target = principalObject;
        }
        const FinderStateScope scope(state);
        if (target == nil || ![NSApp sendAction:sender.action to:target from:sender]) {
            result = std::unexpected("nothing answers to the action of the item");
        }
    });
    return result;
}

void simulator::sendItem(const SentItem& item, const FinderState& state) {
    enter("performFeatureChild:", [&] {
        NSMenuItem* const sender =
            [[[NSMenuItem alloc] initWithTitle:foundationString(item.title)
                                        action:@selector(performFeatureChild:)
                                 keyEquivalent:@""] autorelease];
        if (item.identifier) {
            sender.identifier = foundationString(*item.identifier);
        }
        if (item.tag) {
            sender.tag = static_cast<NSInteger>(*item.tag);
        }
        sender.representedObject = foundationObject(item.representedObject);
        const FinderStateScope scope(state);
        [NSApp sendAction:sender.action to:principalObject from:sender];
    });
}

std::vector<std::string> simulator::monitoredPaths() {
    std::vector<std::string> paths;
    enter("directoryURLs", [&] {
        for (NSURL* url in [FIFinderSyncController defaultController].directoryURLs) {
            paths.push_back(utf8String(url.path));
        }
    });
    return paths;
}

simulator::ToolbarItem simulator::toolbarItem() {
    ToolbarItem result;
    enter("toolbarItemName", [&] {
        if ([principalObject respondsToSelector:@selector(toolbarItemName)]) {
            result.name = utf8String(principalObject.toolbarItemName);
        }
        if ([principalObject respondsToSelector:@selector(toolbarItemToolTip)]) {
            result.toolTip = utf8String(principalObject.toolbarItemToolTip);
        }
    });
    return result;
}

void simulator::runRunLoop(double seconds) {
    enter("the run loop", [&] {
        NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:seconds];
        while (end.timeIntervalSinceNow > 0) {
            @autoreleasepool {
                // It returns at once, and NO, when nothing is left that could wake it.
                if (![[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:end]) {
                    [NSThread sleepForTimeInterval:std::clamp(end.timeIntervalSinceNow, 0., .1)];
                }
            }
        }
    });
}

void simulator::runRunLoopUntilReadable(int descriptor) {
    enter("the run loop", [&] {
        SimulatorReadabilityWatcher* const watcher =
            [[[SimulatorReadabilityWatcher alloc] init] autorelease];
        NSRunLoop* const runLoop = [NSRunLoop currentRunLoop];
        void* const data = reinterpret_cast<void*>(static_cast<std::intptr_t>(descriptor));
        [runLoop addEvent:data type:ET_RDESC watcher:watcher forMode:NSDefaultRunLoopMode];
        while (!watcher->isReadable) {
            @autoreleasepool {
                [runLoop runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantFuture]];
            }
        }
        [runLoop removeEvent:data type:ET_RDESC forMode:NSDefaultRunLoopMode all:YES];
    });
}
