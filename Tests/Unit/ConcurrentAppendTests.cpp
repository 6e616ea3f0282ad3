#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "Platform/FileHandle.hpp"

namespace quorva {
namespace {

/// The files of this machine, where the other unit tests have those of a machine in memory.
class ConcurrentAppendTest : public testing::Test {
 protected:
    ConcurrentAppendTest() {
        std::string name = std::filesystem::temp_directory_path() / "QuorvaFileTests.XXXXXX";
        folder_ = mkdtemp(name.data());
        std::ofstream(path()).flush();
    }
    ConcurrentAppendTest(const ConcurrentAppendTest&) = delete;
    ConcurrentAppendTest& operator=(const ConcurrentAppendTest&) = delete;
    ~ConcurrentAppendTest() override { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::filesystem::path path() const { return folder_ / "log"; }

 private:
    std::filesystem::path folder_;
};

TEST_F(ConcurrentAppendTest, LinesOfEightThreadsStayWholeAndInTheOrderOfEachThread) {
    constexpr std::size_t threadCount = 8;
    constexpr std::size_t lineCount = 500;
    const auto line = [](std::size_t thread, std::size_t number) {
        return std::to_string(thread) + " " + std::to_string(number) + " " +
               std::string(number % 300, 'x');
    };
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&, thread] {
            const FileURL url = FileURL::file(path().string());
            for (std::size_t number = 0; number < lineCount; ++number) {
                const auto handle = platform::FileHandle::forAppendingToURL(url);
                ASSERT_TRUE(handle.has_value());
                EXPECT_TRUE(handle->write(line(thread, number) + "\n").has_value());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::vector<std::size_t> next(threadCount);
    std::ifstream file(path());
    for (std::string found; std::getline(file, found);) {
        const auto thread = static_cast<std::size_t>(found.front() - '0');
        ASSERT_LT(thread, threadCount) << found;
        ASSERT_EQ(found, line(thread, next[thread]));
        ++next[thread];
    }
    EXPECT_TRUE(std::ranges::all_of(next, [](std::size_t count) { return count == lineCount; }));
}

}  // namespace
}  // namespace quorva
