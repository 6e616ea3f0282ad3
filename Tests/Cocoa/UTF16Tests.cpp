#include "Cocoa/UTF16.hpp"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace quorva {
namespace {

using namespace std::string_literals;

struct WellFormedString {
    std::string utf8;
    UTF16 utf16;
};

class UTF16WellFormed : public testing::TestWithParam<WellFormedString> {};

TEST_P(UTF16WellFormed, ConvertsBothWays) {
    EXPECT_EQ(utf16WithUTF8(GetParam().utf8), GetParam().utf16);
    EXPECT_EQ(utf8WithUTF16(GetParam().utf16), GetParam().utf8);
}

INSTANTIATE_TEST_SUITE_P(
    , UTF16WellFormed,
    testing::Values(
        WellFormedString{"", {}}, WellFormedString{"a", {0x61}},
        WellFormedString{"a\0b"s, {0x61, 0, 0x62}}, WellFormedString{"\x7F", {0x7F}},
        WellFormedString{"\xC2\x80", {0x80}}, WellFormedString{"\xDF\xBF", {0x7FF}},
        WellFormedString{"\xE0\xA0\x80", {0x800}}, WellFormedString{"\xE6\xB2\xA1", {0x6CA1}},
        WellFormedString{"e\xCC\x81", {0x65, 0x301}}, WellFormedString{"\xED\x9F\xBF", {0xD7FF}},
        WellFormedString{"\xEE\x80\x80", {0xE000}}, WellFormedString{"\xEF\xBB\xBF", {0xFEFF}},
        WellFormedString{"\xEF\xBF\xBF", {0xFFFF}},
        WellFormedString{"\xF0\x90\x80\x80", {0xD800, 0xDC00}},
        WellFormedString{"\xF0\x9F\x98\x80!", {0xD83D, 0xDE00, 0x21}},
        WellFormedString{"\xF4\x8F\xBF\xBF", {0xDBFF, 0xDFFF}}));

struct MalformedUTF8 {
    std::string utf8;
    UTF16 utf16;
};

class UTF16MalformedUTF8 : public testing::TestWithParam<MalformedUTF8> {};

TEST_P(UTF16MalformedUTF8, BecomesReplacementCharacters) {
    EXPECT_EQ(utf16WithUTF8(GetParam().utf8), GetParam().utf16);
}

INSTANTIATE_TEST_SUITE_P(
    , UTF16MalformedUTF8,
    testing::Values(MalformedUTF8{"\x80", {0xFFFD}}, MalformedUTF8{"a\xFF", {0x61, 0xFFFD}},
                    MalformedUTF8{"\xC3", {0xFFFD}}, MalformedUTF8{"\xC3(", {0xFFFD, 0x28}},
                    MalformedUTF8{"\xC0\xAF", {0xFFFD, 0xFFFD}},
                    MalformedUTF8{"\xE0\x80\xAF", {0xFFFD, 0xFFFD, 0xFFFD}},
                    MalformedUTF8{"\xED\xA0\x80", {0xFFFD, 0xFFFD, 0xFFFD}},
                    MalformedUTF8{"\xE6\xB2", {0xFFFD, 0xFFFD}},
                    MalformedUTF8{"\xE6\xB2z", {0xFFFD, 0xFFFD, 0x7A}},
                    MalformedUTF8{"\xF0\x80\x80\x80", {0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}},
                    MalformedUTF8{"\xF4\x90\x80\x80", {0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}},
                    MalformedUTF8{"\xF5\x80\x80\x80", {0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}}));

TEST(UTF16, SurrogatesWithoutPartnerBecomeReplacementCharacters) {
    EXPECT_EQ(utf8WithUTF16(UTF16{0xD83D}), "\xEF\xBF\xBD");
    EXPECT_EQ(utf8WithUTF16(UTF16{0xDE00, 0x61}),
              "\xEF\xBF\xBD"
              "a");
    EXPECT_EQ(utf8WithUTF16(UTF16{0xD83D, 0x61}),
              "\xEF\xBF\xBD"
              "a");
    EXPECT_EQ(utf8WithUTF16(UTF16{0xD83D, 0xD83D, 0xDE00}), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

}  // namespace
}  // namespace quorva
