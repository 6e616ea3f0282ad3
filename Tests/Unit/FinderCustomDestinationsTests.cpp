#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"

#include <cstdint>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Kind = FinderCustomDestinationKind;
using Destination = FinderCustomDestination;

constexpr Kind allKinds[] = {Kind::copy, Kind::move, Kind::quickOpen, Kind::openApplication};

class FinderCustomDestinationsTest : public SettingsTest {
 protected:
    FinderCustomDestinationsTest() : SettingsTest("CustomDestinations.plist") {}

    static void putDestinations(const PropertyList& root) {
        platform().putPropertyList(customDestinationsPath, root);
    }

    static std::vector<Destination> destinations(Kind kind) {
        EXPECT_EQ(FinderCustomDestinationSettings::destinations(kind),
                  FinderCustomDestinationFile().destinations(kind));
        return reading([kind](SettingsFindings* findings) {
            return FinderCustomDestinationFile(findings).destinations(kind);
        });
    }

    /// What the last reading found, but for the default applications that are not installed.
    static SettingsFindings findings() {
        SettingsFindings findings = findings_;
        std::erase_if(findings, [](const SettingsFinding& finding) {
            return finding.kind == Finding::missingApplication;
        });
        return findings;
    }

    static void install(std::initializer_list<const char*> paths) {
        for (const char* const path : paths) {
            platform().putDirectory(path);
        }
    }

    /// Whether every kind has its defaults, on a machine with Preview only, and the file
    /// `expected`.
    static void expectDefaultsOfEveryKind(const SettingsFindings& expected) {
        EXPECT_EQ(destinations(Kind::copy), fileDefaults);
        EXPECT_EQ(findings(), expected);
        EXPECT_EQ(destinations(Kind::move), fileDefaults);
        EXPECT_EQ(destinations(Kind::quickOpen), quickOpenDefaults);
        EXPECT_EQ(destinations(Kind::openApplication), std::vector<Destination>{preview});
        EXPECT_EQ(findings(), expected);
    }

    static inline const Destination desktop = {"桌面", "桌面", "/Users/ada/Desktop"};
    static inline const Destination downloads = {"下载", "下载", "/Users/ada/Downloads"};
    static inline const Destination documents = {"文稿", "文稿", "/Users/ada/Documents"};
    static inline const Destination home = {"home", "用户目录", "/Users/ada"};
    static inline const Destination pictures = {"pictures", "图片", "/Users/ada/Pictures"};
    static inline const Destination applications = {"applications", "应用程序", "/Applications"};
    static inline const Destination preview = {"preview", "预览",
                                               "/System/Applications/Preview.app"};
    static inline const Destination textEdit = {"textedit", "文本编辑",
                                                "/System/Applications/TextEdit.app"};
    static inline const Destination pages = {"pages", "Pages", "/Applications/Pages.app"};
    static inline const Destination numbers = {"numbers", "Numbers", "/Applications/Numbers.app"};
    static inline const Destination keynote = {"keynote", "Keynote", "/Applications/Keynote.app"};
    static inline const std::vector<Destination> fileDefaults = {desktop, downloads, documents};
    static inline const std::vector<Destination> quickOpenDefaults = {
        home, desktop, downloads, documents, pictures, applications};
};

TEST_F(FinderCustomDestinationsTest, RawValuesAreTheKeysOfTheFile) {
    EXPECT_EQ(rawValue(Kind::copy), "copy");
    EXPECT_EQ(rawValue(Kind::move), "move");
    EXPECT_EQ(rawValue(Kind::quickOpen), "quickOpen");
    EXPECT_EQ(rawValue(Kind::openApplication), "openApplication");
    for (const Kind kind : allFinderCustomDestinationKinds) {
        EXPECT_EQ(finderCustomDestinationKindWithRawValue(rawValue(kind)), kind);
    }
    EXPECT_EQ(finderCustomDestinationKindWithRawValue("Copy"), std::nullopt);
}

TEST_F(FinderCustomDestinationsTest, DestinationsAreComparedByEveryField) {
    expectEveryFieldCounts<Destination>({"i", "n", "p"},
                                        {{"x", "n", "p"}, {"i", "x", "p"}, {"i", "n", "x"}});
}

