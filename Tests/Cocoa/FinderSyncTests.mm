#import "Cocoa/FinderSync.h"

#import <AppKit/AppKit.h>
#import <FinderSync/FIFinderSyncController+Simulator.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#import "Cocoa/ObjectHolder.h"
#import "Cocoa/StringConversion.h"
#import "Tests/Cocoa/NotificationObserver.h"
#include "Tests/Cocoa/OutOfMemory.hpp"
#import "Tests/Cocoa/RaisingMethod.h"
#import "Tests/Cocoa/RunLoop.h"
#include "Tests/Cocoa/TemporaryFolder.hpp"

/// An item that can't be read.
@interface RaisingMenuItem : NSMenuItem
@end

@implementation RaisingMenuItem
- (NSString*)title {
    [NSException raise:NSInternalInconsistencyException format:@"no title"];
    return nil;
}
@end

/// An item for the reading of which there is no memory.
@interface OutOfMemoryMenuItem : NSMenuItem
@end

@implementation OutOfMemoryMenuItem
- (NSString*)title {
    throwOutOfMemory();
}
@end

/// A notification that can't be read.
@interface RaisingNotification : NSNotification
@end

@implementation RaisingNotification
- (NSString*)name {
    return @"RaisingNotification";
}
- (id)object {
    return nil;
}
- (NSDictionary*)userInfo {
    [NSException raise:NSInternalInconsistencyException format:@"no user info"];
    return nil;
}
@end

namespace {

void postNotification(NSString* name, NSString* object, NSDictionary* userInfo) {
    [[NSDistributedNotificationCenter defaultCenter] postNotificationName:name
                                                                   object:object
                                                                 userInfo:userInfo
                                                       deliverImmediately:YES];
}

/// Must be removed from the center.
NotificationObserver* observerOf(NSString* name) {
    NotificationObserver* observer = [[[NotificationObserver alloc] init] autorelease];
    [[NSDistributedNotificationCenter defaultCenter] addObserver:observer
                                                        selector:@selector(receive:)
                                                            name:name
                                                          object:nil];
    return observer;
}

void postSettingsChanged(NSString* object, NSDictionary* userInfo) {
    postNotification(@"app.ferrolin.Quorva.SettingsChanged", object, userInfo);
}

}  // namespace

/// The principal class as the system uses it: by its name and its Objective-C methods.
class PrincipalClass : public TemporaryHome {
   protected:
    void SetUp() override {
        TemporaryHome::SetUp();
        if (IsSkipped()) {
            return;
        }
        @autoreleasepool {
            FinderSync* created = [[NSClassFromString(@"FinderSync") alloc] init];
            finderSync_ = quorva::ObjectHolder<FinderSync>(created);
            [created release];
        }
    }

    [[nodiscard]] FinderSync* finderSync() const { return finderSync_.get(); }

    void letGo() { finderSync_ = {}; }

    [[nodiscard]] std::string log() const {
        return read("Library/Application Support/Quorva/FinderExtension.log");
    }

    /// The menu while `path` is selected.
    [[nodiscard]] NSMenu* menu(NSString* selected) const {
        [[FIFinderSyncController defaultController]
            beginWithSelectedItemURLs:[NSArray arrayWithObject:[NSURL fileURLWithPath:selected
                                                                          isDirectory:NO]]
                          targetedURL:[NSURL fileURLWithPath:@"/tmp" isDirectory:YES]];
        NSMenu* menu = [finderSync() menuForMenuKind:FIMenuKindContextualMenuForItems];
        [[FIFinderSyncController defaultController] end];
        return menu;
    }

