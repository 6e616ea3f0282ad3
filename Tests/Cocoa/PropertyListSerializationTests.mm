#include "Platform/PropertyListSerialization.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <limits>
#include <random>

using quorva::PropertyList;
using quorva::platform::propertyListWithData;

/// The property lists that `PropertyLists.py` wrote.
class WrittenPropertyLists : public testing::Test {
   protected:
    static void SetUpTestSuite() {
        std::string name = "/tmp/QuorvaCocoaTests.XXXXXX";
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

TEST_F(WrittenPropertyLists, AreReadWithNULs) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(propertyListWithData(data("keyWithNUL.binary")),
              PropertyList(PropertyList::Dictionary{{text, "c"}}));
    EXPECT_EQ(propertyListWithData(data("wideKeyWithNUL.binary")),
              PropertyList(PropertyList::Dictionary{{std::string("a\0", 2), "c"}}));
    EXPECT_EQ(propertyListWithData(data("textWithNUL.binary")),
              PropertyList(PropertyList::Array{text}));
}

TEST_F(WrittenPropertyLists, AreReadWithAHundredThousandEntries) {
    for (const char* name : {"many.xml", "many.binary"}) {
        const auto list = propertyListWithData(data(name));
        ASSERT_TRUE(list);
        ASSERT_NE(list->array(), nullptr);
        EXPECT_EQ(list->array()->size(), 100'000u);
    }
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

TEST_F(WrittenPropertyLists, AreNoDictionaryWhenTruncatedAnywhere) {
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
