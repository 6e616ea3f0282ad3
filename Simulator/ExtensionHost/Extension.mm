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

using nlohmann::ordered_json;
using quorva::foundationString;
using quorva::utf8String;

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

ordered_json json(const quorva::FinderActionContext& context) {
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
        return json(*[static_cast<FinderActionContextObject*>(object) context]);
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        ordered_json shown = {{"type", "dictionary"}};
        shown.update(simulator::jsonWithFoundationObject(object));
        return shown;
    }
    return {{"type", "other"}, {"value", simulator::descriptionOfObject(object)}};
}

id foundationObject(const simulator::RepresentedObject& object) {
    if (const auto* context =
            std::get_if<std::shared_ptr<const quorva::FinderActionContext>>(&object)) {
        return [[[FinderActionContextObject alloc] initWithContext:*context] autorelease];
    }
    if (const auto* dictionary = std::get_if<nlohmann::json>(&object)) {
        return simulator::foundationObjectWithJSON(*dictionary);
    }
    if (const auto* text = std::get_if<std::string>(&object)) {
        return [[[NSAttributedString alloc] initWithString:foundationString(*text)] autorelease];
    }
    return nil;
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

std::expected<void, std::string> simulator::startExtension() {
    std::expected<void, std::string> result;
    enter("starting", [&] {
        // Without a window manager to ask, GNUstep complains of every style of window.
        [[NSUserDefaults standardUserDefaults] registerDefaults:@{
            @"GSX11HandlesWindowDecorations" : @(NO)
        }];
        makeApplication();
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

ordered_json simulator::requestMenu(unsigned long kind, const FinderState& state) {
    ordered_json shown;
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
        sender.tag = static_cast<NSInteger>(item.tag);
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

ordered_json simulator::toolbarItem() {
    ordered_json result = {{"name", nullptr}, {"toolTip", nullptr}};
    enter("toolbarItemName", [&] {
        if ([principalObject respondsToSelector:@selector(toolbarItemName)]) {
            result["name"] = utf8String(principalObject.toolbarItemName);
        }
        if ([principalObject respondsToSelector:@selector(toolbarItemToolTip)]) {
            result["toolTip"] = utf8String(principalObject.toolbarItemToolTip);
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