    /// The only record in the queue, which is then empty.
    [[nodiscard]] nlohmann::json takeRecord() {
        nlohmann::json record;
        const std::filesystem::path queue = path("Library/Application Support/Quorva/ActionQueue");
        int count = 0;
        std::error_code missing;
        for (const auto& entry : std::filesystem::directory_iterator(queue, missing)) {
            record = nlohmann::json::parse(std::ifstream(entry.path()));
            std::filesystem::remove(entry.path());
            ++count;
        }
        EXPECT_LE(count, 1);
        // No application lies around the tests, and the system tells so when it likes.
        launches_ += count;
        EXPECT_TRUE(runLoopUntil([this] { return failedLaunches() == launches_; }));
        return record;
    }

   private:
    [[nodiscard]] int failedLaunches() const {
        const std::string lines = log();
        int count = 0;
        for (std::size_t at = lines.find("] failed to open app: "); at != std::string::npos;
             at = lines.find("] failed to open app: ", at + 1)) {
            ++count;
        }
        return count;
    }

    quorva::ObjectHolder<FinderSync> finderSync_;
    int launches_ = 0;
};

namespace {

/// The first actionable item that is enabled, in `menu` or below.
NSMenuItem* firstActionableItem(NSMenu* menu) {
    for (NSMenuItem* item in [menu itemArray]) {
        if (item.submenu != nil) {
            if (NSMenuItem* found = firstActionableItem(item.submenu)) {
                return found;
            }
        } else if (item.action != nullptr && [item isEnabled]) {
            return item;
        }
    }
    return nil;
}

NSMenuItem* itemWithTitle(NSMenu* menu, const std::string& title) {
    for (NSMenuItem* item in [menu itemArray]) {
        if (item.submenu == nil && quorva::utf8String(item.title) == title) {
            return item;
        }
        if (item.submenu != nil) {
            if (NSMenuItem* found = itemWithTitle(item.submenu, title)) {
                return found;
            }
        }
    }
    return nil;
}

/// What Finder gives back of `item`.
NSMenuItem* rebuilt(NSMenuItem* item) {
    NSMenuItem* copy = [[[NSMenuItem alloc] initWithTitle:item.title
                                                   action:nullptr
                                            keyEquivalent:@""] autorelease];
    copy.tag = item.tag;
    return copy;
}

}  // namespace

TEST_F(PrincipalClass, SetsTheMonitoredFoldersWhenItIsCreated) {
    EXPECT_TRUE([[FIFinderSyncController defaultController].directoryURLs
        containsObject:[NSURL fileURLWithPath:@"/Applications" isDirectory:YES]]);
}

TEST_F(PrincipalClass, KeepsAnExceptionOfAClickedItemFromTheSystemAndLogsIt) {
    [finderSync() performFeatureChild:[[[RaisingMenuItem alloc] init] autorelease]];
    EXPECT_TRUE(takeRecord().is_null());
    EXPECT_THAT(log(), testing::HasSubstr("] click failed: no title\n"));
}

TEST_F(PrincipalClass, KeepsExhaustedMemoryAtAClickFromTheSystem) {
    [finderSync() performFeatureChild:[[[OutOfMemoryMenuItem alloc] init] autorelease]];
    EXPECT_TRUE(takeRecord().is_null());
    EXPECT_THAT(log(), testing::HasSubstr("] click failed: std::bad_alloc\n"));
}

TEST_F(PrincipalClass, KeepsAnExceptionOfANotificationFromTheSystem) {
    [finderSync() handleSettingsChanged:[[[RaisingNotification alloc] init] autorelease]];
    EXPECT_THAT(log(), testing::HasSubstr("] settings change failed: no user info\n"));
}

TEST_F(PrincipalClass, HasAToolbarItem) {
    EXPECT_EQ(quorva::utf8String(finderSync().toolbarItemName), "Quorva");
    EXPECT_EQ(quorva::utf8String(finderSync().toolbarItemToolTip), "Send selected files to Quorva");
    EXPECT_NE(finderSync().toolbarItemImage, nil);
}

