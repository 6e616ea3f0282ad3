#include <cmath>
#include <cstdint>

#include "Platform/Bundle.hpp"
#include "Platform/Data.hpp"
#include "Platform/FileHandle.hpp"
#include "Platform/FileManager.hpp"
#include "Platform/JSONSerialization.hpp"
#include "Platform/PathUtilities.hpp"
#include "Platform/PropertyListSerialization.hpp"
#include "Platform/UUID.hpp"
#include "Tests/Unit/UnitTest.hpp"

// The tests of the core are worth what the platform under them is worth.

namespace quorva::platform {
namespace {

using fakePlatform::Operation;
using testing::UnorderedElementsAre;

using FakePlatformTest = UnitTest;

TEST_F(FakePlatformTest, FileIsReadAsItWasPut) {
    platform().putFile("/a/b", "text");
    EXPECT_EQ(dataWithContentsOfRegularFile(FileURL::file("/a/b"), 1000), dataWithText("text"));
    EXPECT_FALSE(dataWithContentsOfRegularFile(FileURL::file("/a"), 1000).has_value());
    EXPECT_FALSE(dataWithContentsOfRegularFile(FileURL::file("/a/c"), 1000).has_value());
    platform().putFile("/a/b", "text").readable = false;
    EXPECT_FALSE(dataWithContentsOfRegularFile(FileURL::file("/a/b"), 1000).has_value());
}

TEST_F(FakePlatformTest, AtomicWriteNeedsAWritableFolderAndReplacesAnyFile) {
    EXPECT_FALSE(writeDataAtomically({}, FileURL::file("/none/a")).has_value());
    EXPECT_FALSE(writeDataAtomically({}, FileURL::file("/tmp")).has_value());
    platform().putFile("/tmp/a", "old").writable = false;
    EXPECT_TRUE(writeDataAtomically(dataWithText("new"), FileURL::file("/tmp/a")).has_value());
    EXPECT_EQ(platform().contents("/tmp/a"), "new");
    platform().putDirectory("/tmp").writable = false;
    EXPECT_FALSE(writeDataAtomically({}, FileURL::file("/tmp/a")).has_value());
}

TEST_F(FakePlatformTest, HandleAppendsToARegularFileThatMayBeWritten) {
    platform().putFile("/tmp/a", "1");
    Result<FileHandle> handle = FileHandle::forAppendingToURL(FileURL::file("/tmp/a"));
    ASSERT_TRUE(handle.has_value());
    EXPECT_EQ(handle->lastByte(), '1');
    platform().putFile("/tmp/a", "123");
    EXPECT_TRUE(handle->write("ab").has_value());
    EXPECT_EQ(platform().contents("/tmp/a"), "123ab");
    EXPECT_EQ(handle->lastByte(), 'b');
    platform().putFile("/tmp/a", "");
    EXPECT_EQ(handle->lastByte(), std::nullopt);
    platform().putSpecialFile("/tmp/pipe");
    for (const char* const path : {"/tmp", "/tmp/b", "/tmp/pipe"}) {
        EXPECT_FALSE(FileHandle::forAppendingToURL(FileURL::file(path)).has_value()) << path;
    }
    platform().putFile("/tmp/a", "").writable = false;
    EXPECT_FALSE(FileHandle::forAppendingToURL(FileURL::file("/tmp/a")).has_value());
}

TEST_F(FakePlatformTest, SandboxIsAsUnkindAsTheRealOne) {
    platform().enterSandbox();
    const FileURL home = homeDirectoryForCurrentUser();
    EXPECT_EQ(platform().homeDirectoriesByUserName["ada"], home.path());
    EXPECT_FALSE(contentsOfDirectorySkippingHiddenFiles(FileURL::directory("/Users/ada")));
    EXPECT_FALSE(writeDataAtomically({}, FileURL::file("/tmp/a")).has_value());
    for (const char* const name : {"Desktop", "Downloads", "Movies", "Music", "Pictures"}) {
        EXPECT_EQ(pathByResolvingSymbolicLinks(home.path() + "/" + name),
                  std::string("/Users/ada/") + name);
    }
    EXPECT_EQ(pathByResolvingSymbolicLinks(home.path() + "/Documents"), home.path() + "/Documents");
}

TEST_F(FakePlatformTest, HomeOfAnAccountIsThatOfTheDatabaseWhereFoundationNamesAContainer) {
    platform().accountHomesByUserName["ada"] = "/Users/lovelace";
    EXPECT_EQ(homeDirectoryForUser("ada"), "/Users/ada");
    platform().enterSandbox();
    EXPECT_EQ(homeDirectoryForUser("ada"), "/Users/lovelace");
    platform().accountHomesByUserName.clear();
    EXPECT_EQ(homeDirectoryForUser("ada"), homeDirectoryForCurrentUser().path());
}

TEST_F(FakePlatformTest, DirectoriesAreCreatedUnlessAFileIsInTheWay) {
    EXPECT_TRUE(createDirectoryWithIntermediateDirectories(FileURL::directory("/x/y/z")));
    EXPECT_TRUE(createDirectoryWithIntermediateDirectories(FileURL::directory("/x/y/z")));
    EXPECT_TRUE(fileExistsAtPath("/x/y"));
    platform().putFile("/x/file", "");
    EXPECT_FALSE(createDirectoryWithIntermediateDirectories(FileURL::directory("/x/file")));
    EXPECT_FALSE(createDirectoryWithIntermediateDirectories(FileURL::directory("/x/file/y")));
    platform().putDirectory("/x").writable = false;
    EXPECT_FALSE(createDirectoryWithIntermediateDirectories(FileURL::directory("/x/w")));
}

TEST_F(FakePlatformTest, ListingShowsVisibleEntriesOfOneLevel) {
    platform().putDirectory("/x/folder/deep");
    platform().putFile("/x/file", "");
    platform().putFile("/x/.dot", "");
    platform().putFile("/x/hidden", "");
    platform().entries.at("/x/hidden").hidden = true;
    platform().putSymbolicLink("/x/link", "/tmp");
    const auto urls = contentsOfDirectorySkippingHiddenFiles(FileURL::directory("/x"));
    ASSERT_TRUE(urls.has_value());
    EXPECT_THAT(*urls, UnorderedElementsAre(FileURL::directory("/x/folder"),
                                            FileURL::file("/x/file"), FileURL::file("/x/link")));
    EXPECT_FALSE(contentsOfDirectorySkippingHiddenFiles(FileURL::directory("/none")).has_value());
    EXPECT_FALSE(contentsOfDirectorySkippingHiddenFiles(FileURL::file("/x/file")).has_value());
}

TEST_F(FakePlatformTest, SymbolicLinksAreFollowedAndLoopsEnd) {
    platform().putSymbolicLink("/l", "/tmp");
    platform().putSymbolicLink("/tmp/up", "../Applications");
    platform().putSymbolicLink("/loop", "/loop");
    EXPECT_EQ(pathByResolvingSymbolicLinks("/l/./x"), "/tmp/x");
    EXPECT_EQ(pathByResolvingSymbolicLinks("/l/up/y"), "/Applications/y");
    EXPECT_TRUE(fileExistsAtPath("/l/up"));
    EXPECT_FALSE(fileExistsAtPath("/loop"));
    platform().putSymbolicLink("/dangling", "/none");
    EXPECT_FALSE(fileExistsAtPath("/dangling"));
}

TEST_F(FakePlatformTest, StandardFormHasNoDotsAndNoNeedlessPrefix) {
    EXPECT_EQ(standardizedFileURL(FileURL::directory("/a/./b/../c//d")),
              FileURL::directory("/a/c/d"));
    EXPECT_EQ(standardizedFileURL(FileURL::file("/..")), FileURL::directory("/"));
    EXPECT_EQ(standardizedFileURL(FileURL::file("/private/x")), FileURL::file("/private/x"));
    platform().putSymbolicLink("/var", "/private/var");
    EXPECT_EQ(standardizedFileURL(FileURL::file("/private/var/x")), FileURL::file("/var/x"));
}

TEST_F(FakePlatformTest, OnlyWhatWasPutAsAPropertyListParsesAsOne) {
    platform().putPropertyList("/tmp/a", texts({{"k", "v"}}));
    platform().putPropertyList("/tmp/b", "text");
    const auto parsed = [](const char* path) {
        return propertyListWithData(*dataWithContentsOfRegularFile(FileURL::file(path), 1000));
    };
    EXPECT_TRUE(parsed("/tmp/a") == texts({{"k", "v"}}));
    EXPECT_TRUE(parsed("/tmp/b") == PropertyList("text"));
    EXPECT_FALSE(propertyListWithData(dataWithText("garbage")).has_value());
    EXPECT_FALSE(propertyListWithData({}).has_value());
}

TEST_F(FakePlatformTest, JSONHasSortedKeysAndRefusesWhatItHasNoFormFor) {
    const auto json = [](const PropertyList& value) {
        return jsonDataPrettyPrintedWithSortedKeys(value);
    };
    EXPECT_EQ(json(PropertyList::Dictionary{{"b", 1.5}, {"a", list({"x", true, std::int64_t{2}})}}),
              dataWithText("{\n  \"a\": [\n    \"x\",\n    true,\n    2\n  ],\n  \"b\": 1.5\n}"));
    EXPECT_FALSE(json(list({PropertyList::Date{0}})).has_value());
    EXPECT_FALSE(json(PropertyList::Dictionary{{"a", Data{}}}).has_value());
    EXPECT_FALSE(json(list({HUGE_VAL})).has_value());
    EXPECT_FALSE(json(list({"\xFF"})).has_value());
}

TEST_F(FakePlatformTest, FailuresStrikeAtTheirPathOrEverywhere) {
    platform().putFile("/tmp/a", "");
    platform().putFile("/tmp/b", "");
    platform().fail(Operation::readFile, "why", "/tmp/a");
    EXPECT_EQ(dataWithContentsOfRegularFile(FileURL::file("/tmp/a"), 1000).error(), Error{"why"});
    EXPECT_TRUE(dataWithContentsOfRegularFile(FileURL::file("/tmp/b"), 1000).has_value());
    platform().fail(Operation::readFile, "too");
    EXPECT_EQ(dataWithContentsOfRegularFile(FileURL::file("/tmp/b"), 1000).error(), Error{"too"});
    platform().raise(Operation::localizeString, outOfMemory);
    EXPECT_THROW((void)localizedString("x"), std::bad_alloc);
}

TEST_F(FakePlatformTest, UUIDsAreTheGivenOnesThenCountedOnes) {
    platform().uuids = {"first"};
    EXPECT_EQ(newUUIDString(), "first");
    EXPECT_EQ(newUUIDString(), "00000000-0000-4000-8000-000000000001");
    EXPECT_EQ(newUUIDString(), "00000000-0000-4000-8000-000000000002");
}

TEST_F(FakePlatformTest, ResetGivesANewMachine) {
    platform().putFile("/tmp/a", "");
    platform().fail(Operation::readFile);
    fakePlatform::reset();
    EXPECT_FALSE(fileExistsAtPath("/tmp/a"));
    EXPECT_TRUE(platform().failures.empty());
}

}  // namespace
}  // namespace quorva::platform