TEST_F(FinderCustomDestinationsTest, CopyAndMoveDefaultToDesktopDownloadsAndDocuments) {
    EXPECT_EQ(destinations(Kind::copy), fileDefaults);
    EXPECT_EQ(destinations(Kind::move), fileDefaults);
}

TEST_F(FinderCustomDestinationsTest, QuickOpenDefaultsToTheUsualPlaces) {
    EXPECT_EQ(destinations(Kind::quickOpen), quickOpenDefaults);
    EXPECT_EQ(findings(),
              found({{Finding::missingFile, "", noSuchFile(customDestinationsPath), ""}}));
}

TEST_F(FinderCustomDestinationsTest, ApplicationsDefaultToThoseThatAreInstalledInTheirOrder) {
    EXPECT_THAT(destinations(Kind::openApplication), IsEmpty());
    install({"/Applications/Keynote.app", "/System/Applications/TextEdit.app"});
    EXPECT_THAT(destinations(Kind::openApplication), ElementsAre(textEdit, keynote));
    EXPECT_EQ(findings_, found({{Finding::missingFile, "", noSuchFile(customDestinationsPath), ""},
                                {Finding::missingApplication, "", preview.path, ""},
                                {Finding::missingApplication, "", pages.path, ""},
                                {Finding::missingApplication, "", numbers.path, ""}}));
    install({"/Applications/Numbers.app", "/Applications/Pages.app",
             "/System/Applications/Preview.app"});
    EXPECT_THAT(destinations(Kind::openApplication),
                ElementsAre(preview, textEdit, pages, numbers, keynote));
}

TEST_F(FinderCustomDestinationsTest, ApplicationMayBeInstalledAsAPlainFile) {
    platform().putFile("/Applications/Pages.app", "");
    EXPECT_THAT(destinations(Kind::openApplication), ElementsAre(pages));
}

TEST_F(FinderCustomDestinationsTest, StandardDirectoriesThatThePlatformDoesNotKnowAreLeftOut) {
    platform().standardDirectories[platform::SearchPathDirectory::downloads].clear();
    platform().standardDirectories[platform::SearchPathDirectory::pictures].clear();
    EXPECT_THAT(destinations(Kind::copy), ElementsAre(desktop, documents));
    EXPECT_THAT(destinations(Kind::quickOpen), ElementsAre(home, desktop, documents, applications));
    platform().standardDirectories.clear();
    EXPECT_THAT(destinations(Kind::move), IsEmpty());
    EXPECT_THAT(destinations(Kind::quickOpen), ElementsAre(home, applications));
}

TEST_F(FinderCustomDestinationsTest, FirstURLOfAStandardDirectoryCounts) {
    platform().standardDirectories[platform::SearchPathDirectory::desktop] = {
        FileURL::directory("/Volumes/Big/Desktop"), FileURL::directory("/Users/ada/Desktop")};
    EXPECT_EQ(destinations(Kind::copy).front().path, "/Volumes/Big/Desktop");
}

TEST_F(FinderCustomDestinationsTest, DefaultDirectoriesNeedNotExist) {
    platform().entries.clear();
    EXPECT_EQ(destinations(Kind::copy), fileDefaults);
    EXPECT_EQ(destinations(Kind::quickOpen), quickOpenDefaults);
}

TEST_F(FinderCustomDestinationsTest, FileAndHomeAreThoseOfTheContainerInTheSandbox) {
    platform().enterSandbox();
    const std::string container =
        "/Users/ada/Library/Containers/app.ferrolin.Quorva.FinderExtension/Data";
    EXPECT_EQ(destinations(Kind::quickOpen).front().path, container);
    putDestinations(PropertyList::Dictionary{{"copy", list({destination("a", "A", "/A")})}});
    EXPECT_EQ(destinations(Kind::copy).front().path, container + "/Desktop");
    platform().putPropertyList(
        container + "/Library/Application Support/Quorva/CustomDestinations.plist",
        PropertyList::Dictionary{{"copy", list({destination("b", "B", "/B")})}});
    EXPECT_THAT(destinations(Kind::copy), ElementsAre(Destination{"b", "B", "/B"}));
}

