#include "QuorvaFinderExtension/FinderSyncMenus.hpp"

#include <algorithm>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Action = FinderFeatureAction;
using Kind = FinderCustomDestinationKind;

const FinderSelection noSelection;
const FinderSelection twoSelected =
    std::vector<FileURL>{FileURL::file("/b c"), FileURL::directory("/a")};
const std::optional<FileURL> noTarget;
const std::optional<FileURL> target = FileURL::directory("/Users/ada");

class FinderSyncMenusTest : public UnitTest {
 protected:
    /// The built context of an item that belongs to no catalogue command.
    static FinderActionContext context(const std::string& actionID, const std::string& title,
                                       FinderFeatureAction action,
                                       const std::string& destinationPath = "") {
        return {actionID, title, action, twoSelected, target, destinationPath, ""};
    }

    static void putDestinations(const char* kind, std::initializer_list<PropertyList> entries) {
        platform().putPropertyList(customDestinationsPath,
                                   PropertyList::Dictionary{{kind, list(entries)}});
    }

    /// What every item that can be clicked has in common.
    static void expectActionable(const MenuItem& item) {
        EXPECT_EQ(item.action, MenuItem::Action::performFeatureChild) << item.title;
        EXPECT_FALSE(item.isSeparator) << item.title;
        EXPECT_FALSE(item.submenu.has_value()) << item.title;
    }

    static void expectWithoutIdentity(const MenuItem& item) {
        EXPECT_EQ(item.identifier, std::nullopt) << item.title;
        EXPECT_EQ(item.tag, 0) << item.title;
    }

    static FinderMenuSettings defaultSettings() { return FinderFeatureSettings::menuSettings(); }

    /// The submenu of `feature` in the collapsed layout with everything enabled that the catalogue
    /// has.
    static Menu submenu(FinderFeature feature, const FinderSelection& selection = twoSelected,
                        const std::optional<FileURL>& targetedURL = target) {
        const std::vector<MenuItem> items =
            featureMenuItems(request(selection, targetedURL), everything(), {feature});
        EXPECT_THAT(items, SizeIs(1));
        return items.front().submenu.value_or(Menu{});
    }

    static FinderMenuSettings everything() {
        FinderMenuSettings settings = defaultSettings();
        for (const FinderFeature feature : allFinderFeatures) {
            for (const std::string_view id : childIDs(feature)) {
                settings.enabledChildIDs.emplace(id);
            }
        }
        return settings;
    }

    static std::vector<MenuItem> direct(FinderFeature feature,
                                        const FinderSelection& selection = twoSelected,
                                        const std::optional<FileURL>& targetedURL = target) {
        return directMenuItems(request(selection, targetedURL), feature, children(feature));
    }
};

// When an entry can act.

struct EnabledRow {
    FinderFeatureAction action;
    bool withNothing;
    bool withTarget;
    bool withSelection;
};

TEST_F(FinderSyncMenusTest, CaseOfTheActionDecidesWhenItIsEnabled) {
    const EnabledRow rows[] = {
        {Action::createFile(FinderFileTemplate::text), true, true, true},
        {Action::createFile(FinderFileTemplate::gitignore), true, true, true},
        {Action::createFolder(), true, true, true},
        {Action::openFolder(), true, true, true},
        {Action::finderViewOption(), true, true, true},
        {Action::alwaysEnabled(), true, true, true},
        {Action::copyBesideOriginal(), false, false, true},
        {Action::copyToFolder(), false, false, true},
        {Action::revealInFinder(), false, false, true},
        {Action::moveToFolder(), false, false, true},
        {Action::moveSelectionToNewFolder(), false, false, true},
        {Action::requiresSelection(), false, false, true},
        {Action::copyPath(FinderPathCopyFormat::fullPath), false, true, true},
        {Action::copyPath(FinderPathCopyFormat::fileNameList), false, true, true},
        {Action::openInApplication(FinderApplication::visualStudioCode), false, true, true},
        {Action::openInApplication(FinderApplication::cursor), false, true, true},
        {Action::openInTerminal(), false, true, true},
        {Action::openWithApplicationPath(), false, true, true},
    };
    for (const EnabledRow& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.action.actionCase()));
        EXPECT_EQ(isEnabled(row.action, request(noSelection, noTarget)), row.withNothing);
        EXPECT_EQ(isEnabled(row.action, request(noSelection, target)), row.withTarget);
        EXPECT_EQ(isEnabled(row.action, request(twoSelected, noTarget)), row.withSelection);
        EXPECT_EQ(isEnabled(row.action, request(twoSelected, target)), row.withSelection);
    }
}

// Built-in destinations.

