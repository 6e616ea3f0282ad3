#import "Benchmarks/Floor.h"

#include <fcntl.h>
#include <os/log.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <set>

#import "Cocoa/FinderActionContextObject.h"
#import "Cocoa/StringConversion.h"
#import "FinderSync/FinderSync.h"
#include "QuorvaFinderExtension/FinderFeature.hpp"

// `FinderSync` declares the method; here it is only a name.
#pragma clang diagnostic ignored "-Wundeclared-selector"

namespace benchmarks {

using quorva::foundationString;

struct FloorItem {
    bool isSeparator;
    /// The key of a title that is localized, nil for one of the user's.
    NSString* key;
    std::string title;
    bool isActionable;
    bool enabled;
    std::string identifier;
    NSInteger tag;
    enum { nothing, context, dictionary } representedObject;
    std::unique_ptr<FloorMenu> submenu;
};

namespace {

/// A path in the forms that the frameworks and the system take.
struct Path {
    explicit Path(std::string text);

    std::string bytes;
    NSString* string;
};

NSFileManager* fileManager() {
    return [NSFileManager defaultManager];
}

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stdout, "the floor lacks %s\n", what);
        std::exit(EXIT_FAILURE);
    }
}

Path::Path(std::string text) : bytes(std::move(text)), string([foundationString(bytes) retain]) {}

/// The titles that are keys of the string table.
const std::set<std::string>& localizedTitles() {
    static const std::set<std::string> titles = [] {
        std::set<std::string> found = {"复制到文件夹",    "移动到文件夹",  "图片",
                                       "列表 · 最近修改", "图标 · 按名称", "分栏 · 按名称"};
        for (const quorva::FinderFeature feature : quorva::allFinderFeatures) {
            found.insert(title(feature));
            for (const quorva::FinderFeatureChild& child : children(feature)) {
                found.insert(child.title);
            }
        }
        return found;
    }();
    return titles;
}

void removeShownTitles(std::set<std::string>& titles, const quorva::Menu& menu) {
    for (const quorva::MenuItem& item : menu.items) {
        titles.erase(item.title);
        if (item.submenu) {
            removeShownTitles(titles, *item.submenu);
        }
    }
}

/// The keys of the titles that `menu` does not show. They are looked up all the same, because an
/// item of the user's may have the title of any command.
std::vector<NSString*> keysNotShown(const quorva::Menu& menu) {
    std::set<std::string> titles = localizedTitles();
    removeShownTitles(titles, menu);
    std::vector<NSString*> keys;
    for (const std::string& title : titles) {
        keys.push_back([foundationString(title) retain]);
    }
    return keys;
}

/// The keys of the commands of the catalogue from the first to the one that is clicked: a title
/// stands for the first command that has it.
const std::vector<NSString*>& keysUntilClicked() {
    static const std::vector<NSString*> keys = [] {
        std::vector<NSString*> found;
        for (const quorva::FinderFeature feature : quorva::allFinderFeatures) {
            for (const quorva::FinderFeatureChild& child : children(feature)) {
                found.push_back([foundationString(child.title) retain]);
                if (child.actionID == "compressToZIP") {
                    return found;
                }
            }
        }
        return found;
    }();
    return keys;
}

NSString* localizedTitle(NSString* key) {
    return [[NSBundle mainBundle] localizedStringForKey:key value:@"" table:nil];
}

FloorMenu floorMenu(const quorva::Menu& menu) {
    FloorMenu result{menu.title, {}};
    for (const quorva::MenuItem& item : menu.items) {
        const bool hasContext =
            std::holds_alternative<quorva::FinderActionContextPointer>(item.representedObject);
        const bool hasDictionary =
            std::holds_alternative<quorva::PropertyList::Dictionary>(item.representedObject);
        result.items.push_back({
            .isSeparator = item.isSeparator,
            .key = localizedTitles().contains(item.title) ? [foundationString(item.title) retain]
                                                          : nil,
            .title = item.title,
            .isActionable = item.action != quorva::MenuItem::Action::none,
            .enabled = item.enabled,
            .identifier = item.identifier.value_or(""),
            .tag = static_cast<NSInteger>(item.tag),
            .representedObject = hasContext      ? FloorItem::context
                                 : hasDictionary ? FloorItem::dictionary
                                                 : FloorItem::nothing,
            .submenu =
                item.submenu ? std::make_unique<FloorMenu>(floorMenu(*item.submenu)) : nullptr,
        });
    }
    return result;
}

std::vector<FloorLine> floorLines(const std::vector<std::string>& messages) {
    std::vector<FloorLine> lines;
    for (const std::string& message : messages) {
        lines.push_back(
            {[foundationString(message) retain], "[2026-11-16 00:06:18 +0000] " + message + "\n"});
    }
    return lines;
}

