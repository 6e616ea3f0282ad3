#include "Platform/PropertyListSerialization.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "Tests/Cocoa/WrittenPropertyLists.hpp"

using quorva::PropertyList;
using quorva::platform::propertyListWithData;

TEST_F(WrittenPropertyLists, AreReadInBothEncodings) {
    const PropertyList expected = PropertyList::Dictionary{
        {"text", "没有 \U0001F600 <&>"},
        {"empty", ""},
        {"yes", true},
        {"no", false},
        {"one", std::int64_t{1}},
        {"negative", std::int64_t{-7}},
        {"least", std::numeric_limits<std::int64_t>::min()},
        {"greatest", std::numeric_limits<std::int64_t>::max()},
        {"real", 1.5},
        {"date", PropertyList::Date{1795199400}},
        {"data", quorva::dataWithText(std::string_view("\0\xFF", 2))},
        {"list", PropertyList::Array{"a", PropertyList::Array{"b"}, PropertyList::Dictionary{}}},
        {"dictionary", PropertyList::Dictionary{{"没有", PropertyList::Dictionary{{"c", "d"}}}}}};
    EXPECT_EQ(propertyListWithData(data("settings.xml")), expected);
    EXPECT_EQ(propertyListWithData(data("settings.binary")), expected);
    EXPECT_EQ(propertyListWithData(data("text.xml")), PropertyList("text"));
    EXPECT_EQ(propertyListWithData(data("text.binary")), PropertyList("text"));
    EXPECT_EQ(propertyListWithData(data("wideTextWithNUL.binary")),
              PropertyList(std::string("a") + '\0' + "b"));
    EXPECT_EQ(propertyListWithData(data("mark.xml")), PropertyList("text"));
}

TEST_F(WrittenPropertyLists, AreReadWithAHundredThousandEntries) {
    for (const char* name : {"many.xml", "many.binary"}) {
        const auto list = propertyListWithData(data(name));
        ASSERT_TRUE(list);
        ASSERT_NE(list->array(), nullptr);
        EXPECT_EQ(list->array()->size(), 100'000u);
    }
}

TEST_F(WrittenPropertyLists, DoNoHarmWhenBytesInThemAreChanged) {
    std::mt19937 random(20261120);
    for (const char* name : {"settings.xml", "settings.binary"}) {
        const quorva::Data whole = data(name);
        for (int round = 0; round < 20'000; ++round) {
            quorva::Data changed = whole;
            for (unsigned change = 0; change <= random() % 4; ++change) {
                changed[random() % changed.size()] = static_cast<std::byte>(random());
            }
            if (round % 2 == 0) {
                changed.erase(changed.begin() +
                              static_cast<std::ptrdiff_t>(random() % changed.size()));
            }
            const auto list = propertyListWithData(changed);
            EXPECT_TRUE(list || !list.error().localizedDescription.empty());
        }
    }
}

TEST(PropertyListSerialization, SaysOnWhichLineXMLEndsToBeAPropertyList) {
    for (const char* const text :
         {"<plist version=\"1.0\">\n<array></dict></plist>",
          "<plist version=\"1.0\"><array>\n<integer>x</integer></array></plist>"}) {
        const auto list = propertyListWithData(quorva::dataWithText(text));
        ASSERT_FALSE(list) << text;
        EXPECT_THAT(list.error().localizedDescription, testing::HasSubstr("line 2")) << text;
    }
}

TEST(PropertyListSerialization, DoesNoHarmForRandomBytes) {
    std::mt19937 random(1120);
    for (int round = 0; round < 20'000; ++round) {
        quorva::Data bytes = quorva::dataWithText(round % 2 == 0 ? "" : "bplist00");
        const std::size_t size = random() % 200;
        while (bytes.size() < size) {
            bytes.push_back(static_cast<std::byte>(random()));
        }
        const auto list = propertyListWithData(bytes);
        EXPECT_TRUE(list || !list.error().localizedDescription.empty());
    }
}

TEST(PropertyListSerialization, DoesNoHarmForRandomText) {
    constexpr std::string_view characters = "(){}<>[]*;,=\"'\\/ \nab01DBYNIR-+:%";
    std::mt19937 random(2011);
    for (int round = 0; round < 20'000; ++round) {
        std::string text;
        const std::size_t size = random() % 60;
        while (text.size() < size) {
            text += characters[random() % characters.size()];
        }
        const auto list = propertyListWithData(quorva::dataWithText(text));
        EXPECT_TRUE(list || !list.error().localizedDescription.empty());
    }
}
