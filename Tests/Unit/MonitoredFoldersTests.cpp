#include "QuorvaFinderExtension/MonitoredFolders.hpp"

#include <algorithm>
#include <iterator>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using fakePlatform::Operation;
using testing::IsEmpty;
using testing::SizeIs;

using platform::SearchPathDirectory;

using MonitoredFoldersTest = UnitTest;

// The monitored folders.

TEST_F(MonitoredFoldersTest, ContainersHomeAndTheRealHomeAreBothMonitored) {
    platform().enterSandbox();
    const URLs urls = monitoredDirectoryURLs();
    const std::string container =
        "/Users/ada/Library/Containers/app.ferrolin.Quorva.FinderExtension/Data";
    for (const std::string& path :
         {container, container + "/Desktop", container + "/Pictures", std::string("/Users/ada"),
          std::string("/Users/ada/Desktop"), std::string("/Users/ada/Documents")}) {
        EXPECT_TRUE(urls.contains(FileURL::directory(path))) << path;
    }
    EXPECT_FALSE(urls.contains(FileURL::directory(container + "/Library/Application Support")));
}

TEST_F(MonitoredFoldersTest, BaseFoldersAreMonitoredWhetherOrNotTheyExist) {
    platform().entries.clear();
    platform().standardDirectories.clear();
    EXPECT_EQ(monitoredDirectoryURLs(),
              directories({"/Applications", "/Volumes", "/Users/ada", "/Users/ada/Desktop",
                           "/Users/ada/Documents",
                           "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs",
                           "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Desktop",
                           "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Documents"}));
}

TEST_F(MonitoredFoldersTest, FirstURLOfEachStandardDirectoryIsMonitored) {
    for (const auto directory : {SearchPathDirectory::desktop, SearchPathDirectory::documents,
                                 SearchPathDirectory::downloads, SearchPathDirectory::movies,
                                 SearchPathDirectory::music, SearchPathDirectory::pictures}) {
        fakePlatform::reset();
        platform().standardDirectories[directory] = {FileURL::directory("/Volumes/Big/First"),
                                                     FileURL::directory("/Volumes/Big/Second")};
        const URLs urls = monitoredDirectoryURLs();
        EXPECT_TRUE(urls.contains(FileURL::directory("/Volumes/Big/First")));
        EXPECT_FALSE(urls.contains(FileURL::directory("/Volumes/Big/Second")));
    }
}

TEST_F(MonitoredFoldersTest, ApplicationSupportIsNotMonitored) {
    platform().standardDirectories[SearchPathDirectory::applicationSupport] = {
        FileURL::directory("/Volumes/Big/Support")};
    EXPECT_FALSE(monitoredDirectoryURLs().contains(FileURL::directory("/Volumes/Big/Support")));
}

TEST_F(MonitoredFoldersTest, VisibleFoldersInTheRealHomeAreMonitored) {
    platform().putDirectory("/Users/ada/Projects/Deep");
    platform().putDirectory("/Users/ada/.hidden");
    platform().putDirectory("/Users/ada/Attribute");
    platform().find("/Users/ada/Attribute")->hidden = true;
    platform().putFile("/Users/ada/notes.txt", "");
    URLs expected = defaultDirectories();
    expected.insert(FileURL::directory("/Users/ada/Projects"));
    EXPECT_EQ(monitoredDirectoryURLs(), expected);
}

TEST_F(MonitoredFoldersTest, FoldersOfTheRealHomeAreListedAndNotThoseOfTheContainer) {
    platform().enterSandbox();
    platform().putDirectory("/Users/ada").readable = true;
    platform().putDirectory("/Users/ada/Projects");
    platform().putDirectory(platform().homeDirectory.path() + "/Inner");
    const URLs urls = monitoredDirectoryURLs();
    EXPECT_TRUE(urls.contains(FileURL::directory("/Users/ada/Projects")));
    EXPECT_FALSE(urls.contains(platform().homeDirectory.appendingDirectory("Inner")));
}