TEST_F(FinderSyncMenusTest, BuiltInDestinationsAreThreeFoldersOfTheRealHomeToTheLetter) {
    const auto isBuiltIn = [](const char* path, Kind kind) {
        return isBuiltInFileDestination({.id = "x", .name = "x", .path = path}, kind);
    };
    for (const Kind kind : {Kind::copy, Kind::move}) {
        EXPECT_TRUE(isBuiltIn("/Users/ada/Desktop", kind));
        EXPECT_TRUE(isBuiltIn("/Users/ada/Downloads", kind));
        EXPECT_TRUE(isBuiltIn("/Users/ada/Documents", kind));
        for (const char* const path :
             {"/Users/ada/Desktop/", "/Users/ada/desktop", "/Users/ada//Desktop", "Desktop", "",
              "/Users/ada", "/Users/ada/Pictures", "/Users/bob/Desktop", "/Users/ada/Desktop/x"}) {
            EXPECT_FALSE(isBuiltIn(path, kind)) << path;
        }
    }
    for (const Kind kind : {Kind::quickOpen, Kind::openApplication}) {
        EXPECT_FALSE(isBuiltIn("/Users/ada/Desktop", kind));
        EXPECT_FALSE(isBuiltIn("/Users/ada/Downloads", kind));
        EXPECT_FALSE(isBuiltIn("/Users/ada/Documents", kind));
    }
}

TEST_F(FinderSyncMenusTest, BuiltInDestinationsAreThoseOfTheRealHomeAlsoInTheSandbox) {
    platform().enterSandbox();
    EXPECT_TRUE(
        isBuiltInFileDestination({.id = "", .name = "", .path = "/Users/ada/Desktop"}, Kind::copy));
    EXPECT_FALSE(isBuiltInFileDestination(
        {.id = "", .name = "", .path = platform().homeDirectory.path() + "/Desktop"}, Kind::copy));
}

TEST_F(FinderSyncMenusTest, LinkToABuiltInDestinationIsNotBuiltIn) {
    platform().putSymbolicLink("/desk", "/Users/ada/Desktop");
    EXPECT_FALSE(isBuiltInFileDestination({.id = "", .name = "", .path = "/desk"}, Kind::copy));
}

TEST_F(FinderSyncMenusTest, UserHasDestinationsWhenOneIsNotBuiltIn) {
    EXPECT_FALSE(hasCustomDestinationItems(request(), Kind::copy));
    EXPECT_FALSE(hasCustomDestinationItems(request(), Kind::move));
    putDestinations("copy", {destination("d", "D", "/Users/ada/Desktop"),
                             destination("e", "E", "/Users/ada/Documents")});
    EXPECT_FALSE(hasCustomDestinationItems(request(), Kind::copy));
    putDestinations("copy", {});
    EXPECT_FALSE(hasCustomDestinationItems(request(), Kind::copy));
    putDestinations("copy",
                    {destination("d", "D", "/Users/ada/Desktop"), destination("p", "P", "/p")});
    EXPECT_TRUE(hasCustomDestinationItems(request(), Kind::copy));
    EXPECT_FALSE(hasCustomDestinationItems(request(), Kind::move));
    putDestinations("move", {destination("p", "P", "/p")});
    EXPECT_TRUE(hasCustomDestinationItems(request(), Kind::move));
}

// Destination submenus.

TEST_F(FinderSyncMenusTest, CopyDestinationsAreTitledAndCarryTheirPaths) {
    putDestinations("copy",
                    {destination("1", "项目", "/p"), destination("2", "D", "/Users/ada/Desktop"),
                     destination("3", "", "relative/")});
    Menu menu;
    addDestinationItems(menu, request(twoSelected, target), "copyFilesToFolder", Kind::copy);
    EXPECT_THAT(titles(menu.items), ElementsAre("复制到项目", "复制到"));
    EXPECT_EQ(*attachedContext(menu.items.at(0)),
              context("copyFilesToFolder", "复制到项目", Action::copyToFolder(), "/p"));
    EXPECT_EQ(*attachedContext(menu.items.at(1)),
              context("copyFilesToFolder", "复制到", Action::copyToFolder(), "relative/"));
    for (const MenuItem& item : menu.items) {
        expectActionable(item);
        expectWithoutIdentity(item);
        EXPECT_TRUE(item.enabled);
    }
}

TEST_F(FinderSyncMenusTest, MoveDestinationsAreTitledAndCarryTheirPaths) {
    putDestinations("move", {destination("1", "项目", "/p")});
    Menu menu;
    addDestinationItems(menu, request(twoSelected, target), "moveFilesToFolder", Kind::move);
    ASSERT_THAT(titles(menu.items), ElementsAre("移动到项目"));
    EXPECT_EQ(*attachedContext(menu.items.front()),
              context("moveFilesToFolder", "移动到项目", Action::moveToFolder(), "/p"));
}

TEST_F(FinderSyncMenusTest, PrefixOfADestinationsTitleIsLocalisedAndItsNameIsNot) {
    platform().translations = {{"复制到", "Copy to "}, {"移动到", "Move to "}, {"项目", "x"}};
    putDestinations("copy", {destination("1", "项目", "/p")});
    Menu menu;
    addDestinationItems(menu, request(noSelection, noTarget), "copyFilesToFolder", Kind::copy);
    putDestinations("move", {destination("1", "项目", "/p")});
    addDestinationItems(menu, request(noSelection, noTarget), "moveFilesToFolder", Kind::move);
    EXPECT_THAT(titles(menu.items), ElementsAre("Copy to 项目", "Move to 项目"));
}

