#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/FileManager.hpp"
#include "Platform/FileURL.hpp"

/// A test with a folder of its own, which is the home folder while the test runs, where the system
/// lets a running process have another one.
class TemporaryFolder : public testing::Test {
 protected:
    TemporaryFolder() {
        std::string name = QUORVA_COCOA_TESTS_TEMPORARY_FOLDER "/QuorvaCocoaTests.XXXXXX";
        folder_ = std::filesystem::canonical(mkdtemp(name.data()));
        for (auto& [variable, former] : formerHomes_) {
            if (const char* home = getenv(variable)) {
                former = home;
            }
            setenv(variable, folder_.c_str(), 1);
        }
    }

    ~TemporaryFolder() override {
        std::error_code ignored;
        std::filesystem::permissions(folder_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(folder_, ignored);
        for (const auto& [variable, former] : formerHomes_) {
            if (former) {
                setenv(variable, former->c_str(), 1);
            } else {
                unsetenv(variable);
            }
        }
    }

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

    [[nodiscard]] std::filesystem::path path(std::string_view name) const { return folder_ / name; }

    [[nodiscard]] quorva::FileURL file(std::string_view name) const {
        return quorva::FileURL::file(path(name).string());
    }

    void write(std::string_view name, std::string_view content) const {
        std::filesystem::create_directories(path(name).parent_path());
        std::ofstream(path(name), std::ios::binary) << content;
    }

    [[nodiscard]] std::string read(std::string_view name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    [[nodiscard]] std::size_t entryCount() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder_), {}));
    }

 private:
    std::filesystem::path folder_;
    /// The first is GNUstep's here, the second Foundation's.
    std::map<const char*, std::optional<std::string>> formerHomes_ = {
        {"HOME", std::nullopt}, {"CFFIXED_USER_HOME", std::nullopt}};
};

/// A test that is skipped where the folder is not the home folder, rather than to touch the user's.
class TemporaryHome : public TemporaryFolder {
 protected:
    void SetUp() override {
        if (quorva::platform::homeDirectoryForCurrentUser().path() != folder().string()) {
            GTEST_SKIP() << "the system keeps to another home folder";
        }
    }
};
