#include "QuorvaFinderExtension/DiagnosticLog.hpp"

#include <map>
#include <sstream>
#include <thread>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using fakePlatform::Event;
using fakePlatform::Operation;
using testing::ElementsAre;

class DiagnosticLogTest : public UnitTest {
 protected:
    DiagnosticLogTest() { platform().timeIntervalSince1970 = 1794787578.75; }

    static std::optional<std::string> temporaryLog() {
        return platform().contents(temporaryLogPath);
    }

    static std::optional<std::string> containerLog() {
        return platform().contents(containerLogPath);
    }

    static inline const std::string stamp = "[2026-11-16 00:06:18 +0000] ";
};

TEST_F(DiagnosticLogTest, FirstLineCreatesBothFiles) {
    appendDiagnosticLog("started");
    EXPECT_EQ(temporaryLog(), stamp + "started\n");
    EXPECT_EQ(containerLog(), stamp + "started\n");
    EXPECT_THAT(messages(), ElementsAre("started"));
}

TEST_F(DiagnosticLogTest, LaterLinesAreAppended) {
    platform().putFile(temporaryLogPath, "before\n");
    appendDiagnosticLog("one");
    appendDiagnosticLog("two");
    EXPECT_EQ(temporaryLog(), "before\n" + stamp + "one\n" + stamp + "two\n");
    EXPECT_EQ(containerLog(), stamp + "one\n" + stamp + "two\n");
}

TEST_F(DiagnosticLogTest, ConsoleComesFirstThenTheTwoFilesInOrder) {
    platform().putFile(temporaryLogPath, "");
    appendDiagnosticLog("x");
    EXPECT_THAT(platform().journal,
                ElementsAre(message("x"), Event{Event::Kind::fileAppended, temporaryLogPath},
                            Event{Event::Kind::directoryCreated, settingsFolder},
                            Event{Event::Kind::fileWritten, containerLogPath}));
}

TEST_F(DiagnosticLogTest, TheDateIsTakenOnceForALine) {
    platform().clockStep = 3600;
    appendDiagnosticLog("x");
    EXPECT_EQ(temporaryLog(), containerLog());
    appendDiagnosticLog("y");
    EXPECT_EQ(temporaryLog(), stamp + "x\n[2026-11-16 01:06:18 +0000] y\n");
}

TEST_F(DiagnosticLogTest, ConsoleGetsTheMessageAlone) {
    appendDiagnosticLog("started");
    EXPECT_THAT(platform().consoleLines, ElementsAre("started"));
}

TEST_F(DiagnosticLogTest, EachLineIsOneWrite) {
    platform().putFile(temporaryLogPath, "");
    platform().putFile(containerLogPath, "");
    appendDiagnosticLog("a\nb");
    const auto writes = std::ranges::count_if(platform().journal, [](const Event& event) {
        return event.kind == Event::Kind::fileAppended;
    });
    EXPECT_EQ(writes, 2);
}

TEST_F(DiagnosticLogTest, EmptyMessageIsTheDateASpaceAndALineFeed) {
    appendDiagnosticLog("");
    EXPECT_EQ(temporaryLog(), "[2026-11-16 00:06:18 +0000] \n");
    EXPECT_THAT(messages(), ElementsAre(""));
}

TEST_F(DiagnosticLogTest, MessageIsWrittenAsItIs) {
    const std::string message = "a\n\"b\"\\ \t%@ %s\r\n😀 e\u0301";
    appendDiagnosticLog(message);
    EXPECT_EQ(temporaryLog(), stamp + message + "\n");
    EXPECT_THAT(messages(), ElementsAre(message));
}

struct DateRow {
    double seconds;
    const char* date;
};