TEST_F(FinderSyncMenusTest, OtherKindsGiveTheNameAloneAndMove) {
    putDestinations("quickOpen", {destination("1", "项目", "/Users/ada/Desktop")});
    Menu menu;
    addDestinationItems(menu, request(twoSelected, target), "x", Kind::quickOpen);
    ASSERT_THAT(titles(menu.items), ElementsAre("项目"));
    EXPECT_EQ(*attachedContext(menu.items.front()),
              context("x", "项目", Action::moveToFolder(), "/Users/ada/Desktop"));
    putDestinations("openApplication", {destination("1", "应用", "/x.app")});
    addDestinationItems(menu, request(twoSelected, target), "x", Kind::openApplication);
    EXPECT_THAT(titles(menu.items), ElementsAre("项目", "应用"));
    EXPECT_EQ(attachedContext(menu.items.back())->action(), Action::moveToFolder());
}

TEST_F(FinderSyncMenusTest, WithoutUsersDestinationsTheMenuIsNotTouched) {
    Menu menu = {.title = "t", .items = {MenuItem::separator()}};
    const Menu before = menu;
    addDestinationItems(menu, request(twoSelected, target), "copyFilesToFolder", Kind::copy);
    addDestinationItems(menu, request(twoSelected, target), "moveFilesToFolder", Kind::move);
    putDestinations("copy", {});
    addDestinationItems(menu, request(twoSelected, target), "copyFilesToFolder", Kind::copy);
    EXPECT_EQ(menu, before);
}

TEST_F(FinderSyncMenusTest, DestinationsAreAppendedBehindWhatTheMenuHolds) {
    putDestinations("copy", {destination("1", "项目", "/p")});
    Menu menu = {.title = "t", .items = {MenuItem::separator()}};
    addDestinationItems(menu, request(twoSelected, target), "copyFilesToFolder", Kind::copy);
    EXPECT_THAT(titles(menu.items), ElementsAre("-", "复制到项目"));
    EXPECT_EQ(menu.title, "t");
}

TEST_F(FinderSyncMenusTest, FourIdentifiersEnableADestinationWhateverIsSelected) {
    putDestinations("copy", {destination("1", "项目", "/p")});
    for (const char* const id :
         {"copyFilesToPath", "moveFilesToPath", "copyFilesToFolder", "moveFilesToFolder"}) {
        Menu menu;
        addDestinationItems(menu, request(noSelection, noTarget), id, Kind::copy);
        EXPECT_TRUE(menu.items.front().enabled) << id;
    }
    for (const char* const id : {"copyFilesToDesktop", "", "CopyFilesToFolder", "moveFiles"}) {
        Menu menu;
        addDestinationItems(menu, request(noSelection, target), id, Kind::copy);
        addDestinationItems(menu, request(twoSelected, noTarget), id, Kind::copy);
        EXPECT_FALSE(menu.items.front().enabled) << id;
        EXPECT_TRUE(menu.items.back().enabled) << id;
    }
}

// Quick open.

TEST_F(FinderSyncMenusTest, QuickOpenListsTheLocationsThenTheEntriesThatAskForAPath) {
    const std::vector<MenuItem> items =
        quickOpenMenuItems(request(twoSelected, target), children(FinderFeature::quickOpen));
    EXPECT_THAT(titles(items), ElementsAre("用户目录", "桌面", "下载", "文稿", "图片", "应用程序",
                                           "打开剪贴板路径", "打开指定路径..."));
    EXPECT_EQ(*attachedContext(items.at(0)),
              context("quickOpenPath", "用户目录", Action::openFolder(), "/Users/ada"));
    EXPECT_EQ(*attachedContext(items.at(1)),
              context("quickOpenPath", "桌面", Action::openFolder(), "/Users/ada/Desktop"));
    EXPECT_EQ(*attachedContext(items.at(5)),
              context("quickOpenPath", "应用程序", Action::openFolder(), "/Applications"));
    EXPECT_EQ(*attachedContext(items.at(6)),
              context("quickOpenClipboardPath", "打开剪贴板路径", Action::openFolder()));
    EXPECT_EQ(*attachedContext(items.at(7)),
              context("quickOpenTypedPath", "打开指定路径...", Action::openFolder()));
    for (const MenuItem& item : items) {
        expectActionable(item);
        expectWithoutIdentity(item);
    }
}

TEST_F(FinderSyncMenusTest, QuickOpenItemsAreEnabledWithNothingSelected) {
    for (const MenuItem& item :
         quickOpenMenuItems(request(noSelection, noTarget), children(FinderFeature::quickOpen))) {
        EXPECT_TRUE(item.enabled) << item.title;
    }
}