TEST_F(FinderCustomDestinationsTest, LocalisedDefaultsTakeTheTranslationAsTitleAndFilesAsIDToo) {
    platform().translations = {{"桌面", "Desktop"},         {"用户目录", "Home"},
                               {"图片", "Pictures"},        {"应用程序", "Applications"},
                               {"预览", "Preview"},         {"文本编辑", "TextEdit"},
                               {"Pages", "never looked up"}};
    install({"/Applications/Pages.app", "/System/Applications/TextEdit.app",
             "/System/Applications/Preview.app"});
    const Destination translatedDesktop = {"Desktop", "Desktop", "/Users/ada/Desktop"};
    EXPECT_THAT(destinations(Kind::copy), ElementsAre(translatedDesktop, downloads, documents));
    EXPECT_THAT(destinations(Kind::quickOpen),
                ElementsAre(Destination{"home", "Home", "/Users/ada"}, translatedDesktop, downloads,
                            documents, Destination{"pictures", "Pictures", "/Users/ada/Pictures"},
                            Destination{"applications", "Applications", "/Applications"}));
    EXPECT_THAT(
        destinations(Kind::openApplication),
        ElementsAre(Destination{"preview", "Preview", "/System/Applications/Preview.app"},
                    Destination{"textedit", "TextEdit", "/System/Applications/TextEdit.app"},
                    pages));
}

