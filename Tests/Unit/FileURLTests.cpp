#include "Platform/FileURL.hpp"

#include <set>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

TEST(FileURLTest, FileKeepsItsPathByteForByte) {
    const FileURL url = FileURL::file("/Users/ada/../e\u0301 \"x\"\n//y");
    EXPECT_EQ(url.path(), "/Users/ada/../e\u0301 \"x\"\n//y");
    EXPECT_FALSE(url.hasDirectoryPath());
}

TEST(FileURLTest, TrailingSlashSaysDirectoryAndIsNotPartOfThePath) {
    const FileURL url = FileURL::file("/Users/ada///");
    EXPECT_EQ(url.path(), "/Users/ada");
    EXPECT_TRUE(url.hasDirectoryPath());
}

TEST(FileURLTest, DirectoryNeedsNoTrailingSlash) {
    EXPECT_EQ(FileURL::directory("/Users/ada"), FileURL::directory("/Users/ada/"));
    EXPECT_EQ(FileURL::directory("/Users/ada").path(), "/Users/ada");
}

TEST(FileURLTest, RootKeepsItsSlash) {
    EXPECT_EQ(FileURL::directory("/").path(), "/");
    EXPECT_EQ(FileURL::directory("///").path(), "/");
    EXPECT_EQ(FileURL::file("/").path(), "/");
    EXPECT_TRUE(FileURL::file("/").hasDirectoryPath());
}

TEST(FileURLTest, EmptyPathStaysEmpty) {
    EXPECT_EQ(FileURL::file("").path(), "");
    EXPECT_FALSE(FileURL::file("").hasDirectoryPath());
    EXPECT_EQ(FileURL::directory("").path(), "");
}

TEST(FileURLTest, FileAndDirectoryOfOnePathAreDifferentURLs) {
    EXPECT_NE(FileURL::file("/Users/ada"), FileURL::directory("/Users/ada"));
    const std::set<FileURL> urls = {FileURL::file("/Users/ada"), FileURL::directory("/Users/ada"),
                                    FileURL::file("/Users/ada")};
    EXPECT_EQ(urls.size(), 2U);
}

TEST(FileURLTest, URLsAreOrderedByPathFirst) {
    EXPECT_LT(FileURL::directory("/a"), FileURL::file("/b"));
    EXPECT_LT(FileURL::file("/a"), FileURL::directory("/a"));
    EXPECT_FALSE(FileURL::file("/a") < FileURL::file("/a"));
}

TEST(FileURLTest, AppendedComponentsAreJoinedWithOneSlash) {
    EXPECT_EQ(FileURL::directory("/Users/ada").appendingFile("a.txt"),
              FileURL::file("/Users/ada/a.txt"));
    EXPECT_EQ(FileURL::file("/Users/ada").appendingDirectory("Desktop"),
              FileURL::directory("/Users/ada/Desktop"));
    EXPECT_EQ(FileURL::directory("/").appendingFile("tmp"), FileURL::file("/tmp"));
    EXPECT_EQ(FileURL::directory("/").appendingDirectory("tmp"), FileURL::directory("/tmp"));
}

TEST(FileURLTest, AppendedComponentMayHoldSlashes) {
    EXPECT_EQ(FileURL::directory("/Users/ada").appendingDirectory("Library/Mobile Documents"),
              FileURL::directory("/Users/ada/Library/Mobile Documents"));
    EXPECT_EQ(FileURL::directory("/Users/ada").appendingFile("Library/"),
              FileURL::directory("/Users/ada/Library"));
}

TEST(FileURLTest, DeletingTheLastComponentGivesTheParentDirectory) {
    EXPECT_EQ(FileURL::file("/Users/ada/a.txt").deletingLastPathComponent(),
              FileURL::directory("/Users/ada"));
    EXPECT_EQ(FileURL::directory("/Users").deletingLastPathComponent(), FileURL::directory("/"));
}

TEST(FileURLTest, ParentOfTheRootIsTheRoot) {
    EXPECT_EQ(FileURL::directory("/").deletingLastPathComponent(), FileURL::directory("/"));
}

TEST(FileURLTest, PathWithoutSlashHasNoComponentToDelete) {
    EXPECT_EQ(FileURL::file("a.txt").deletingLastPathComponent(), FileURL::file("a.txt"));
}

}  // namespace
}  // namespace quorva