TEST_F(FinderSyncMenusTest, QuickOpenKeepsTheOrderOfItsChildren) {
    std::vector<FinderFeatureChild> reversed = children(FinderFeature::quickOpen);
    std::ranges::reverse(reversed);
    putDestinations("quickOpen", {});
    EXPECT_THAT(titles(quickOpenMenuItems(request(noSelection, noTarget), reversed)),
                ElementsAre("打开指定路径...", "打开剪贴板路径"));
    reversed.push_back(reversed.front());
    EXPECT_THAT(titles(quickOpenMenuItems(request(noSelection, noTarget), reversed)),
                ElementsAre("打开指定路径...", "打开剪贴板路径", "打开指定路径..."));
}

TEST_F(FinderSyncMenusTest, QuickOpenIsEmptyWithoutLocationsAndChildren) {
    putDestinations("quickOpen", {});
    EXPECT_THAT(quickOpenMenuItems(request(twoSelected, target), {}), IsEmpty());
}

TEST_F(FinderSyncMenusTest, QuickOpenDropsTheFixedLocationsOfTheCatalogue) {
    putDestinations("quickOpen", {});
    for (const FinderFeatureChild& child : children(FinderFeature::quickOpen)) {
        const bool special =
            child.actionID == "quickOpenClipboardPath" || child.actionID == "quickOpenTypedPath";
        EXPECT_THAT(quickOpenMenuItems(request(noSelection, noTarget), {child}),
                    SizeIs(special ? 1 : 0))
            << child.actionID;
    }
}

TEST_F(FinderSyncMenusTest, QuickOpenListsBuiltInFoldersAndNamesVerbatim) {
    platform().translations["桌面"] = "Desktop";
    putDestinations("quickOpen", {destination("1", "桌面", "/Users/ada/Desktop"),
                                  destination("1", "", "/Users/ada/Desktop/")});
    const std::vector<MenuItem> items = quickOpenMenuItems(request(noSelection, noTarget), {});
    EXPECT_THAT(titles(items), ElementsAre("桌面", ""));
    EXPECT_EQ(attachedContext(items.at(1))->destinationPath(), "/Users/ada/Desktop/");
}

TEST_F(FinderSyncMenusTest, QuickOpenEntryThatNeedsASelectionIsDisabledWithoutOne) {
    const FinderFeatureChild child = {"t", "quickOpenTypedPath", Action::requiresSelection()};
    putDestinations("quickOpen", {});
    EXPECT_FALSE(quickOpenMenuItems(request(noSelection, target), {child}).front().enabled);
    EXPECT_TRUE(quickOpenMenuItems(request(twoSelected, noTarget), {child}).front().enabled);
}

// Open with an application.

TEST_F(FinderSyncMenusTest, OpenWithItemsCarryContextAndIdentifier) {
    platform().putDirectory("/System/Applications/Preview.app");
    platform().putDirectory("/System/Applications/TextEdit.app");
    putDestinations("openApplication",
                    {destination("a__b", "X", "/missing/X.app"), destination("", "", "")});
    const std::vector<MenuItem> items = openWithApplicationMenuItems(request(twoSelected, target));
    EXPECT_THAT(titles(items), ElementsAre("预览", "文本编辑", "X", ""));
    EXPECT_EQ(items.at(0).identifier, "openWithApplicationPath__preview");
    EXPECT_EQ(items.at(1).identifier, "openWithApplicationPath__textedit");
    EXPECT_EQ(items.at(2).identifier, "openWithApplicationPath__a__b");
    EXPECT_EQ(items.at(3).identifier, "openWithApplicationPath__");
    EXPECT_EQ(*attachedContext(items.at(0)),
              context("openWithApplicationPath", "预览", Action::openWithApplicationPath(),
                      "/System/Applications/Preview.app"));
    EXPECT_EQ(*attachedContext(items.at(2)),
              context("openWithApplicationPath", "X", Action::openWithApplicationPath(),
                      "/missing/X.app"));
    for (const MenuItem& item : items) {
        expectActionable(item);
        EXPECT_EQ(item.tag, 0);
    }
}

TEST_F(FinderSyncMenusTest, OpenWithNeedsASelectionOrATarget) {
    platform().putDirectory("/System/Applications/Preview.app");
    EXPECT_FALSE(openWithApplicationMenuItems(request(noSelection, noTarget)).front().enabled);
    EXPECT_TRUE(openWithApplicationMenuItems(request(noSelection, target)).front().enabled);
    EXPECT_TRUE(openWithApplicationMenuItems(request(twoSelected, noTarget)).front().enabled);
}

