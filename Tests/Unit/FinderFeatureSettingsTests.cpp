#include "QuorvaFinderExtension/FinderFeatureSettings.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <set>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

using Features = std::vector<FinderFeature>;
using IDs = std::set<std::string, std::less<>>;
using Order = std::vector<std::string>;

class FinderFeatureSettingsTest : public SettingsTest {
 protected:
    FinderFeatureSettingsTest() : SettingsTest("FeatureSettings.plist") {}

    /// What the settings are when the file holds `root`.
    static FinderMenuSettings settings(PropertyList::Dictionary root) {
        return settingsWithRoot(std::move(root));
    }

    static FinderMenuSettings settingsWithRoot(const PropertyList& root) {
        platform().putPropertyList(featureSettingsPath, root);
        return settingsOfFile();
    }

    /// What the settings are with the file as it is.
    static FinderMenuSettings settingsOfFile() {
        return reading(FinderFeatureSettings::menuSettings);
    }

    /// The order of the commands of `feature` when the file holds `saved` for it.
    static Order normalizedOrder(const char* feature, const PropertyList& saved) {
        return settings({{"childOrderByFeatureID", PropertyList::Dictionary{{feature, saved}}}})
            .childOrderByFeatureID.at(feature);
    }

    static Order catalogueOrder(FinderFeature feature) {
        const std::vector<std::string_view> ids = childIDs(feature);
        return {ids.begin(), ids.end()};
    }

    static std::map<std::string, Order, std::less<>> catalogueOrders() {
        std::map<std::string, Order, std::less<>> orders;
        for (const FinderFeature feature : allFinderFeatures) {
            orders.emplace(rawValue(feature), catalogueOrder(feature));
        }
        return orders;
    }

    static inline const Features defaultOrder = {
        FinderFeature::quickOpen,         FinderFeature::createFile,
        FinderFeature::organizeFile,      FinderFeature::copyFile,
        FinderFeature::batchRename,       FinderFeature::archiveTools,
        FinderFeature::scheduledDeletion, FinderFeature::imageTools,
        FinderFeature::pdfTools,          FinderFeature::copyPath,
        FinderFeature::openWith,          FinderFeature::viewOptions,
        FinderFeature::customActions,     FinderFeature::developerTools,
    };

    /// Every default feature: all but the last.
    static inline const Features defaultFeatures = {defaultOrder.begin(), defaultOrder.end() - 1};

    static inline const IDs defaultEnabledIDs = {
        "compressJPEG",
        "compressPDF",
        "compressToZIP",
        "convertImageToJPEG",
        "convertImageToPNG",
        "copyBesideOriginal",
        "copyFileName",
        "copyFileNameList",
        "copyFilesToDesktop",
        "copyFilesToDocuments",
        "copyFilesToDownloads",
        "copyFilesToFolder",
        "copyFullPath",
        "copyMarkdownLink",
        "copyParentPath",
        "copyShellPath",
        "createCSVFile",
        "createExcelSpreadsheet",
        "createFolder",
        "createJPEGImage",
        "createMarkdownFile",
        "createPDFDocument",
        "createPNGImage",
        "createPowerPointPresentation",
        "createRTFDocument",
        "createReadmeFile",
        "createTextFile",
        "createWordDocument",
        "createXMLFile",
        "createYAMLFile",
        "extractZIPHere",
        "extractZIPToFolder",
        "finderViewPreset",
        "imagesToPDF",
        "mergePDFs",
        "moveFilesToDesktop",
        "moveFilesToDocuments",
        "moveFilesToDownloads",
        "moveFilesToFolder",
        "moveSelectionToNewFolder",
        "quickOpenApplications",
        "quickOpenClipboardPath",
        "quickOpenDesktop",
        "quickOpenDocuments",
        "quickOpenDownloads",
        "quickOpenHome",
        "quickOpenTypedPath",
        "renameAddPrefix",
        "renameAddSuffix",
        "renameFindReplace",
        "renameSequential",
        "resizeImages",
        "revealInFinder",
        "scheduleDelete1Hour",
        "scheduleDelete30Days",
        "scheduleDelete7Days",
        "scheduleDelete90Days",
        "splitPDFs",
    };

    /// Those of the default set that the catalogue knows.
    static IDs enabledCatalogueIDs() {
        IDs ids = defaultEnabledIDs;
        ids.erase("copyFilesToFolder");
        ids.erase("moveFilesToFolder");
        return ids;
    }

    /// A value that is not what its key wants: where in it, what stands there, and what is wanted.
    struct WrongIDs {
        PropertyList value;
        const char* path;
        const char* type;
        const char* wanted;
    };

    [[nodiscard]] SettingsFindings replacedDeletionOrder() const {
        return found(
            {{Finding::replacedCommandOrder, "childOrderByFeatureID.scheduledDeletion", "", ""}});
    }

    static PropertyList::Array everyFeatureID() {
        PropertyList::Array ids;
        for (const FinderFeature feature : allFinderFeatures) {
            ids.emplace_back(rawValue(feature));
        }
        return ids;
    }
};

TEST(FinderMenuLayoutTest, RawValuesAreMatchedToTheLetter) {
    EXPECT_EQ(rawValue(FinderMenuLayout::collapsed), "collapsed");
    EXPECT_EQ(rawValue(FinderMenuLayout::expanded), "expanded");
    EXPECT_EQ(finderMenuLayoutWithRawValue("collapsed"), FinderMenuLayout::collapsed);
    EXPECT_EQ(finderMenuLayoutWithRawValue("expanded"), FinderMenuLayout::expanded);
    for (const char* const text : {"", "Expanded", "expanded ", "expand", "inline"}) {
        EXPECT_EQ(finderMenuLayoutWithRawValue(text), std::nullopt) << text;
    }
}

// No usable file.