TEST_F(DiagnosticLogTest, DatesAreInUTCWithTheSecondsRoundedDown) {
    const DateRow rows[] = {
        {0, "1970-01-01 00:00:00"},
        {0.999999, "1970-01-01 00:00:00"},
        {-0.000001, "1969-12-31 23:59:59"},
        {-1, "1969-12-31 23:59:59"},
        {-1.5, "1969-12-31 23:59:58"},
        {59.5, "1970-01-01 00:00:59"},
        {60, "1970-01-01 00:01:00"},
        {-58057077, "1968-02-29 01:02:03"},
        {951782400, "2000-02-29 00:00:00"},
        {951868799.9, "2000-02-29 23:59:59"},
        {951868800, "2000-03-01 00:00:00"},
        {-2203891201, "1900-02-28 23:59:59"},
        {-2203891200, "1900-03-01 00:00:00"},
        {1709210096, "2024-02-29 12:34:56"},
        {1767225599.999, "2025-12-31 23:59:59"},
        {1767225600, "2026-01-01 00:00:00"},
        {1794787578, "2026-11-16 00:06:18"},
        {4107542399, "2100-02-28 23:59:59"},
        {4107542400, "2100-03-01 00:00:00"},
        {253402300799, "9999-12-31 23:59:59"},
        {-62135596800, "0001-01-01 00:00:00"},
    };
    for (const DateRow& row : rows) {
        fakePlatform::reset();
        platform().timeIntervalSince1970 = row.seconds;
        appendDiagnosticLog("m");
        EXPECT_EQ(temporaryLog(), std::string("[") + row.date + " +0000] m\n");
    }
}

TEST_F(DiagnosticLogTest, SecondFileIsInTheContainersApplicationSupport) {
    platform().enterSandbox();
    appendDiagnosticLog("x");
    EXPECT_EQ(platform().contents("/Users/ada/Library/Containers/"
                                  "app.ferrolin.Quorva.FinderExtension/Data/Library/"
                                  "Application Support/Quorva/FinderExtension.log"),
              stamp + "x\n");
    EXPECT_FALSE(containerLog().has_value());
    EXPECT_FALSE(temporaryLog().has_value());
}

TEST_F(DiagnosticLogTest, ApplicationSupportIsCreatedWhenItIsMissing) {
    platform().entries.erase("/Users/ada/Library/Application Support");
    platform().entries.erase("/Users/ada/Library");
    appendDiagnosticLog("x");
    EXPECT_EQ(containerLog(), stamp + "x\n");
}

// Failures.

TEST_F(DiagnosticLogTest, FileThatCannotBeOpenedForWritingIsReplaced) {
    platform().putFile(temporaryLogPath, "before\n").writable = false;
    platform().putFile(containerLogPath, "before\n").writable = false;
    appendDiagnosticLog("x");
    EXPECT_EQ(temporaryLog(), stamp + "x\n");
    EXPECT_EQ(containerLog(), stamp + "x\n");
    appendDiagnosticLog("y");
    EXPECT_EQ(temporaryLog(), stamp + "x\n" + stamp + "y\n");
}

TEST_F(DiagnosticLogTest, FailureOfOneFileDoesNotKeepTheLineFromTheOther) {
    for (const std::string& path : {temporaryLogPath, containerLogPath}) {
        fakePlatform::reset();
        platform().timeIntervalSince1970 = 1794787578;
        platform().fail(Operation::writeAtomically, "no space", path);
        appendDiagnosticLog("x");
        EXPECT_FALSE(platform().contents(path).has_value());
        EXPECT_EQ(
            platform().contents(path == temporaryLogPath ? containerLogPath : temporaryLogPath),
            stamp + "x\n");
    }
}

TEST_F(DiagnosticLogTest, LineAfterATornOneBeginsOnALineOfItsOwn) {
    platform().putFile(temporaryLogPath, "before\n");
    platform().fail(Operation::writeToHandle, "no space", temporaryLogPath);
    appendDiagnosticLog("torn");
    const std::string torn = *temporaryLog();
    EXPECT_TRUE(torn.starts_with("before\n[2026"));
    EXPECT_FALSE(torn.ends_with('\n'));
    EXPECT_EQ(containerLog(), stamp + "torn\n");
    platform().failures.clear();
    appendDiagnosticLog("whole");
    EXPECT_EQ(temporaryLog(), torn + "\n" + stamp + "whole\n");
    EXPECT_EQ(containerLog(), stamp + "torn\n" + stamp + "whole\n");
}

TEST_F(DiagnosticLogTest, LogThatMayBeWrittenButNotReadIsAppendedTo) {
    platform().putFile(temporaryLogPath, "before\n").readable = false;
    appendDiagnosticLog("x");
    EXPECT_EQ(temporaryLog(), "before\n" + stamp + "x\n");
}

TEST_F(DiagnosticLogTest, PipeOrDeviceInPlaceOfALogIsReplaced) {
    platform().putSpecialFile(temporaryLogPath);
    platform().putSpecialFile(containerLogPath);
    appendDiagnosticLog("x");
    EXPECT_EQ(temporaryLog(), stamp + "x\n");
    EXPECT_EQ(containerLog(), stamp + "x\n");
}