TEST_F(FinderSyncMenusTest, OpenWithItemsAreAppendedAndNothingWhenThereAreNone) {
    Menu menu = {.title = "t", .items = {MenuItem::separator()}};
    addOpenWithApplicationItems(menu, request(twoSelected, target));
    EXPECT_THAT(titles(menu.items), ElementsAre("-"));
    platform().putDirectory("/System/Applications/Preview.app");
    addOpenWithApplicationItems(menu, request(twoSelected, target));
    ASSERT_THAT(titles(menu.items), ElementsAre("-", "预览"));
    EXPECT_EQ(menu.items.back().identifier, "openWithApplicationPath__preview");
}

// View presets.

TEST_F(FinderSyncMenusTest, ViewPresetItemsCarryDictionaryIdentifierAndTag) {
    const std::vector<MenuItem> items = finderViewPresetMenuItems(request(twoSelected, target));
    EXPECT_THAT(titles(items), ElementsAre("列表 · 最近修改", "图标 · 按名称", "分栏 · 按名称"));
    const char* const ids[] = {"list-modified", "icon-name", "column-name"};
    for (std::size_t index = 0; index < items.size(); ++index) {
        const MenuItem& item = items.at(index);
        expectActionable(item);
        EXPECT_TRUE(item.enabled);
        const std::string identifier = std::string("finderViewPreset__") + ids[index];
        EXPECT_EQ(item.identifier, identifier);
        EXPECT_EQ(item.tag, 700000 + static_cast<std::int64_t>(index));
        const auto* const attached = std::get_if<PropertyList::Dictionary>(&item.representedObject);
        ASSERT_NE(attached, nullptr);
        EXPECT_EQ(PropertyList(*attached),
                  PropertyList(PropertyList::Dictionary{{"actionID", identifier},
                                                        {"title", item.title},
                                                        {"selectedPaths", strings({"/b c", "/a"})},
                                                        {"targetedPath", "/Users/ada"},
                                                        {"destinationPath", ""},
                                                        {"presetID", ""}}));
    }
}

TEST_F(FinderSyncMenusTest, ViewPresetWithoutSelectionAndTargetHasEmptyPathsAndIsEnabled) {
    for (const MenuItem& item : finderViewPresetMenuItems(request(noSelection, noTarget))) {
        EXPECT_TRUE(item.enabled);
        const auto& attached = std::get<PropertyList::Dictionary>(item.representedObject);
        EXPECT_THAT(attached, SizeIs(6));
        EXPECT_EQ(attached.at("selectedPaths"), PropertyList(PropertyList::Array{}));
        EXPECT_EQ(attached.at("targetedPath"), PropertyList(""));
    }
}

TEST_F(FinderSyncMenusTest, ViewPresetsAreLoggedAsAListAndOneByOne) {
    platform().putPropertyList(viewPresetsPath,
                               list({preset("a", "列表 · 名称 2"), preset("", "B \"b\"")}));
    (void)finderViewPresetMenuItems(request(noSelection, noTarget));
    EXPECT_THAT(messages(),
                ElementsAre("view preset menu presets=[\"a:列表 · 名称\", \":B \"b\"\"]",
                            "view preset item title=列表 · 名称 "
                            "actionID=finderViewPreset__a tag=700000",
                            "view preset item title=B \"b\" "
                            "actionID=finderViewPreset__ tag=700001"));
}

TEST_F(FinderSyncMenusTest, WithoutViewPresetsThereAreNoItemsAndAnEmptyListIsLogged) {
    platform().putPropertyList(viewPresetsPath, PropertyList::Array{});
    EXPECT_THAT(finderViewPresetMenuItems(request(twoSelected, target)), IsEmpty());
    EXPECT_THAT(messages(), ElementsAre("view preset menu presets=[]"));
}

TEST_F(FinderSyncMenusTest, ViewPresetsWithTheSameIDAreToldApartByTheirTags) {
    platform().putPropertyList(viewPresetsPath, list({preset("a", "1"), preset("a", "2")}));
    const std::vector<MenuItem> items = finderViewPresetMenuItems(request(noSelection, noTarget));
    ASSERT_THAT(items, SizeIs(2));
    EXPECT_EQ(items.at(0).identifier, items.at(1).identifier);
    EXPECT_EQ(items.at(0).tag, 700000);
    EXPECT_EQ(items.at(1).tag, 700001);
}

// Custom actions.

TEST_F(FinderSyncMenusTest, CustomActionsCarryContextAndIdentifierByTheirKind) {
    platform().putPropertyList(
        customShortcutActionsPath,
        list({script("x", "脚本", "/s.sh"), shortcut("y", "快捷", "S"), shortcut("y", "", "S")}));
    const std::vector<MenuItem> items = customShortcutMenuItems(request(twoSelected, target));
    EXPECT_THAT(titles(items), ElementsAre("脚本", "快捷", ""));
    EXPECT_EQ(items.at(0).identifier, "runScript__x");
    EXPECT_EQ(items.at(1).identifier, "runShortcut__y");
    EXPECT_EQ(items.at(2).identifier, "runShortcut__y");
    EXPECT_EQ(*attachedContext(items.at(0)),
              context("runScript__x", "脚本", Action::requiresSelection()));
    EXPECT_EQ(*attachedContext(items.at(1)),
              context("runShortcut__y", "快捷", Action::requiresSelection()));
    for (const MenuItem& item : items) {
        expectActionable(item);
        EXPECT_EQ(item.tag, 0);
    }
}

