#include "Platform/FinderSyncController.hpp"

#import <FinderSync/FIFinderSyncController+Simulator.h>
#import <FinderSync/FinderSync.h>
#include <gtest/gtest.h>

#import "Cocoa/URLConversion.h"

using quorva::FileURL;

namespace {

/// Finder, during a menu request.
class FinderRequest {
   public:
    FinderRequest(NSArray<NSURL*>* selectedItemURLs, NSURL* targetedURL) {
        [[FIFinderSyncController defaultController] beginWithSelectedItemURLs:selectedItemURLs
                                                                  targetedURL:targetedURL];
    }
    FinderRequest(const FinderRequest&) = delete;
    FinderRequest& operator=(const FinderRequest&) = delete;
    ~FinderRequest() { [[FIFinderSyncController defaultController] end]; }
};

}  // namespace

TEST(FinderSyncController, ReturnsSelectionAndTargetDuringARequest) {
    const std::vector selection{FileURL::file("/b"), FileURL::directory("/没有 a"),
                                FileURL::file("/b")};
    NSMutableArray* urls = [NSMutableArray array];
    for (const FileURL& url : selection) {
        [urls addObject:quorva::foundationURL(url)];
    }
    const FinderRequest request(urls, quorva::foundationURL(FileURL::directory("/target")));
    EXPECT_EQ(quorva::platform::selectedItemURLs(), selection);
    EXPECT_EQ(quorva::platform::targetedURL(), FileURL::directory("/target"));
}

TEST(FinderSyncController, ReturnsAnEmptySelection) {
    const FinderRequest request([NSArray array], nil);
    EXPECT_EQ(quorva::platform::selectedItemURLs(), std::vector<FileURL>{});
    EXPECT_EQ(quorva::platform::targetedURL(), std::nullopt);
}

TEST(FinderSyncController, ReturnsNothingOutsideARequest) {
    EXPECT_EQ(quorva::platform::selectedItemURLs(), std::nullopt);
    EXPECT_EQ(quorva::platform::targetedURL(), std::nullopt);
}

TEST(FinderSyncController, HoldsEachDirectoryURLOfTheSet) {
    EXPECT_TRUE(quorva::platform::setDirectoryURLs(
        {FileURL::file("/tmp"), FileURL::directory("/tmp"), FileURL::directory("/没有")}));
    NSSet<NSURL*>* urls = [FIFinderSyncController defaultController].directoryURLs;
    EXPECT_EQ(urls.count, 3u);
    EXPECT_TRUE([urls containsObject:quorva::foundationURL(FileURL::directory("/没有"))]);
    EXPECT_TRUE(quorva::platform::setDirectoryURLs({}));
    EXPECT_EQ([FIFinderSyncController defaultController].directoryURLs.count, 0u);
}