TEST_F(FinderCustomDestinationsTest, UsersListReplacesTheDefaultsOfItsKindOnly) {
    putDestinations(PropertyList::Dictionary{
        {"copy", list({destination("b", "项目", "/b"), destination("a", "A", "/a")})}});
    EXPECT_THAT(destinations(Kind::copy),
                ElementsAre(Destination{"b", "项目", "/b"}, Destination{"a", "A", "/a"}));
    EXPECT_EQ(destinations(Kind::move), fileDefaults);
    EXPECT_EQ(destinations(Kind::quickOpen), quickOpenDefaults);
    EXPECT_THAT(destinations(Kind::openApplication), IsEmpty());
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(FinderCustomDestinationsTest, EmptyListStaysEmptyButDefaultApplicationsStay) {
    install({"/System/Applications/Preview.app"});
    putDestinations(PropertyList::Dictionary{{"copy", PropertyList::Array{}},
                                             {"move", PropertyList::Array{}},
                                             {"quickOpen", PropertyList::Array{}},
                                             {"openApplication", PropertyList::Array{}}});
    EXPECT_THAT(destinations(Kind::copy), IsEmpty());
    EXPECT_THAT(destinations(Kind::move), IsEmpty());
    EXPECT_THAT(destinations(Kind::quickOpen), IsEmpty());
    EXPECT_THAT(destinations(Kind::openApplication), ElementsAre(preview));
}

TEST_F(FinderCustomDestinationsTest, EmptyRootGivesTheDefaultsOfEveryKind) {
    install({"/System/Applications/Preview.app"});
    putDestinations(PropertyList::Dictionary{});
    expectDefaultsOfEveryKind({});
}

TEST_F(FinderCustomDestinationsTest, EntryThatLacksAKeyIsSkippedAndItsNeighboursStay) {
    putDestinations(PropertyList::Dictionary{
        {"move", list({destination("a", "A", "/a"), texts({{"id", "x"}, {"name", "X"}}),
                       texts({{"id", "x"}, {"path", "/x"}}), texts({{"name", "X"}, {"path", "/x"}}),
                       texts({}), destination("b", "B", "/b")})}});
    EXPECT_THAT(destinations(Kind::move),
                ElementsAre(Destination{"a", "A", "/a"}, Destination{"b", "B", "/b"}));
    EXPECT_EQ(findings(), found({{Finding::missingKey, "move[1].path", "", ""},
                                 {Finding::missingKey, "move[2].name", "", ""},
                                 {Finding::missingKey, "move[3].id", "", ""},
                                 {Finding::missingKey, "move[4].id", "", ""},
                                 {Finding::missingKey, "move[4].name", "", ""},
                                 {Finding::missingKey, "move[4].path", "", ""}}));
    // What another kind holds is not read, so it is not told either.
    EXPECT_EQ(destinations(Kind::copy), fileDefaults);
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(FinderCustomDestinationsTest, ApplicationThatLacksAKeyIsSkipped) {
    putDestinations(PropertyList::Dictionary{
        {"openApplication",
         list({texts({{"id", "cursor"}, {"name", "C"}}), destination("x", "X", "/x.app")})}});
    EXPECT_THAT(destinations(Kind::openApplication), ElementsAre(Destination{"x", "X", "/x.app"}));
    EXPECT_EQ(findings(), found({{Finding::missingKey, "openApplication[0].path", "", ""}}));
}

TEST_F(FinderCustomDestinationsTest, ValuesAreTakenVerbatim) {
    putDestinations(PropertyList::Dictionary{
        {"quickOpen",
         list({destination("", "", ""), destination(" a ", "e\u0301\n\"😀\"", "relative/../path/"),
               destination("", "", "")})}});
    EXPECT_THAT(destinations(Kind::quickOpen),
                ElementsAre(Destination{"", "", ""},
                            Destination{" a ", "e\u0301\n\"😀\"", "relative/../path/"},
                            Destination{"", "", ""}));
}

TEST_F(FinderCustomDestinationsTest, FurtherTextsAndKeysAreIgnored) {
    putDestinations(PropertyList::Dictionary{
        {"copy", list({texts({{"id", "a"}, {"name", "A"}, {"path", "/a"}, {"note", "n"}})})},
        {"Copy", list({destination("b", "B", "/b")})},
        {"other", PropertyList::Array{}}});
    EXPECT_THAT(destinations(Kind::copy), ElementsAre(Destination{"a", "A", "/a"}));
    EXPECT_EQ(findings(), found({{Finding::unknownKey, "Copy", "Copy", ""},
                                 {Finding::unknownKey, "other", "other", ""},
                                 {Finding::unknownKey, "copy[0].note", "note", ""}}));
}

TEST_F(FinderCustomDestinationsTest, OneValueOfTheWrongTypeAnywhereMakesTheFileUnusable) {
    install({"/System/Applications/Preview.app"});
    const PropertyList good = list({destination("a", "A", "/a")});
    /// The wrong list, and in it the path of the first wrong value, its type and the wanted one.
    const struct {
        PropertyList list;
        const char* path;
        const char* type;
        const char* wanted;
    } rows[] = {
        {"text", "", "string", "array"},
        {true, "", "boolean", "array"},
        {std::int64_t{1}, "", "integer", "array"},
        {1.5, "", "real", "array"},
        {PropertyList::Date{0}, "", "date", "array"},
        {dataWithText("x"), "", "data", "array"},
        {PropertyList::Unsupported(), "", "value of another type", "array"},
        {PropertyList::Dictionary{}, "", "dictionary", "array"},
        {list({"text"}), "[0]", "string", "dictionary"},
        {list({destination("a", "A", "/a"), PropertyList::Array{}, "text"}), "[1]", "array",
         "dictionary"},
        {list({PropertyList::Dictionary{{"id", "a"}, {"name", "A"}, {"path", std::int64_t{1}}}}),
         "[0].path", "integer", "string"},
        {list({PropertyList::Dictionary{
             {"id", "a"}, {"name", "A"}, {"path", "/a"}, {"note", true}}}),
         "[0].note", "boolean", "string"},
        {list({PropertyList::Dictionary{
             {"id", "a"}, {"name", "A"}, {"path", "/a"}, {"note", PropertyList::Array{}}}}),
         "[0].note", "array", "string"},
    };
    for (const auto& [wrong, path, type, wanted] : rows) {
        for (const char* const key : {"copy", "move", "quickOpen", "openApplication", "unknown"}) {
            PropertyList::Dictionary root = {
                {"copy", good}, {"move", good}, {"quickOpen", good}, {"openApplication", good}};
            root.insert_or_assign(key, wrong);
            putDestinations(root);
            expectDefaultsOfEveryKind(
                found({{Finding::wrongType, std::string(key) + path, type, wanted}}));
        }
    }
}

TEST_F(FinderCustomDestinationsTest, RootThatIsNotADictionaryGivesTheDefaults) {
    install({"/System/Applications/Preview.app"});
    const std::pair<PropertyList, const char*> rows[] = {{PropertyList::Array{}, "array"},
                                                         {"copy", "string"},
                                                         {true, "boolean"},
                                                         {std::int64_t{1}, "integer"}};
    for (const auto& [root, type] : rows) {
        putDestinations(root);
        expectDefaultsOfEveryKind(found({{Finding::wrongType, "", type, "dictionary"}}));
    }
}

TEST_F(FinderCustomDestinationsTest, UnparsableFileGivesTheDefaults) {
    install({"/System/Applications/Preview.app"});
    for (const char* const bytes : {"", "garbage", "bplist00"}) {
        platform().putFile(customDestinationsPath, bytes);
        expectDefaultsOfEveryKind(found({{Finding::malformedFile, "", notAPropertyList, ""}}));
    }
}

TEST_F(FinderCustomDestinationsTest, UnreadableFileGivesTheDefaults) {
    install({"/System/Applications/Preview.app"});
    putDestinations(PropertyList::Dictionary{{"copy", PropertyList::Array{}}});
    std::get<fakePlatform::File>(platform().find(customDestinationsPath)->content).readable = false;
    expectDefaultsOfEveryKind(
        found({{Finding::unreadableFile, "", noPermission(customDestinationsPath), ""}}));
}

TEST_F(FinderCustomDestinationsTest, FolderInPlaceOfTheFileGivesTheDefaults) {
    install({"/System/Applications/Preview.app"});
    platform().putDirectory(customDestinationsPath);
    expectDefaultsOfEveryKind(
        found({{Finding::unreadableFile, "", noSuchFile(customDestinationsPath), ""}}));
}

TEST_F(FinderCustomDestinationsTest, FailuresOfReadingAndParsingGiveTheDefaults) {
    for (const auto operation :
         {fakePlatform::Operation::readFile, fakePlatform::Operation::parsePropertyList}) {
        fakePlatform::reset();
        install({"/System/Applications/Preview.app"});
        putDestinations(PropertyList::Dictionary{{"copy", PropertyList::Array{}}});
        platform().fail(operation, "worn out");
        expectDefaultsOfEveryKind(
            found({{operation == fakePlatform::Operation::readFile ? Finding::unreadableFile
                                                                   : Finding::malformedFile,
                    "", "worn out", ""}}));
    }
}

TEST_F(FinderCustomDestinationsTest, UsersApplicationsFollowTheInstalledDefaults) {
    install({"/System/Applications/Preview.app", "/System/Applications/TextEdit.app"});
    putDestinations(PropertyList::Dictionary{
        {"openApplication", list({destination("x", "X", "/Applications/X.app"),
                                  destination("a", "A", "/missing/A.app")})}});
    EXPECT_THAT(destinations(Kind::openApplication),
                ElementsAre(preview, textEdit, Destination{"x", "X", "/Applications/X.app"},
                            Destination{"a", "A", "/missing/A.app"}));
}

TEST_F(FinderCustomDestinationsTest, EditorsOfTheCatalogueAreNeverListed) {
    putDestinations(PropertyList::Dictionary{
        {"openApplication",
         list({destination("vscode", "A", "/a.app"), destination("cursor", "B", "/b.app"),
               destination("c", "C", "/Applications/Visual Studio Code.app"),
               destination("d", "D", "/Applications/Cursor.app"),
               destination("e", "E", "/e.app")})}});
    EXPECT_THAT(destinations(Kind::openApplication), ElementsAre(Destination{"e", "E", "/e.app"}));
    EXPECT_EQ(findings(),
              found({{Finding::catalogueApplication, "openApplication[0]", "vscode", ""},
                     {Finding::catalogueApplication, "openApplication[1]", "cursor", ""},
                     {Finding::catalogueApplication, "openApplication[2]", "c", ""},
                     {Finding::catalogueApplication, "openApplication[3]", "d", ""}}));
}

TEST_F(FinderCustomDestinationsTest, EditorsAreRecognisedToTheLetter) {
    putDestinations(PropertyList::Dictionary{
        {"openApplication",
         list({destination("VSCode", "A", "/a.app"), destination("cursor ", "B", "/b.app"),
               destination("c", "C", "/applications/Cursor.app"),
               destination("d", "D", "/Applications/Cursor.app/")})}});
    EXPECT_EQ(destinations(Kind::openApplication).size(), 4U);
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(FinderCustomDestinationsTest, EditorsAreListedForTheOtherKinds) {
    putDestinations(PropertyList::Dictionary{
        {"copy", list({destination("cursor", "C", "/Applications/Cursor.app")})},
        {"quickOpen", list({destination("vscode", "V", "/v")})}});
    EXPECT_EQ(destinations(Kind::copy).size(), 1U);
    EXPECT_EQ(destinations(Kind::quickOpen).size(), 1U);
}

TEST_F(FinderCustomDestinationsTest, UsersApplicationThatIsADefaultByPathOrIDIsDropped) {
    install({"/System/Applications/Preview.app", "/Applications/Pages.app"});
    putDestinations(PropertyList::Dictionary{
        {"openApplication", list({destination("mine", "Mine", "/System/Applications/Preview.app"),
                                  destination("pages", "Other Pages", "/other/Pages.app"),
                                  destination("keep", "预览", "/keep.app")})}});
    EXPECT_THAT(destinations(Kind::openApplication),
                ElementsAre(preview, pages, Destination{"keep", "预览", "/keep.app"}));
    EXPECT_EQ(findings(),
              found({{Finding::defaultApplication, "openApplication[0]", "mine", ""},
                     {Finding::defaultApplication, "openApplication[1]", "pages", ""}}));
}

TEST_F(FinderCustomDestinationsTest, EntryWithTheIDOfADefaultThatIsNotInstalledIsKept) {
    install({"/System/Applications/Preview.app"});
    putDestinations(PropertyList::Dictionary{
        {"openApplication", list({destination("pages", "My Pages", "/p.app"),
                                  destination("k", "K", "/Applications/Keynote.app")})}});
    EXPECT_THAT(destinations(Kind::openApplication),
                ElementsAre(preview, Destination{"pages", "My Pages", "/p.app"},
                            Destination{"k", "K", "/Applications/Keynote.app"}));
}

TEST_F(FinderCustomDestinationsTest, UsersApplicationsAreNotComparedWithOneAnother) {
    putDestinations(PropertyList::Dictionary{
        {"openApplication", list({destination("x", "1", "/1.app"), destination("x", "2", "/2.app"),
                                  destination("y", "1", "/1.app")})}});
    EXPECT_THAT(destinations(Kind::openApplication),
                ElementsAre(Destination{"x", "1", "/1.app"}, Destination{"x", "2", "/2.app"},
                            Destination{"y", "1", "/1.app"}));
}

TEST_F(FinderCustomDestinationsTest, EveryCallReadsTheFileAfresh) {
    putDestinations(PropertyList::Dictionary{{"copy", list({destination("a", "A", "/a")})}});
    EXPECT_EQ(destinations(Kind::copy).size(), 1U);
    putDestinations(PropertyList::Dictionary{{"copy", PropertyList::Array{}}});
    EXPECT_EQ(destinations(Kind::copy).size(), 0U);
    platform().entries.erase(customDestinationsPath);
    EXPECT_EQ(destinations(Kind::copy).size(), 3U);
}

TEST_F(FinderCustomDestinationsTest, NothingIsWrittenOrLogged) {
    platform().putFile(customDestinationsPath, "garbage");
    for (const Kind kind : allKinds) {
        (void)destinations(kind);
    }
    EXPECT_THAT(platform().journal, IsEmpty());
    EXPECT_EQ(platform().contents(customDestinationsPath), "garbage");
}

TEST_F(FinderCustomDestinationsTest, TenThousandEntriesAreAllListed) {
    PropertyList::Array entries;
    for (int index = 0; index < 10'000; ++index) {
        const std::string number = std::to_string(index);
        entries.push_back(destination(number.c_str(), number.c_str(), number.c_str()));
    }
    putDestinations(PropertyList::Dictionary{{"openApplication", std::move(entries)}});
    install({"/System/Applications/Preview.app"});
    const std::vector<Destination> listed = destinations(Kind::openApplication);
    ASSERT_EQ(listed.size(), 10'001U);
    EXPECT_EQ(listed.back().id, "9999");
}

}  // namespace
}  // namespace quorva
