#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "Tests/Cocoa/TemporaryFolder.hpp"
#include "Tests/Cocoa/TestProgram.hpp"

/// A copy of this program in a bundle of its own.
class MainBundle : public TemporaryFolder {
 protected:
    void SetUp() override {
        std::filesystem::create_directories(path("Sample.appex/Contents/MacOS"));
        std::filesystem::copy_file(testProgram(), path("Sample.appex/Contents/MacOS/Sample"));
        write("Sample.appex/Contents/Info.plist",
              "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
              "<string>app.sample</string></dict></plist>");
    }

    /// The path of the main bundle, the text for "没有", and the bundle's identifier, a line each.
    [[nodiscard]] std::string description(const std::string& environment = "") const {
        const std::string command = environment + " '" +
                                    path("Sample.appex/Contents/MacOS/Sample").string() +
                                    "' --describe-main-bundle 没有";
        std::string output;
        FILE* pipe = popen(command.c_str(), "r");
        for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe)) {
            output += static_cast<char>(character);
        }
        return pclose(pipe) == 0 ? output : "failed";
    }

    [[nodiscard]] std::string expected(const std::string& text) const {
        return path("Sample.appex").string() + "\n" + text + "\napp.sample\n";
    }
};
