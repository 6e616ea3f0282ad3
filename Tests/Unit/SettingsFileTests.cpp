#include "QuorvaFinderExtension/SettingsFile.hpp"

#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"
#include "QuorvaFinderExtension/FinderFeatureSettings.hpp"
#include "QuorvaFinderExtension/SettingsReading.hpp"
#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SettingsFileTest : public UnitTest {
 protected:
    static std::optional<PropertyList> read() {
        return propertyListInFile(SettingsPath("FinderViewPresets.plist", nullptr));
    }
};

TEST_F(SettingsFileTest, PropertyListInAReadableFileIsRead) {
    platform().putPropertyList(viewPresetsPath, strings({"a"}));
    EXPECT_EQ(read(), PropertyList(strings({"a"})));
}

TEST_F(SettingsFileTest, WhatIsNotARegularFileIsAsGoodAsNoFile) {
    platform().putSpecialFile(viewPresetsPath);
    EXPECT_EQ(read(), std::nullopt);
    platform().entries.erase(viewPresetsPath);
    platform().putDirectory(viewPresetsPath);
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(SettingsFileTest, FileOf64MebibytesIsReadAndALargerOneIsNot) {
    std::string contents(std::size_t{64} * 1024 * 1024, ' ');
    platform().propertyListsByContents.emplace(contents, strings({"a"}));
    platform().putFile(viewPresetsPath, contents);
    EXPECT_TRUE(read().has_value());
    contents += ' ';
    platform().propertyListsByContents.emplace(contents, strings({"a"}));
    platform().putFile(viewPresetsPath, std::move(contents));
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(SettingsFileTest, SettingsLieBelowTheReportedHome) {
    platform().homeDirectory = FileURL::directory("/Container/Data");
    EXPECT_EQ(settingsFileURL("A.plist"),
              FileURL::file("/Container/Data/Library/Application Support/Quorva/A.plist"));
}

TEST_F(SettingsFileTest, FileThatIsMissingUnreadableOrNotAPropertyListGivesNothing) {
    EXPECT_EQ(read(), std::nullopt);

    platform().putFile(viewPresetsPath, "garbage");
    EXPECT_EQ(read(), std::nullopt);

    platform().putPropertyList(viewPresetsPath, "text");
    EXPECT_EQ(read(), PropertyList("text"));

    platform().fail(fakePlatform::Operation::readFile);
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(SettingsFileTest, ListOfStringDictionariesIsReadInOrder) {
    const PropertyList value = list({texts({{"id", "b"}}), texts({}), texts({{"id", "a"}})});
    const PropertyList::Array* const dictionaries =
        stringDictionaries(SettingsPath("A.plist", nullptr), value);
    ASSERT_NE(dictionaries, nullptr);
    ASSERT_EQ(dictionaries->size(), 3U);
    EXPECT_EQ(*stringForKey(*dictionaries->at(0).dictionary(), "id"), "b");
    EXPECT_EQ(stringForKey(*dictionaries->at(1).dictionary(), "id"), nullptr);
    EXPECT_EQ(*stringForKey(*dictionaries->at(2).dictionary(), "id"), "a");
}

TEST_F(SettingsFileTest, AnyOtherShapeIsNotAListOfStringDictionaries) {
    const PropertyList values[] = {
        "text",
        true,
        std::int64_t{0},
        1.5,
        PropertyList::Date{0},
        Data{},
        PropertyList::Dictionary{},
        list({"text"}),
        list({texts({{"id", "a"}}), PropertyList::Array{}}),
        list({texts({{"id", "a"}}), PropertyList::Dictionary{{"id", std::int64_t{1}}}}),
        list({PropertyList::Dictionary{{"id", PropertyList::Array{}}}}),
        list({PropertyList::Dictionary{{"id", PropertyList::Dictionary{}}}}),
    };
    for (const PropertyList& value : values) {
        EXPECT_EQ(stringDictionaries(SettingsPath("A.plist", nullptr), value), nullptr);
    }
    const PropertyList empty = PropertyList::Array{};
    EXPECT_NE(stringDictionaries(SettingsPath("A.plist", nullptr), empty), nullptr);
}

// A value that the core has no type for.

TEST_F(SettingsFileTest, UnsupportedValueCostsItsKeyInTheFeatureSettings) {
    platform().putPropertyList(
        featureSettingsPath,
        PropertyList::Dictionary{{"enabledFeatureIDs", PropertyList::Unsupported()},
                                 {"featureOrder", list({PropertyList::Unsupported(), "pdfTools"})},
                                 {"unknown", PropertyList::Unsupported()},
                                 {"menuLayout", "expanded"}});
    const FinderMenuSettings settings = FinderFeatureSettings::menuSettings();
    EXPECT_EQ(settings.menuLayout, FinderMenuLayout::expanded);
    EXPECT_EQ(settings.features, [] {
        fakePlatform::state().entries.erase(featureSettingsPath);
        return FinderFeatureSettings::menuSettings().features;
    }());
}

TEST_F(SettingsFileTest, UnsupportedValueCostsTheWholeFileOfDestinations) {
    platform().putPropertyList(
        customDestinationsPath,
        PropertyList::Dictionary{{"copy", list({destination("c", "项目", "/c")})},
                                 {"unknown", PropertyList::Unsupported()}});
    EXPECT_EQ(FinderCustomDestinationSettings::destinations(FinderCustomDestinationKind::copy)
                  .front()
                  .name,
              "桌面");
}

// One reading.

TEST_F(SettingsFileTest, ReadingKeepsToTheVersionOfEachFileThatItReadFirst) {
    const SettingsReading reading;
    platform().putPropertyList(
        customDestinationsPath,
        PropertyList::Dictionary{{"copy", list({destination("c", "项目", "/c")})}});
    EXPECT_THAT(reading.destinations(FinderCustomDestinationKind::copy),
                ElementsAre(FinderCustomDestination{"c", "项目", "/c"}));
    platform().putPropertyList(customDestinationsPath,
                               PropertyList::Dictionary{{"move", PropertyList::Array()}});
    EXPECT_FALSE(reading.destinations(FinderCustomDestinationKind::move).empty());
    EXPECT_TRUE(reading.hasDefaultDestinations(FinderCustomDestinationKind::move));
    EXPECT_FALSE(reading.hasDefaultDestinations(FinderCustomDestinationKind::copy));
    EXPECT_THAT(SettingsReading().destinations(FinderCustomDestinationKind::move), IsEmpty());
}

TEST_F(SettingsFileTest, ReadingReadsEachFileWhenItIsFirstAskedForAndNotAgain) {
    const SettingsReading reading;
    EXPECT_THAT(platform().reads, IsEmpty());
    for (int time = 0; time < 2; ++time) {
        for (const FinderCustomDestinationKind kind : allFinderCustomDestinationKinds) {
            (void)reading.destinations(kind);
        }
        (void)reading.menuSettings();
        (void)reading.customActions();
        (void)reading.viewPresets();
    }
    for (const auto& [path, count] : platform().reads) {
        EXPECT_EQ(count, 1) << path;
    }
    EXPECT_EQ(platform().reads.size(), 4U);
}

TEST_F(SettingsFileTest, ReadingAddsToItsFindingsOnceWhatEachReaderFinds) {
    for (const std::string& path :
         {featureSettingsPath, customShortcutActionsPath, viewPresetsPath}) {
        platform().putPropertyList(path, "text");
    }
    platform().putPropertyList(
        customDestinationsPath,
        PropertyList::Dictionary{{"copy", list({texts({{"id", "c"}, {"name", "C"}})})},
                                 {"openApplication", list({destination("cursor", "C", "/c")})}});
    SettingsFindings findings;
    const SettingsReading reading(findings);
    for (int time = 0; time < 2; ++time) {
        (void)reading.menuSettings();
        (void)reading.destinations(FinderCustomDestinationKind::copy);
        (void)reading.customActions();
        (void)reading.viewPresets();
    }
    using Kind = SettingsFinding::Kind;
    EXPECT_EQ(findings, (SettingsFindings{
                            {Kind::wrongType, "FeatureSettings.plist", "", "string", "dictionary"},
                            {Kind::missingKey, "CustomDestinations.plist", "copy[0].path", "", ""},
                            {Kind::wrongType, "CustomShortcutActions.plist", "", "string", "array"},
                            {Kind::wrongType, "FinderViewPresets.plist", "", "string", "array"},
                        }));
}

}  // namespace
}  // namespace quorva