void appendToFile(const Path& path, const std::string& line) {
    require([fileManager() fileExistsAtPath:path.string], "a log file");
    const int file =
        open(path.bytes.c_str(), O_RDWR | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    struct stat status{};
    char last = 0;
    require(fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
                pread(file, &last, 1, lseek(file, 0, SEEK_END) - 1) == 1 &&
                write(file, line.data(), line.size()) == static_cast<ssize_t>(line.size()),
            "a log file that can be written");
    close(file);
}

void createInApplicationSupport(const Path& folder) {
    NSError* error = nil;
    require([fileManager() URLForDirectory:NSApplicationSupportDirectory
                                  inDomain:NSUserDomainMask
                         appropriateForURL:nil
                                    create:YES
                                     error:&error]
                    .path != nil,
            "the folder Application Support");
    require([fileManager() createDirectoryAtURL:[NSURL fileURLWithPath:folder.string
                                                           isDirectory:YES]
                    withIntermediateDirectories:YES
                                     attributes:nil
                                          error:&error],
            "a folder");
}

void appendLine(const FloorLine& line) {
    static const Path temporaryLog("/tmp/quorva-finder-extension.log");
    static const Path folder(settingsFolder());
    static const Path log(settingsFolder() + "FinderExtension.log");
    NSLog(@"QuorvaFinderExtension: %@", line.message);
    (void)[NSDate date].timeIntervalSince1970;
    appendToFile(temporaryLog, line.line);
    createInApplicationSupport(folder);
    appendToFile(log, line.line);
}

/// Reads and parses a settings file, if there is one.
void readSettings(const char* name) {
    (void)fileManager().homeDirectoryForCurrentUser.path;
    const int file =
        open((settingsFolder() + name).c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0) {
        return;
    }
    struct stat status{};
    fstat(file, &status);
    NSMutableData* data = [NSMutableData dataWithLength:static_cast<NSUInteger>(status.st_size)];
    char end = 0;
    require(
        read(file, data.mutableBytes, data.length) == status.st_size && read(file, &end, 1) == 0,
        "a settings file");
    close(file);
    NSError* error = nil;
    require([NSPropertyListSerialization propertyListWithData:data
                                                      options:NSPropertyListImmutable
                                                       format:nullptr
                                                        error:&error] != nil,
            "a property list");
}

void lookForApplications() {
    static NSArray<NSString*>* const paths = [@[
        @"/System/Applications/Preview.app", @"/System/Applications/TextEdit.app",
        @"/Applications/Pages.app", @"/Applications/Numbers.app", @"/Applications/Keynote.app"
    ] retain];
    for (NSString* path in paths) {
        (void)[fileManager() fileExistsAtPath:path];
    }
}

NSArray<NSString*>* selectedPaths() {
    NSArray<NSURL*>* urls = [FIFinderSyncController defaultController].selectedItemURLs;
    NSMutableArray<NSString*>* paths = [NSMutableArray arrayWithCapacity:urls.count];
    for (NSURL* url in urls) {
        [paths addObject:url.path];
    }
    return paths;
}

NSString* targetedPath() {
    NSString* path = [FIFinderSyncController defaultController].targetedURL.path;
    return path == nil ? @"" : path;
}

NSString* title(const FloorItem& item) {
    return item.key == nil ? foundationString(item.title) : localizedTitle(item.key);
}

NSMenu* renderedMenu(const FloorMenu& menu, NSString* title, NSArray* paths, id target);

NSMenuItem* renderedItem(const FloorItem& item, NSArray* paths, id target) {
    NSString* itemTitle = title(item);
    NSMenuItem* rendered = [[[NSMenuItem alloc]
        initWithTitle:itemTitle
               action:item.isActionable ? @selector(performFeatureChild:) : nullptr
        keyEquivalent:@""] autorelease];
    rendered.target = item.isActionable ? target : nil;
    rendered.enabled = item.enabled;
    rendered.identifier = item.identifier.empty() ? nil : foundationString(item.identifier);
    rendered.tag = item.tag;
    if (item.representedObject == FloorItem::context) {
        rendered.representedObject =
            [[[FinderActionContextObject alloc] initWithContext:nullptr] autorelease];
    } else if (item.representedObject == FloorItem::dictionary) {
        rendered.representedObject = @{
            @"actionID" : rendered.identifier,
            @"title" : itemTitle,
            @"selectedPaths" : paths,
            @"targetedPath" : targetedPath(),
            @"destinationPath" : @"",
            @"presetID" : @""
        };
    }
    rendered.submenu =
        item.submenu == nullptr ? nil : renderedMenu(*item.submenu, itemTitle, paths, target);
    return rendered;
}

NSMenu* renderedMenu(const FloorMenu& menu, NSString* title, NSArray* paths, id target) {
    NSMenu* rendered = [[[NSMenu alloc] initWithTitle:title] autorelease];
    rendered.autoenablesItems = NO;
    for (const FloorItem& item : menu.items) {
        [rendered addItem:item.isSeparator ? [NSMenuItem separatorItem]
                                           : renderedItem(item, paths, target)];
    }
    return rendered;
}

}  // namespace

