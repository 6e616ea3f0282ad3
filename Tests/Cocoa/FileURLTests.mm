#include "Platform/FileURL.hpp"

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#import "Cocoa/StringConversion.h"
#import "Cocoa/URLConversion.h"
#include "Tests/Cocoa/TemporaryFolder.hpp"

using quorva::FileURL;

TEST(URLConversion, KeepsPathAndDirectoryFlagBothWays) {
    for (const char* path :
         {"/", "/tmp", "/nothing/here", "/a b", "/100%", "/a%20b", "/?#;&=+,:@!$'()*[]", "/a\\b",
          "/没有/e\u0301/\U0001F600", "/line\nbreak", "/\"quoted\""}) {
        const FileURL directory = FileURL::directory(path);
        EXPECT_EQ(quorva::fileURL(quorva::foundationURL(directory)), directory);
        const FileURL file = FileURL::file(path);
        EXPECT_EQ(quorva::fileURL(quorva::foundationURL(file)), file);
    }
}

TEST(URLConversion, TellsAFileURLFromTheDirectoryURLOfTheSamePath) {
    NSSet* urls = [NSSet setWithObjects:quorva::foundationURL(FileURL::file("/tmp")),
                                        quorva::foundationURL(FileURL::directory("/tmp")),
                                        quorva::foundationURL(FileURL::directory("/tmp/")), nil];
    EXPECT_EQ(urls.count, 2u);
}

TEST(URLConversion, FailsForAPathOfManyMegabytesInsteadOfEndingTheProcess) {
    const std::string path = "/" + std::string(1 << 24, 'p');
    NSString* shown = nil;
    @try {
        shown = quorva::foundationURL(FileURL::file(path)).path;
    } @catch (NSException*) {
        shown = nil;
    }
    EXPECT_TRUE(shown == nil || quorva::utf8String(shown) == path);
}

TEST(URLConversion, LeavesOutURLsWithoutAPath) {
    NSArray* urls = [NSArray arrayWithObjects:[NSURL URLWithString:@"mailto:ada"],
                                              quorva::foundationURL(FileURL::file("/a")), nil];
    EXPECT_EQ(quorva::fileURLs(urls), std::vector{FileURL::file("/a")});
    EXPECT_EQ(quorva::fileURLs(nil), std::vector<FileURL>{});
}

class FileURLOnDisk : public TemporaryFolder {};

TEST_F(FileURLOnDisk, StandardizingKeepsTheDirectoryFlag) {
    EXPECT_EQ(quorva::platform::standardizedFileURL(FileURL::directory("/tmp/./a/../b//c")),
              FileURL::directory("/tmp/b/c"));
    EXPECT_EQ(quorva::platform::standardizedFileURL(FileURL::file("/tmp/./a/../b//c")),
              FileURL::file("/tmp/b/c"));
    EXPECT_EQ(quorva::platform::standardizedFileURL(FileURL::directory("/")),
              FileURL::directory("/"));
    EXPECT_EQ(quorva::platform::standardizedFileURL(FileURL::directory("/..")),
              FileURL::directory("/"));
}

TEST_F(FileURLOnDisk, ResolvesSymbolicLinksAlsoAboveWhatDoesNotExist) {
    std::filesystem::create_directories(path("real/sub"));
    std::filesystem::create_directory_symlink("real", path("link"));
    const std::string folderPath = folder().string();
    EXPECT_EQ(quorva::platform::pathByResolvingSymbolicLinks(folderPath + "/link/sub"),
              folderPath + "/real/sub");
    EXPECT_EQ(quorva::platform::pathByResolvingSymbolicLinks(folderPath + "/link/missing/more"),
              folderPath + "/real/missing/more");
    EXPECT_EQ(quorva::platform::pathByResolvingSymbolicLinks(folderPath + "/没有"),
              folderPath + "/没有");
}

TEST_F(FileURLOnDisk, LeavesALoopOfSymbolicLinksAsItIs) {
    std::filesystem::create_symlink("loop", path("loop"));
    EXPECT_EQ(quorva::platform::pathByResolvingSymbolicLinks(path("loop/x").string()),
              path("loop/x").string());
}
