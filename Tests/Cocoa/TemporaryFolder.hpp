#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "Platform/FileURL.hpp"

/// A test with a folder of its own, which is the home folder while the test runs.
class TemporaryFolder : public testing::Test {
 protected:
    TemporaryFolder() {
        std::string name = "/tmp/QuorvaCocoaTests.XXXXXX";
        folder_ = std::filesystem::canonical(mkdtemp(name.data()));
        if (const char* home = getenv("HOME")) {
            formerHome_ = home;
        }
        setenv("HOME", folder_.c_str(), 1);
    }

    ~TemporaryFolder() override {
        std::error_code ignored;
        std::filesystem::permissions(folder_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(folder_, ignored);
        setenv("HOME", formerHome_.c_str(), 1);
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
    std::string formerHome_;
};