Floor::Floor(const quorva::Menu& menu, const std::vector<std::string>& menuMessages,
             const std::vector<std::string>& clickMessages)
    : menu_(floorMenu(menu)),
      keysNotShown_(keysNotShown(menu)),
      menuLines_(floorLines(menuMessages)),
      clickLines_(floorLines(clickMessages)) {}

Floor::~Floor() = default;

void Floor::prepareMenu() {
    static os_log_t const log = os_log_create("app.ferrolin.Quorva.FinderExtension", "FinderSync");
    (void)selectedPaths();
    (void)targetedPath();
    readSettings("FeatureSettings.plist");
    readSettings("CustomDestinations.plist");
    readSettings("CustomShortcutActions.plist");
    readSettings("FinderViewPresets.plist");
    (void)NSHomeDirectoryForUser(NSUserName());
    for (const NSSearchPathDirectory directory :
         {NSDesktopDirectory, NSDownloadsDirectory, NSDocumentDirectory, NSPicturesDirectory}) {
        (void)[fileManager() URLsForDirectory:directory inDomains:NSUserDomainMask]
            .firstObject.path;
    }
    for (NSString* const key : keysNotShown_) {
        (void)localizedTitle(key);
    }
    lookForApplications();
    os_log_info(log,
                "Menu requested. kind=%{public}lu, selected=%{public}ld, targeted=%{public}s, "
                "features=%{public}ld, grouped=%{bool,public}d, layout=%{public}s",
                0UL, 1L, "/Users/ada/Documents", 13L, true, "collapsed");
    for (const FloorLine& line : menuLines_) {
        appendLine(line);
    }
}

NSMenu* Floor::menu(id target) {
    prepareMenu();
    return renderedMenu(menu_, foundationString(menu_.title), selectedPaths(), target);
}

void Floor::click() {
    appendLine(clickLines_.at(0));
    readSettings("CustomDestinations.plist");
    readSettings("CustomShortcutActions.plist");
    readSettings("FinderViewPresets.plist");
    lookForApplications();
    NSString* title = nil;
    for (NSString* const key : keysUntilClicked()) {
        title = localizedTitle(key);
    }
    NSArray<NSString*>* const paths = selectedPaths();
    appendLine(clickLines_.at(1));
    static const Path folder(settingsFolder() + "ActionQueue");
    createInApplicationSupport(folder);
    NSError* error = nil;
    NSData* const record =
        [NSJSONSerialization dataWithJSONObject:@{
            @"actionID" : @"compressToZIP",
            @"title" : title,
            @"selectedPaths" : paths,
            @"targetedPath" : targetedPath(),
            @"destinationPath" : @"",
            @"presetID" : @"",
            @"createdAt" : @([NSDate date].timeIntervalSince1970)
        }
                                        options:NSJSONWritingPrettyPrinted | NSJSONWritingSortedKeys
                                          error:&error];
    const std::string file = folder.bytes + "/" + [NSUUID UUID].UUIDString.UTF8String + ".json";
    require([record writeToURL:[NSURL fileURLWithPath:foundationString(file) isDirectory:NO]
                       options:NSDataWritingAtomic
                         error:&error],
            "a record");
    appendLine(clickLines_.at(2));
    [[NSDistributedNotificationCenter defaultCenter]
        postNotificationName:@"app.ferrolin.Quorva.ActionQueued"
                      object:nil
                    userInfo:nil
          deliverImmediately:YES];
    (void)[NSRunningApplication runningApplicationsWithBundleIdentifier:@"app.ferrolin.Quorva"];
}

std::vector<std::string> loggedMessages() {
    std::ifstream log(settingsFolder() + "FinderExtension.log");
    std::vector<std::string> messages;
    for (std::string line; std::getline(log, line);) {
        messages.push_back(line.substr(line.find("] ") + 2));
    }
    return messages;
}

std::string settingsFolder() {
    return std::string(std::getenv("HOME")) + "/Library/Application Support/Quorva/";
}

}  // namespace benchmarks
