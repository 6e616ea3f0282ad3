#include "QuorvaFinderExtension/MenuItemResolution.hpp"

#include <cstdint>
#include <limits>

#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;

using Action = FinderFeatureAction;
using ContextPointer = FinderActionContextPointer;

// Each resolution of a test is a click of its own, so it reads the settings anew.

ContextPointer actionContext(const MenuItem& item) {
    return quorva::actionContext(item, SettingsReading());
}

ContextPointer actionContextFromMenuIdentifier(const std::optional<std::string>& identifier) {
    return quorva::actionContextFromMenuIdentifier(identifier, SettingsReading());
}

ContextPointer actionContextFromMenuTag(std::int64_t tag) {
    return quorva::actionContextFromMenuTag(tag, SettingsReading());
}

ContextPointer actionContextFromMenuTitle(const std::string& title) {
    return quorva::actionContextFromMenuTitle(title, SettingsReading());
}

ContextPointer customActionContext(std::string_view actionID) {
    return quorva::customActionContext(actionID, SettingsReading());
}

class MenuItemResolutionTest : public UnitTest {
 protected:
    MenuItemResolutionTest() {
        platform().putDirectory("/System/Applications/Preview.app");
        platform().putPropertyList(
            customDestinationsPath,
            PropertyList::Dictionary{
                {"copy", list({destination("c", "项目", "/c")})},
                {"openApplication",
                 list({destination("x", "应用", "/x.app"), destination("x", "后", "/y.app"),
                       destination("", "空", "/empty.app")})}});
        platform().putPropertyList(customShortcutActionsPath,
                                   list({shortcut("s", "快捷", "S"), script("p", "脚本", "/p.sh"),
                                         script("s", "同号", "/s.sh"), shortcut("", "空号", "S")}));
        platform().putPropertyList(viewPresetsPath,
                                   list({preset("v", "列表 · 名称 2"), preset("w", "图标"),
                                         preset("v", "后来"), preset("", "无号")}));
    }

    static FinderActionContext rebuilt(const std::string& actionID, const std::string& title,
                                       FinderFeatureAction action,
                                       const std::string& destinationPath = "",
                                       const std::string& presetID = "") {
        return {actionID, title, action, {}, std::nullopt, destinationPath, presetID};
    }

    static void expectContext(const ContextPointer& actual, const FinderActionContext& expected) {
        ASSERT_THAT(actual, NotNull());
        EXPECT_EQ(*actual, expected);
    }

    static std::vector<std::string> log() { return messages(); }

    static MenuItem itemWith(RepresentedObject object) {
        MenuItem item;
        item.title = "复制完整路径";
        item.identifier = "finderViewPreset__v";
        item.tag = 700000;
        item.representedObject = std::move(object);
        return item;
    }
};

// The attached object.

