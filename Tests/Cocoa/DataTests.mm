#include "Platform/Data.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Tests/Cocoa/TemporaryFolder.hpp"

using quorva::dataWithText;
using quorva::platform::dataWithContentsOfRegularFile;
using quorva::platform::writeDataAtomically;

class DataOnDisk : public TemporaryFolder {};

TEST_F(DataOnDisk, ReadsEveryByteOfAFile) {
    const std::string content("a\0\xFF\n", 4);
    write("没有 a?b#c%20;", content);
    EXPECT_EQ(dataWithContentsOfRegularFile(file("没有 a?b#c%20;"), 4), dataWithText(content));
}

TEST_F(DataOnDisk, ReadsAnEmptyFileAsNoBytes) {
    write("empty", "");
    EXPECT_EQ(dataWithContentsOfRegularFile(file("empty"), 0), quorva::Data{});
}

TEST_F(DataOnDisk, ReadingFailsForWhatIsMissingAFolderOrBelowAFile) {
    write("plain", "x");
    for (const quorva::FileURL& url : {file("missing"), file(""), file("plain/below")}) {
        const auto result = dataWithContentsOfRegularFile(url, 100);
        ASSERT_FALSE(result);
        EXPECT_NE(result.error().localizedDescription, "");
    }
}

TEST_F(DataOnDisk, ReadsAFileOfTheLimitAndNotALargerOne) {
    write("file", "1234");
    EXPECT_EQ(dataWithContentsOfRegularFile(file("file"), 4), dataWithText("1234"));
    EXPECT_FALSE(dataWithContentsOfRegularFile(file("file"), 3));
}

TEST_F(DataOnDisk, ReadsThroughALink) {
    write("file", "x");
    std::filesystem::create_symlink(path("file"), path("link"));
    EXPECT_EQ(dataWithContentsOfRegularFile(file("link"), 1), dataWithText("x"));
}

TEST_F(DataOnDisk, ReadingFailsAtOnceForAPipeOrADevice) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    for (const quorva::FileURL& url : {file("pipe"), quorva::FileURL::file("/dev/zero")}) {
        EXPECT_FALSE(dataWithContentsOfRegularFile(url, 100)) << url.path();
    }
}

TEST_F(DataOnDisk, WritesANewFileWithTheUsualPermissions) {
    ASSERT_TRUE(writeDataAtomically(dataWithText("new"), file("file")));
    EXPECT_EQ(read("file"), "new");
    EXPECT_EQ(entryCount(), 1u);
    struct stat status = {};
    ASSERT_EQ(stat(path("file").c_str(), &status), 0);
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(status.st_mode & 0777, 0666 & ~mask);
}

TEST_F(DataOnDisk, WritingReplacesAFileEvenOneWithoutPermissions) {
    write("file", "a longer text than the new one");
    std::filesystem::permissions(path("file"), std::filesystem::perms::none);
    ASSERT_TRUE(writeDataAtomically(dataWithText("new"), file("file")));
    EXPECT_EQ(read("file"), "new");
    EXPECT_EQ(entryCount(), 1u);
}

TEST_F(DataOnDisk, WritesNoBytes) {
    ASSERT_TRUE(writeDataAtomically({}, file("file")));
    EXPECT_EQ(std::filesystem::file_size(path("file")), 0u);
}

TEST_F(DataOnDisk, WritesAFileWithTheLongestName) {
    const std::string name(255, 'n');
    ASSERT_TRUE(writeDataAtomically(dataWithText("x"), file(name)));
    EXPECT_EQ(read(name), "x");
}

TEST_F(DataOnDisk, AFailedWriteLeavesEverythingAsItWas) {
    write("folder/inside", "kept");
    write("plain", "kept");
    for (const quorva::FileURL& url : {file("folder"), file("missing/file"), file("plain/below")}) {
        const auto result = writeDataAtomically(dataWithText("new"), url);
        ASSERT_FALSE(result);
        EXPECT_NE(result.error().localizedDescription, "");
    }
    EXPECT_EQ(read("folder/inside"), "kept");
    EXPECT_EQ(read("plain"), "kept");
    EXPECT_EQ(entryCount(), 2u);
}