TEST_F(FinderSyncMenusTest, CustomActionsNeedASelectionAndATargetIsNotEnough) {
    platform().putPropertyList(customShortcutActionsPath, list({script("x", "脚本", "/s.sh")}));
    EXPECT_FALSE(customShortcutMenuItems(request(noSelection, noTarget)).front().enabled);
    EXPECT_FALSE(customShortcutMenuItems(request(noSelection, target)).front().enabled);
    EXPECT_TRUE(customShortcutMenuItems(request(twoSelected, noTarget)).front().enabled);
}

TEST_F(FinderSyncMenusTest, WithoutCustomActionsThereAreNoItems) {
    EXPECT_THAT(customShortcutMenuItems(request(twoSelected, target)), IsEmpty());
}

// The collapsed layout.

TEST_F(FinderSyncMenusTest, WithoutFeaturesThereAreNoItems) {
    EXPECT_THAT(featureMenuItems(request(twoSelected, target), defaultSettings(), {}), IsEmpty());
}

TEST_F(FinderSyncMenusTest, EachFeatureIsAnItemThatOpensASubmenuOfItsTitle) {
    const std::vector<FinderFeature> features = {FinderFeature::developerTools,
                                                 FinderFeature::createFile};
    const std::vector<MenuItem> items =
        featureMenuItems(request(twoSelected, target), everything(), features);
    ASSERT_THAT(titles(items), ElementsAre("更多工具", "新建"));
    for (const MenuItem& item : items) {
        EXPECT_EQ(item.action, MenuItem::Action::none);
        EXPECT_TRUE(item.enabled);
        expectWithoutIdentity(item);
        EXPECT_TRUE(std::holds_alternative<std::monostate>(item.representedObject));
        ASSERT_TRUE(item.submenu.has_value());
        EXPECT_EQ(item.submenu->title, item.title);
    }
    EXPECT_THAT(titles(items.front().submenu->items),
                ElementsAre("复制 SHA-256", "复制 MD5", "复制文件大小", "显示/隐藏隐藏文件"));
}

/// The features whose entries are their commands, possibly with more behind.
constexpr FinderFeature commandFeatures[] = {
    FinderFeature::createFile,   FinderFeature::copyFile,          FinderFeature::copyPath,
    FinderFeature::openWith,     FinderFeature::organizeFile,      FinderFeature::batchRename,
    FinderFeature::archiveTools, FinderFeature::scheduledDeletion, FinderFeature::imageTools,
    FinderFeature::pdfTools,     FinderFeature::developerTools,
};

TEST_F(FinderSyncMenusTest, EveryCommandIsAnItemWithItsContextInBothLayouts) {
    const auto selections = {noSelection, twoSelected};
    const auto targets = {noTarget, target};
    for (const FinderFeature feature : commandFeatures) {
        for (const FinderSelection& selection : selections) {
            for (const std::optional<FileURL>& targetedURL : targets) {
                const std::vector<MenuItem> collapsed =
                    submenu(feature, selection, targetedURL).items;
                const std::vector<FinderFeatureChild> commands = children(feature);
                ASSERT_EQ(collapsed.size(), commands.size());
                for (std::size_t index = 0; index < commands.size(); ++index) {
                    const FinderFeatureChild& command = commands.at(index);
                    const MenuItem& item = collapsed.at(index);
                    EXPECT_EQ(item.title, command.title);
                    expectActionable(item);
                    expectWithoutIdentity(item);
                    EXPECT_EQ(item.enabled,
                              isEnabled(command.action, request(selection, targetedURL)))
                        << command.actionID;
                    ASSERT_NE(attachedContext(item), nullptr);
                    EXPECT_EQ(*attachedContext(item),
                              FinderActionContext(command.actionID, command.title, command.action,
                                                  selection, targetedURL, "", ""));
                }
                const std::vector<MenuItem> expanded = direct(feature, selection, targetedURL);
                ASSERT_EQ(expanded.size(), collapsed.size());
                for (std::size_t index = 0; index < expanded.size(); ++index) {
                    EXPECT_EQ(expanded.at(index).enabled, collapsed.at(index).enabled);
                    EXPECT_EQ(*attachedContext(expanded.at(index)),
                              *attachedContext(collapsed.at(index)));
                    expectActionable(expanded.at(index));
                    expectWithoutIdentity(expanded.at(index));
                }
            }
        }
    }
}

TEST_F(FinderSyncMenusTest, ItemsOfOneMenuShareTheirSelection) {
    const Menu menu = submenu(FinderFeature::pdfTools);
    EXPECT_EQ(&attachedContext(menu.items.front())->selectedURLs().urls(),
              &attachedContext(menu.items.back())->selectedURLs().urls());
}

