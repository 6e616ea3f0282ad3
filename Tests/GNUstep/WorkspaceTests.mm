#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <memory>
#include <thread>

#include "Platform/RunningApplication.hpp"
#include "Platform/Workspace.hpp"
#include "Simulator/EventRecorder.hpp"
#include "Tests/Cocoa/TemporaryFolder.hpp"

using quorva::FileURL;

class Application : public TemporaryFolder {
   protected:
    Application() { unsetenv("SIMULATOR_LAUNCH"); }
    ~Application() override { unsetenv("SIMULATOR_LAUNCH"); }

    /// A bundle whose executable is the system's `sleep`, under a name of its own.
    void writeBundle() const {
        writeInfo("Sample");
        std::filesystem::create_directories(path("Sample.app/Contents/MacOS"));
        std::filesystem::copy_file("/bin/sleep", path("Sample.app/Contents/MacOS/Sample"));
    }

    void writeInfo(const std::string& executable) const {
        write("Sample.app/Contents/Info.plist",
              "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + identifier() +
                  "</string><key>CFBundleExecutable</key><string>" + executable +
                  "</string></dict></plist>");
    }

    /// Another one for each test.
    [[nodiscard]] std::string identifier() const {
        return "app.ferrolin.Sample" + folder().extension().string();
    }

    /// Returns once the environment of `process`, and with it its home folder, can be read:
    /// `posix_spawn` returns while the new program is still being set up.
    static void awaitEnvironment(pid_t process) {
        const std::string file = "/proc/" + std::to_string(process) + "/environ";
        while (std::ifstream(file).peek() == std::ifstream::traits_type::eof()) {
            std::this_thread::yield();
        }
    }

    /// Opens the bundle and waits for the completion.
    [[nodiscard]] std::optional<quorva::Error> open() const {
        auto promise = std::make_shared<std::promise<std::optional<quorva::Error>>>();
        auto thread = std::make_shared<std::thread::id>();
        auto future = promise->get_future();
        quorva::platform::openApplication(
            FileURL::directory(path("Sample.app").string()),
            {.activates = false, .addsToRecentItems = false},
            [promise, thread](const std::optional<quorva::Error>& error) {
                *thread = std::this_thread::get_id();
                promise->set_value(error);
            });
        const auto error = future.get();
        EXPECT_NE(*thread, std::this_thread::get_id());
        simulator::waitForLaunches(20);
        return error;
    }
};

TEST_F(Application, IsOpenedAsAsked) {
    writeBundle();
    (void)simulator::takeRecordedEvents();
    EXPECT_EQ(open(), std::nullopt);
    EXPECT_EQ(simulator::takeRecordedEvents().events,
              nlohmann::ordered_json::array({{{"event", "openApplication"},
                                              {"path", path("Sample.app").string()},
                                              {"activates", false},
                                              {"addsToRecentItems", false}}}));
    EXPECT_EQ(quorva::platform::runningApplicationCount(identifier()), 0u);
}

TEST_F(Application, FailsToOpenWithoutABundleOrAnExecutable) {
    const auto expectFailure = [this] {
        const auto error = open();
        ASSERT_TRUE(error);
        EXPECT_NE(error->localizedDescription, "");
    };
    expectFailure();
    write("Sample.app/Contents/Info.plist", "no property list");
    expectFailure();
    writeInfo("Sample");
    expectFailure();
    write("Sample.app/Contents/MacOS/Sample", "not executable");
    expectFailure();
    writeInfo("");
    expectFailure();
}

TEST_F(Application, FailsToOpenWhenTheExecutableCannotBeStarted) {
    writeInfo("Sample");
    write("Sample.app/Contents/MacOS/Sample", "neither a program nor a script");
    std::filesystem::permissions(path("Sample.app/Contents/MacOS/Sample"),
                                 std::filesystem::perms::owner_all);
    setenv("SIMULATOR_LAUNCH", "1", 1);
    EXPECT_TRUE(open());
}

TEST_F(Application, RunsAndIsFoundUntilItEnds) {
    writeInfo("Sample");
    std::filesystem::create_directories(path("Sample.app/Contents/MacOS"));
    std::filesystem::copy_file("/bin/cat", path("Sample.app/Contents/MacOS/Sample"));
    setenv("SIMULATOR_LAUNCH", "1", 1);
    // With nothing to read it ends at once, and leaves no process behind.
    EXPECT_EQ(open(), std::nullopt);
    for (int wait = 0; wait < 200 && quorva::platform::runningApplicationCount(identifier()) > 0;
         ++wait) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_EQ(quorva::platform::runningApplicationCount(identifier()), 0u);
}

TEST_F(Application, IsCountedOncePerProcess) {
    writeBundle();
    EXPECT_EQ(quorva::platform::runningApplicationCount(identifier()), 0u);
    const std::string executable = path("Sample.app/Contents/MacOS/Sample").string();
    std::vector<pid_t> processes;
    for (int count = 1; count <= 2; ++count) {
        std::string name = "Sample";
        std::string seconds = "60";
        char* arguments[] = {name.data(), seconds.data(), nullptr};
        pid_t process = 0;
        ASSERT_EQ(posix_spawn(&process, executable.c_str(), nullptr, nullptr, arguments, environ),
                  0);
        processes.push_back(process);
        awaitEnvironment(process);
        EXPECT_EQ(quorva::platform::runningApplicationCount(identifier()),
                  static_cast<std::size_t>(count));
    }
    EXPECT_EQ(quorva::platform::runningApplicationCount("app.ferrolin"), 0u);
    for (const pid_t process : processes) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    EXPECT_EQ(quorva::platform::runningApplicationCount(identifier()), 0u);
}
