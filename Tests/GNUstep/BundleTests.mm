#include "Tests/Cocoa/MainBundle.hpp"

TEST_F(MainBundle, TranslatesIntoTheLanguageInUse) {
    write("Sample.appex/Contents/Resources/zh-Hans.lproj/Localizable.strings",
          "/* none */\n\"没有\" = \"没有 \\\"了\\\"\";\n");
    write("Sample.appex/Contents/Resources/en.lproj/Localizable.strings", "\"没有\" = \"none\";\n");
    EXPECT_EQ(description(), expected("没有 \"了\""));
    EXPECT_EQ(description("SIMULATOR_LANGUAGE=en"), expected("none"));
    EXPECT_EQ(description("SIMULATOR_LANGUAGE=fr"), expected("没有"));
}