TEST_F(MonitoredFoldersTest, FoldersThatTheContainerLinksToAreMonitoredInTheSandbox) {
    platform().enterSandbox();
    const URLs urls = monitoredDirectoryURLs();
    for (const char* const path :
         {"/Users/ada/Desktop", "/Users/ada/Downloads", "/Users/ada/Movies", "/Users/ada/Music",
          "/Users/ada/Pictures"}) {
        EXPECT_TRUE(urls.contains(FileURL::directory(path))) << path;
    }
}

TEST_F(MonitoredFoldersTest, HomeOfAnotherNameThanTheUserIsMonitoredInTheSandbox) {
    platform().enterSandbox();
    platform().accountHomesByUserName["ada"] = "/Users/lovelace";
    const URLs urls = monitoredDirectoryURLs();
    EXPECT_TRUE(urls.contains(FileURL::directory("/Users/lovelace")));
    EXPECT_TRUE(urls.contains(FileURL::directory("/Users/lovelace/Desktop")));
    EXPECT_FALSE(urls.contains(FileURL::directory("/Users/ada")));
}

TEST_F(MonitoredFoldersTest, HomeThatCannotBeListedLeavesTheOtherFolders) {
    platform().putDirectory("/Users/ada/Projects");
    platform().fail(Operation::listDirectory);
    EXPECT_EQ(monitoredDirectoryURLs(), defaultDirectories());
    platform().failures.clear();
    platform().putDirectory("/Users/ada").readable = false;
    EXPECT_EQ(monitoredDirectoryURLs(), defaultDirectories());
}

TEST_F(MonitoredFoldersTest, HomeBehindASymbolicLinkIsMonitoredUnderBothPaths) {
    platform().putDirectory("/Volumes/Big/ada/Projects");
    std::erase_if(platform().entries,
                  [](const auto& entry) { return entry.first.starts_with("/Users/ada"); });
    platform().putSymbolicLink("/Users/ada", "/Volumes/Big/ada");
    const URLs urls = monitoredDirectoryURLs();
    for (const char* const path :
         {"/Users/ada", "/Volumes/Big/ada", "/Users/ada/Desktop", "/Volumes/Big/ada/Desktop",
          "/Users/ada/Projects", "/Volumes/Big/ada/Projects"}) {
        EXPECT_TRUE(urls.contains(FileURL::directory(path))) << path;
    }
}

// The variants of a URL.

TEST_F(MonitoredFoldersTest, NoURLsHaveNoVariants) {
    EXPECT_THAT(normalizedDirectoryVariants({}), IsEmpty());
}

TEST_F(MonitoredFoldersTest, PlainDirectoryIsItsOnlyVariant) {
    EXPECT_EQ(normalizedDirectoryVariants({FileURL::directory("/Users/ada")}),
              directories({"/Users/ada"}));
}

TEST_F(MonitoredFoldersTest, FileURLGetsADirectoryVariant) {
    EXPECT_EQ(normalizedDirectoryVariants({FileURL::file("/Users/ada")}),
              (URLs{FileURL::file("/Users/ada"), FileURL::directory("/Users/ada")}));
}

TEST_F(MonitoredFoldersTest, VariantsAreTheURLItsStandardFormAndItsResolvedPath) {
    platform().putSymbolicLink("/var", "/private/var");
    platform().putDirectory("/private/var/data");
    EXPECT_EQ(normalizedDirectoryVariants({FileURL::directory("/var/./data")}),
              directories({"/var/./data", "/var/data", "/private/var/data"}));
}

TEST_F(MonitoredFoldersTest, VariantsOfSeveralURLsMerge) {
    platform().putSymbolicLink("/link", "/Users/ada");
    EXPECT_EQ(
        normalizedDirectoryVariants({FileURL::directory("/link"), FileURL::directory("/Users/ada"),
                                     FileURL::directory("/link")}),
        directories({"/link", "/Users/ada"}));
}

// The real home.

struct HomeRow {
    const char* description;
    std::optional<std::string> accountHome;
    std::map<SearchPathDirectory, std::string> standardDirectories;
    const char* realHome;
};