TEST_F(MenuItemResolutionTest, AttachedContextIsTheResultItself) {
    const auto context = std::make_shared<const FinderActionContext>(
        "any", "thing", Action::openFolder(), std::vector<FileURL>{FileURL::file("/a")},
        FileURL::directory("/t"), "/d", "p");
    EXPECT_EQ(actionContext(itemWith(context)), context);
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MenuItemResolutionTest, MalformedDictionaryEndsTheResolution) {
    const PropertyList::Dictionary dictionaries[] = {
        {},
        {{"title", "t"}, {"selectedPaths", strings({"/a"})}},
        {{"actionID", std::int64_t{1}}},
        {{"actionID", true}},
        {{"actionID", strings({"copyFullPath"})}},
        {{"ActionID", "copyFullPath"}},
    };
    for (const PropertyList::Dictionary& dictionary : dictionaries) {
        EXPECT_THAT(actionContext(itemWith(dictionary)), IsNull());
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MenuItemResolutionTest, DictionaryWithOnlyAnActionIDIsEnough) {
    expectContext(actionContext(itemWith(PropertyList::Dictionary{{"actionID", "mergePDFs"}})),
                  rebuilt("mergePDFs", "复制完整路径", Action::requiresSelection()));
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MenuItemResolutionTest, CompleteDictionaryFillsEveryField) {
    expectContext(
        actionContext(itemWith(PropertyList::Dictionary{{"actionID", "openWithApplicationPath"},
                                                        {"title", "t"},
                                                        {"selectedPaths", strings({"/b c", "/a/"})},
                                                        {"targetedPath", "/Users/ada"},
                                                        {"destinationPath", "/x.app"},
                                                        {"presetID", "p"},
                                                        {"further", std::int64_t{1}}})),
        FinderActionContext("openWithApplicationPath", "t", Action::openWithApplicationPath(),
                            std::vector<FileURL>{FileURL::file("/b c"), FileURL::file("/a/")},
                            FileURL::file("/Users/ada"), "/x.app", "p"));
}

TEST_F(MenuItemResolutionTest, FieldsOfTheWrongTypeCountAsMissing) {
    for (const PropertyList& wrong :
         list({std::int64_t{1}, true, PropertyList::Dictionary{}, strings({"x"})})) {
        expectContext(actionContext(itemWith(PropertyList::Dictionary{{"actionID", "mergePDFs"},
                                                                      {"title", wrong},
                                                                      {"targetedPath", wrong},
                                                                      {"destinationPath", wrong},
                                                                      {"presetID", wrong}})),
                      rebuilt("mergePDFs", "复制完整路径", Action::requiresSelection()));
    }
}

TEST_F(MenuItemResolutionTest, SelectedPathsThatAreNotAllTextsGiveAnEmptySelection) {
    for (const PropertyList& wrong :
         list({"/a", true, PropertyList::Dictionary{}, PropertyList::Array{},
               list({"/a", std::int64_t{1}}), list({strings({"/a"})})})) {
        expectContext(actionContext(itemWith(PropertyList::Dictionary{{"actionID", "mergePDFs"},
                                                                      {"selectedPaths", wrong}})),
                      rebuilt("mergePDFs", "复制完整路径", Action::requiresSelection()));
    }
}

TEST_F(MenuItemResolutionTest, EmptyTitleOfADictionaryIsATitle) {
    EXPECT_EQ(
        actionContext(itemWith(PropertyList::Dictionary{{"actionID", "mergePDFs"}, {"title", ""}}))
            ->title(),
        "");
}

TEST_F(MenuItemResolutionTest, EmptyTargetedPathOfADictionaryIsNoTarget) {
    EXPECT_EQ(actionContext(itemWith(PropertyList::Dictionary{{"actionID", "mergePDFs"},
                                                              {"targetedPath", ""}}))
                  ->targetedURL(),
              std::nullopt);
}

TEST_F(MenuItemResolutionTest, DictionaryOfAnUnknownActionCopiesTheFullPath) {
    for (const char* const id : {"finderViewPreset__v", "finderViewPreset__", "runScript__p",
                                 "quickOpenPath", "copyFilesToFolder", "", "CopyMD5"}) {
        const ContextPointer context =
            actionContext(itemWith(PropertyList::Dictionary{{"actionID", id}}));
        ASSERT_THAT(context, NotNull());
        EXPECT_EQ(context->actionID(), id);
        EXPECT_EQ(context->action(), Action::copyPath(FinderPathCopyFormat::fullPath));
        EXPECT_EQ(context->presetID(), "");
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MenuItemResolutionTest, ForeignObjectIsPassedOver) {
    const ContextPointer context = actionContext(itemWith(ForeignObject{}));
    ASSERT_THAT(context, NotNull());
    EXPECT_EQ(context->actionID(), "finderViewPreset__v");
    EXPECT_THAT(log(), ElementsAre("resolved view preset from identifier=finderViewPreset__v"));
}

// The chain.

struct ChainRow {
    const char* description;
    std::optional<std::string> identifier;
    std::int64_t tag;
    const char* title;
    /// Null when nothing is resolved.
    const char* actionID;
    std::vector<std::string> log;
};

TEST_F(MenuItemResolutionTest, IdentifierTagAndTitleAreTriedInThatOrder) {
    const ChainRow rows[] = {
        {"identifier first",
         "runScript__p",
         700001,
         "复制完整路径",
         "runScript__p",
         {"resolved custom action from identifier=runScript__p"}},
        {"no identifier, then the tag",
         std::nullopt,
         700001,
         "复制完整路径",
         "finderViewPreset__w",
         {"resolved view preset from tag=700001 actionID=finderViewPreset__w"}},
        {"unknown application, then the tag",
         "openWithApplicationPath__none",
         700001,
         "复制完整路径",
         "finderViewPreset__w",
         {"resolved view preset from tag=700001 actionID=finderViewPreset__w"}},
        {"unknown preset, then the title",
         "finderViewPreset__none",
         0,
         "复制完整路径",
         "copyFullPath",
         {}},
        {"unknown action, then the title",
         "runShortcut__none",
         699999,
         "应用",
         "openWithApplicationPath",
         {"resolved open-with app from title=应用 destination=/x.app"}},
        {"tag beyond the presets, then the title",
         std::nullopt,
         700004,
         "脚本",
         "runScript__p",
         {"resolved custom action from title=脚本 actionID=runScript__p"}},
        {"nothing known", "copyFullPath", 7, "no title", nullptr, {}},
        {"nothing at all", std::nullopt, 0, "", nullptr, {}},
    };
    for (const ChainRow& row : rows) {
        SCOPED_TRACE(row.description);
        platform().consoleLines.clear();
        MenuItem item;
        item.identifier = row.identifier;
        item.tag = row.tag;
        item.title = row.title;
        const ContextPointer context = actionContext(item);
        if (row.actionID == nullptr) {
            EXPECT_THAT(context, IsNull());
        } else {
            ASSERT_THAT(context, NotNull());
            EXPECT_EQ(context->actionID(), row.actionID);
        }
        EXPECT_EQ(log(), row.log);
    }
}

// Identifiers.

TEST_F(MenuItemResolutionTest, IdentifierOfAnApplicationGivesItsPath) {
    expectContext(actionContextFromMenuIdentifier("openWithApplicationPath__preview"),
                  rebuilt("openWithApplicationPath", "预览", Action::openWithApplicationPath(),
                          "/System/Applications/Preview.app"));
    expectContext(
        actionContextFromMenuIdentifier("openWithApplicationPath__x"),
        rebuilt("openWithApplicationPath", "应用", Action::openWithApplicationPath(), "/x.app"));
    expectContext(
        actionContextFromMenuIdentifier("openWithApplicationPath__"),
        rebuilt("openWithApplicationPath", "空", Action::openWithApplicationPath(), "/empty.app"));
    EXPECT_THAT(
        log(),
        ElementsAre("resolved open-with app from identifier=openWithApplicationPath__preview "
                    "destination=/System/Applications/Preview.app",
                    "resolved open-with app from identifier=openWithApplicationPath__x "
                    "destination=/x.app",
                    "resolved open-with app from identifier=openWithApplicationPath__ "
                    "destination=/empty.app"));
}

TEST_F(MenuItemResolutionTest, IdentifierOfACustomActionIsItsActionID) {
    expectContext(actionContextFromMenuIdentifier("runScript__p"),
                  rebuilt("runScript__p", "脚本", Action::requiresSelection()));
    expectContext(actionContextFromMenuIdentifier("runShortcut__s"),
                  rebuilt("runShortcut__s", "快捷", Action::requiresSelection()));
    EXPECT_THAT(log(), ElementsAre("resolved custom action from identifier=runScript__p",
                                   "resolved custom action from identifier=runShortcut__s"));
}

TEST_F(MenuItemResolutionTest, PrefixOfACustomActionNeedNotAgreeWithItsKind) {
    expectContext(actionContextFromMenuIdentifier("runShortcut__p"),
                  rebuilt("runShortcut__p", "脚本", Action::requiresSelection()));
    expectContext(actionContextFromMenuIdentifier("runScript__s"),
                  rebuilt("runScript__s", "快捷", Action::requiresSelection()));
    expectContext(actionContextFromMenuIdentifier("runScript__"),
                  rebuilt("runScript__", "空号", Action::requiresSelection()));
}

TEST_F(MenuItemResolutionTest, IdentifierOfAPresetGivesItsIDTwice) {
    expectContext(
        actionContextFromMenuIdentifier("finderViewPreset__v"),
        rebuilt("finderViewPreset__v", "列表 · 名称", Action::finderViewOption(), "", "v"));
    expectContext(actionContextFromMenuIdentifier("finderViewPreset__"),
                  rebuilt("finderViewPreset__", "无号", Action::finderViewOption(), "", ""));
    EXPECT_THAT(log(), ElementsAre("resolved view preset from identifier=finderViewPreset__v",
                                   "resolved view preset from identifier=finderViewPreset__"));
}

TEST_F(MenuItemResolutionTest, OtherIdentifiersResolveToNothing) {
    EXPECT_THAT(actionContextFromMenuIdentifier(std::nullopt), IsNull());
    for (const char* const identifier :
         {"", "copyFullPath", "openWithApplicationPath", "openWithApplicationPath_x",
          "openWithApplicationPath__none", "openWithApplicationPath__x ",
          "openWithApplicationPath__X", "runScript", "runScript_p", "runScript__none",
          "RunScript__p", " runScript__p", "runShortcut__runScript__p", "finderViewPreset",
          "finderViewPreset_v", "finderViewPreset__none", "finderViewPreset__V", "700000"}) {
        EXPECT_THAT(actionContextFromMenuIdentifier(identifier), IsNull()) << identifier;
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MenuItemResolutionTest, IDsMayHoldPrefixesOfTheirOwn) {
    platform().putPropertyList(
        customShortcutActionsPath,
        list({shortcut("finderViewPreset__v", "1", "S"), shortcut("a__b", "2", "S")}));
    platform().putPropertyList(viewPresetsPath, list({preset("runScript__p", "3")}));
    EXPECT_EQ(actionContextFromMenuIdentifier("runShortcut__finderViewPreset__v")->title(), "1");
    EXPECT_EQ(actionContextFromMenuIdentifier("runScript__a__b")->title(), "2");
    EXPECT_EQ(actionContextFromMenuIdentifier("finderViewPreset__runScript__p")->title(), "3");
}

TEST_F(MenuItemResolutionTest, ApplicationsAreTheCurrentOnes) {
    platform().entries.erase(customDestinationsPath);
    EXPECT_THAT(actionContextFromMenuIdentifier("openWithApplicationPath__x"), IsNull());
    platform().entries.erase("/System/Applications/Preview.app");
    EXPECT_THAT(actionContextFromMenuIdentifier("openWithApplicationPath__preview"), IsNull());
}

TEST_F(MenuItemResolutionTest, CustomActionIsFoundByEitherPrefixWithoutALogLine) {
    expectContext(customActionContext("runShortcut__p"),
                  rebuilt("runShortcut__p", "脚本", Action::requiresSelection()));
    expectContext(customActionContext("runScript__p"),
                  rebuilt("runScript__p", "脚本", Action::requiresSelection()));
    for (const char* const id : {"", "p", "run__p", "runScript_p", "runScript__none"}) {
        EXPECT_THAT(customActionContext(id), IsNull()) << id;
    }
    EXPECT_THAT(log(), IsEmpty());
}

// Tags.

TEST_F(MenuItemResolutionTest, TagsCountThePresets) {
    expectContext(actionContextFromMenuTag(700000), rebuilt("finderViewPreset__v", "列表 · 名称",
                                                            Action::finderViewOption(), "", "v"));
    expectContext(actionContextFromMenuTag(700002),
                  rebuilt("finderViewPreset__v", "后来", Action::finderViewOption(), "", "v"));
    expectContext(actionContextFromMenuTag(700003),
                  rebuilt("finderViewPreset__", "无号", Action::finderViewOption(), "", ""));
    EXPECT_THAT(log(),
                ElementsAre("resolved view preset from tag=700000 actionID=finderViewPreset__v",
                            "resolved view preset from tag=700002 actionID=finderViewPreset__v",
                            "resolved view preset from tag=700003 actionID=finderViewPreset__"));
}

TEST_F(MenuItemResolutionTest, TagsBelowAndBeyondThePresetsResolveToNothing) {
    using Limits = std::numeric_limits<std::int64_t>;
    for (const std::int64_t tag :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{1}, std::int64_t{699999},
          std::int64_t{700004}, std::int64_t{700005}, std::int64_t{-700000},
          std::int64_t{700000} + (std::int64_t{1} << 32), Limits::max(), Limits::max() - 1,
          Limits::min() + 700000, Limits::min() + 700001}) {
        EXPECT_THAT(actionContextFromMenuTag(tag), IsNull()) << tag;
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MenuItemResolutionTest, WithOnePresetOnlyTheFirstTagResolves) {
    platform().putPropertyList(viewPresetsPath, list({preset("a", "A")}));
    EXPECT_THAT(actionContextFromMenuTag(699999), IsNull());
    EXPECT_THAT(actionContextFromMenuTag(700000), NotNull());
    EXPECT_THAT(actionContextFromMenuTag(700001), IsNull());
}

TEST_F(MenuItemResolutionTest, WithoutPresetsNoTagResolves) {
    platform().putPropertyList(viewPresetsPath, PropertyList::Array{});
    EXPECT_THAT(actionContextFromMenuTag(700000), IsNull());
}

using MenuItemResolutionDeathTest = MenuItemResolutionTest;

TEST_F(MenuItemResolutionDeathTest, TagWhoseIndexOverflowsEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    using Limits = std::numeric_limits<std::int64_t>;
    EXPECT_DEATH((void)actionContextFromMenuTag(Limits::min()), "");
    EXPECT_DEATH((void)actionContextFromMenuTag(Limits::min() + 699999), "");
    EXPECT_DEATH(
        {
            MenuItem item;
            item.tag = Limits::min();
            (void)actionContext(item);
        },
        "");
}

TEST_F(MenuItemResolutionTest, LowestTagIsNotReachedBehindAKnownIdentifier) {
    MenuItem item;
    item.identifier = "runScript__p";
    item.tag = std::numeric_limits<std::int64_t>::min();
    EXPECT_THAT(actionContext(item), NotNull());
}

// Titles.

TEST_F(MenuItemResolutionTest, TitleOfACustomActionGivesItsPrefixByKind) {
    expectContext(actionContextFromMenuTitle("脚本"),
                  rebuilt("runScript__p", "脚本", Action::requiresSelection()));
    expectContext(actionContextFromMenuTitle("快捷"),
                  rebuilt("runShortcut__s", "快捷", Action::requiresSelection()));
    expectContext(actionContextFromMenuTitle("同号"),
                  rebuilt("runScript__s", "同号", Action::requiresSelection()));
    EXPECT_THAT(log(), ElementsAre("resolved custom action from title=脚本 actionID=runScript__p",
                                   "resolved custom action from title=快捷 actionID=runShortcut__s",
                                   "resolved custom action from title=同号 actionID=runScript__s"));
}

TEST_F(MenuItemResolutionTest, TitleOfAnApplicationGivesItsPath) {
    expectContext(
        actionContextFromMenuTitle("后"),
        rebuilt("openWithApplicationPath", "后", Action::openWithApplicationPath(), "/y.app"));
    expectContext(actionContextFromMenuTitle("预览"),
                  rebuilt("openWithApplicationPath", "预览", Action::openWithApplicationPath(),
                          "/System/Applications/Preview.app"));
    EXPECT_THAT(log(), ElementsAre("resolved open-with app from title=后 destination=/y.app",
                                   "resolved open-with app from title=预览 "
                                   "destination=/System/Applications/Preview.app"));
}

TEST_F(MenuItemResolutionTest, TitleOfAPresetIsItsCleanedName) {
    expectContext(
        actionContextFromMenuTitle("列表 · 名称"),
        rebuilt("finderViewPreset__v", "列表 · 名称", Action::finderViewOption(), "", "v"));
    EXPECT_THAT(log(), ElementsAre("resolved view preset from title=列表 · 名称 "
                                   "actionID=finderViewPreset__v"));
    EXPECT_THAT(actionContextFromMenuTitle("列表 · 名称 2"), IsNull());
}

TEST_F(MenuItemResolutionTest, TitleOfEveryCommandGivesTheCommandWithoutALogLine) {
    for (const FinderFeature feature : allFinderFeatures) {
        for (const FinderFeatureChild& child : children(feature)) {
            expectContext(actionContextFromMenuTitle(child.title),
                          rebuilt(child.actionID, child.title, child.action));
        }
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MenuItemResolutionTest, LocalisedTitleIsTheOneThatIsMatched) {
    platform().translations["合并 PDF"] = "Merge PDFs";
    EXPECT_EQ(actionContextFromMenuTitle("Merge PDFs")->actionID(), "mergePDFs");
    EXPECT_THAT(actionContextFromMenuTitle("合并 PDF"), IsNull());
}

TEST_F(MenuItemResolutionTest, TitlesAreMatchedToTheLetter) {
    for (const char* const title : {"", "脚本 ", " 脚本", "脚", "quorva", "新建", "项目",
                                    "复制到项目", "复制到文件夹", "打开指定路径", "Mergepdfs"}) {
        EXPECT_THAT(actionContextFromMenuTitle(title), IsNull()) << title;
    }
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(MenuItemResolutionTest, FirstCommandOfATitleInCatalogueOrderWins) {
    platform().translations = {
        {"合并 PDF", "same"}, {"复制 MD5", "same"}, {"拆分 PDF", "same"}, {"文稿", "same"}};
    EXPECT_EQ(actionContextFromMenuTitle("same")->actionID(), "quickOpenDocuments");
}

TEST_F(MenuItemResolutionTest, TitleThatSeveralListsShareGoesToTheFirstList) {
    const char* const shared = "复制完整路径";
    const auto resolved = [shared] { return actionContextFromMenuTitle(shared)->actionID(); };

    EXPECT_EQ(resolved(), "copyFullPath");
    platform().putPropertyList(viewPresetsPath, list({preset("x", "y"), preset("v", shared)}));
    EXPECT_EQ(resolved(), "finderViewPreset__v");
    platform().putPropertyList(
        customDestinationsPath,
        PropertyList::Dictionary{{"openApplication", list({destination("a", shared, "/a.app")})}});
    EXPECT_EQ(resolved(), "openWithApplicationPath");
    platform().putPropertyList(
        customShortcutActionsPath,
        list({script("p", "x", "/p"), script("q", shared, "/q"), shortcut("r", shared, "r")}));
    EXPECT_EQ(resolved(), "runScript__q");
}

TEST_F(MenuItemResolutionTest, FirstEntryOfATitleWithinAListWins) {
    platform().putPropertyList(viewPresetsPath, list({preset("1", "t"), preset("2", "t")}));
    EXPECT_EQ(actionContextFromMenuTitle("t")->presetID(), "1");
    platform().putPropertyList(
        customDestinationsPath,
        PropertyList::Dictionary{
            {"openApplication", list({destination("1", "t", "/1"), destination("2", "t", "/2")})}});
    EXPECT_EQ(actionContextFromMenuTitle("t")->destinationPath(), "/1");
}

TEST_F(MenuItemResolutionTest, EveryOneOfSeveralTitlesIsGivenItsMeaning) {
    using Source = TitleMeaning::Source;
    const std::vector<std::pair<const char*, Source>> titles = {
        {"脚本", Source::customAction}, {"应用", Source::application},
        {"图标", Source::viewPreset},   {"复制完整路径", Source::command},
        {"无此名", Source::nothing},
    };
    for (const auto& one : titles) {
        for (const auto& other : titles) {
            TitleMeanings meanings = {{one.first, {}}, {other.first, {}}};
            findTitleMeanings(meanings, SettingsReading());
            EXPECT_EQ(meanings.at(one.first).source, one.second) << other.first;
            EXPECT_EQ(meanings.at(other.first).source, other.second) << one.first;
        }
    }
}

TEST_F(MenuItemResolutionTest, NoFileIsReadOnceEveryTitleIsKnown) {
    const auto filesReadFor = [](std::initializer_list<const char*> titles) {
        TitleMeanings meanings;
        for (const char* const title : titles) {
            meanings.try_emplace(title);
        }
        platform().reads.clear();
        findTitleMeanings(meanings, SettingsReading());
        return platform().reads.size();
    };
    EXPECT_EQ(filesReadFor({}), 0U);
    EXPECT_EQ(filesReadFor({"脚本", "快捷"}), 1U);
    EXPECT_EQ(filesReadFor({"脚本", "应用"}), 2U);
    EXPECT_EQ(filesReadFor({"应用", "后"}), 2U);
    EXPECT_EQ(filesReadFor({"脚本", "图标"}), 3U);
}

TEST_F(MenuItemResolutionTest, NoCommandIsTranslatedOnceEveryTitleIsKnown) {
    TitleMeanings meanings = {{"图标", {}}};
    findTitleMeanings(meanings, SettingsReading());
    // Two of the built-in applications are.
    EXPECT_EQ(std::ranges::count(platform().calls, fakePlatform::Operation::localizeString), 2);
}

TEST_F(MenuItemResolutionTest, EmptyTitleMatchesAnEntryWithoutAName) {
    platform().putPropertyList(customShortcutActionsPath, list({script("q", "", "/q")}));
    expectContext(actionContextFromMenuTitle(""),
                  rebuilt("runScript__q", "", Action::requiresSelection()));
}

// Actions by identifier.

TEST_F(MenuItemResolutionTest, ActionOfEveryCommandIsFoundByItsID) {
    for (const FinderFeature feature : allFinderFeatures) {
        for (const FinderFeatureChild& child : children(feature)) {
            EXPECT_EQ(actionForID(child.actionID), child.action) << child.actionID;
        }
    }
}

TEST_F(MenuItemResolutionTest, OpenWithIDIsTheOnlyOneOutsideTheCatalogue) {
    EXPECT_EQ(actionForID("openWithApplicationPath"), Action::openWithApplicationPath());
    for (const char* const id :
         {"", "openFolder", "createFile", "quickOpenPath", "copyFilesToFolder", "copyFilesToPath",
          "openWithApplicationPath__x", "runScript__p", "finderViewPreset__v", "CopyMD5"}) {
        EXPECT_EQ(actionForID(id), std::nullopt) << id;
    }
}

TEST_F(MenuItemResolutionTest, NameOfAnActionCaseThatIsAlsoACommandIsTheCommand) {
    EXPECT_EQ(actionForID("copyBesideOriginal"), Action::copyBesideOriginal());
    EXPECT_EQ(actionForID("createFolder"), Action::createFolder());
    EXPECT_EQ(actionForID("openInTerminal"), Action::openInTerminal());
    EXPECT_EQ(actionForID("revealInFinder"), Action::revealInFinder());
    EXPECT_EQ(actionForID("moveSelectionToNewFolder"), Action::moveSelectionToNewFolder());
    EXPECT_EQ(actionForID("finderViewPreset"), Action::finderViewOption());
}

// What the builders write is what the resolution reads.

TEST_F(MenuItemResolutionTest, BuiltItemsResolveAlikeByObjectAndByIdentifier) {
    std::vector<MenuItem> items = openWithApplicationMenuItems(request({}, std::nullopt));
    for (const MenuItem& item : customShortcutMenuItems(request({}, std::nullopt))) {
        items.push_back(item);
    }
    EXPECT_EQ(items.size(), 8U);
    for (const MenuItem& item : items) {
        MenuItem stripped;
        stripped.identifier = item.identifier;
        const ContextPointer context = actionContext(stripped);
        ASSERT_THAT(context, NotNull()) << item.title;
        EXPECT_EQ(context->actionID(), attachedContext(item)->actionID());
        EXPECT_EQ(context->action(), attachedContext(item)->action());
    }
}

TEST_F(MenuItemResolutionTest, BuiltPresetsResolveToTheirIDByDictionaryIdentifierAndTag) {
    for (const MenuItem& item : finderViewPresetMenuItems(request({}, std::nullopt))) {
        MenuItem byTag;
        byTag.tag = item.tag;
        EXPECT_EQ(actionContext(item)->actionID(), *item.identifier);
        EXPECT_EQ(actionContextFromMenuIdentifier(item.identifier)->actionID(), *item.identifier);
        EXPECT_EQ(actionContext(byTag)->actionID(), *item.identifier);
        EXPECT_EQ(actionContext(byTag)->title(), item.title);
    }
}

}  // namespace
}  // namespace quorva
