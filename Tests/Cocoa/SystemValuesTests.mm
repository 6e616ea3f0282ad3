#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <regex>
#include <set>
#include <string>

#include "Cocoa/AccountDatabase.hpp"
#include "Platform/Console.hpp"
#include "Platform/Date.hpp"
#include "Platform/PathUtilities.hpp"
#include "Platform/UUID.hpp"

TEST(UUID, IsInCanonicalFormAndNeverTheSame) {
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int count = 0; count < 1000; ++count) {
        const std::string uuid = quorva::platform::newUUIDString();
        EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 1000u);
}

TEST(Date, IsTheTimeOfTheSystemClock) {
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    EXPECT_NEAR(quorva::platform::timeIntervalSince1970(), now.count(), 60);
}

TEST(Console, TakesAnyString) {
    testing::internal::CaptureStderr();
    quorva::platform::logToConsole("没有 %@ %s \U0001F600 \xFF end");
    quorva::platform::logToConsole("");
    const std::string output = testing::internal::GetCapturedStderr();
    EXPECT_NE(output.find("QuorvaFinderExtension: 没有 %@ %s \U0001F600 \uFFFD end"),
              std::string::npos)
        << output;
}

TEST(Account, IsTheOneOfTheAccountDatabase) {
    const passwd* account = getpwuid(getuid());
    if (account == nullptr) {
        GTEST_SKIP() << "the account database does not know this user";
    }
    EXPECT_EQ(quorva::platform::userName(), account->pw_name);
    EXPECT_EQ(quorva::platform::homeDirectoryForUser(account->pw_name), account->pw_dir);
}

TEST(Account, IsAbsentForAUserThatDoesNotExist) {
    EXPECT_EQ(quorva::platform::homeDirectoryForUser("no such user"), std::nullopt);
    EXPECT_EQ(quorva::platform::homeDirectoryForUser(""), std::nullopt);
}

TEST(AccountDatabase, HasTheHomeOfAUser) {
    const passwd* root = getpwnam("root");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(quorva::homeDirectoryInAccountDatabase("root"), root->pw_dir);
}

TEST(AccountDatabase, HasNoHomeForAUserThatDoesNotExist) {
    using namespace std::string_literals;
    for (const std::string& name : {"no such user"s, ""s, "root\0x"s}) {
        EXPECT_EQ(quorva::homeDirectoryInAccountDatabase(name), std::nullopt) << name;
    }
}
