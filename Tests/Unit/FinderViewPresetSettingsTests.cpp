#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"

#include <cstdint>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Preset = FinderViewPresetSetting;

class FinderViewPresetSettingsTest : public SettingsTest {
 protected:
    FinderViewPresetSettingsTest() : SettingsTest("FinderViewPresets.plist") {}

    static void putPresets(const PropertyList& root) {
        platform().putPropertyList(viewPresetsPath, root);
    }

    static std::vector<Preset> presets() { return reading(FinderViewPresetSettings::presets); }

    /// What `name` is shown as.
    std::string cleaned(const std::string& name) {
        putPresets(list({preset("id 2", name.c_str(), "list · mode 2", "sort · mode 2")}));
        const std::vector<Preset> read = presets();
        EXPECT_EQ(read.size(), 1U);
        EXPECT_EQ(read.front().id, "id 2");
        EXPECT_EQ(read.front().viewMode, "list · mode 2");
        EXPECT_EQ(read.front().sortMode, "sort · mode 2");
        EXPECT_EQ(findings(), read.front().name == name
                                  ? SettingsFindings()
                                  : found({{Finding::numberedPreset, "[0].name", name, ""}}));
        return read.front().name;
    }

    static inline const std::vector<Preset> defaults = {
        {"list-modified", "列表 · 最近修改", "list", "modificationDate"},
        {"icon-name", "图标 · 按名称", "icon", "name"},
        {"column-name", "分栏 · 按名称", "column", "name"},
    };
};

TEST_F(FinderViewPresetSettingsTest, PresetsAreComparedByEveryField) {
    expectEveryFieldCounts<Preset>(
        {"i", "n", "v", "s"},
        {{"x", "n", "v", "s"}, {"i", "x", "v", "s"}, {"i", "n", "x", "s"}, {"i", "n", "v", "x"}});
}

TEST_F(FinderViewPresetSettingsTest, NoFileGivesTheThreeDefaults) {
    EXPECT_EQ(presets(), defaults);
    EXPECT_EQ(findings(), found({{Finding::missingFile, "", noSuchFile(viewPresetsPath), ""}}));
}

TEST_F(FinderViewPresetSettingsTest, SeparatorOfTheDefaultNamesIsAMiddleDotBetweenSpaces) {
    for (const Preset& value : presets()) {
        EXPECT_NE(value.name.find(" \xC2\xB7 "), std::string::npos);
    }
}

TEST_F(FinderViewPresetSettingsTest, DefaultNamesAreLocalisedAndNotCleaned) {
    platform().translations["列表 · 最近修改"] = "List · Modified 2";
    EXPECT_EQ(presets().front().name, "List · Modified 2");
    EXPECT_EQ(presets().front().id, "list-modified");
}

