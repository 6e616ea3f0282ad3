#include "Platform/DistributedNotificationCenter.hpp"

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include "Tests/Cocoa/RecordedRequests.hpp"
#import "Tests/Cocoa/RunLoop.h"

@interface NotificationObserver : NSObject {
   @public
    NSNotification* received;
}
- (void)receive:(NSNotification*)notification;
@end

@implementation NotificationObserver

- (void)receive:(NSNotification*)notification {
    [received release];
    received = [notification retain];
}

- (void)dealloc {
    [received release];
    [super dealloc];
}

@end

TEST(DistributedNotificationCenter, DeliversAPostedNotificationWithoutObjectAndUserInfo) {
    (void)takeRecordedRequests();
    NotificationObserver* observer = [[[NotificationObserver alloc] init] autorelease];
    NSDistributedNotificationCenter* center = [NSDistributedNotificationCenter defaultCenter];
    [center addObserver:observer
               selector:@selector(receive:)
                   name:@"app.ferrolin.Quorva.CocoaTests"
                 object:nil];
    quorva::platform::postDistributedNotification("app.ferrolin.Quorva.CocoaTests");
    EXPECT_TRUE(runLoopUntil([&] { return observer->received != nil; }));
    EXPECT_EQ(observer->received.object, nil);
    EXPECT_EQ(observer->received.userInfo.count, 0u);
    [center removeObserver:observer name:@"app.ferrolin.Quorva.CocoaTests" object:nil];

    const RecordedRequests requests = takeRecordedRequests();
    ASSERT_EQ(requests.notifications.size(), 1u);
    EXPECT_EQ(requests.notifications[0].name, "app.ferrolin.Quorva.CocoaTests");
    EXPECT_EQ(requests.notifications[0].userInfoJSON, std::nullopt);
}

TEST(DistributedNotificationCenter, PostsToNobody) {
    quorva::platform::postDistributedNotification("app.ferrolin.Quorva.NobodyListens");
    quorva::platform::postDistributedNotification("");
}
