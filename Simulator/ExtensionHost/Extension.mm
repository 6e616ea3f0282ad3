#include "Simulator/ExtensionHost/Extension.hpp"

#import <AppKit/AppKit.h>
#import <FinderSync/FIFinderSyncController+Simulator.h>
#import <FinderSync/FinderSync.h>
#import <Foundation/Foundation.h>
#import <objc/runtime.h>

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <utility>

#import "Cocoa/FinderActionContextObject.h"
#import "Cocoa/StringConversion.h"
#include "Simulator/ExtensionHost/FinderFeatureActionText.hpp"
#import "Simulator/ExtensionHost/MenuPicture.h"
#import "Simulator/GNUstep/JSONConversion.h"

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

using nlohmann::json;
using nlohmann::ordered_json;
using quorva::foundationString;
using quorva::utf8String;

FIFinderSync* principalObject = nil;
NSMenu* lastMenu = nil;

/// Gives the extension the selection and the target of `state`, until the controller is told `end`.
void beginFinderState(const json& state) {
    NSMutableArray<NSURL*>* urls = nil;
    if (state.contains("selectedPaths")) {
        urls = [NSMutableArray array];
        for (const json& path : state["selectedPaths"]) {
            [urls addObject:[NSURL fileURLWithPath:foundationString(path.get<std::string>())]];
        }
    }
    NSURL* target = nil;
    if (const json path = state.value("targetedPath", json()); !path.is_null()) {
        target = [NSURL fileURLWithPath:foundationString(path.get<std::string>()) isDirectory:YES];
    }
    [[FIFinderSyncController defaultController] beginWithSelectedItemURLs:urls targetedURL:target];
}

/// Has `target` perform the action of `sender`, with Finder in `state`. Returns whether it can.
bool perform(NSMenuItem* sender, id target, const json& state) {
    beginFinderState(state);
    const bool isPerformed = target != nil && [NSApp sendAction:sender.action
                                                             to:target
                                                           from:sender];
    [[FIFinderSyncController defaultController] end];
    return isPerformed;
}

ordered_json shownContext(const quorva::FinderActionContext& context) {
    ordered_json selectedPaths = ordered_json::array();
    for (const quorva::FileURL& url : context.selectedURLs().urls()) {
        selectedPaths.push_back(url.path());
    }
    const auto& target = context.targetedURL();
    return {{"type", "FinderActionContext"},
            {"actionID", context.actionID()},
            {"title", context.title()},
            {"action", simulator::finderFeatureActionText(context.action())},
            {"selectedPaths", std::move(selectedPaths)},
            {"targetedPath", target ? ordered_json(target->path()) : ordered_json()},
            {"destinationPath", context.destinationPath()},
            {"presetID", context.presetID()}};
}

ordered_json representedObject(id object) {
    if (object == nil) {
        return nullptr;
    }
    if ([object isKindOfClass:[FinderActionContextObject class]]) {
        return shownContext(*[static_cast<FinderActionContextObject*>(object) context]);
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        ordered_json shown = {{"type", "dictionary"}};
        shown.update(simulator::jsonWithFoundationObject(object));
        return shown;
    }
    return {{"type", "other"}, {"value", simulator::descriptionOfObject(object)}};
}

ordered_json shownMenu(NSMenu* menu);

ordered_json shownItem(NSMenuItem* item) {
    if ([item isSeparatorItem]) {
        return {{"separator", true}};
    }
    // AppKit gives an item with a submenu an action and a target of its own.
    const bool hasOwnAction =
        item.action != nullptr && !sel_isEqual(item.action, @selector(submenuAction:));
    ordered_json shown = {
        {"title", utf8String(item.title)},
        {"enabled", static_cast<bool>([item isEnabled])},
        {"action",
         hasOwnAction ? ordered_json(utf8String(NSStringFromSelector(item.action))) : nullptr},
        {"target", hasOwnAction && item.target != nil
                       ? ordered_json(utf8String(NSStringFromClass([item.target class])))
                       : nullptr},
        {"keyEquivalent", utf8String(item.keyEquivalent)},
        {"identifier", simulator::jsonWithFoundationObject(item.identifier)},
        {"tag", item.tag},
        {"representedObject", representedObject(item.representedObject)}};
    if ([item hasSubmenu]) {
        shown["submenu"] = shownMenu(item.submenu);
    }
    return shown;
}

ordered_json shownMenu(NSMenu* menu) {
    // A menu that enables its items by itself does so just before it is shown.
    if (menu.autoenablesItems) {
        [menu update];
    }
    ordered_json items = ordered_json::array();
    for (NSMenuItem* item in menu.itemArray) {
        items.push_back(shownItem(item));
    }
    return {{"title", utf8String(menu.title)}, {"items", std::move(items)}};
}

/// The item of the last menu to which `indexPath` leads through enabled items, enabled as well. Nil
/// for no position.
std::expected<NSMenuItem*, std::string> lastMenuItem(const std::vector<std::size_t>& indexPath) {
    if (lastMenu == nil) {
        return std::unexpected("there is no menu: request one first");
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
    return item;
}

/// Makes the application object. macOS: a signal ends the process. GNUstep runs Objective-C in
/// handlers of its own, which end, hang or abort the process, or do nothing; no signal gets there.
void makeApplication() {
    sigset_t signals;
    sigset_t former;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM}) {
        sigaddset(&signals, signal);
    }
    pthread_sigmask(SIG_BLOCK, &signals, &former);
    [NSApplication sharedApplication];
    for (const int signal : {SIGINT, SIGTERM}) {
        std::signal(signal, SIG_DFL);
    }
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

}  // namespace