TEST_F(FinderViewPresetSettingsTest, FileReplacesTheDefaultsInItsOrder) {
    putPresets(list({preset("b", "B", "gallery", "size"), preset("a", "A", "icon", "name")}));
    EXPECT_THAT(presets(),
                ElementsAre(Preset{"b", "B", "gallery", "size"}, Preset{"a", "A", "icon", "name"}));
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(FinderViewPresetSettingsTest, EntryThatLacksAKeyIsSkipped) {
    putPresets(list({
        preset("first", "F"),
        texts({{"name", "n"}, {"viewMode", "v"}, {"sortMode", "s"}}),
        texts({{"id", "i"}, {"viewMode", "v"}, {"sortMode", "s"}}),
        texts({{"id", "i"}, {"name", "n"}, {"sortMode", "s"}}),
        texts({{"id", "i"}, {"name", "n"}, {"viewMode", "v"}}),
        texts({}),
        preset("last", "L"),
    }));
    EXPECT_THAT(presets(), ElementsAre(Preset{"first", "F", "list", "name"},
                                       Preset{"last", "L", "list", "name"}));
    EXPECT_EQ(findings(), found({
                              {Finding::missingKey, "[1].id", "", ""},
                              {Finding::missingKey, "[2].name", "", ""},
                              {Finding::missingKey, "[3].viewMode", "", ""},
                              {Finding::missingKey, "[4].sortMode", "", ""},
                              {Finding::missingKey, "[5].id", "", ""},
                              {Finding::missingKey, "[5].name", "", ""},
                              {Finding::missingKey, "[5].viewMode", "", ""},
                              {Finding::missingKey, "[5].sortMode", "", ""},
                          }));
}

TEST_F(FinderViewPresetSettingsTest, FurtherTextsAreIgnored) {
    putPresets(list({texts(
        {{"id", "i"}, {"name", "n"}, {"viewMode", "v"}, {"sortMode", "s"}, {"icon", "x"}})}));
    EXPECT_THAT(presets(), ElementsAre(Preset{"i", "n", "v", "s"}));
    EXPECT_EQ(findings(), found({{Finding::unknownKey, "[0].icon", "icon", ""}}));
}

TEST_F(FinderViewPresetSettingsTest, ValuesAreTakenVerbatimAndDuplicatesKept) {
    putPresets(
        list({preset("", "", "", ""), preset(" i ", " n\n", " v ", "?"), preset("", "", "", "")}));
    EXPECT_THAT(presets(), ElementsAre(Preset{"", "", "", ""}, Preset{" i ", " n\n", " v ", "?"},
                                       Preset{"", "", "", ""}));
}

TEST_F(FinderViewPresetSettingsTest, UsableFileWithoutValidEntryGivesNoPresets) {
    putPresets(PropertyList::Array{});
    EXPECT_THAT(presets(), IsEmpty());
    putPresets(list({texts({}), texts({{"id", "i"}})}));
    EXPECT_THAT(presets(), IsEmpty());
}

TEST_F(FinderViewPresetSettingsTest, BrokenFileGivesTheDefaults) {
    const std::pair<PropertyList, FindingRow> rows[] = {
        {"text", {Finding::wrongType, "", "string", "array"}},
        {true, {Finding::wrongType, "", "boolean", "array"}},
        {preset("a", "A"), {Finding::wrongType, "", "dictionary", "array"}},
        {list({"text"}), {Finding::wrongType, "[0]", "string", "dictionary"}},
        {list({preset("a", "A"), PropertyList::Array{}}),
         {Finding::wrongType, "[1]", "array", "dictionary"}},
        {list({preset("a", "A"), PropertyList::Dictionary{{"id", std::int64_t{1}}}}),
         {Finding::wrongType, "[1].id", "integer", "string"}},
    };
    for (const auto& [root, finding] : rows) {
        putPresets(root);
        EXPECT_EQ(presets(), defaults);
        EXPECT_EQ(findings(), found({finding}));
    }
    platform().putFile(viewPresetsPath, "garbage");
    EXPECT_EQ(presets(), defaults);
    EXPECT_EQ(findings(), found({{Finding::malformedFile, "", notAPropertyList, ""}}));
}

TEST_F(FinderViewPresetSettingsTest, FailuresOfReadingAndParsingGiveTheDefaults) {
    for (const auto operation :
         {fakePlatform::Operation::readFile, fakePlatform::Operation::parsePropertyList}) {
        fakePlatform::reset();
        putPresets(PropertyList::Array{});
        platform().fail(operation, "worn out");
        EXPECT_EQ(presets(), defaults);
        EXPECT_EQ(findings(),
                  found({{operation == fakePlatform::Operation::readFile ? Finding::unreadableFile
                                                                         : Finding::malformedFile,
                          "", "worn out", ""}}));
    }
}

TEST_F(FinderViewPresetSettingsTest, FileIsReadFromTheReportedHomeAtEachCall) {
    putPresets(PropertyList::Array{});
    EXPECT_THAT(presets(), IsEmpty());
    platform().enterSandbox();
    EXPECT_EQ(presets(), defaults);
    EXPECT_THAT(platform().journal, IsEmpty());
}

struct NameRow {
    const char* name;
    const char* shown;
};

TEST_F(FinderViewPresetSettingsTest, NumberBehindAStyleAndAnOrderIsDropped) {
    const NameRow rows[] = {
        {"列表 · 最近修改 2", "列表 · 最近修改"},
        {"a · b · c 12", "a · b · c"},
        {"a · b 0", "a · b"},
        {"a · b 00000000000000000000000000000000000001", "a · b"},
        {"a · b 1 2", "a · b 1"},
        {"a · 1 2", "a · 1"},
        {"a · b  2", "a · b "},
        {"a ·   2", "a ·  "},
        {"a · · 3", "a · ·"},
        {"  · b 3", "  · b"},
        {" · · b 3", " · · b"},
        {" · x · b 3", " · x · b"},
        {"a ·  · b 3", "a ·  · b"},
        {"\t · \t 3", "\t · \t"},
        {"a\x1E · b\x1F 3", "a\x1E · b\x1F"},
        {"😀 · e\u0301 7", "😀 · e\u0301"},
    };
    for (const NameRow& row : rows) {
        EXPECT_EQ(cleaned(row.name), row.shown) << row.name;
    }
}

TEST_F(FinderViewPresetSettingsTest, EveryOtherNameIsKept) {
    const char* const names[] = {
        "",
        " ",
        "2",
        " 2",
        "列表 2",
        "列表 · 最近修改",
        "列表 · 最近修改 2a",
        "列表 · 最近修改2",
        "列表 · 最近修改 2 ",
        "列表 · 最近修改 -2",
        "列表 · 最近修改 2.0",
        "列表 · 最近修改 ２",      // full-width digit
        "列表 · 最近修改 ٢",       // Arabic-Indic digit
        "列表 · 最近修改\t2",      // a tab is not a space
        "列表 · 最近修改\u00A02",  // nor is a no-break space
        "列表 · 最近修改 ",
        "· 3",
        " · 3",
        "a · 3",
        " · b 3",
        " · · 3",
        "a ·  3",
        "a· b 3",
        "a ·b 3",
        "a·b 3",
        "a . b 3",
        "a • b 3",
        "a\u00B7 b 3",
        "a \xB7 b 3",
        "a · ",
        " · ",
        "·",
    };
    for (const char* const name : names) {
        EXPECT_EQ(cleaned(name), name) << name;
    }
}

TEST_F(FinderViewPresetSettingsTest, LineTerminatorAnywhereKeepsTheName) {
    const std::string terminators[] = {"\n",     "\v",     "\f",     "\r",
                                       "\u0085", "\u2028", "\u2029", "\r\n"};
    for (const std::string& terminator : terminators) {
        for (const std::string& name :
             {terminator + "a · b 2", "a" + terminator + " · b 2", "a · " + terminator + "b 2",
              "a · b" + terminator + " 2", "a · b " + terminator + "2", "a · b 2" + terminator,
              "a" + terminator + "b · c · d 2", "a · b" + terminator + "c · d · e 2"}) {
            EXPECT_EQ(cleaned(name), name);
        }
    }
}

TEST_F(FinderViewPresetSettingsTest, EveryOtherASCIICharacterIsNone) {
    for (char character = 1; character < 0x7F; ++character) {
        const std::string kept = std::string("a · b") + character;
        const bool isTerminator = character >= '\n' && character <= '\r';
        EXPECT_EQ(cleaned(kept + " 2"), isTerminator ? kept + " 2" : kept) << +character;
    }
}

TEST_F(FinderViewPresetSettingsTest, CharactersThatShareBytesWithALineTerminatorAreNone) {
    for (const char* const text : {"\u0084", "\u0086", "\u2027", "\u2026", "\u2128", "\u00A8",
                                   "\u0405", "\u3028", "\u2A28"}) {
        const std::string kept = std::string("a") + text + " · b" + text;
        EXPECT_EQ(cleaned(kept + " 2"), kept);
    }
}

std::string repeated(std::string_view text, std::size_t size) {
    std::string result;
    while (result.size() < size) {
        result += text;
    }
    return result;
}

constexpr std::size_t megabyte = 1 << 20;

TEST_F(FinderViewPresetSettingsTest, NameOfAMegabyteLosesItsNumber) {
    const std::string name = repeated("x", megabyte) + " · " + repeated("y", megabyte);
    EXPECT_EQ(cleaned(name + " 2"), name);
}

TEST_F(FinderViewPresetSettingsTest, MegabyteOfDigitsIsOneNumber) {
    EXPECT_EQ(cleaned("a · b " + repeated("7", megabyte)), "a · b");
    const std::string name = "a · b" + repeated("7", megabyte);
    EXPECT_EQ(cleaned(name), name);
    EXPECT_EQ(cleaned(repeated("7", megabyte)), repeated("7", megabyte));
}

TEST_F(FinderViewPresetSettingsTest, MegabyteOfSeparatorsIsHandledInOnePass) {
    const std::string separators = repeated(" · ", megabyte);
    EXPECT_EQ(cleaned(separators), separators);
    EXPECT_EQ(cleaned(separators + "x"), separators + "x");
    EXPECT_EQ(cleaned("a" + separators + "b 2"), "a" + separators + "b");
    EXPECT_EQ(cleaned("a" + separators + "b 2x"), "a" + separators + "b 2x");
}

TEST_F(FinderViewPresetSettingsTest, MegabyteOfSpacedDigitsLosesOnlyTheLast) {
    const std::string name = "a · b" + repeated(" 1", megabyte);
    EXPECT_EQ(cleaned(name), name.substr(0, name.size() - 2));
    EXPECT_EQ(cleaned(name + "x"), name + "x");
}

TEST_F(FinderViewPresetSettingsTest, MegabyteWithALineTerminatorAtItsEndIsKept) {
    const std::string name = "a" + repeated(" · ", megabyte) + "\n · b 2";
    EXPECT_EQ(cleaned(name), name);
}

}  // namespace
}  // namespace quorva
