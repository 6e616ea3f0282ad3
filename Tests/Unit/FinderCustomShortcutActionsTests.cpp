#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"

#include <cstdint>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Action = FinderCustomShortcutAction;

class FinderCustomShortcutActionsTest : public SettingsTest {
 protected:
    FinderCustomShortcutActionsTest() : SettingsTest("CustomShortcutActions.plist") {}

    static void putActions(const PropertyList& root) {
        platform().putPropertyList(customShortcutActionsPath, root);
    }

    static std::vector<Action> actions() {
        return reading(FinderCustomShortcutActionSettings::actions);
    }

    struct EntryRow {
        const char* description;
        PropertyList entry;
        std::optional<Action> expected;
        std::vector<FindingRow> findings;
    };
};

TEST_F(FinderCustomShortcutActionsTest, ActionsAreComparedByEveryField) {
    using enum Action::Kind;
    expectEveryFieldCounts<Action>({"i", "n", script, "s", "p"}, {{"x", "n", script, "s", "p"},
                                                                  {"i", "x", script, "s", "p"},
                                                                  {"i", "n", shortcut, "s", "p"},
                                                                  {"i", "n", script, "x", "p"},
                                                                  {"i", "n", script, "s", "x"}});
}

TEST_F(FinderCustomShortcutActionsTest, EqualActionsHaveOneHashAndEveryFieldGoesIntoIt) {
    using enum Action::Kind;
    const std::hash<Action> hash;
    const Action action = {"i", "n", script, "s", "p"};
    EXPECT_EQ(hash(action), hash(Action(action)));
    for (const Action& other :
         {Action{"x", "n", script, "s", "p"}, Action{"i", "x", script, "s", "p"},
          Action{"i", "n", shortcut, "s", "p"}, Action{"i", "n", script, "x", "p"},
          Action{"i", "n", script, "s", "x"}, Action{"n", "i", script, "s", "p"}}) {
        EXPECT_NE(hash(action), hash(other));
    }
}

TEST_F(FinderCustomShortcutActionsTest, KindsAreMatchedByTheirRawValuesToTheLetter) {
    EXPECT_EQ(rawValue(Action::Kind::shortcut), "shortcut");
    EXPECT_EQ(rawValue(Action::Kind::script), "script");
    EXPECT_EQ(finderCustomShortcutActionKindWithRawValue("shortcut"), Action::Kind::shortcut);
    EXPECT_EQ(finderCustomShortcutActionKindWithRawValue("script"), Action::Kind::script);
    EXPECT_EQ(finderCustomShortcutActionKindWithRawValue("Script"), std::nullopt);
}

TEST_F(FinderCustomShortcutActionsTest, NoFileGivesNoActions) {
    EXPECT_THAT(actions(), IsEmpty());
    EXPECT_EQ(findings(),
              found({{Finding::missingFile, "", noSuchFile(customShortcutActionsPath), ""}}));
}

