#include "Platform/FileHandle.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

#include "Tests/Cocoa/TemporaryFolder.hpp"

using quorva::platform::FileHandle;

class FileHandleOnDisk : public TemporaryFolder {
   protected:
    /// The open descriptors of the file at `path`.
    static std::vector<int> openDescriptors(const std::filesystem::path& path) {
        struct stat file = {};
        stat(path.c_str(), &file);
        std::vector<int> found;
        for (int descriptor = 0; descriptor < 1024; ++descriptor) {
            struct stat open = {};
            if (fstat(descriptor, &open) == 0 && open.st_dev == file.st_dev &&
                open.st_ino == file.st_ino) {
                found.push_back(descriptor);
            }
        }
        return found;
    }
};

TEST_F(FileHandleOnDisk, AppendsBehindTheLastByte) {
    write("没有.log", "first\n");
    auto handle = FileHandle::forAppendingToURL(file("没有.log"));
    ASSERT_TRUE(handle);
    EXPECT_TRUE(handle->write(std::string_view("a\0b\n", 4)));
    EXPECT_TRUE(handle->write(""));
    EXPECT_EQ(read("没有.log"), std::string("first\na\0b\n", 10));
}

TEST_F(FileHandleOnDisk, AppendsBehindWhatAnotherHandleWroteMeanwhile) {
    write("file", "");
    auto one = FileHandle::forAppendingToURL(file("file"));
    auto two = FileHandle::forAppendingToURL(file("file"));
    ASSERT_TRUE(one && two);
    EXPECT_TRUE(one->write("1"));
    EXPECT_TRUE(two->write("2"));
    EXPECT_TRUE(one->write("3"));
    EXPECT_EQ(read("file"), "123");
}

TEST_F(FileHandleOnDisk, TellsTheLastByte) {
    write("file", "ab");
    auto handle = FileHandle::forAppendingToURL(file("file"));
    ASSERT_TRUE(handle);
    EXPECT_EQ(handle->lastByte(), 'b');
    EXPECT_TRUE(handle->write("c"));
    EXPECT_EQ(handle->lastByte(), 'c');
    write("file", "");
    EXPECT_EQ(handle->lastByte(), std::nullopt);
}

TEST_F(FileHandleOnDisk, AppendsToAFileThatMayBeWrittenButNotRead) {
    write("file", "1");
    std::filesystem::permissions(path("file"), std::filesystem::perms::owner_write);
    auto handle = FileHandle::forAppendingToURL(file("file"));
    ASSERT_TRUE(handle);
    EXPECT_TRUE(handle->write("2"));
    EXPECT_EQ(handle->lastByte(), std::nullopt);
    std::filesystem::permissions(path("file"), std::filesystem::perms::owner_all);
    EXPECT_EQ(read("file"), "12");
}

TEST_F(FileHandleOnDisk, AppendsThroughALink) {
    write("file", "1");
    std::filesystem::create_symlink(path("file"), path("link"));
    auto handle = FileHandle::forAppendingToURL(file("link"));
    ASSERT_TRUE(handle);
    EXPECT_TRUE(handle->write("2"));
    EXPECT_EQ(read("file"), "12");
}

TEST_F(FileHandleOnDisk, OpeningFailsAtOnceForWhatIsNotARegularFile) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink(path("pipe"), path("link"));
    for (const quorva::FileURL& url : {file("missing"), file(""), file("pipe"), file("link"),
                                       quorva::FileURL::file("/dev/full")}) {
        const auto handle = FileHandle::forAppendingToURL(url);
        ASSERT_FALSE(handle) << url.path();
        EXPECT_NE(handle.error().localizedDescription, "");
    }
    EXPECT_EQ(entryCount(), 2u);
}

TEST_F(FileHandleOnDisk, IsNotInheritedByAProgramThatIsStarted) {
    write("file", "");
    const auto handle = FileHandle::forAppendingToURL(file("file"));
    ASSERT_TRUE(handle);
    const std::vector<int> descriptors = openDescriptors(path("file"));
    ASSERT_EQ(descriptors.size(), 1u);
    EXPECT_EQ(fcntl(descriptors.front(), F_GETFD), FD_CLOEXEC);
}

TEST_F(FileHandleOnDisk, ClosesItsFileOnce) {
    write("file", "");
    {
        auto handle = FileHandle::forAppendingToURL(file("file"));
        ASSERT_TRUE(handle);
        const FileHandle moved = std::move(*handle);
        EXPECT_EQ(openDescriptors(path("file")).size(), 1u);
    }
    EXPECT_EQ(openDescriptors(path("file")).size(), 0u);
}
