#include "Platform/Logger.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Cocoa/RecordedRequests.hpp"

using testing::ElementsAre;

TEST(Logger, FillsInEveryField) {
    (void)takeRecordedRequests();
    const quorva::platform::Logger logger("app.ferrolin.Quorva.Tests", "FinderSync");
    logger.menuRequested(2, -1, "/没有 %d", 14, true, "expanded");
    logger.menuRequested(0, 0, "nil", 0, false, "collapsed");
    logger.refreshedDirectories("settings-changed:%s", 30);
    EXPECT_THAT(
        takeRecordedRequests().unifiedLog,
        ElementsAre("info FinderSync Menu requested. kind=2, selected=-1, targeted=/没有 %d, "
                    "features=14, grouped=true, layout=expanded",
                    "info FinderSync Menu requested. kind=0, selected=0, targeted=nil, "
                    "features=0, grouped=false, layout=collapsed",
                    "info FinderSync FinderSync refreshed directories. "
                    "reason=settings-changed:%s, count=30"));
}
