#include <gtest/gtest.h>

#include "Platform/PropertyListSerialization.hpp"
#include "Tests/Cocoa/WrittenPropertyLists.hpp"

using quorva::PropertyList;
using quorva::platform::propertyListWithData;

TEST_F(WrittenPropertyLists, AreReadWithNULs) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(propertyListWithData(data("keyWithNUL.binary")),
              PropertyList(PropertyList::Dictionary{{text, "c"}}));
    EXPECT_EQ(propertyListWithData(data("wideKeyWithNUL.binary")),
              PropertyList(PropertyList::Dictionary{{std::string("a\0", 2), "c"}}));
    EXPECT_EQ(propertyListWithData(data("textWithNUL.binary")),
              PropertyList(PropertyList::Array{text}));
}

TEST(PropertyListReader, ReadsARealOfTheLeastSize) {
    EXPECT_EQ(propertyListWithData(
                  quorva::dataWithText("<plist version=\"1.0\"><real>1e-310</real></plist>")),
              PropertyList(1e-310));
    EXPECT_FALSE(propertyListWithData(
        quorva::dataWithText("<plist version=\"1.0\"><real>1e999</real></plist>")));
}

TEST_F(WrittenPropertyLists, AreReadWithAMegabyteOfReferences) {
    std::string expected;
    for (int count = 0; count < 300'000; ++count) {
        expected += "&<>";
    }
    EXPECT_EQ(propertyListWithData(data("references.xml")), PropertyList(expected));
    EXPECT_EQ(propertyListWithData(data("numericReferences.xml")),
              PropertyList(std::string(400'000, '&')));
    EXPECT_EQ(propertyListWithData(quorva::dataWithText(
                  "<plist version=\"1.0\"><string>a&amp;<![CDATA[&amp;<b>]]>&quot;&#65;&apos;"
                  "</string></plist>")),
              PropertyList("a&&amp;<b>\"A'"));
}

TEST_F(WrittenPropertyLists, AreReadWhenTheyAreDeepButWithinTheLimit) {
    EXPECT_TRUE(propertyListWithData(data("deep500.binary")));
    EXPECT_TRUE(propertyListWithData(data("deep500.xml")));
}

TEST_F(WrittenPropertyLists, AreReadWithoutWhatIsTooDeep) {
    for (const char* name : {"tooDeep.binary", "tooDeep.xml"}) {
        auto list = propertyListWithData(data(name));
        ASSERT_TRUE(list) << name;
        const PropertyList* level = &*list;
        std::size_t depth = 1;
        while (level->array() != nullptr) {
            ASSERT_EQ(level->array()->size(), 1u);
            level = &level->array()->front();
            ++depth;
        }
        EXPECT_EQ(*level, PropertyList(PropertyList::Unsupported()));
        EXPECT_EQ(depth, quorva::propertyListDepthLimit + 1);
    }
    EXPECT_TRUE(propertyListWithData(data("tooDeepHidden.xml")));
}

TEST_F(WrittenPropertyLists, AreReadWholeWhereASharedArrayIsNotTooDeep) {
    const auto list = propertyListWithData(data("shared.binary"));
    ASSERT_TRUE(list && list->array() != nullptr && list->array()->size() == 2);
    EXPECT_EQ(list->array()->at(1), PropertyList(PropertyList::Array(1, PropertyList::Array{"a"})));
}

TEST_F(WrittenPropertyLists, AreReadWithValuesOfOtherClasses) {
    const PropertyList expected = PropertyList::Dictionary{{"a", PropertyList::Unsupported()}};
    EXPECT_EQ(propertyListWithData(data("uid.binary")), expected);
    EXPECT_EQ(propertyListWithData(data("set.binary")), expected);
}

TEST_F(WrittenPropertyLists, AreAnErrorWhenTheyAreHostile) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename();
        if (name.starts_with("bad.")) {
            ++count;
            const auto list = propertyListWithData(data(name));
            EXPECT_FALSE(list) << name;
            EXPECT_TRUE(list || !list.error().localizedDescription.empty()) << name;
        }
    }
    EXPECT_EQ(count, 27);
}

TEST_F(WrittenPropertyLists, AreNotReadAsADictionaryWhenTruncated) {
    for (const char* name : {"settings.xml", "settings.binary"}) {
        const quorva::Data whole = data(name);
        const auto expected = propertyListWithData(whole);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const auto list = propertyListWithData(
                quorva::Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
            // The first letters of the binary encoding are text of the old form, and the line
            // break at the end of the XML encoding is not missed.
            EXPECT_TRUE(!list || list->string() != nullptr || list == expected)
                << name << " of " << size << " bytes";
            EXPECT_FALSE(list && list->dictionary() != nullptr && size + 1 < whole.size())
                << name << " of " << size << " bytes";
        }
    }
}
