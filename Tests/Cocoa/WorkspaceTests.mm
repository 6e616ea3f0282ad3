#include "Platform/Workspace.hpp"

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>

#include "Platform/RunningApplication.hpp"
#import "Tests/Cocoa/RaisingMethod.h"
#include "Tests/Cocoa/TemporaryFolder.hpp"

using quorva::FileURL;

TEST(RunningApplicationCount, IsZeroForAnIdentifierThatNoneHas) {
    EXPECT_EQ(quorva::platform::runningApplicationCount("app.ferrolin.Nobody"), 0u);
}

TEST(OpenApplication, CompletesWithTheExceptionThatTheSystemRaises) {
    const RaisingMethod raising([NSWorkspaceOpenConfiguration class], @selector(configuration));
    std::optional<quorva::Error> given;
    quorva::platform::openApplication(
        FileURL::directory("/Sample.app"), {.activates = false, .addsToRecentItems = false},
        [&given](const std::optional<quorva::Error>& error) { given = error; });
    ASSERT_TRUE(given);
    EXPECT_EQ(given->localizedDescription, "raised");
}

TEST(OpenApplication, CompletesWithAnErrorAfterTheCallerHasGone) {
    auto promise = std::make_unique<std::promise<std::optional<quorva::Error>>>();
    auto future = promise->get_future();
    {
        auto shared = std::make_shared<decltype(promise)>(std::move(promise));
        quorva::platform::openApplication(
            FileURL::directory("/nothing.app"), {.activates = false, .addsToRecentItems = false},
            [shared](const std::optional<quorva::Error>& error) { (*shared)->set_value(error); });
    }
    const std::optional<quorva::Error> error = future.get();
    ASSERT_TRUE(error);
    EXPECT_NE(error->localizedDescription, "");
}