TEST_F(FinderCustomShortcutActionsTest, ActionsAreReadInFileOrder) {
    putActions(list({script("b", "整理", "/s.sh"), shortcut("a", "压缩", "Compress")}));
    EXPECT_THAT(actions(),
                ElementsAre(Action{"b", "整理", Action::Kind::script, "", "/s.sh"},
                            Action{"a", "压缩", Action::Kind::shortcut, "Compress", ""}));
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(FinderCustomShortcutActionsTest, EntryGivesAnActionOnlyWithIDNameAndSomethingToRun) {
    constexpr auto shortcutKind = Action::Kind::shortcut;
    constexpr auto scriptKind = Action::Kind::script;
    const EntryRow rows[] = {
        {"no kind is a shortcut",
         texts({{"id", "i"}, {"name", "n"}, {"shortcutName", "s"}}),
         Action{"i", "n", shortcutKind, "s", ""},
         {}},
        {"unknown kind is a shortcut",
         texts({{"id", "i"}, {"name", "n"}, {"kind", "automator"}, {"shortcutName", "s"}}),
         Action{"i", "n", shortcutKind, "s", ""},
         {{Finding::unknownKind, "[1].kind", "automator", ""}}},
        {"empty kind is a shortcut",
         texts({{"id", "i"}, {"name", "n"}, {"kind", ""}, {"shortcutName", "s"}}),
         Action{"i", "n", shortcutKind, "s", ""},
         {{Finding::unknownKind, "[1].kind", "", ""}}},
        {"kind is matched to the letter",
         texts({{"id", "i"},
                {"name", "n"},
                {"kind", "Script"},
                {"shortcutName", "s"},
                {"scriptPath", "/p"}}),
         Action{"i", "n", shortcutKind, "s", "/p"},
         {{Finding::unknownKind, "[1].kind", "Script", ""}}},
        {"capital Script without shortcut name is skipped",
         texts({{"id", "i"}, {"name", "n"}, {"kind", "Script"}, {"scriptPath", "/p"}}),
         std::nullopt,
         {{Finding::unknownKind, "[1].kind", "Script", ""},
          {Finding::missingKey, "[1].shortcutName", "", ""}}},
        {"script keeps its stale shortcut name",
         texts({{"id", "i"},
                {"name", "n"},
                {"kind", "script"},
                {"shortcutName", "s"},
                {"scriptPath", "/p"}}),
         Action{"i", "n", scriptKind, "s", "/p"},
         {}},
        {"script without path is skipped although it names a shortcut",
         texts({{"id", "i"}, {"name", "n"}, {"kind", "script"}, {"shortcutName", "s"}}),
         std::nullopt,
         {{Finding::missingKey, "[1].scriptPath", "", ""}}},
        {"script with empty path is skipped",
         texts({{"id", "i"}, {"name", "n"}, {"kind", "script"}, {"scriptPath", ""}}),
         std::nullopt,
         {{Finding::emptyValue, "[1].scriptPath", "", ""}}},
        {"shortcut without name of a shortcut is skipped although it has a path",
         texts({{"id", "i"}, {"name", "n"}, {"kind", "shortcut"}, {"scriptPath", "/p"}}),
         std::nullopt,
         {{Finding::missingKey, "[1].shortcutName", "", ""}}},
        {"shortcut with empty shortcut name is skipped",
         texts({{"id", "i"}, {"name", "n"}, {"shortcutName", ""}}),
         std::nullopt,
         {{Finding::emptyValue, "[1].shortcutName", "", ""}}},
        {"blanks are something to run",
         texts({{"id", "i"}, {"name", "n"}, {"shortcutName", " "}}),
         Action{"i", "n", shortcutKind, " ", ""},
         {}},
        {"missing id",
         texts({{"name", "n"}, {"shortcutName", "s"}}),
         std::nullopt,
         {{Finding::missingKey, "[1].id", "", ""}}},
        {"missing name",
         texts({{"id", "i"}, {"kind", "script"}, {"scriptPath", "/p"}}),
         std::nullopt,
         {{Finding::missingKey, "[1].name", "", ""}}},
        {"empty id and name",
         texts({{"id", ""}, {"name", ""}, {"shortcutName", "s"}}),
         Action{"", "", shortcutKind, "s", ""},
         {}},
        {"nothing is trimmed",
         texts({{"id", " i\n"}, {"name", " n "}, {"kind", "script"}, {"scriptPath", " /p "}}),
         Action{" i\n", " n ", scriptKind, "", " /p "},
         {}},
        {"kind is not trimmed",
         texts({{"id", "i"}, {"name", "n"}, {"kind", "script "}, {"scriptPath", "/p"}}),
         std::nullopt,
         {{Finding::unknownKind, "[1].kind", "script ", ""},
          {Finding::missingKey, "[1].shortcutName", "", ""}}},
        {"further texts are ignored",
         texts({{"id", "i"}, {"name", "n"}, {"shortcutName", "s"}, {"icon", "x"}}),
         Action{"i", "n", shortcutKind, "s", ""},
         {{Finding::unknownKey, "[1].icon", "icon", ""}}},
        {"nothing at all",
         texts({}),
         std::nullopt,
         {{Finding::missingKey, "[1].id", "", ""},
          {Finding::missingKey, "[1].name", "", ""},
          {Finding::missingKey, "[1].shortcutName", "", ""}}},
    };
    for (const EntryRow& row : rows) {
        putActions(list({script("first", "F", "/f"), row.entry, shortcut("last", "L", "l")}));
        std::vector<Action> expected = {{"first", "F", scriptKind, "", "/f"},
                                        {"last", "L", shortcutKind, "l", ""}};
        if (row.expected) {
            expected.insert(expected.begin() + 1, *row.expected);
        }
        EXPECT_EQ(actions(), expected) << row.description;
        EXPECT_EQ(findings(), found(row.findings)) << row.description;
    }
}

TEST_F(FinderCustomShortcutActionsTest, ActionsWithTheSameIDAreBothKept) {
    putActions(list({shortcut("a", "1", "s"), shortcut("a", "2", "s"), shortcut("a", "1", "s")}));
    EXPECT_EQ(actions().size(), 3U);
}

TEST_F(FinderCustomShortcutActionsTest, OneValueOfTheWrongTypeDiscardsEveryEntry) {
    const std::pair<PropertyList, FindingRow> rows[] = {
        {"text", {Finding::wrongType, "[1]", "string", "dictionary"}},
        {PropertyList::Array{}, {Finding::wrongType, "[1]", "array", "dictionary"}},
        {std::int64_t{1}, {Finding::wrongType, "[1]", "integer", "dictionary"}},
        {PropertyList::Dictionary{{"id", "i"}, {"name", "n"}, {"shortcutName", std::int64_t{1}}},
         {Finding::wrongType, "[1].shortcutName", "integer", "string"}},
        {PropertyList::Dictionary{{"id", "i"}, {"name", "n"}, {"shortcutName", "s"}, {"x", true}},
         {Finding::wrongType, "[1].x", "boolean", "string"}},
        {PropertyList::Dictionary{{"x", PropertyList::Date{0}}},
         {Finding::wrongType, "[1].x", "date", "string"}},
    };
    for (const auto& [wrong, finding] : rows) {
        putActions(list({shortcut("a", "A", "s"), wrong, wrong}));
        EXPECT_THAT(actions(), IsEmpty());
        EXPECT_EQ(findings(), found({finding}));
    }
}

TEST_F(FinderCustomShortcutActionsTest, RootThatIsNotAListGivesNoActions) {
    putActions(shortcut("a", "A", "s"));
    EXPECT_THAT(actions(), IsEmpty());
    EXPECT_EQ(findings(), found({{Finding::wrongType, "", "dictionary", "array"}}));
    putActions("text");
    EXPECT_THAT(actions(), IsEmpty());
    putActions(PropertyList::Dictionary{{"actions", list({shortcut("a", "A", "s")})}});
    EXPECT_THAT(actions(), IsEmpty());
}

TEST_F(FinderCustomShortcutActionsTest, EmptyListGivesNoActions) {
    putActions(PropertyList::Array{});
    EXPECT_THAT(actions(), IsEmpty());
}

TEST_F(FinderCustomShortcutActionsTest, FileThatCannotBeReadOrParsedGivesNoActions) {
    platform().putFile(customShortcutActionsPath, "garbage");
    EXPECT_THAT(actions(), IsEmpty());
    for (const auto operation :
         {fakePlatform::Operation::readFile, fakePlatform::Operation::parsePropertyList}) {
        fakePlatform::reset();
        putActions(list({shortcut("a", "A", "s")}));
        EXPECT_EQ(actions().size(), 1U);
        platform().fail(operation);
        EXPECT_THAT(actions(), IsEmpty());
    }
}

TEST_F(FinderCustomShortcutActionsTest, FileIsReadFromTheReportedHomeAtEachCall) {
    putActions(list({shortcut("a", "A", "s")}));
    EXPECT_EQ(actions().size(), 1U);
    platform().enterSandbox();
    EXPECT_THAT(actions(), IsEmpty());
    EXPECT_THAT(platform().journal, IsEmpty());
}

}  // namespace
}  // namespace quorva
