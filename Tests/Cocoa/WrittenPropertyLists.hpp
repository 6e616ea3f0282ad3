#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "Platform/Data.hpp"
#include "Platform/FileURL.hpp"

/// The property lists that `PropertyLists.py` wrote.
class WrittenPropertyLists : public testing::Test {
 protected:
    static void SetUpTestSuite() {
        std::string name = QUORVA_COCOA_TESTS_TEMPORARY_FOLDER "/QuorvaCocoaTests.XXXXXX";
        folder = mkdtemp(name.data());
        const std::string command =
            "python3 '" QUORVA_COCOA_TESTS_FOLDER "/PropertyLists.py' '" + folder.string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }

    static void TearDownTestSuite() { std::filesystem::remove_all(folder); }

    [[nodiscard]] static quorva::Data data(std::string_view name) {
        return quorva::platform::dataWithContentsOfRegularFile(
                   quorva::FileURL::file((folder / name).string()), SIZE_MAX - 1)
            .value();
    }

    static inline std::filesystem::path folder;
};