void simulator::enterExtension(const std::function<void()>& work) {
    @autoreleasepool {
        @try {
            work();
        } @catch (NSException* exception) {
            std::fprintf(stderr, "the extension ended: it raised %s: %s\n",
                         utf8String(exception.name).c_str(), utf8String(exception.reason).c_str());
            _exit(1);
        }
    }
}

bool simulator::startExtension() {
    // Without a window manager to ask, GNUstep complains of every style of window.
    [[NSUserDefaults standardUserDefaults] registerDefaults:@{
        @"GSX11HandlesWindowDecorations" : @(NO)
    }];
    makeApplication();
    NSString* const name = [[NSBundle mainBundle].infoDictionary
        valueForKeyPath:@"NSExtension.NSExtensionPrincipalClass"];
    const Class principalClass = NSClassFromString(name);
    if ([principalClass isSubclassOfClass:[FIFinderSync class]]) {
        principalObject = [[principalClass alloc] init];
    }
    return principalObject != nil;
}

ordered_json simulator::requestMenu(unsigned long kind, const json& state) {
    [lastMenu release];
    beginFinderState(state);
    lastMenu = [[principalObject menuForMenuKind:static_cast<FIMenuKind>(kind)] retain];
    [[FIFinderSyncController defaultController] end];
    return lastMenu == nil ? ordered_json() : shownMenu(lastMenu);
}

std::expected<void, std::string> simulator::clickItem(const std::vector<std::size_t>& indexPath,
                                                      bool isRebuilt, const json& state) {
    const auto found = lastMenuItem(indexPath);
    if (!found) {
        return std::unexpected(found.error());
    }
    NSMenuItem* item = *found;
    if ([item hasSubmenu]) {
        return std::unexpected("the index path leads to an item that opens a submenu");
    }
    if (item.action == nullptr) {
        return std::unexpected("the index path leads to an item without an action");
    }
    id target = item.target;
    if (isRebuilt) {
        NSMenuItem* const rebuilt = [[[NSMenuItem alloc] initWithTitle:item.title
                                                                action:item.action
                                                         keyEquivalent:@""] autorelease];
        rebuilt.enabled = [item isEnabled];
        rebuilt.tag = item.tag;
        rebuilt.state = item.state;
        rebuilt.indentationLevel = item.indentationLevel;
        item = rebuilt;
        target = principalObject;
    }
    if (!perform(item, target, state)) {
        return std::unexpected("nothing answers to the action of the item");
    }
    return {};
}

std::expected<std::string, std::string> simulator::drawMenu(
    const std::vector<std::size_t>& indexPath, unsigned scale) {
    const auto opened = lastMenuItem(indexPath);
    if (!opened) {
        return std::unexpected(opened.error());
    }
    if (*opened != nil && ![*opened hasSubmenu]) {
        return std::unexpected("the index path leads to an item that opens no submenu");
    }
    if (lastMenu.numberOfItems == 0) {
        return std::unexpected("the last menu has no items");
    }
    const auto picture = pictureOfMenu(lastMenu, indexPath, scale);
    if (!picture) {
        return std::unexpected(picture.error());
    }
    return utf8String([*picture base64EncodedStringWithOptions:0]);
}

void simulator::sendItem(const json& item, const quorva::FinderActionContextPointer& context,
                         const json& state) {
    NSMenuItem* const sender =
        [[[NSMenuItem alloc] initWithTitle:foundationString(item["title"].get<std::string>())
                                    action:@selector(performFeatureChild:)
                             keyEquivalent:@""] autorelease];
    if (const json identifier = item.value("identifier", json()); !identifier.is_null()) {
        sender.identifier = foundationString(identifier.get<std::string>());
    }
    sender.tag = item.value("tag", NSInteger(0));
    json object = item.value("representedObject", json());
    if (context != nullptr) {
        sender.representedObject =
            [[[FinderActionContextObject alloc] initWithContext:context] autorelease];
    } else if (!object.is_null() && object["type"] == "dictionary") {
        object.erase("type");
        sender.representedObject = foundationObjectWithJSON(object);
    } else if (!object.is_null()) {
        sender.representedObject = [[[NSAttributedString alloc]
            initWithString:foundationString(object["value"].get<std::string>())] autorelease];
    }
    perform(sender, principalObject, state);
}

std::vector<std::string> simulator::monitoredPaths() {
    std::vector<std::string> paths;
    for (NSURL* url in [FIFinderSyncController defaultController].directoryURLs) {
        paths.push_back(utf8String(url.path));
    }
    return paths;
}

ordered_json simulator::toolbarItem() {
    return {{"name", utf8String(principalObject.toolbarItemName)},
            {"toolTip", utf8String(principalObject.toolbarItemToolTip)}};
}

void simulator::runRunLoop(double seconds) {
    NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:seconds];
    while (end.timeIntervalSinceNow > 0) {
        @autoreleasepool {
            // It returns at once, and NO, when nothing is left that could wake it.
            if (![[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:end]) {
                [NSThread sleepForTimeInterval:std::clamp(end.timeIntervalSinceNow, 0., .1)];
            }
        }
    }
}

void simulator::runRunLoopUntilReadable(int descriptor) {
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
}
