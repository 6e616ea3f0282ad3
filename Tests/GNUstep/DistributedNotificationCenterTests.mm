#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#import "Cocoa/StringConversion.h"
#include "Platform/DistributedNotificationCenter.hpp"
#include "Simulator/EventRecorder.hpp"
#import "Tests/Cocoa/NotificationObserver.h"
#import "Tests/Cocoa/RunLoop.h"
#include "Tests/Cocoa/TestProgram.hpp"

/// With observers of notifications that nobody else posts.
class DistributedNotificationCenter : public testing::Test {
   protected:
    ~DistributedNotificationCenter() override {
        center.suspended = NO;
        for (NotificationObserver* observer : observers_) {
            [center removeObserver:observer];
            [observer release];
        }
    }

    NotificationObserver* observer() {
        observers_.push_back([[NotificationObserver alloc] init]);
        return observers_.back();
    }

    NotificationObserver* observer(NSNotificationSuspensionBehavior behavior) {
        NotificationObserver* added = observer();
        [center addObserver:added
                      selector:@selector(receive:)
                          name:name
                        object:nil
            suspensionBehavior:behavior];
        return added;
    }

    void post(NSString* object, BOOL deliverImmediately = NO) {
        [center postNotificationName:name
                              object:object
                            userInfo:nil
                  deliverImmediately:deliverImmediately];
    }

    static bool receives(NotificationObserver* observer, std::size_t count) {
        return runLoopUntil([&] { return observer->received.count >= count; });
    }

    static std::string objects(NotificationObserver* observer) {
        return quorva::utf8String(
            [[observer->received valueForKey:@"object"] componentsJoinedByString:@" "]);
    }

    /// Starts a copy of this program that posts `count` notifications with the object `object`.
    [[nodiscard]] static pid_t processThatPosts(std::string object, std::string count) {
        std::string program = testProgram();
        std::string option = "--post-notifications";
        std::string posted = quorva::utf8String(name);
        char* arguments[] = {program.data(), option.data(), posted.data(),
                             object.data(),  count.data(),  nullptr};
        pid_t process = 0;
        EXPECT_EQ(posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ), 0);
        return process;
    }

    static inline NSString* const name = @"app.ferrolin.Quorva.CocoaTests";
    NSDistributedNotificationCenter* const center = [NSDistributedNotificationCenter defaultCenter];

   private:
    std::vector<NotificationObserver*> observers_;
};

TEST_F(DistributedNotificationCenter, RecordsWhatIsPosted) {
    (void)simulator::takeRecordedEvents();
    EXPECT_TRUE(quorva::platform::postDistributedNotification("app.ferrolin.Quorva.Recorded"));
    EXPECT_EQ(simulator::takeRecordedEvents().events,
              nlohmann::ordered_json::array({{{"event", "notification"},
                                              {"name", "app.ferrolin.Quorva.Recorded"},
                                              {"object", nullptr},
                                              {"userInfo", nullptr},
                                              {"immediately", true}}}));
}

TEST_F(DistributedNotificationCenter, DeliversByNameAndObjectUntilTheObserverIsRemoved) {
    NotificationObserver* ofObject = observer();
    [center addObserver:ofObject selector:@selector(receive:) name:name object:@"b"];
    NotificationObserver* ofAnyName = observer();
    [center addObserver:ofAnyName selector:@selector(receive:) name:nil object:@"a"];
    NotificationObserver* removed = observer(NSNotificationSuspensionBehaviorCoalesce);
    [center removeObserver:removed name:name object:nil];
    NotificationObserver* last = observer(NSNotificationSuspensionBehaviorCoalesce);
    [center postNotificationName:name object:@"a"];
    [center postNotificationName:name object:@"b" userInfo:@{@"key" : @[ @"value" ]}];
    ASSERT_TRUE(receives(last, 2));
    EXPECT_EQ(objects(ofObject), "b");
    EXPECT_EQ(objects(ofAnyName), "a");
    EXPECT_EQ(objects(removed), "");
    NSNotification* withUserInfo = [last->received objectAtIndex:1];
    EXPECT_TRUE([withUserInfo.userInfo isEqual:@{@"key" : @[ @"value" ]}]);
}

TEST_F(DistributedNotificationCenter, DeliversToOrdinaryObserversOnlyWhenNoLongerSuspended) {
    NotificationObserver* ordinary = observer();
    [center addObserver:ordinary selector:@selector(receive:) name:name object:nil];
    NotificationObserver* immediate = observer(NSNotificationSuspensionBehaviorDeliverImmediately);
    center.suspended = YES;
    EXPECT_TRUE(center.suspended);
    post(@"a");
    ASSERT_TRUE(receives(immediate, 1));
    EXPECT_EQ(objects(ordinary), "");
    center.suspended = NO;
    EXPECT_FALSE(center.suspended);
    EXPECT_EQ(objects(ordinary), "a");
}

TEST_F(DistributedNotificationCenter, HoldsWhatTheObserverAskedForWhileSuspended) {
    NotificationObserver* coalescing = observer(NSNotificationSuspensionBehaviorCoalesce);
    NotificationObserver* dropping = observer(NSNotificationSuspensionBehaviorDrop);
    NotificationObserver* holding = observer(NSNotificationSuspensionBehaviorHold);
    NotificationObserver* other = observer();
    [center addObserver:other
                  selector:@selector(receive:)
                      name:@"app.ferrolin.Quorva.CocoaTests.other"
                    object:nil
        suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
    center.suspended = YES;
    for (NSString* object in @[ @"a", @"b", @"a" ]) {
        post(object);
    }
    [center postNotificationName:@"app.ferrolin.Quorva.CocoaTests.other" object:nil];
    // What is delivered immediately takes with it what was held before.
    ASSERT_TRUE(receives(other, 1));
    EXPECT_EQ(objects(coalescing), "b a");
    EXPECT_EQ(objects(dropping), "");
    EXPECT_EQ(objects(holding), "a b a");
}

TEST_F(DistributedNotificationCenter, DeliversImmediatelyToEverybodyWhenPostedSo) {
    NotificationObserver* coalescing = observer(NSNotificationSuspensionBehaviorCoalesce);
    NotificationObserver* dropping = observer(NSNotificationSuspensionBehaviorDrop);
    center.suspended = YES;
    post(@"a");
    post(@"b", YES);
    ASSERT_TRUE(receives(dropping, 1));
    EXPECT_EQ(objects(coalescing), "a b");
    EXPECT_EQ(objects(dropping), "b");
}

TEST_F(DistributedNotificationCenter, LosesNoneOfThousandsFromSeveralProcessesAtOnce) {
    NotificationObserver* added = observer(NSNotificationSuspensionBehaviorCoalesce);
    const pid_t processes[] = {processThatPosts("a", "2000"), processThatPosts("b", "2000")};
    for (int count = 0; count < 2000; ++count) {
        post(@"c");
    }
    EXPECT_TRUE(receives(added, 6000));
    for (const pid_t process : processes) {
        int status = -1;
        waitpid(process, &status, 0);
        EXPECT_EQ(status, 0);
    }
    post(@"last");
    EXPECT_TRUE(receives(added, 6001));
    EXPECT_TRUE(objects(added).ends_with(" last"));
}
