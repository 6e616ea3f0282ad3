#include "Platform/Bundle.hpp"

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "Tests/Cocoa/TemporaryFolder.hpp"

/// A copy of this program in a bundle of its own.
class MainBundle : public TemporaryFolder {
   protected:
    void SetUp() override {
        std::filesystem::create_directories(path("Sample.appex/Contents/MacOS"));
        std::filesystem::copy_file("/proc/self/exe", path("Sample.appex/Contents/MacOS/Sample"));
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

TEST_F(MainBundle, IsTheOneThatHoldsTheProgram) {
    EXPECT_EQ(description(), expected("没有"));
}

TEST_F(MainBundle, TranslatesIntoTheLanguageInUse) {
    write("Sample.appex/Contents/Resources/zh-Hans.lproj/Localizable.strings",
          "/* none */\n\"没有\" = \"没有 \\\"了\\\"\";\n");
    write("Sample.appex/Contents/Resources/en.lproj/Localizable.strings", "\"没有\" = \"none\";\n");
    EXPECT_EQ(description(), expected("没有 \"了\""));
    EXPECT_EQ(description("SIMULATOR_LANGUAGE=en"), expected("none"));
    EXPECT_EQ(description("SIMULATOR_LANGUAGE=fr"), expected("没有"));
}

TEST_F(MainBundle, ShowsTheKeyWhenTheStringTableIsNone) {
    write("Sample.appex/Contents/Resources/zh-Hans.lproj/Localizable.strings", "\"没有\" = {{{");
    EXPECT_EQ(description(), expected("没有"));
}

TEST_F(MainBundle, DoesNotDependOnTheLocale) {
    EXPECT_EQ(description("LC_ALL=C"), expected("没有"));
}

TEST(LocalizedString, IsTheKeyWhenThereIsNoTranslation) {
    EXPECT_EQ(quorva::platform::localizedString("没有已启用功能"), "没有已启用功能");
    EXPECT_EQ(quorva::platform::localizedString(""), "");
}
