#include "Platform/FileManager.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Cocoa/TemporaryFolder.hpp"

using quorva::FileURL;
using quorva::platform::SearchPathDirectory;
using testing::UnorderedElementsAre;

/// A test that makes URLs of directories.
template <typename Folder>
class FileManagerTest : public Folder {
   protected:
    [[nodiscard]] FileURL directory(std::string_view name) const {
        return FileURL::directory(this->path(name).string());
    }
};

using FileManagerOnDisk = FileManagerTest<TemporaryFolder>;
using FileManagerAtHome = FileManagerTest<TemporaryHome>;

TEST_F(FileManagerAtHome, ReportsTheHomeFolder) {
    EXPECT_EQ(quorva::platform::homeDirectoryForCurrentUser(),
              FileURL::directory(folder().string()));
}

TEST_F(FileManagerAtHome, ReportsTheStandardDirectoriesWhetherTheyExistOrNot) {
    const std::pair<SearchPathDirectory, std::string_view> expected[] = {
        {SearchPathDirectory::documents, "Documents"},
        {SearchPathDirectory::desktop, "Desktop"},
        {SearchPathDirectory::applicationSupport, "Library/Application Support"},
        {SearchPathDirectory::downloads, "Downloads"},
        {SearchPathDirectory::movies, "Movies"},
        {SearchPathDirectory::music, "Music"},
        {SearchPathDirectory::pictures, "Pictures"}};
    for (const auto& [searchPath, name] : expected) {
        EXPECT_EQ(quorva::platform::urlsForDirectoryInUserDomain(searchPath),
                  std::vector{directory(name)});
    }
    EXPECT_EQ(entryCount(), 0u);
}

TEST_F(FileManagerOnDisk, ReportsNothingForADirectoryItDoesNotKnow) {
    const auto unknown = static_cast<SearchPathDirectory>(4711);
    EXPECT_EQ(quorva::platform::urlsForDirectoryInUserDomain(unknown), std::vector<FileURL>{});
    EXPECT_FALSE(quorva::platform::urlForDirectoryInUserDomainCreating(unknown));
}

TEST_F(FileManagerAtHome, CreatesApplicationSupportWhenAskedTo) {
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(quorva::platform::urlForDirectoryInUserDomainCreating(
                      SearchPathDirectory::applicationSupport),
                  directory("Library/Application Support"));
    }
    EXPECT_TRUE(std::filesystem::is_directory(path("Library/Application Support")));
}

TEST_F(FileManagerAtHome, FailsToCreateApplicationSupportBelowAFile) {
    write("Library", "in the way");
    const auto result = quorva::platform::urlForDirectoryInUserDomainCreating(
        SearchPathDirectory::applicationSupport);
    ASSERT_FALSE(result);
    EXPECT_NE(result.error().localizedDescription, "");
}

TEST_F(FileManagerOnDisk, CreatesDirectoriesWithThoseAboveThem) {
    EXPECT_TRUE(
        quorva::platform::createDirectoryWithIntermediateDirectories(directory("a/没有/c")));
    EXPECT_TRUE(
        quorva::platform::createDirectoryWithIntermediateDirectories(directory("a/没有/c")));
    EXPECT_TRUE(std::filesystem::is_directory(path("a/没有/c")));
}

TEST_F(FileManagerOnDisk, CreatesADirectoryThroughALink) {
    std::filesystem::create_directory(path("real"));
    std::filesystem::create_directory_symlink("real", path("link"));
    EXPECT_TRUE(
        quorva::platform::createDirectoryWithIntermediateDirectories(directory("link/new")));
    EXPECT_TRUE(std::filesystem::is_directory(path("real/new")));
}

TEST_F(FileManagerOnDisk, FailsToCreateADirectoryWhereAFileIsInTheWay) {
    write("plain", "kept");
    for (const char* name : {"plain", "plain/below"}) {
        const auto result =
            quorva::platform::createDirectoryWithIntermediateDirectories(directory(name));
        ASSERT_FALSE(result) << name;
        EXPECT_NE(result.error().localizedDescription, "");
    }
    EXPECT_EQ(read("plain"), "kept");
}

TEST_F(FileManagerOnDisk, ListsEntriesWithoutHiddenOnesAndSaysWhichAreDirectories) {
    std::filesystem::create_directories(path("folder/inside"));
    std::filesystem::create_directory(path(".hidden"));
    std::filesystem::create_directory_symlink("folder", path("link"));
    write("a?b#c%20;", "");
    write("没有", "");
    write(".hidden file", "");
    const auto contents = quorva::platform::contentsOfDirectorySkippingHiddenFiles(
        FileURL::directory(folder().string()));
    ASSERT_TRUE(contents);
    EXPECT_THAT(*contents, UnorderedElementsAre(directory("folder"), file("link"),
                                                file("a?b#c%20;"), file("没有")));
}

TEST_F(FileManagerOnDisk, ListsTheOthersWhenANameIsNotUTF8) {
    write("\xFF\xFE", "");
    write("file", "");
    EXPECT_EQ(quorva::platform::contentsOfDirectorySkippingHiddenFiles(
                  FileURL::directory(folder().string())),
              std::vector{file("file")});
}

TEST_F(FileManagerOnDisk, ListsAnEmptyDirectory) {
    EXPECT_EQ(quorva::platform::contentsOfDirectorySkippingHiddenFiles(
                  FileURL::directory(folder().string())),
              std::vector<FileURL>{});
}

TEST_F(FileManagerOnDisk, ListingFailsForWhatIsMissingOrAFile) {
    write("plain", "");
    for (const char* name : {"missing", "plain"}) {
        const auto contents =
            quorva::platform::contentsOfDirectorySkippingHiddenFiles(directory(name));
        ASSERT_FALSE(contents) << name;
        EXPECT_NE(contents.error().localizedDescription, "");
    }
}

TEST_F(FileManagerOnDisk, KnowsWhatExists) {
    write("file", "");
    std::filesystem::create_symlink("nowhere", path("dangling"));
    EXPECT_TRUE(quorva::platform::fileExistsAtPath(folder().string()));
    EXPECT_TRUE(quorva::platform::fileExistsAtPath(path("file").string()));
    EXPECT_FALSE(quorva::platform::fileExistsAtPath(path("missing").string()));
    EXPECT_FALSE(quorva::platform::fileExistsAtPath(path("dangling").string()));
    EXPECT_FALSE(quorva::platform::fileExistsAtPath(""));
}