TEST_F(MonitoredFoldersTest, RealHomeIsTheFirstThatIsAUsersAndInNoContainer) {
    using enum SearchPathDirectory;
    const std::string container = "/Users/ada/Library/Containers/x/Data";
    const HomeRow rows[] = {
        {"the account's home", "/Users/ada", {{desktop, "/Users/bob/Desktop"}}, "/Users/ada"},
        {"an account's home of another name", "/Users/x y", {}, "/Users/x y"},
        {"no account, desktop", std::nullopt, {{desktop, "/Users/bob/Desktop"}}, "/Users/bob"},
        {"account in a container", container, {{desktop, "/Users/bob/Desktop"}}, "/Users/bob"},
        {"account elsewhere", "/home/ada", {{desktop, "/Users/bob/Desktop"}}, "/Users/bob"},
        {"account's prefix to the letter", "/users/ada", {{desktop, "/Users/bob/D"}}, "/Users/bob"},
        {"account without a folder", "/Users", {{desktop, "/Users/bob/Desktop"}}, "/Users/bob"},
        {"container's name within a name",
         "/Users/ada/Library/ContainersX/y",
         {},
         "/Users/ada/Library/ContainersX/y"},
        {"containers of another folder", "/Users/ada/Containers/y", {}, "/Users/ada/Containers/y"},
        {"containers of a folder whose name ends alike",
         "/Users/ada/xLibrary/Containers/y",
         {},
         "/Users/ada/xLibrary/Containers/y"},
        {"desktop in a container, downloads next",
         std::nullopt,
         {{desktop, container + "/Desktop"},
          {downloads, "/Users/bob/Downloads"},
          {movies, "/Users/eve/Movies"}},
         "/Users/bob"},
        {"desktop elsewhere, movies next",
         std::nullopt,
         {{desktop, "/Volumes/Big/Desktop"},
          {movies, "/Users/bob/Movies"},
          {music, "/Users/eve/Music"}},
         "/Users/bob"},
        {"music before pictures",
         std::nullopt,
         {{pictures, "/Users/eve/Pictures"}, {music, "/Users/bob/Music"}},
         "/Users/bob"},
        {"pictures last", std::nullopt, {{pictures, "/Users/bob/Pictures"}}, "/Users/bob"},
        {"documents are not consulted",
         std::nullopt,
         {{documents, "/Users/bob/Documents"}},
         "/Users/ada"},
        {"application support is not consulted",
         std::nullopt,
         {{applicationSupport, "/Users/bob/Support"}},
         "/Users/ada"},
        {"nothing qualifies",
         container,
         {{desktop, container + "/Desktop"}, {downloads, "/Downloads"}},
         "/Users/ada"},
    };
    for (const HomeRow& row : rows) {
        fakePlatform::reset();
        platform().homeDirectoriesByUserName.clear();
        platform().accountHomesByUserName.clear();
        if (row.accountHome) {
            platform().homeDirectoriesByUserName["ada"] = *row.accountHome;
        }
        platform().standardDirectories.clear();
        for (const auto& [directory, path] : row.standardDirectories) {
            platform().standardDirectories[directory] = {FileURL::directory(path)};
        }
        EXPECT_EQ(realUserHomeURL(), FileURL::directory(row.realHome)) << row.description;
    }
}

TEST_F(MonitoredFoldersTest, OnlyTheFirstURLOfAStandardDirectoryIsConsultedForTheRealHome) {
    platform().homeDirectoriesByUserName.clear();
    platform().standardDirectories = {
        {SearchPathDirectory::desktop,
         {FileURL::directory("/Volumes/Big/Desktop"), FileURL::directory("/Users/bob/Desktop")}}};
    EXPECT_EQ(realUserHomeURL(), FileURL::directory("/Users/ada"));
}

TEST_F(MonitoredFoldersTest, RealHomeDoesNotDependOnTheReportedHome) {
    platform().homeDirectory = FileURL::directory("/Users/eve");
    EXPECT_EQ(realUserHomeURL(), FileURL::directory("/Users/ada"));
}

}  // namespace
}  // namespace quorva
