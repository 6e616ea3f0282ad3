#include "Platform/Logger.hpp"

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <os/log.h>

#include "Simulator/EventRecorder.hpp"

namespace {

/// The record of a log in the tests' own subsystem.
nlohmann::ordered_json record(const std::string& level, const std::string& message) {
    return {{"subsystem", "app.ferrolin.Quorva.Tests"},
            {"category", "FinderSync"},
            {"level", level},
            {"message", message}};
}

class Logger : public testing::Test {
   protected:
    Logger() { (void)simulator::takeRecordedEvents(); }
};

class UnifiedLog : public Logger {
   protected:
    ~UnifiedLog() override { [log release]; }

    static std::string lastMessage() {
        return simulator::takeRecordedEvents().unifiedLog.back()["message"];
    }

    os_log_t log = os_log_create("app.ferrolin.Quorva.Tests", "FinderSync");
};

}  // namespace

TEST_F(Logger, FillsInEveryField) {
    const quorva::platform::Logger logger("app.ferrolin.Quorva.Tests", "FinderSync");
    logger.menuRequested(2, -1, "/没有 %d", 14, true, "expanded");
    logger.menuRequested(0, 0, "nil", 0, false, "collapsed");
    logger.refreshedDirectories("settings-changed:%s", 30);
    EXPECT_EQ(simulator::takeRecordedEvents().unifiedLog,
              nlohmann::ordered_json(
                  {record("info", "Menu requested. kind=2, selected=-1, targeted=/没有 %d, "
                                  "features=14, grouped=true, layout=expanded"),
                   record("info", "Menu requested. kind=0, selected=0, targeted=nil, "
                                  "features=0, grouped=false, layout=collapsed"),
                   record("info", "FinderSync refreshed directories. "
                                  "reason=settings-changed:%s, count=30")}));
}

TEST_F(UnifiedLog, HidesAStringThatIsNotPublic) {
    os_log_info(log, "%s|%{private}s|%{sensitive}s|%{public}s", "a", "b", "c", "d");
    EXPECT_EQ(lastMessage(), "<private>|<private>|<private>|d");
}

TEST_F(UnifiedLog, HidesAnObjectThatIsNotPublic) {
    os_log_info(log, "%@|%{public}@", @"a", @"b");
    EXPECT_EQ(lastMessage(), "<private>|b");
}

TEST_F(UnifiedLog, ShowsANumberThatIsNotPrivate) {
    os_log_info(log, "%d|%{public}d|%{private}d|%{private}lld|%.1f|%{private}f", 1, 2, 3, 4LL, 5.0,
                6.0);
    EXPECT_EQ(lastMessage(), "1|2|<private>|<private>|5.0|<private>");
}

TEST_F(UnifiedLog, ShowsBooleansByTheirWords) {
    os_log_info(log, "%{bool}d|%{bool,public}d|%{public, bool}d|%{private,bool}d|%{BOOL}d", 1, 0, 2,
                1, 1);
    EXPECT_EQ(lastMessage(), "true|false|true|<private>|YES");
}

TEST_F(UnifiedLog, FormatsNumbersOfEverySize) {
    os_log_info(log, "%hhu|%u|%ld|%#llx|%zu|%05d|100%%", static_cast<unsigned char>(255),
                4294967295U, -9223372036854775807L, 255ULL, sizeof(char), 42);
    EXPECT_EQ(lastMessage(), "255|4294967295|-9223372036854775807|0xff|1|00042|100%");
}

TEST_F(UnifiedLog, RecordsTheLevel) {
    for (const auto& [type, level] :
         {std::pair(OS_LOG_TYPE_DEFAULT, "default"), std::pair(OS_LOG_TYPE_INFO, "info"),
          std::pair(OS_LOG_TYPE_DEBUG, "debug"), std::pair(OS_LOG_TYPE_ERROR, "error"),
          std::pair(OS_LOG_TYPE_FAULT, "fault")}) {
        os_log_with_type(log, type, "text");
        EXPECT_EQ(simulator::takeRecordedEvents().unifiedLog,
                  nlohmann::ordered_json::array({record(level, "text")}));
    }
}
