#include "Platform/FileHandle.hpp"

#include <gtest/gtest.h>

#include "Tests/Cocoa/TemporaryFolder.hpp"

using quorva::FileHandle;

class FileHandleOnDisk : public TemporaryFolder {};

TEST_F(FileHandleOnDisk, AppendsBehindTheLastByte) {
    write("没有.log", "first\n");
    auto handle = FileHandle::forWritingToURL(file("没有.log"));
    ASSERT_TRUE(handle);
    EXPECT_TRUE(handle->seekToEnd());
    EXPECT_TRUE(handle->write(std::string_view("a\0b\n", 4)));
    EXPECT_TRUE(handle->write(""));
    EXPECT_TRUE(handle->close());
    EXPECT_EQ(read("没有.log"), std::string("first\na\0b\n", 10));
}

TEST_F(FileHandleOnDisk, StartsAtTheBeginningAndTruncatesNothing) {
    write("file", "abcdef");
    {
        auto handle = FileHandle::forWritingToURL(file("file"));
        ASSERT_TRUE(handle);
        EXPECT_TRUE(handle->write("XY"));
    }
    EXPECT_EQ(read("file"), "XYcdef");
}

TEST_F(FileHandleOnDisk, OpeningFailsForWhatIsMissingOrAFolder) {
    for (const quorva::FileURL& url : {file("missing"), file("")}) {
        const auto handle = FileHandle::forWritingToURL(url);
        ASSERT_FALSE(handle);
        EXPECT_NE(handle.error().localizedDescription, "");
    }
    EXPECT_EQ(entryCount(), 0u);
}

TEST_F(FileHandleOnDisk, MovesWithItsFile) {
    write("one", "");
    write("two", "");
    auto one = FileHandle::forWritingToURL(file("one"));
    auto two = FileHandle::forWritingToURL(file("two"));
    ASSERT_TRUE(one && two);
    *one = std::move(*two);
    EXPECT_TRUE(one->write("x"));
    EXPECT_EQ(read("two"), "x");
}

TEST(FileHandle, ReportsAWriteThatTheSystemRefuses) {
    auto handle = FileHandle::forWritingToURL(quorva::FileURL::file("/dev/full"));
    ASSERT_TRUE(handle);
    const auto result = handle->write("x");
    ASSERT_FALSE(result);
    EXPECT_NE(result.error().localizedDescription, "");
}