TEST_F(DiagnosticLogTest, WithoutApplicationSupportTheFirstFileAndTheConsoleStillGetTheLine) {
    platform().fail(Operation::lookUpApplicationSupport);
    appendDiagnosticLog("x");
    EXPECT_EQ(temporaryLog(), stamp + "x\n");
    EXPECT_THAT(messages(), ElementsAre("x"));
    EXPECT_THAT(platform().journal,
                ElementsAre(message("x"), Event{Event::Kind::fileWritten, temporaryLogPath}));
}

TEST_F(DiagnosticLogTest, FolderThatCannotBeCreatedIsNoReasonNotToTryTheFile) {
    platform().putDirectory(settingsFolder);
    platform().fail(Operation::createDirectory);
    appendDiagnosticLog("x");
    EXPECT_EQ(containerLog(), stamp + "x\n");
}

TEST_F(DiagnosticLogTest, FileInPlaceOfTheFolderIsLeftAlone) {
    platform().putFile(settingsFolder, "a file");
    appendDiagnosticLog("x");
    EXPECT_EQ(platform().contents(settingsFolder), "a file");
    EXPECT_EQ(temporaryLog(), stamp + "x\n");
}

TEST_F(DiagnosticLogTest, FolderInPlaceOfALogIsLeftAlone) {
    platform().putDirectory(temporaryLogPath);
    appendDiagnosticLog("x");
    EXPECT_FALSE(temporaryLog().has_value());
    EXPECT_TRUE(std::holds_alternative<fakePlatform::Directory>(
        platform().find(temporaryLogPath)->content));
    EXPECT_EQ(containerLog(), stamp + "x\n");
}

TEST_F(DiagnosticLogTest, ExhaustedMemoryEndsNothing) {
    for (const Operation operation :
         {Operation::logToConsole, Operation::readClock, Operation::lookUpApplicationSupport,
          Operation::openForAppending, Operation::writeAtomically}) {
        fakePlatform::reset();
        platform().putFile(temporaryLogPath, "");
        platform().raise(operation, outOfMemory);
        appendDiagnosticLog("x");
    }
}

TEST_F(DiagnosticLogTest, LinesOfEightThreadsStayWhole) {
    constexpr int threadCount = 8;
    constexpr int lineCount = 100;
    const std::string words = " of a thread that writes a line of some length";
    // The first line makes a file; where two threads both do so, one line is lost.
    appendDiagnosticLog("first");
    std::vector<std::thread> threads;
    std::map<std::string, int> expected = {{"first", 1}};
    for (int thread = 0; thread < threadCount; ++thread) {
        const std::string message = std::to_string(thread) + words;
        expected[message] = lineCount;
        threads.emplace_back([message] {
            for (int line = 0; line < lineCount; ++line) {
                appendDiagnosticLog(message);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& path : {temporaryLogPath, containerLogPath}) {
        std::map<std::string, int> found;
        std::istringstream file(*platform().contents(path));
        for (std::string line; std::getline(file, line);) {
            ASSERT_TRUE(line.starts_with(stamp)) << line;
            ++found[line.substr(stamp.size())];
        }
        EXPECT_EQ(found, expected);
    }
}

// Lists in messages.

TEST(BracketedListTest, EmptyListIsTheTwoBrackets) {
    EXPECT_EQ(bracketedList({}), "[]");
    EXPECT_EQ(bracketedPaths({}), "[]");
}

TEST(BracketedListTest, ElementsAreQuotedAndSeparatedByACommaAndASpace) {
    EXPECT_EQ(bracketedList({"a"}), R"(["a"])");
    EXPECT_EQ(bracketedList({"a", "", "c d"}), R"(["a", "", "c d"])");
    EXPECT_EQ(bracketedList({"", ""}), R"(["", ""])");
}

TEST(BracketedListTest, NothingIsEscaped) {
    EXPECT_EQ(bracketedList({"a\"b", "c\\d", "e\nf", "😀"}),
              "[\"a\"b\", \"c\\d\", \"e\nf\", \"😀\"]");
}

TEST(BracketedListTest, URLsAreShownByTheirPaths) {
    EXPECT_EQ(bracketedPaths({FileURL::directory("/Users/ada/"), FileURL::file("/a b")}),
              R"(["/Users/ada", "/a b"])");
}

}  // namespace
}  // namespace quorva