TEST_F(FinderFeatureSettingsTest, WithoutFileTheDefaultsAreGroupedAndCollapsed) {
    const FinderMenuSettings value = settingsOfFile();
    EXPECT_EQ(value.features, defaultFeatures);
    EXPECT_EQ(value.enabledChildIDs, defaultEnabledIDs);
    EXPECT_EQ(value.enabledChildIDs.size(), 58U);
    EXPECT_EQ(value.childOrderByFeatureID, catalogueOrders());
    EXPECT_TRUE(value.groupsFeaturesUnderQuorva);
    EXPECT_EQ(value.menuLayout, FinderMenuLayout::collapsed);
    EXPECT_EQ(findings(), found({{Finding::missingFile, "", noSuchFile(featureSettingsPath), ""}}));
}

TEST_F(FinderFeatureSettingsTest, FileThatCannotBeUsedCountsAsNone) {
    const FinderMenuSettings expected = settingsOfFile();
    for (const char* const bytes : {"", "garbage", "bplist00"}) {
        platform().putFile(featureSettingsPath, bytes);
        EXPECT_EQ(settingsOfFile(), expected);
        EXPECT_EQ(findings(), found({{Finding::malformedFile, "", notAPropertyList, ""}}));
    }
    const std::pair<PropertyList, const char*> roots[] = {
        {"text", "string"},
        {true, "boolean"},
        {std::int64_t{1}, "integer"},
        {PropertyList::Array{}, "array"},
        {list({PropertyList::Dictionary{{"menuLayout", "expanded"}}}), "array"}};
    for (const auto& [root, type] : roots) {
        EXPECT_EQ(settingsWithRoot(root), expected);
        EXPECT_EQ(findings(), found({{Finding::wrongType, "", type, "dictionary"}}));
    }
    platform().entries.erase(featureSettingsPath);
    platform().putDirectory(featureSettingsPath);
    EXPECT_EQ(settingsOfFile(), expected);
    EXPECT_EQ(findings(),
              found({{Finding::unreadableFile, "", noSuchFile(featureSettingsPath), ""}}));
}

TEST_F(FinderFeatureSettingsTest, FailuresOfReadingAndParsingCountAsNoFile) {
    const FinderMenuSettings expected = settingsOfFile();
    for (const auto operation :
         {fakePlatform::Operation::readFile, fakePlatform::Operation::parsePropertyList}) {
        fakePlatform::reset();
        EXPECT_FALSE(settings({{"menuLayout", "expanded"}}) == expected);
        platform().fail(operation, "worn out");
        EXPECT_EQ(settingsOfFile(), expected);
        EXPECT_EQ(findings(),
                  found({{operation == fakePlatform::Operation::readFile ? Finding::unreadableFile
                                                                         : Finding::malformedFile,
                          "", "worn out", ""}}));
    }
    fakePlatform::reset();
    platform().putPropertyList(featureSettingsPath, PropertyList::Dictionary{}).readable = false;
    EXPECT_EQ(settingsOfFile(), expected);
}

TEST_F(FinderFeatureSettingsTest, FileIsReadFromTheReportedHomeAtEachCall) {
    EXPECT_EQ(settings({{"menuLayout", "expanded"}}).menuLayout, FinderMenuLayout::expanded);
    EXPECT_EQ(settings({{"menuLayout", "collapsed"}}).menuLayout, FinderMenuLayout::collapsed);
    EXPECT_FALSE(settingsOfFile().groupsFeaturesUnderQuorva);
    platform().enterSandbox();
    EXPECT_TRUE(settingsOfFile().groupsFeaturesUnderQuorva);
}

TEST_F(FinderFeatureSettingsTest, NothingIsWrittenOrLogged) {
    platform().putFile(featureSettingsPath, "garbage");
    (void)settingsOfFile();
    EXPECT_THAT(platform().journal, IsEmpty());
    EXPECT_EQ(platform().contents(featureSettingsPath), "garbage");
}

// A file without, or with a single, key.

