#import "Cocoa/StringConversion.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

TEST(StringConversion, KeepsEveryCharacterBothWays) {
    for (const std::string& text :
         {""s, "Quorva"s, "没有已启用功能"s, "e\u0301 \U0001F600"s, "a\0b"s, "\uFEFFmark"s,
          "\uFFFEmark"s, "line\nbreak\ttab \"quoted\" \\"s, std::string(100'000, 'x')}) {
        EXPECT_EQ(quorva::utf8String(quorva::foundationString(text)), text);
    }
}

TEST(StringConversion, IsNeverNil) {
    EXPECT_NE(quorva::foundationString(""), nil);
    EXPECT_EQ(quorva::foundationString("a\xFF").length, 2u);
}

TEST(StringConversion, ReadsNilAsAnEmptyString) {
    EXPECT_EQ(quorva::utf8String(nil), "");
}
