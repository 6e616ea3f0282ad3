#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include <string>

#include "Platform/PathUtilities.hpp"
#include "Tests/Cocoa/TemporaryFolder.hpp"

/// An account that the simulator is told of, or the real one in a container.
class SimulatedAccount : public TemporaryFolder {
   protected:
    ~SimulatedAccount() override {
        unsetenv("SIMULATOR_ACCOUNT_NAME");
        unsetenv("SIMULATOR_ACCOUNT_HOME");
    }

    static void enterContainer() {
        setenv("HOME", "/Users/ada/Library/Containers/app.ferrolin.Quorva.FinderExtension/Data", 1);
    }
};

TEST_F(SimulatedAccount, IsTheOneThatTheSimulatorNames) {
    setenv("SIMULATOR_ACCOUNT_NAME", "阿达", 1);
    setenv("SIMULATOR_ACCOUNT_HOME", "/Users/阿达", 1);
    EXPECT_EQ(quorva::platform::userName(), "阿达");
    EXPECT_EQ(quorva::platform::homeDirectoryForUser("阿达"), "/Users/阿达");
    EXPECT_EQ(quorva::platform::homeDirectoryForUser("no such user"), std::nullopt);
}

TEST_F(SimulatedAccount, HasTheHomeOfTheAccountDatabaseInAContainer) {
    const passwd* account = getpwnam("root");
    ASSERT_NE(account, nullptr);
    enterContainer();
    EXPECT_EQ(quorva::platform::homeDirectoryForUser("root"), account->pw_dir);
}

TEST_F(SimulatedAccount, HasTheHomeThatTheSimulatorNamesInAContainer) {
    const std::string home = "/Users/" + std::string(5000, 'l');
    setenv("SIMULATOR_ACCOUNT_NAME", "ada", 1);
    setenv("SIMULATOR_ACCOUNT_HOME", home.c_str(), 1);
    enterContainer();
    EXPECT_EQ(quorva::platform::homeDirectoryForUser("ada"), home);
}

TEST_F(SimulatedAccount, HasTheContainerForAHomeWhenTheAccountDatabaseDoesNotKnowTheUser) {
    enterContainer();
    EXPECT_EQ(quorva::platform::homeDirectoryForUser("no such user"), getenv("HOME"));
}