TEST_F(FinderFeatureSettingsTest, EmptyFileHasTheDefaultsButDoesNotGroup) {
    const FinderMenuSettings value = settings(PropertyList::Dictionary{});
    EXPECT_EQ(value.features, defaultFeatures);
    EXPECT_EQ(value.enabledChildIDs, defaultEnabledIDs);
    EXPECT_EQ(value.childOrderByFeatureID, catalogueOrders());
    EXPECT_FALSE(value.groupsFeaturesUnderQuorva);
    EXPECT_EQ(value.menuLayout, FinderMenuLayout::collapsed);
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(FinderFeatureSettingsTest, FurtherKeysAreIgnored) {
    const FinderMenuSettings expected = settings({});
    EXPECT_EQ(settings({{"MenuLayout", "expanded"}, {"version", std::int64_t{2}}}), expected);
    EXPECT_EQ(findings(), found({{Finding::unknownKey, "MenuLayout", "MenuLayout", ""},
                                 {Finding::unknownKey, "version", "version", ""}}));
}

TEST_F(FinderFeatureSettingsTest, FileWithOnlyTheGroupingEqualsNoFile) {
    const FinderMenuSettings expected = settingsOfFile();
    EXPECT_EQ(settings({{"groupsFeaturesUnderQuorva", true}}), expected);
}

TEST_F(FinderFeatureSettingsTest, GroupingIsABooleanAndNothingElse) {
    EXPECT_TRUE(settings({{"groupsFeaturesUnderQuorva", true}}).groupsFeaturesUnderQuorva);
    EXPECT_FALSE(settings({{"groupsFeaturesUnderQuorva", false}}).groupsFeaturesUnderQuorva);
    EXPECT_THAT(findings(), IsEmpty());
    const std::pair<PropertyList, const char*> rows[] = {{std::int64_t{1}, "integer"},
                                                         {1.0, "real"},
                                                         {"true", "string"},
                                                         {"YES", "string"},
                                                         {PropertyList::Array{}, "array"},
                                                         {PropertyList::Dictionary{}, "dictionary"},
                                                         {PropertyList::Date{1}, "date"},
                                                         {dataWithText("1"), "data"}};
    for (const auto& [value, type] : rows) {
        EXPECT_FALSE(settings({{"groupsFeaturesUnderQuorva", value}}).groupsFeaturesUnderQuorva);
        EXPECT_EQ(findings(),
                  found({{Finding::wrongType, "groupsFeaturesUnderQuorva", type, "boolean"}}));
    }
}

TEST_F(FinderFeatureSettingsTest, LayoutIsMatchedToTheLetter) {
    EXPECT_EQ(settings({{"menuLayout", "expanded"}}).menuLayout, FinderMenuLayout::expanded);
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_EQ(settings({{"menuLayout", "collapsed"}}).menuLayout, FinderMenuLayout::collapsed);
    EXPECT_THAT(findings(), IsEmpty());
    for (const char* const value : {"Expanded", "expanded ", ""}) {
        EXPECT_EQ(settings({{"menuLayout", value}}).menuLayout, FinderMenuLayout::collapsed);
        EXPECT_EQ(findings(), found({{Finding::unknownLayout, "menuLayout", value, ""}}));
    }
    const std::pair<PropertyList, const char*> rows[] = {
        {true, "boolean"}, {std::int64_t{1}, "integer"}, {strings({"expanded"}), "array"}};
    for (const auto& [value, type] : rows) {
        EXPECT_EQ(settings({{"menuLayout", value}}).menuLayout, FinderMenuLayout::collapsed);
        EXPECT_EQ(findings(), found({{Finding::wrongType, "menuLayout", type, "string"}}));
    }
}

// Features.

TEST_F(FinderFeatureSettingsTest, EnabledFeaturesWithoutSavedOrderAreExactlyThose) {
    EXPECT_THAT(settings({{"enabledFeatureIDs", strings({"pdfTools"})}}).features,
                ElementsAre(FinderFeature::pdfTools));
    EXPECT_THAT(settings({{"enabledFeatureIDs", strings({"developerTools", "pdfTools"})}}).features,
                ElementsAre(FinderFeature::pdfTools, FinderFeature::developerTools));
    EXPECT_EQ(findings(),
              found({{Finding::featureWithoutCommands, "enabledChildIDs", "developerTools", ""}}));
}

TEST_F(FinderFeatureSettingsTest, NoEnabledFeaturesAndNoOrderShowsNone) {
    EXPECT_THAT(settings({{"enabledFeatureIDs", PropertyList::Array{}}}).features, IsEmpty());
    EXPECT_THAT(settings({{"enabledFeatureIDs", PropertyList::Array{}},
                          {"featureOrder", PropertyList::Array{}}})
                    .features,
                IsEmpty());
}

TEST_F(FinderFeatureSettingsTest, SavedOrderPutsItsFeaturesFirst) {
    EXPECT_EQ(
        settings({{"enabledFeatureIDs", everyFeatureID()},
                  {"featureOrder", strings({"developerTools", "pdfTools", "createFile"})}})
            .features,
        (Features{FinderFeature::developerTools, FinderFeature::pdfTools, FinderFeature::createFile,
                  FinderFeature::quickOpen, FinderFeature::organizeFile, FinderFeature::copyFile,
                  FinderFeature::batchRename, FinderFeature::archiveTools,
                  FinderFeature::scheduledDeletion, FinderFeature::imageTools,
                  FinderFeature::copyPath, FinderFeature::openWith, FinderFeature::viewOptions,
                  FinderFeature::customActions}));
    EXPECT_EQ(findings(),
              found({{Finding::appendedFeature, "featureOrder", "quickOpen", ""},
                     {Finding::appendedFeature, "featureOrder", "organizeFile", ""},
                     {Finding::appendedFeature, "featureOrder", "copyFile", ""},
                     {Finding::appendedFeature, "featureOrder", "batchRename", ""},
                     {Finding::appendedFeature, "featureOrder", "archiveTools", ""},
                     {Finding::appendedFeature, "featureOrder", "scheduledDeletion", ""},
                     {Finding::appendedFeature, "featureOrder", "imageTools", ""},
                     {Finding::appendedFeature, "featureOrder", "copyPath", ""},
                     {Finding::appendedFeature, "featureOrder", "openWith", ""},
                     {Finding::appendedFeature, "featureOrder", "viewOptions", ""},
                     {Finding::appendedFeature, "featureOrder", "customActions", ""},
                     {Finding::featureWithoutCommands, "enabledChildIDs", "developerTools", ""}}));
}

TEST_F(FinderFeatureSettingsTest, DuplicatesAndUnknownFeaturesLeaveTheOrder) {
    Features expected = {FinderFeature::pdfTools};
    std::ranges::remove_copy(defaultOrder, std::back_inserter(expected), FinderFeature::pdfTools);
    EXPECT_EQ(settings({{"enabledFeatureIDs", everyFeatureID()},
                        {"featureOrder", strings({"pdfTools", "pdfTools", "noFeature"})}})
                  .features,
              expected);
    ASSERT_GT(findings().size(), 2U);
    EXPECT_EQ(SettingsFindings(findings().begin(), findings().begin() + 2),
              found({{Finding::repeatedFeature, "featureOrder[1]", "pdfTools", ""},
                     {Finding::unknownFeature, "featureOrder[2]", "noFeature", ""}}));
}

TEST_F(FinderFeatureSettingsTest, DuplicateFeatureStaysAtItsFirstPlace) {
    EXPECT_THAT(
        settings({{"enabledFeatureIDs", strings({"pdfTools", "copyPath"})},
                  {"featureOrder", strings({"copyPath", "pdfTools", "copyPath", "quickOpen",
                                            "createFile", "organizeFile", "copyFile", "batchRename",
                                            "archiveTools", "scheduledDeletion", "imageTools",
                                            "openWith", "viewOptions", "customActions"})}})
            .features,
        ElementsAre(FinderFeature::copyPath, FinderFeature::pdfTools));
    EXPECT_EQ(findings(),
              found({{Finding::repeatedFeature, "featureOrder[2]", "copyPath", ""},
                     {Finding::appendedFeature, "featureOrder", "developerTools", ""}}));
}

TEST_F(FinderFeatureSettingsTest, DefaultFeatureThatTheSavedOrderDoesNotKnowIsSwitchedOn) {
    // An older version knew three features and neither "pdfTools" nor "developerTools".
    const Features features =
        settings({{"enabledFeatureIDs", strings({"copyPath"})},
                  {"featureOrder", strings({"copyPath", "createFile", "quickOpen"})}})
            .features;
    EXPECT_EQ(features.front(), FinderFeature::copyPath);
    EXPECT_THAT(features, Contains(FinderFeature::pdfTools));
    EXPECT_THAT(features, Not(Contains(FinderFeature::createFile)));
    EXPECT_THAT(features, Not(Contains(FinderFeature::quickOpen)));
    EXPECT_THAT(features, Not(Contains(FinderFeature::developerTools)));
    EXPECT_EQ(features.size(), 11U);
    const auto isNew = [](const SettingsFinding& finding) {
        return finding.kind == Finding::newFeature;
    };
    SettingsFindings added;
    std::ranges::copy_if(findings(), std::back_inserter(added), isNew);
    EXPECT_EQ(added, found({{Finding::newFeature, "enabledFeatureIDs", "archiveTools", ""},
                            {Finding::newFeature, "enabledFeatureIDs", "batchRename", ""},
                            {Finding::newFeature, "enabledFeatureIDs", "copyFile", ""},
                            {Finding::newFeature, "enabledFeatureIDs", "customActions", ""},
                            {Finding::newFeature, "enabledFeatureIDs", "imageTools", ""},
                            {Finding::newFeature, "enabledFeatureIDs", "openWith", ""},
                            {Finding::newFeature, "enabledFeatureIDs", "organizeFile", ""},
                            {Finding::newFeature, "enabledFeatureIDs", "pdfTools", ""},
                            {Finding::newFeature, "enabledFeatureIDs", "scheduledDeletion", ""},
                            {Finding::newFeature, "enabledFeatureIDs", "viewOptions", ""}}));
}

TEST_F(FinderFeatureSettingsTest, EnabledFeatureThatTheSavedOrderDoesNotKnowIsNotNew) {
    (void)settings(
        {{"enabledFeatureIDs", everyFeatureID()}, {"featureOrder", strings({"developerTools"})}});
    ASSERT_FALSE(findings().empty());
    for (const SettingsFinding& finding : findings()) {
        EXPECT_NE(finding.kind, Finding::newFeature);
    }
}

TEST_F(FinderFeatureSettingsTest, SavedOrderOfUnknownIDsSwitchesEveryDefaultFeatureOn) {
    EXPECT_EQ(settings({{"enabledFeatureIDs", PropertyList::Array{}},
                        {"featureOrder", strings({"noFeature"})}})
                  .features,
              defaultFeatures);
}

TEST_F(FinderFeatureSettingsTest, UnknownEnabledFeaturesAreDropped) {
    EXPECT_THAT(
        settings({{"enabledFeatureIDs", strings({"noFeature", "PDFTools", "copyFullPath", ""})}})
            .features,
        IsEmpty());
    EXPECT_EQ(findings(),
              found({{Finding::unknownFeature, "enabledFeatureIDs[0]", "noFeature", ""},
                     {Finding::unknownFeature, "enabledFeatureIDs[1]", "PDFTools", ""},
                     {Finding::unknownFeature, "enabledFeatureIDs[2]", "copyFullPath", ""},
                     {Finding::unknownFeature, "enabledFeatureIDs[3]", "", ""}}));
}

TEST_F(FinderFeatureSettingsTest, WithoutEnabledFeaturesTheSavedOrderIsNotConsulted) {
    EXPECT_EQ(settings({{"featureOrder", strings({"developerTools", "pdfTools"})}}).features,
              defaultFeatures);
    EXPECT_EQ(findings(), found({{Finding::ignoredFeatureOrder, "featureOrder", "", ""}}));
}

TEST_F(FinderFeatureSettingsTest, EnabledFeaturesOfTheWrongTypeCountAsAbsent) {
    const WrongIDs rows[] = {{"pdfTools", "", "string", "array"},
                             {true, "", "boolean", "array"},
                             {PropertyList::Dictionary{}, "", "dictionary", "array"},
                             {list({"pdfTools", true}), "[1]", "boolean", "string"},
                             {list({std::int64_t{1}}), "[0]", "integer", "string"},
                             {list({strings({"pdfTools"})}), "[0]", "array", "string"}};
    for (const auto& [value, path, type, wanted] : rows) {
        EXPECT_EQ(
            settings({{"enabledFeatureIDs", value}, {"featureOrder", strings({"developerTools"})}})
                .features,
            defaultFeatures);
        EXPECT_EQ(
            findings(),
            found({{Finding::wrongType, std::string("enabledFeatureIDs") + path, type, wanted},
                   {Finding::ignoredFeatureOrder, "featureOrder", "", ""}}));
    }
}

TEST_F(FinderFeatureSettingsTest, FeatureOrderOfTheWrongTypeCountsAsAbsent) {
    const WrongIDs rows[] = {{"pdfTools", "", "string", "array"},
                             {true, "", "boolean", "array"},
                             {PropertyList::Dictionary{}, "", "dictionary", "array"},
                             {list({"copyPath", std::int64_t{1}}), "[1]", "integer", "string"}};
    for (const auto& [value, path, type, wanted] : rows) {
        EXPECT_THAT(settings({{"enabledFeatureIDs", strings({"copyPath", "createFile"})},
                              {"featureOrder", value}})
                        .features,
                    ElementsAre(FinderFeature::createFile, FinderFeature::copyPath));
        EXPECT_EQ(findings(),
                  found({{Finding::wrongType, std::string("featureOrder") + path, type, wanted}}));
    }
}

// The order of the commands.

TEST_F(FinderFeatureSettingsTest, EveryFeatureHasAnOrderAndUnknownKeysAreDropped) {
    const auto orders = settings({{"childOrderByFeatureID",
                                   PropertyList::Dictionary{{"noFeature", strings({"copyMD5"})},
                                                            {"pdfTools", strings({"splitPDFs"})}}}})
                            .childOrderByFeatureID;
    auto expected = catalogueOrders();
    expected["pdfTools"] = {"splitPDFs", "mergePDFs", "imagesToPDF", "compressPDF"};
    EXPECT_EQ(orders, expected);
    const std::string path = "childOrderByFeatureID.";
    EXPECT_EQ(findings(), found({{Finding::appendedCommand, path + "pdfTools", "mergePDFs", ""},
                                 {Finding::appendedCommand, path + "pdfTools", "imagesToPDF", ""},
                                 {Finding::appendedCommand, path + "pdfTools", "compressPDF", ""},
                                 {Finding::unknownFeature, path + "noFeature", "noFeature", ""}}));
}

TEST_F(FinderFeatureSettingsTest, CommandsOfTheSavedOrderComeFirstAndMissingOnesFollow) {
    EXPECT_THAT(normalizedOrder("copyPath", strings({"copyShellPath", "copyFileName"})),
                ElementsAre("copyShellPath", "copyFileName", "copyFullPath", "copyParentPath",
                            "copyMarkdownLink", "copyFileNameList"));
    EXPECT_EQ(normalizedOrder("copyPath", PropertyList::Array{}),
              catalogueOrder(FinderFeature::copyPath));
}

TEST_F(FinderFeatureSettingsTest, CommandSavedTwiceIsKeptTwice) {
    EXPECT_THAT(
        normalizedOrder("archiveTools",
                        strings({"extractZIPHere", "extractZIPHere", "compressToZIP"})),
        ElementsAre("extractZIPHere", "extractZIPHere", "compressToZIP", "extractZIPToFolder"));
    const std::string path = "childOrderByFeatureID.archiveTools";
    EXPECT_EQ(findings(), found({{Finding::repeatedCommand, path + "[1]", "extractZIPHere", ""},
                                 {Finding::appendedCommand, path, "extractZIPToFolder", ""}}));
}

TEST_F(FinderFeatureSettingsTest, CommandsOfOtherFeaturesLeaveTheOrder) {
    EXPECT_THAT(normalizedOrder("archiveTools", strings({"mergePDFs", "extractZIPHere", "",
                                                         "ExtractZIPHere", "copyFilesToFolder"})),
                ElementsAre("extractZIPHere", "compressToZIP", "extractZIPToFolder"));
    const std::string path = "childOrderByFeatureID.";
    EXPECT_EQ(findings(),
              found({{Finding::unknownCommand, path + "archiveTools[0]", "mergePDFs", ""},
                     {Finding::unknownCommand, path + "archiveTools[2]", "", ""},
                     {Finding::unknownCommand, path + "archiveTools[3]", "ExtractZIPHere", ""},
                     {Finding::unknownCommand, path + "archiveTools[4]", "copyFilesToFolder", ""},
                     {Finding::appendedCommand, path + "archiveTools", "compressToZIP", ""},
                     {Finding::appendedCommand, path + "archiveTools", "extractZIPToFolder", ""}}));
    EXPECT_THAT(normalizedOrder("customActions", strings({"mergePDFs"})), IsEmpty());
    EXPECT_EQ(findings(),
              found({{Finding::unknownCommand, path + "customActions[0]", "mergePDFs", ""}}));
}

TEST_F(FinderFeatureSettingsTest, ScheduledDeletionWithoutTheHourIsOfAnOlderVersion) {
    const Order catalogue = {"scheduleDelete1Hour", "scheduleDelete7Days", "scheduleDelete30Days",
                             "scheduleDelete90Days"};
    EXPECT_EQ(normalizedOrder(
                  "scheduledDeletion",
                  strings({"scheduleDelete7Days", "scheduleDelete30Days", "scheduleDelete90Days"})),
              catalogue);
    EXPECT_EQ(findings(), replacedDeletionOrder());
    EXPECT_EQ(normalizedOrder("scheduledDeletion", strings({"scheduleDelete90Days"})), catalogue);
    EXPECT_EQ(findings(), replacedDeletionOrder());
    EXPECT_EQ(normalizedOrder("scheduledDeletion", PropertyList::Array{}), catalogue);
}

TEST_F(FinderFeatureSettingsTest, ScheduledDeletionWithTheHourLastIsOfAnOlderVersion) {
    EXPECT_THAT(normalizedOrder("scheduledDeletion",
                                strings({"scheduleDelete7Days", "scheduleDelete30Days",
                                         "scheduleDelete90Days", "scheduleDelete1Hour"})),
                ElementsAre("scheduleDelete1Hour", "scheduleDelete7Days", "scheduleDelete30Days",
                            "scheduleDelete90Days"));
    EXPECT_EQ(findings(), replacedDeletionOrder());
}

TEST_F(FinderFeatureSettingsTest, ScheduledDeletionInAnyOtherOrderIsTheUsers) {
    EXPECT_THAT(normalizedOrder("scheduledDeletion",
                                strings({"scheduleDelete30Days", "scheduleDelete1Hour"})),
                ElementsAre("scheduleDelete30Days", "scheduleDelete1Hour", "scheduleDelete7Days",
                            "scheduleDelete90Days"));
    EXPECT_THAT(normalizedOrder(
                    "scheduledDeletion",
                    strings({"scheduleDelete7Days", "scheduleDelete30Days", "scheduleDelete90Days",
                             "scheduleDelete1Hour", "scheduleDelete1Hour"})),
                ElementsAre("scheduleDelete7Days", "scheduleDelete30Days", "scheduleDelete90Days",
                            "scheduleDelete1Hour", "scheduleDelete1Hour"));
    EXPECT_EQ(findings(),
              found({{Finding::repeatedCommand, "childOrderByFeatureID.scheduledDeletion[4]",
                      "scheduleDelete1Hour", ""}}));
    EXPECT_THAT(normalizedOrder("scheduledDeletion",
                                strings({"scheduleDelete7Days", "scheduleDelete90Days",
                                         "scheduleDelete30Days", "scheduleDelete1Hour"})),
                ElementsAre("scheduleDelete7Days", "scheduleDelete90Days", "scheduleDelete30Days",
                            "scheduleDelete1Hour"));
    EXPECT_THAT(normalizedOrder("scheduledDeletion",
                                strings({"scheduleDelete7Days", "scheduleDelete30Days",
                                         "scheduleDelete90Days", "scheduleDelete1Hour", "x"})),
                ElementsAre("scheduleDelete7Days", "scheduleDelete30Days", "scheduleDelete90Days",
                            "scheduleDelete1Hour"));
}

TEST_F(FinderFeatureSettingsTest, ChildOrdersOfTheWrongTypeCountAsAbsent) {
    const WrongIDs rows[] = {
        {"pdfTools", "", "string", "dictionary"},
        {true, "", "boolean", "dictionary"},
        {strings({"splitPDFs"}), "", "array", "dictionary"},
        {PropertyList::Dictionary{{"pdfTools", strings({"splitPDFs"})}, {"x", "y"}}, ".x", "string",
         "array"},
        {PropertyList::Dictionary{{"pdfTools", list({"splitPDFs", std::int64_t{1}})}},
         ".pdfTools[1]", "integer", "string"}};
    for (const auto& [value, path, type, wanted] : rows) {
        EXPECT_EQ(settings({{"childOrderByFeatureID", value}}).childOrderByFeatureID,
                  catalogueOrders());
        EXPECT_EQ(findings(), found({{Finding::wrongType,
                                      std::string("childOrderByFeatureID") + path, type, wanted}}));
    }
}

// The enabled commands.

TEST_F(FinderFeatureSettingsTest, WithoutSavedListTheDefaultSetIsUsedAsItStands) {
    const IDs ids = settings({{"enabledFeatureIDs", strings({"pdfTools"})}}).enabledChildIDs;
    EXPECT_EQ(ids, defaultEnabledIDs);
    EXPECT_EQ(settings({{"childOrderByFeatureID",
                         PropertyList::Dictionary{{"copyPath", strings({"copyFullPath"})}}}})
                  .enabledChildIDs,
              defaultEnabledIDs);
}

TEST_F(FinderFeatureSettingsTest, EmptySavedListBringsBackEveryDefaultThatNoOrderKnows) {
    const IDs ids = settings({{"enabledChildIDs", PropertyList::Array{}}}).enabledChildIDs;
    EXPECT_EQ(ids, enabledCatalogueIDs());
    EXPECT_EQ(ids.size(), 56U);
    std::vector<FindingRow> added;
    for (const std::string& id : ids) {
        added.push_back({Finding::newCommand, "enabledChildIDs", id, ""});
    }
    EXPECT_EQ(findings(), found(added));
}

TEST_F(FinderFeatureSettingsTest, CommandThatASavedOrderKnowsStaysOff) {
    const IDs ids =
        settings({{"enabledChildIDs", strings({"copyShellPath"})},
                  {"childOrderByFeatureID",
                   PropertyList::Dictionary{
                       {"copyPath", strings({"copyFullPath", "copyFileName", "copyShellPath"})}}}})
            .enabledChildIDs;
    IDs expected = enabledCatalogueIDs();
    expected.erase("copyFullPath");
    expected.erase("copyFileName");
    EXPECT_EQ(ids, expected);
}

TEST_F(FinderFeatureSettingsTest, OrderUnderAnyKeyMakesItsCommandsKnown) {
    // The orders as read count, also one for a feature that does not exist.
    const IDs ids =
        settings(
            {{"enabledChildIDs", PropertyList::Array{}},
             {"childOrderByFeatureID",
              PropertyList::Dictionary{{"noFeature", strings({"copyFullPath", "mergePDFs"})}}}})
            .enabledChildIDs;
    IDs expected = enabledCatalogueIDs();
    expected.erase("copyFullPath");
    expected.erase("mergePDFs");
    EXPECT_EQ(ids, expected);
}

TEST_F(FinderFeatureSettingsTest, SavedListKeepsCatalogueCommandsOnly) {
    const IDs ids =
        settings({{"enabledChildIDs", strings({"copyMD5", "copyFilesToFolder", "moveFilesToFolder",
                                               "noCommand", "copyMD5", ""})}})
            .enabledChildIDs;
    IDs expected = enabledCatalogueIDs();
    expected.insert("copyMD5");
    EXPECT_EQ(ids, expected);
    ASSERT_GT(findings().size(), 2U);
    EXPECT_EQ(SettingsFindings(findings().begin(), findings().begin() + 2),
              found({{Finding::unknownCommand, "enabledChildIDs[3]", "noCommand", ""},
                     {Finding::unknownCommand, "enabledChildIDs[5]", "", ""}}));
    for (const SettingsFinding& finding : findings()) {
        EXPECT_NE(finding.value, "copyMD5") << "it is enabled, and so not new";
    }
}

TEST_F(FinderFeatureSettingsTest, EnabledCommandsOfTheWrongTypeCountAsAbsent) {
    const WrongIDs rows[] = {{"copyMD5", "", "string", "array"},
                             {true, "", "boolean", "array"},
                             {PropertyList::Dictionary{}, "", "dictionary", "array"},
                             {list({"copyMD5", std::int64_t{1}}), "[1]", "integer", "string"}};
    for (const auto& [value, path, type, wanted] : rows) {
        EXPECT_EQ(settings({{"enabledChildIDs", value}}).enabledChildIDs, defaultEnabledIDs);
        EXPECT_EQ(
            findings(),
            found({{Finding::wrongType, std::string("enabledChildIDs") + path, type, wanted}}));
    }
}

TEST_F(FinderFeatureSettingsTest, VisibleFeatureWithoutEnabledCommandGetsAllOfThem) {
    const FinderMenuSettings value = settings(
        {{"enabledFeatureIDs", strings({"pdfTools", "copyPath"})},
         {"enabledChildIDs", strings({"copyShellPath"})},
         {"childOrderByFeatureID",
          PropertyList::Dictionary{
              {"pdfTools", strings({"compressPDF", "mergePDFs", "splitPDFs", "imagesToPDF"})},
              {"copyPath", strings({"copyFullPath", "copyFileName", "copyParentPath",
                                    "copyShellPath", "copyMarkdownLink", "copyFileNameList"})},
              {"archiveTools",
               strings({"compressToZIP", "extractZIPHere", "extractZIPToFolder"})}}}});
    EXPECT_THAT(value.enabledChildIDs,
                IsSupersetOf({"mergePDFs", "splitPDFs", "imagesToPDF", "compressPDF"}));
    EXPECT_EQ(value.children(FinderFeature::copyPath).size(), 1U);
    ASSERT_EQ(value.children(FinderFeature::pdfTools).size(), 4U);
    EXPECT_EQ(value.children(FinderFeature::pdfTools).front().actionID, "compressPDF");
    // "archiveTools" is not visible, so nothing of it is switched on.
    EXPECT_THAT(value.enabledChildIDs, Not(Contains("compressToZIP")));
}

TEST_F(FinderFeatureSettingsTest, VisibleDeveloperToolsGetAllTheirCommandsByDefault) {
    const FinderMenuSettings value = settings({{"enabledFeatureIDs", strings({"developerTools"})}});
    EXPECT_THAT(value.enabledChildIDs,
                IsSupersetOf({"copySHA256", "copyMD5", "copyFileSize", "toggleHiddenFiles"}));
    EXPECT_EQ(value.enabledChildIDs.size(), 62U);
}

TEST_F(FinderFeatureSettingsTest, WithoutVisibleFeaturesTheEnabledCommandsStayAsTheyAre) {
    const IDs ids =
        settings(
            {{"enabledFeatureIDs", PropertyList::Array{}},
             {"enabledChildIDs", PropertyList::Array{}},
             {"childOrderByFeatureID",
              PropertyList::Dictionary{{"pdfTools", strings({"mergePDFs", "splitPDFs",
                                                             "imagesToPDF", "compressPDF"})}}}})
            .enabledChildIDs;
    EXPECT_EQ(ids.size(), 52U);
    EXPECT_THAT(ids, Not(Contains("mergePDFs")));
}

TEST_F(FinderFeatureSettingsTest, VisibleCustomActionsHaveNothingToSwitchOn) {
    const FinderMenuSettings value = settings({{"enabledFeatureIDs", strings({"customActions"})}});
    EXPECT_THAT(value.features, ElementsAre(FinderFeature::customActions));
    EXPECT_EQ(value.enabledChildIDs, defaultEnabledIDs);
    EXPECT_THAT(value.children(FinderFeature::customActions), IsEmpty());
    EXPECT_THAT(findings(), IsEmpty());
}

// What the menu is asked to show.

std::vector<std::string> actionIDs(const std::vector<FinderFeatureChild>& children) {
    std::vector<std::string> ids;
    for (const FinderFeatureChild& child : children) {
        ids.push_back(child.actionID);
    }
    return ids;
}

class FinderMenuSettingsTest : public UnitTest {
 protected:
    FinderMenuSettings settings_ = {
        .features = {FinderFeature::archiveTools},
        .enabledChildIDs = {"compressToZIP", "extractZIPToFolder", "mergePDFs", "noCommand"},
        .childOrderByFeatureID = {},
        .groupsFeaturesUnderQuorva = false,
        .menuLayout = FinderMenuLayout::collapsed,
    };
};

TEST_F(FinderMenuSettingsTest, SettingsAreComparedByEveryField) {
    std::vector<FinderMenuSettings> others(5, settings_);
    others.at(0).features.clear();
    others.at(1).enabledChildIDs.clear();
    others.at(2).childOrderByFeatureID["pdfTools"] = {};
    others.at(3).groupsFeaturesUnderQuorva = true;
    others.at(4).menuLayout = FinderMenuLayout::expanded;
    expectEveryFieldCounts(settings_,
                           {others.at(0), others.at(1), others.at(2), others.at(3), others.at(4)});
}

TEST_F(FinderMenuSettingsTest, ChildrenAreTheEnabledOnesInTheUsersOrder) {
    settings_.childOrderByFeatureID["archiveTools"] = {"extractZIPToFolder", "extractZIPHere",
                                                       "compressToZIP"};
    const std::vector<FinderFeatureChild> children =
        settings_.children(FinderFeature::archiveTools);
    EXPECT_THAT(actionIDs(children), ElementsAre("extractZIPToFolder", "compressToZIP"));
    EXPECT_EQ(children.front(), (FinderFeatureChild{"解压到同名文件夹", "extractZIPToFolder",
                                                    FinderFeatureAction::requiresSelection()}));
}

TEST_F(FinderMenuSettingsTest, WithoutOrderTheChildrenAreInCatalogueOrder) {
    EXPECT_THAT(actionIDs(settings_.children(FinderFeature::archiveTools)),
                ElementsAre("compressToZIP", "extractZIPToFolder"));
}

TEST_F(FinderMenuSettingsTest, ChildThatTheOrderNamesTwiceIsThereTwice) {
    settings_.childOrderByFeatureID["archiveTools"] = {"compressToZIP", "extractZIPToFolder",
                                                       "compressToZIP"};
    EXPECT_THAT(actionIDs(settings_.children(FinderFeature::archiveTools)),
                ElementsAre("compressToZIP", "extractZIPToFolder", "compressToZIP"));
}

TEST_F(FinderMenuSettingsTest, EnabledIDsOfOtherFeaturesAndUnknownOnesAreSkipped) {
    settings_.childOrderByFeatureID["archiveTools"] = {"mergePDFs", "noCommand", "compressToZIP"};
    EXPECT_THAT(actionIDs(settings_.children(FinderFeature::archiveTools)),
                ElementsAre("compressToZIP"));
}

TEST_F(FinderMenuSettingsTest, ChildThatTheOrderLacksIsNotShown) {
    settings_.childOrderByFeatureID["archiveTools"] = {};
    EXPECT_THAT(settings_.children(FinderFeature::archiveTools), IsEmpty());
}

TEST_F(FinderMenuSettingsTest, FeatureWhoseChildrenAreAllDisabledHasNone) {
    EXPECT_THAT(settings_.children(FinderFeature::imageTools), IsEmpty());
}

TEST_F(FinderMenuSettingsTest, CustomActionsNeverHaveChildren) {
    settings_.childOrderByFeatureID["customActions"] = {"compressToZIP", "mergePDFs"};
    EXPECT_THAT(settings_.children(FinderFeature::customActions), IsEmpty());
}

TEST_F(FinderMenuSettingsTest, ChildrenCarryLocalisedTitles) {
    platform().translations["压缩为 ZIP"] = "Compress to ZIP";
    EXPECT_EQ(settings_.children(FinderFeature::archiveTools).front().title, "Compress to ZIP");
}

// Whatever a file holds.

/// Random settings: right and wrong identifiers, absent keys, and now and then a wrong type.
class SettingsGenerator {
 public:
    explicit SettingsGenerator(unsigned seed) : random_(seed) {
        for (const FinderFeature feature : allFinderFeatures) {
            featureIDs_.emplace_back(rawValue(feature));
            for (const std::string_view id : childIDs(feature)) {
                childIDs_.emplace_back(id);
            }
        }
        featureIDs_.emplace_back("noFeature");
        childIDs_.insert(childIDs_.end(), {"copyFilesToFolder", "noCommand", ""});
    }

    PropertyList::Dictionary root() {
        PropertyList::Dictionary root;
        put(root, "enabledFeatureIDs", ids(featureIDs_, 16));
        put(root, "featureOrder", ids(featureIDs_, 20));
        put(root, "enabledChildIDs", ids(childIDs_, 80));
        PropertyList::Dictionary orders;
        for (const std::string& feature : featureIDs_) {
            put(orders, feature.c_str(), ids(childIDs_, 80));
        }
        put(root, "childOrderByFeatureID", orders);
        put(root, "groupsFeaturesUnderQuorva", chance(2));
        put(root, "menuLayout", chance(2) ? "expanded" : "collapsed");
        return root;
    }

 private:
    bool chance(unsigned oneIn) { return random_() % oneIn == 0; }

    void put(PropertyList::Dictionary& dictionary, const char* key, PropertyList value) {
        if (chance(4)) {
            return;
        }
        dictionary.insert_or_assign(key,
                                    chance(20) ? PropertyList(std::int64_t{7}) : std::move(value));
    }

    PropertyList ids(const std::vector<std::string>& pool, std::size_t limit) {
        PropertyList::Array array;
        for (std::size_t count = random_() % (limit + 1); count > 0; --count) {
            array.emplace_back(pool.at(random_() % pool.size()));
        }
        return array;
    }

    std::mt19937 random_;
    std::vector<std::string> featureIDs_;
    std::vector<std::string> childIDs_;
};

TEST_F(FinderFeatureSettingsTest, SettingsAreConsistentWhateverTheFileHolds) {
    const IDs known = [] {
        IDs ids;
        for (const FinderFeature feature : allFinderFeatures) {
            const Order order = catalogueOrder(feature);
            ids.insert(order.begin(), order.end());
        }
        return ids;
    }();
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        const PropertyList::Dictionary root = SettingsGenerator(seed).root();
        const FinderMenuSettings value = settings(root);

        const std::set<FinderFeature> features(value.features.begin(), value.features.end());
        ASSERT_EQ(features.size(), value.features.size()) << "a feature is shown twice";

        ASSERT_EQ(value.childOrderByFeatureID.size(), allFinderFeatures.size());
        for (const FinderFeature feature : allFinderFeatures) {
            const Order& order = value.childOrderByFeatureID.at(std::string(rawValue(feature)));
            const Order catalogue = catalogueOrder(feature);
            ASSERT_EQ(std::set(order.begin(), order.end()),
                      std::set(catalogue.begin(), catalogue.end()))
                << "an order lacks a command or holds a foreign one";
            const bool visible = features.contains(feature);
            if (visible && !catalogue.empty()) {
                ASSERT_THAT(value.children(feature), Not(IsEmpty()))
                    << "a visible feature shows nothing";
            }
        }

        const auto saved = root.find("enabledChildIDs");
        const bool hasSavedList = saved != root.end() && saved->second.array() != nullptr;
        IDs foreign;
        std::ranges::set_difference(value.enabledChildIDs, known,
                                    std::inserter(foreign, foreign.end()));
        ASSERT_EQ(foreign, hasSavedList ? IDs{} : IDs({"copyFilesToFolder", "moveFilesToFolder"}));
        if (hasSavedList) {
            for (const PropertyList& id : *saved->second.array()) {
                ASSERT_EQ(value.enabledChildIDs.contains(*id.string()),
                          known.contains(*id.string()))
                    << "a command that was switched on is off";
            }
        }
        ASSERT_EQ(settings(root), value) << "the same file gives other settings";
    }
}

}  // namespace
}  // namespace quorva