TEST_F(FinderSyncMenusTest, FourCommandsAreEnabledByTheirIdentifierInTheExpandedLayout) {
    for (const char* const id :
         {"copyFilesToPath", "moveFilesToPath", "copyFilesToFolder", "moveFilesToFolder"}) {
        const std::vector<MenuItem> items =
            directMenuItems(request(noSelection, noTarget), FinderFeature::pdfTools,
                            {{"t", id, Action::requiresSelection()}});
        EXPECT_TRUE(items.front().enabled) << id;
    }
    const std::vector<MenuItem> items =
        directMenuItems(request(noSelection, target), FinderFeature::pdfTools,
                        {{"t", "copyFilesToDesktop", Action::requiresSelection()}});
    EXPECT_FALSE(items.front().enabled);
}

TEST_F(FinderSyncMenusTest, DirectItemsKeepTheOrderOfTheirChildren) {
    std::vector<FinderFeatureChild> reversed = children(FinderFeature::pdfTools);
    std::ranges::reverse(reversed);
    EXPECT_THAT(
        titles(directMenuItems(request(twoSelected, target), FinderFeature::pdfTools, reversed)),
        ElementsAre("压缩 PDF", "图片转 PDF", "拆分 PDF", "合并 PDF"));
}

TEST_F(FinderSyncMenusTest, SettingsDecideWhichCommandsAreShownAndInWhichOrder) {
    FinderMenuSettings settings = defaultSettings();
    settings.enabledChildIDs = {"mergePDFs", "compressPDF"};
    settings.childOrderByFeatureID["pdfTools"] = {"compressPDF", "splitPDFs", "mergePDFs"};
    const std::vector<MenuItem> items =
        featureMenuItems(request(twoSelected, target), settings, {FinderFeature::pdfTools});
    EXPECT_THAT(titles(items.front().submenu->items), ElementsAre("压缩 PDF", "合并 PDF"));
}

TEST_F(FinderSyncMenusTest, FeatureStaysVisibleWithAnEmptySubmenu) {
    putDestinations("quickOpen", {});
    platform().putPropertyList(viewPresetsPath, PropertyList::Array{});
    FinderMenuSettings settings = defaultSettings();
    settings.enabledChildIDs.clear();
    for (const FinderFeature feature : allFinderFeatures) {
        const std::vector<MenuItem> items =
            featureMenuItems(request(twoSelected, target), settings, {feature});
        if (feature == FinderFeature::customActions) {
            EXPECT_THAT(items, IsEmpty());
        } else {
            ASSERT_THAT(titles(items), ElementsAre(title(feature)));
            ASSERT_TRUE(items.front().submenu.has_value());
            EXPECT_THAT(items.front().submenu->items, IsEmpty());
        }
    }
}

TEST_F(FinderSyncMenusTest, DirectItemsOfAFeatureWithNothingAreNone) {
    putDestinations("quickOpen", {});
    platform().putPropertyList(viewPresetsPath, PropertyList::Array{});
    for (const FinderFeature feature : allFinderFeatures) {
        EXPECT_THAT(directMenuItems(request(twoSelected, target), feature, {}), IsEmpty());
    }
}

TEST_F(FinderSyncMenusTest, CustomActionsAreTheirFeaturesEntriesInBothLayouts) {
    platform().putPropertyList(customShortcutActionsPath,
                               list({shortcut("y", "快捷", "S"), script("x", "脚本", "/s.sh")}));
    const Menu menu = submenu(FinderFeature::customActions);
    EXPECT_EQ(menu.title, "自定义动作");
    EXPECT_THAT(titles(menu.items), ElementsAre("快捷", "脚本"));
    EXPECT_EQ(menu.items.back().identifier, "runScript__x");
    const std::vector<MenuItem> expanded = direct(FinderFeature::customActions);
    EXPECT_THAT(titles(expanded), ElementsAre("快捷", "脚本"));
    EXPECT_EQ(expanded.front().identifier, "runShortcut__y");
}

TEST_F(FinderSyncMenusTest, QuickOpenIsItsLocationsAndEntriesInBothLayouts) {
    putDestinations("quickOpen", {destination("1", "项目", "/p")});
    EXPECT_THAT(titles(submenu(FinderFeature::quickOpen).items),
                ElementsAre("项目", "打开剪贴板路径", "打开指定路径..."));
    EXPECT_THAT(titles(direct(FinderFeature::quickOpen)),
                ElementsAre("项目", "打开剪贴板路径", "打开指定路径..."));
    FinderMenuSettings settings = everything();
    settings.enabledChildIDs.erase("quickOpenClipboardPath");
    EXPECT_THAT(
        titles(featureMenuItems(request(twoSelected, target), settings, {FinderFeature::quickOpen})
                   .front()
                   .submenu->items),
        ElementsAre("项目", "打开指定路径..."));
}