TEST_F(PrincipalClass, KeepsAnExceptionOfAToolbarAccessorFromTheSystemAndLogsIt) {
    {
        const RaisingMethod raising([NSString class], @selector(allocWithZone:));
        EXPECT_EQ(finderSync().toolbarItemName, nil);
    }
    {
        const RaisingMethod raising([NSString class], @selector(allocWithZone:));
        EXPECT_EQ(finderSync().toolbarItemToolTip, nil);
    }
    {
        const RaisingMethod raising([NSImage class], @selector(imageNamed:));
        EXPECT_EQ(finderSync().toolbarItemImage, nil);
    }
    EXPECT_THAT(log(), testing::HasSubstr("] toolbar item name failed: raised\n"));
    EXPECT_THAT(log(), testing::HasSubstr("] toolbar item tool tip failed: raised\n"));
    EXPECT_THAT(log(), testing::HasSubstr("] toolbar item image failed: raised\n"));
}

TEST_F(PrincipalClass, ReturnsAMenuForEveryKind) {
    for (const NSUInteger kind : {0u, 1u, 2u, 3u, 4711u}) {
        NSMenu* menu = [finderSync() menuForMenuKind:static_cast<FIMenuKind>(kind)];
        EXPECT_EQ(quorva::utf8String(menu.title), "Quorva");
        EXPECT_GT(menu.numberOfItems, 0);
    }
}

TEST_F(PrincipalClass, IsTheTargetOfEveryActionableItem) {
    NSMenuItem* item = firstActionableItem(menu(@"/a"));
    ASSERT_NE(item, nil);
    EXPECT_EQ(item.target, finderSync());
    EXPECT_TRUE([finderSync() respondsToSelector:item.action]);
}

TEST_F(PrincipalClass, QueuesAClickAndPostsIt) {
    NotificationObserver* observer = observerOf(@"app.ferrolin.Quorva.ActionQueued");
    NSMenuItem* item = firstActionableItem(menu(@"/没有 a"));
    [finderSync() performSelector:item.action withObject:item];
    const nlohmann::json record = takeRecord();
    ASSERT_TRUE(record.is_object());
    EXPECT_EQ(record["title"], quorva::utf8String(item.title));
    EXPECT_EQ(record["selectedPaths"], nlohmann::json({"/没有 a"}));
    EXPECT_TRUE(runLoopUntil([observer] { return observer->received.count > 0; }));
    [[NSDistributedNotificationCenter defaultCenter] removeObserver:observer];
}

TEST_F(PrincipalClass, QueuesAClickOnADestinationAsFinderDeliversIt) {
    write("Library/Application Support/Quorva/CustomDestinations.plist", R"(<plist version="1.0">
        <dict><key>quickOpen</key><array><dict><key>id</key><string>mine</string>
        <key>name</key><string>Mine alone</string><key>path</key><string>/mine</string>
        </dict></array></dict></plist>)");
    NSMenuItem* item = itemWithTitle(menu(@"/a"), "Mine alone");
    ASSERT_NE(item, nil);
    [finderSync() performFeatureChild:item];
    nlohmann::json intact = takeRecord();
    ASSERT_TRUE(intact.is_object());
    [finderSync() performFeatureChild:rebuilt(item)];
    nlohmann::json delivered = takeRecord();
    ASSERT_TRUE(delivered.is_object());
    intact.erase("createdAt");
    delivered.erase("createdAt");
    EXPECT_EQ(delivered, intact);
    EXPECT_EQ(delivered["destinationPath"], "/mine");
}

TEST_F(PrincipalClass, IgnoresASenderThatIsNotAMenuItem) {
    [finderSync() performFeatureChild:nil];
    [finderSync() performFeatureChild:@"text"];
    EXPECT_TRUE(takeRecord().is_null());
}

TEST_F(PrincipalClass, QueuesNothingForAnItemItDoesNotKnow) {
    NSMenuItem* item = [[[NSMenuItem alloc] initWithTitle:@"no such entry"
                                                   action:nullptr
                                            keyEquivalent:@""] autorelease];
    [finderSync() performFeatureChild:item];
    EXPECT_TRUE(takeRecord().is_null());
}

