#include <cmath>
#include <cstdint>

#include "Platform/Bundle.hpp"
#include "Platform/Data.hpp"
#include "Platform/FileHandle.hpp"
#include "Platform/JSONSerialization.hpp"
#include "Platform/PropertyListSerialization.hpp"
#include "Platform/UUID.hpp"
#include "Tests/Unit/UnitTest.hpp"

// The tests of the core are worth what the platform under them is worth.

namespace quorva {
namespace {

using fakePlatform::Operation;
using testing::UnorderedElementsAre;

using FakePlatformTest = UnitTest;

TEST_F(FakePlatformTest, FileIsReadAsItWasPut) {
    platform().putFile("/a/b", "text");
    EXPECT_EQ(dataWithContentsOfURL(FileURL::file("/a/b")), dataWithText("text"));
    EXPECT_FALSE(dataWithContentsOfURL(FileURL::file("/a")).has_value());
    EXPECT_FALSE(dataWithContentsOfURL(FileURL::file("/a/c")).has_value());
    platform().putFile("/a/b", "text").readable = false;
    EXPECT_FALSE(dataWithContentsOfURL(FileURL::file("/a/b")).has_value());
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

TEST_F(FakePlatformTest, HandleWritesAtItsPositionAndTruncatesNothing) {
    platform().putFile("/tmp/a", "123456");
    Result<FileHandle> handle = FileHandle::forWritingToURL(FileURL::file("/tmp/a"));
    ASSERT_TRUE(handle.has_value());
    EXPECT_TRUE(handle->write("ab").has_value());
    EXPECT_EQ(platform().contents("/tmp/a"), "ab3456");
    EXPECT_TRUE(handle->seekToEnd().has_value());
    EXPECT_TRUE(handle->write("cd").has_value());
    EXPECT_TRUE(handle->close().has_value());
    EXPECT_EQ(platform().contents("/tmp/a"), "ab3456cd");
    EXPECT_FALSE(FileHandle::forWritingToURL(FileURL::file("/tmp")).has_value());
    EXPECT_FALSE(FileHandle::forWritingToURL(FileURL::file("/tmp/b")).has_value());
    platform().putFile("/tmp/a", "").writable = false;
    EXPECT_FALSE(FileHandle::forWritingToURL(FileURL::file("/tmp/a")).has_value());
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
        return propertyListWithData(*dataWithContentsOfURL(FileURL::file(path)));
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
    EXPECT_EQ(dataWithContentsOfURL(FileURL::file("/tmp/a")).error(), Error{"why"});
    EXPECT_TRUE(dataWithContentsOfURL(FileURL::file("/tmp/b")).has_value());
    platform().fail(Operation::readFile, "too");
    EXPECT_EQ(dataWithContentsOfURL(FileURL::file("/tmp/b")).error(), Error{"too"});
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
}  // namespace quorva