TEST_F(FinderSyncMenusTest, ViewOptionsAreThePresetsInBothLayouts) {
    platform().putPropertyList(viewPresetsPath, list({preset("a", "A")}));
    const Menu menu = submenu(FinderFeature::viewOptions);
    EXPECT_EQ(menu.title, "调整显示方式");
    ASSERT_THAT(titles(menu.items), ElementsAre("A"));
    EXPECT_EQ(menu.items.front().tag, 700000);
    EXPECT_THAT(
        titles(directMenuItems(request(twoSelected, target), FinderFeature::viewOptions, {})),
        ElementsAre("A"));
}

TEST_F(FinderSyncMenusTest, OpenWithCommandsAreFollowedByTheApplicationsInBothLayouts) {
    platform().putDirectory("/System/Applications/Preview.app");
    EXPECT_THAT(titles(submenu(FinderFeature::openWith).items),
                ElementsAre("用终端打开", "在 Finder 中显示", "预览"));
    const std::vector<MenuItem> expanded = direct(FinderFeature::openWith);
    EXPECT_THAT(titles(expanded), ElementsAre("用终端打开", "在 Finder 中显示", "预览"));
    EXPECT_EQ(expanded.back().identifier, "openWithApplicationPath__preview");
}

TEST_F(FinderSyncMenusTest, CopyCommandsAreFollowedByTheUsersFoldersInBothLayouts) {
    putDestinations("copy", {destination("1", "项目", "/p"), destination("2", "D", "/d")});
    platform().translations["复制到文件夹"] = "Copy to Folder";
    const std::vector<MenuItem> collapsed = submenu(FinderFeature::copyFile).items;
    const std::vector<MenuItem> expanded = direct(FinderFeature::copyFile);
    for (const std::vector<MenuItem>& items : {collapsed, expanded}) {
        EXPECT_THAT(titles(items), ElementsAre("复制到桌面", "复制到下载", "复制到文稿",
                                               "在旁边创建副本", "Copy to Folder"));
        const MenuItem& folders = items.back();
        EXPECT_EQ(folders.action, MenuItem::Action::none);
        EXPECT_TRUE(folders.enabled);
        ASSERT_TRUE(folders.submenu.has_value());
        EXPECT_EQ(folders.submenu->title, "Copy to Folder");
        EXPECT_THAT(titles(folders.submenu->items), ElementsAre("复制到项目", "复制到D"));
        EXPECT_EQ(*attachedContext(folders.submenu->items.front()),
                  context("copyFilesToFolder", "复制到项目", Action::copyToFolder(), "/p"));
    }
}

TEST_F(FinderSyncMenusTest, MoveCommandsAreFollowedByTheUsersFoldersInBothLayouts) {
    putDestinations("move", {destination("1", "项目", "/p")});
    const std::vector<MenuItem> collapsed = submenu(FinderFeature::organizeFile).items;
    const std::vector<MenuItem> expanded = direct(FinderFeature::organizeFile);
    for (const std::vector<MenuItem>& items : {collapsed, expanded}) {
        EXPECT_THAT(titles(items), ElementsAre("移动到桌面", "移动到下载", "移动到文稿",
                                               "把所选项目放入新文件夹", "移动到文件夹"));
        ASSERT_TRUE(items.back().submenu.has_value());
        EXPECT_EQ(items.back().submenu->title, "移动到文件夹");
        ASSERT_THAT(titles(items.back().submenu->items), ElementsAre("移动到项目"));
        EXPECT_EQ(*attachedContext(items.back().submenu->items.front()),
                  context("moveFilesToFolder", "移动到项目", Action::moveToFolder(), "/p"));
    }
}

TEST_F(FinderSyncMenusTest, FoldersOfOneKindDoNotAppearUnderTheOther) {
    putDestinations("copy", {destination("1", "项目", "/p")});
    EXPECT_THAT(titles(submenu(FinderFeature::organizeFile).items), SizeIs(4));
    EXPECT_THAT(direct(FinderFeature::organizeFile), SizeIs(4));
    putDestinations("move", {destination("1", "项目", "/p")});
    EXPECT_THAT(titles(submenu(FinderFeature::copyFile).items), SizeIs(4));
    EXPECT_THAT(direct(FinderFeature::copyFile), SizeIs(4));
}

TEST_F(FinderSyncMenusTest, UsersFoldersAreShownAlsoWithoutCommands) {
    putDestinations("copy", {destination("1", "项目", "/p")});
    EXPECT_THAT(
        titles(directMenuItems(request(noSelection, noTarget), FinderFeature::copyFile, {})),
        ElementsAre("复制到文件夹"));
}

TEST_F(FinderSyncMenusTest, UsersFoldersAreEnabledWithNothingSelected) {
    putDestinations("copy", {destination("1", "项目", "/p")});
    const Menu menu = submenu(FinderFeature::copyFile, noSelection, noTarget);
    EXPECT_FALSE(menu.items.front().enabled);
    EXPECT_TRUE(menu.items.back().submenu->items.front().enabled);
}

}  // namespace
}  // namespace quorva