TEST_F(PrincipalClass, RefreshesTheMonitoredFoldersWhenTheSettingsChange) {
    [FIFinderSyncController defaultController].directoryURLs = [NSSet set];
    postSettingsChanged(nil, [NSDictionary dictionaryWithObject:@"test" forKey:@"reason"]);
    EXPECT_TRUE(runLoopUntil(
        [] { return [FIFinderSyncController defaultController].directoryURLs.count > 0; }));
    EXPECT_THAT(log(), testing::HasSubstr("settings changed notification reason=test\n"));
}

TEST_F(PrincipalClass, TakesANotificationWithoutAReasonThatIsAString) {
    for (NSDictionary* userInfo :
         {static_cast<NSDictionary*>(nil), [NSDictionary dictionary],
          [NSDictionary dictionaryWithObject:[NSNumber numberWithInt:1] forKey:@"reason"],
          [NSDictionary dictionaryWithObject:[NSNull null] forKey:@"reason"]}) {
        [finderSync() handleSettingsChanged:[NSNotification notificationWithName:@"n"
                                                                          object:nil
                                                                        userInfo:userInfo]];
    }
    const std::string lines = log();
    std::size_t count = 0;
    for (std::size_t at = lines.find("reason=unknown\n"); at != std::string::npos;
         at = lines.find("reason=unknown\n", at + 1)) {
        ++count;
    }
    EXPECT_EQ(count, 4u);
}

TEST_F(PrincipalClass, TakesTheReasonBesideAKeyThatIsNotAString) {
    NSDictionary* userInfo = [NSDictionary
        dictionaryWithObjectsAndKeys:@"test", @"reason", @"value", [NSNumber numberWithInt:1], nil];
    [finderSync() handleSettingsChanged:[NSNotification notificationWithName:@"n"
                                                                      object:nil
                                                                    userInfo:userInfo]];
    EXPECT_THAT(log(), testing::HasSubstr("settings changed notification reason=test\n"));
}

TEST_F(PrincipalClass, ObservesNothingOnceItIsGone) {
    letGo();
    [FIFinderSyncController defaultController].directoryURLs = [NSSet set];
    // Delivered in the order of the posts, so the second is the proof that the first is over.
    NotificationObserver* observer = observerOf(@"app.ferrolin.Quorva.Tests.Afterwards");
    postSettingsChanged(nil, nil);
    postNotification(@"app.ferrolin.Quorva.Tests.Afterwards", nil, nil);
    EXPECT_TRUE(runLoopUntil([observer] { return observer->received.count > 0; }));
    [[NSDistributedNotificationCenter defaultCenter] removeObserver:observer];
    EXPECT_EQ([FIFinderSyncController defaultController].directoryURLs.count, 0u);
}

TEST_F(PrincipalClass, RefreshesTheMonitoredFoldersWhoeverSaysThatTheSettingsChanged) {
    [FIFinderSyncController defaultController].directoryURLs = [NSSet set];
    postSettingsChanged(@"any sender", nil);
    EXPECT_TRUE(runLoopUntil(
        [] { return [FIFinderSyncController defaultController].directoryURLs.count > 0; }));
}

TEST_F(PrincipalClass, RefreshesTheMonitoredFoldersWhileTheCenterIsSuspended) {
    NSDistributedNotificationCenter* center = [NSDistributedNotificationCenter defaultCenter];
    [FIFinderSyncController defaultController].directoryURLs = [NSSet set];
    center.suspended = YES;
    [center postNotificationName:@"app.ferrolin.Quorva.SettingsChanged"
                          object:nil
                        userInfo:nil
              deliverImmediately:NO];
    EXPECT_TRUE(runLoopUntil(
        [] { return [FIFinderSyncController defaultController].directoryURLs.count > 0; }));
    center.suspended = NO;
}
