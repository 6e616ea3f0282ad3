#include "Platform/DistributedNotificationCenter.hpp"

#include <gtest/gtest.h>

#import "Tests/Cocoa/NotificationObserver.h"
#import "Tests/Cocoa/RunLoop.h"

TEST(PostDistributedNotification, DeliversWithoutObjectAndUserInfo) {
    NotificationObserver* observer = [[[NotificationObserver alloc] init] autorelease];
    NSDistributedNotificationCenter* center = [NSDistributedNotificationCenter defaultCenter];
    [center addObserver:observer
               selector:@selector(receive:)
                   name:@"app.ferrolin.Quorva.CocoaTests.Posted"
                 object:nil];
    EXPECT_TRUE(
        quorva::platform::postDistributedNotification("app.ferrolin.Quorva.CocoaTests.Posted"));
    ASSERT_TRUE(runLoopUntil([observer] { return observer->received.count > 0; }));
    NSNotification* received = [observer->received objectAtIndex:0];
    EXPECT_EQ(received.object, nil);
    EXPECT_EQ(received.userInfo.count, 0u);
    [center removeObserver:observer];
}

TEST(PostDistributedNotification, PostsToNobody) {
    EXPECT_TRUE(quorva::platform::postDistributedNotification("app.ferrolin.Quorva.NobodyListens"));
    EXPECT_TRUE(quorva::platform::postDistributedNotification(""));
}
