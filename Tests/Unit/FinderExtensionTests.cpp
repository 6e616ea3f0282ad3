#include "QuorvaFinderExtension/FinderExtension.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "QuorvaFinderExtension/Containment.hpp"
#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using fakePlatform::Event;
using fakePlatform::Operation;
using fakePlatform::UnifiedLogRecord;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class FinderExtensionTest : public UnitTest {
 protected:
    static void putSettings(PropertyList::Dictionary root) {
        platform().putPropertyList(featureSettingsPath, std::move(root));
    }

    static void putTwoPlacesOfOneName() {
        putSettings({{"enabledFeatureIDs", strings({"quickOpen"})}});
        platform().putPropertyList(
            customDestinationsPath,
            PropertyList::Dictionary{{"quickOpen", list({destination("1", "项目", "/1"),
                                                         destination("2", "项目", "/2")})}});
    }

    /// Forgets what happened so far.
    static void clearHistory() {
        platform().journal.clear();
        platform().consoleLines.clear();
        platform().unifiedLog.clear();
    }

    static inline const std::string defaultDirectoryList =
        R"(["/Applications", "/Users/ada", "/Users/ada/Desktop", "/Users/ada/Documents", )"
        R"("/Users/ada/Downloads", "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs", )"
        R"("/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Desktop", )"
        R"("/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Documents", )"
        R"("/Users/ada/Movies", "/Users/ada/Music", "/Users/ada/Pictures", "/Volumes"])";
};

// Start and refresh.

TEST_F(FinderExtensionTest, StartSetsTheMonitoredFolders) {
    FinderExtension extension;
    extension.start();
    EXPECT_EQ(platform().directoryURLs, defaultDirectories());
}

TEST_F(FinderExtensionTest, StartSetsTheFoldersThenLogsToBothLogs) {
    FinderExtension extension;
    extension.start();
    const auto isStep = [](const Event& event) {
        return event.kind == Event::Kind::directoryURLsSet ||
               event.kind == Event::Kind::unifiedLogRecord ||
               event.kind == Event::Kind::consoleLine;
    };
    std::vector<Event> steps;
    std::ranges::copy_if(platform().journal, std::back_inserter(steps), isStep);
    EXPECT_THAT(steps,
                ElementsAre(Event{Event::Kind::directoryURLsSet, ""},
                            Event{Event::Kind::unifiedLogRecord,
                                  "FinderSync refreshed directories. reason=started, count=12"},
                            message("started monitored=" + defaultDirectoryList)));
}

TEST_F(FinderExtensionTest, UnifiedLogRecordsCarrySubsystemAndCategory) {
    FinderExtension extension;
    extension.start();
    EXPECT_THAT(platform().unifiedLog,
                ElementsAre(UnifiedLogRecord{
                    "app.ferrolin.Quorva.FinderExtension", "FinderSync",
                    "FinderSync refreshed directories. reason=started, count=12"}));
}

TEST_F(FinderExtensionTest, ChangedSettingsRefreshTheFoldersWithTheSendersReason) {
    FinderExtension extension;
    extension.start();
    clearHistory();
    platform().putDirectory("/Users/ada/Projects");
    extension.handleSettingsChanged(PropertyList::Dictionary{{"reason", "menu edited"}});
    EXPECT_TRUE(platform().directoryURLs.contains(FileURL::directory("/Users/ada/Projects")));
    ASSERT_THAT(messages(), SizeIs(2));
    EXPECT_EQ(messages().at(0), "settings changed notification reason=menu edited");
    EXPECT_TRUE(
        messages().at(1).starts_with("settings-changed:menu edited monitored=[\"/Applications\", "))
        << messages().at(1);
    ASSERT_THAT(platform().unifiedLog, SizeIs(1));
    EXPECT_EQ(platform().unifiedLog.front().message,
              "FinderSync refreshed directories. reason=settings-changed:menu edited, count=13");
}

TEST_F(FinderExtensionTest, ChangedSettingsReplaceTheFolders) {
    platform().putDirectory("/Users/ada/Projects");
    FinderExtension extension;
    extension.start();
    platform().entries.erase("/Users/ada/Projects");
    extension.handleSettingsChanged(PropertyList::Dictionary{{"reason", "x"}});
    EXPECT_EQ(platform().directoryURLs, defaultDirectories());
}

TEST_F(FinderExtensionTest, NotificationWithoutAStringAsReasonHasTheReasonUnknown) {
    const std::optional<PropertyList::Dictionary> infos[] = {
        std::nullopt,
        PropertyList::Dictionary{},
        PropertyList::Dictionary{{"Reason", "x"}},
        PropertyList::Dictionary{{"reason", true}},
        PropertyList::Dictionary{{"reason", std::int64_t{1}}},
        PropertyList::Dictionary{{"reason", strings({"x"})}},
    };
    for (const auto& info : infos) {
        FinderExtension extension;
        extension.start();
        clearHistory();
        extension.handleSettingsChanged(info);
        EXPECT_THAT(messages(),
                    ElementsAre("settings changed notification reason=unknown",
                                "settings-changed:unknown monitored=" + defaultDirectoryList));
        EXPECT_EQ(platform().unifiedLog.front().message,
                  "FinderSync refreshed directories. reason=settings-changed:unknown, count=12");
    }
}

TEST_F(FinderExtensionTest, ReasonMayBeEmptyOrHoldAnything) {
    FinderExtension extension;
    extension.start();
    for (const char* const reason : {"", "a\n\"b\" %@ 😀"}) {
        clearHistory();
        extension.handleSettingsChanged(PropertyList::Dictionary{{"reason", reason}});
        EXPECT_EQ(messages().at(0), std::string("settings changed notification reason=") + reason);
        EXPECT_EQ(messages().at(1),
                  std::string("settings-changed:") + reason + " monitored=" + defaultDirectoryList);
    }
}

TEST_F(FinderExtensionTest, PathOfTwoURLsIsListedTwice) {
    platform().standardDirectories[platform::SearchPathDirectory::movies] = {
        FileURL::file("/Films")};
    FinderExtension extension;
    extension.start();
    EXPECT_TRUE(platform().directoryURLs.contains(FileURL::file("/Films")));
    EXPECT_TRUE(platform().directoryURLs.contains(FileURL::directory("/Films")));
    EXPECT_NE(messages().front().find(R"("/Films", "/Films")"), std::string::npos);
}

// The selection.

TEST_F(FinderExtensionTest, SelectionIsEmptyWhenFinderGivesNone) {
    EXPECT_TRUE(currentFinderSelection().empty());
    platform().selectedItemURLs = std::vector<FileURL>{};
    EXPECT_TRUE(currentFinderSelection().empty());
    platform().selectedItemURLs = {FileURL::file("/b"), FileURL::file("/a")};
    EXPECT_THAT(currentFinderSelection().urls(),
                ElementsAre(FileURL::file("/b"), FileURL::file("/a")));
}

// The menu.

class FinderExtensionMenuTest : public FinderExtensionTest {
 protected:
    Menu menu(MenuKind kind = MenuKind::contextualMenuForItems) { return extension_.menu(kind); }

    FinderExtension extension_;
};

TEST_F(FinderExtensionMenuTest, WithoutFileTheMenuIsOneItemWithTheDefaultFeatures) {
    const Menu result = menu();
    EXPECT_EQ(result.title, "Quorva");
    ASSERT_THAT(result.items, SizeIs(1));
    const MenuItem& item = result.items.front();
    EXPECT_EQ(item.title, "Quorva");
    EXPECT_EQ(item.action, MenuItem::Action::none);
    EXPECT_TRUE(item.enabled);
    ASSERT_TRUE(item.submenu.has_value());
    EXPECT_EQ(item.submenu->title, "Quorva");
    // Without custom actions their feature yields nothing.
    EXPECT_THAT(
        titles(item.submenu->items),
        ElementsAre("打开", "新建", "移动到", "复制到", "批量改名", "压缩与解压缩", "定时清理",
                    "处理图片", "处理 PDF", "复制名称与路径", "用应用打开", "调整显示方式"));
}

TEST_F(FinderExtensionMenuTest, UngroupedMenuHoldsTheFeaturesThemselves) {
    putSettings({{"enabledFeatureIDs", strings({"pdfTools", "copyPath"})}});
    EXPECT_THAT(titles(menu().items), ElementsAre("处理 PDF", "复制名称与路径"));
    EXPECT_EQ(messages().back(), "menu topLevel=2");
}

TEST_F(FinderExtensionMenuTest, ExpandedMenuSeparatesTheFeatures) {
    putSettings({{"enabledFeatureIDs", strings({"archiveTools", "openWith", "viewOptions"})},
                 {"menuLayout", "expanded"}});
    EXPECT_THAT(
        titles(menu().items),
        ElementsAre("压缩为 ZIP", "解压到当前文件夹", "解压到同名文件夹", "-", "在 Finder 中显示",
                    "-", "列表 · 最近修改", "图标 · 按名称", "分栏 · 按名称"));
    EXPECT_EQ(messages().back(), "menu topLevel=9");
}

TEST_F(FinderExtensionMenuTest, ExpandedFeaturesWithoutItemsLeaveNoSeparator) {
    platform().putPropertyList(viewPresetsPath, PropertyList::Array{});
    putSettings({{"enabledFeatureIDs",
                  strings({"viewOptions", "openWith", "customActions", "archiveTools"})},
                 {"featureOrder",
                  strings({"customActions", "archiveTools", "viewOptions", "openWith", "quickOpen",
                           "createFile", "organizeFile", "copyFile", "copyPath", "batchRename",
                           "scheduledDeletion", "imageTools", "pdfTools"})},
                 {"menuLayout", "expanded"}});
    EXPECT_THAT(titles(menu().items), ElementsAre("压缩为 ZIP", "解压到当前文件夹",
                                                  "解压到同名文件夹", "-", "在 Finder 中显示"));
}

TEST_F(FinderExtensionMenuTest, ExpandedLastFeatureWithoutItemsLeavesNoSeparator) {
    putSettings({{"enabledFeatureIDs", strings({"archiveTools", "customActions"})},
                 {"menuLayout", "expanded"}});
    EXPECT_THAT(titles(menu().items),
                ElementsAre("压缩为 ZIP", "解压到当前文件夹", "解压到同名文件夹"));
}

TEST_F(FinderExtensionMenuTest, GroupedExpandedMenuIsOneItemWithTheSeparatedRuns) {
    putSettings({{"enabledFeatureIDs", strings({"archiveTools", "openWith"})},
                 {"menuLayout", "expanded"},
                 {"groupsFeaturesUnderQuorva", true}});
    const Menu result = menu();
    ASSERT_THAT(titles(result.items), ElementsAre("Quorva"));
    EXPECT_THAT(
        titles(result.items.front().submenu->items),
        ElementsAre("压缩为 ZIP", "解压到当前文件夹", "解压到同名文件夹", "-", "在 Finder 中显示"));
    EXPECT_EQ(messages().back(), "menu grouped under Quorva topLevel=1 submenuItems=5");
}

TEST_F(FinderExtensionMenuTest, GroupedItemIsThereEvenWithoutItems) {
    putSettings(
        {{"enabledFeatureIDs", strings({"customActions"})}, {"groupsFeaturesUnderQuorva", true}});
    for (const char* const layout : {"collapsed", "expanded"}) {
        putSettings({{"enabledFeatureIDs", strings({"customActions"})},
                     {"groupsFeaturesUnderQuorva", true},
                     {"menuLayout", layout}});
        const Menu result = menu();
        ASSERT_THAT(titles(result.items), ElementsAre("Quorva"));
        EXPECT_THAT(result.items.front().submenu->items, IsEmpty());
        EXPECT_EQ(messages().back(), "menu grouped under Quorva topLevel=1 submenuItems=0");
    }
}

TEST_F(FinderExtensionMenuTest, UngroupedMenuMayBeEmpty) {
    putSettings({{"enabledFeatureIDs", strings({"customActions"})}});
    const Menu result = menu();
    EXPECT_EQ(result.title, "Quorva");
    EXPECT_THAT(result.items, IsEmpty());
    EXPECT_EQ(messages().back(), "menu topLevel=0");
}

TEST_F(FinderExtensionMenuTest, WithoutFeaturesOneDisabledItemSaysSoWhateverTheGrouping) {
    for (const bool grouped : {false, true}) {
        clearHistory();
        putSettings(
            {{"enabledFeatureIDs", PropertyList::Array{}}, {"groupsFeaturesUnderQuorva", grouped}});
        const Menu result = menu();
        EXPECT_EQ(result.title, "Quorva");
        ASSERT_THAT(result.items, SizeIs(1));
        const MenuItem& item = result.items.front();
        EXPECT_EQ(item.title, "没有已启用功能");
        EXPECT_FALSE(item.enabled);
        EXPECT_EQ(item.action, MenuItem::Action::none);
        EXPECT_FALSE(item.submenu.has_value());
        EXPECT_THAT(messages(),
                    ElementsAre(std::string("menu kind=contextualMenuForItems selected=[] "
                                            "target=nil grouped=") +
                                (grouped ? "true" : "false") + " layout=collapsed"));
        EXPECT_THAT(platform().unifiedLog, SizeIs(1));
    }
}

TEST_F(FinderExtensionMenuTest, TextOfTheMenuWithoutFeaturesIsLocalised) {
    platform().translations["没有已启用功能"] = "No features enabled";
    putSettings({{"enabledFeatureIDs", PropertyList::Array{}}});
    EXPECT_THAT(titles(menu().items), ElementsAre("No features enabled"));
}

TEST_F(FinderExtensionMenuTest, RequestIsLoggedToTheUnifiedLogThenToTheDiagnosticLog) {
    platform().selectedItemURLs = {FileURL::file("/Users/ada/b \"x\".txt"),
                                   FileURL::directory("/Users/ada/a")};
    platform().targetedURL = FileURL::directory("/Users/ada");
    putSettings({{"enabledFeatureIDs", strings({"pdfTools"})}, {"menuLayout", "expanded"}});
    (void)menu(MenuKind::contextualMenuForContainer);
    EXPECT_THAT(platform().unifiedLog,
                ElementsAre(UnifiedLogRecord{
                    "app.ferrolin.Quorva.FinderExtension", "FinderSync",
                    "Menu requested. kind=1, selected=2, targeted=/Users/ada, features=1, "
                    "grouped=false, layout=expanded"}));
    EXPECT_THAT(messages(), ElementsAre("menu kind=contextualMenuForContainer "
                                        "selected=[\"/Users/ada/b \"x\".txt\", \"/Users/ada/a\"] "
                                        "target=/Users/ada grouped=false layout=expanded",
                                        "menu topLevel=4"));
    EXPECT_EQ(platform().journal.front().kind, Event::Kind::unifiedLogRecord);
}

TEST_F(FinderExtensionMenuTest, RequestWithoutSelectionAndTargetIsLoggedAsSuch) {
    (void)menu();
    EXPECT_EQ(platform().unifiedLog.front().message,
              "Menu requested. kind=0, selected=0, targeted=nil, features=13, grouped=true, "
              "layout=collapsed");
    EXPECT_EQ(messages().front(),
              "menu kind=contextualMenuForItems selected=[] target=nil grouped=true "
              "layout=collapsed");
    EXPECT_EQ(messages().back(), "menu grouped under Quorva topLevel=1 submenuItems=12");
}

struct KindRow {
    MenuKind kind;
    const char* number;
    const char* description;
};

TEST_F(FinderExtensionMenuTest, EveryKindGivesTheSameMenuAndIsLogged) {
    const KindRow rows[] = {
        {MenuKind::contextualMenuForItems, "0", "contextualMenuForItems"},
        {MenuKind::contextualMenuForContainer, "1", "contextualMenuForContainer"},
        {MenuKind::contextualMenuForSidebar, "2", "contextualMenuForSidebar"},
        {MenuKind::toolbarItemMenu, "3", "toolbarItemMenu"},
        {static_cast<MenuKind>(17), "17", "FIMenuKind(17)"},
    };
    const std::vector<std::string> expected =
        titles(menu(MenuKind::contextualMenuForItems).items.front().submenu->items);
    for (const KindRow& row : rows) {
        clearHistory();
        EXPECT_EQ(titles(menu(row.kind).items.front().submenu->items), expected);
        EXPECT_TRUE(platform().unifiedLog.front().message.starts_with(
            std::string("Menu requested. kind=") + row.number + ", "));
        EXPECT_TRUE(messages().front().starts_with(std::string("menu kind=") + row.description +
                                                   " selected="));
    }
}

TEST_F(FinderExtensionMenuTest, ItemsCarryTheSelectionAndTheTargetOfTheRequest) {
    platform().selectedItemURLs = {FileURL::file("/a"), FileURL::file("/b")};
    platform().targetedURL = FileURL::directory("/t");
    putSettings({{"enabledFeatureIDs", strings({"pdfTools"})}, {"menuLayout", "expanded"}});
    const Menu result = menu();
    platform().selectedItemURLs.reset();
    platform().targetedURL.reset();
    for (const MenuItem& item : result.items) {
        const FinderActionContext* const context = attachedContext(item);
        ASSERT_NE(context, nullptr);
        EXPECT_THAT(context->selectedURLs().urls(),
                    ElementsAre(FileURL::file("/a"), FileURL::file("/b")));
        EXPECT_EQ(context->targetedURL(), FileURL::directory("/t"));
        EXPECT_TRUE(item.enabled);
    }
}

TEST_F(FinderExtensionMenuTest, EntriesThatCannotActAreShownDisabled) {
    putSettings({{"enabledFeatureIDs", strings({"pdfTools"})}, {"menuLayout", "expanded"}});
    const Menu result = menu();
    EXPECT_THAT(result.items, SizeIs(4));
    for (const MenuItem& item : result.items) {
        EXPECT_FALSE(item.enabled);
    }
}

TEST_F(FinderExtensionMenuTest, EveryRequestReadsTheSettingsAfresh) {
    putSettings({{"enabledFeatureIDs", strings({"pdfTools"})}});
    EXPECT_THAT(titles(menu().items), ElementsAre("处理 PDF"));
    putSettings({{"enabledFeatureIDs", strings({"copyPath"})}});
    EXPECT_THAT(titles(menu().items), ElementsAre("复制名称与路径"));
}

// Memory that runs out. Whoever calls the extension contains it.

TEST_F(FinderExtensionTest, ExtensionWhoseStartFailedStillGivesMenus) {
    platform().raise(Operation::setDirectoryURLs, outOfMemory);
    FinderExtension extension;
    contain("start", [&] { extension.start(); });
    EXPECT_THAT(messages(), ElementsAre("start failed: std::bad_alloc"));
    EXPECT_THAT(extension.menu(MenuKind::contextualMenuForItems).items, SizeIs(1));
}

TEST_F(FinderExtensionTest, RefreshThatFailsKeepsTheFolders) {
    FinderExtension extension;
    extension.start();
    platform().raise(Operation::setDirectoryURLs, outOfMemory);
    platform().putDirectory("/Users/ada/Projects");
    contain("settings change", [&] { extension.handleSettingsChanged(std::nullopt); });
    EXPECT_EQ(platform().directoryURLs, defaultDirectories());
    EXPECT_EQ(messages().back(), "settings change failed: std::bad_alloc");
}

TEST_F(FinderExtensionTest, FoldersThatCannotBeSetAreLogged) {
    platform().fail(Operation::setDirectoryURLs, "no controller");
    FinderExtension().start();
    EXPECT_THAT(messages(), ElementsAre("setting the monitored folders failed: no controller",
                                        "started monitored=" + defaultDirectoryList));
}

TEST_F(FinderExtensionTest, MenuRequestAfterOneThatFailedSucceeds) {
    FinderExtension extension;
    platform().raise(Operation::localizeString, outOfMemory);
    contain("menu request", [&] { (void)extension.menu(MenuKind::contextualMenuForItems); });
    EXPECT_EQ(messages().back(), "menu request failed: std::bad_alloc");
    platform().failures.clear();
    EXPECT_THAT(extension.menu(MenuKind::contextualMenuForItems).items, SizeIs(1));
}

// The click.

TEST_F(FinderExtensionTest, ClickIsHandedToTheContainingApplication) {
    const FinderExtension extension;
    MenuItem item;
    item.title = "复制完整路径";
    extension.performFeatureChild(item);
    EXPECT_THAT(platform().filesBelow(queuePath), SizeIs(1));
    EXPECT_THAT(platform().notifications, ElementsAre("app.ferrolin.Quorva.ActionQueued"));
    EXPECT_THAT(platform().launches, SizeIs(1));
}

TEST_F(FinderExtensionTest, ClickActsOnTheTaggedEntryOfTheMenuBefore) {
    putTwoPlacesOfOneName();
    FinderExtension extension;
    MenuItem sender = extension.menu(MenuKind::contextualMenuForItems).items[0].submenu->items[1];
    EXPECT_EQ(sender.tag, 2);
    sender.representedObject = {};
    extension.performFeatureChild(sender);
    ASSERT_THAT(platform().jsonObjects, SizeIs(1));
    EXPECT_EQ(*platform().jsonObjects[0].dictionary()->at("destinationPath").string(), "/2");
}

TEST_F(FinderExtensionTest, MenuThatFailsToBeTaggedLeavesTheMenuBeforeForClicks) {
    putTwoPlacesOfOneName();
    FinderExtension extension;
    MenuItem sender = extension.menu(MenuKind::contextualMenuForItems).items[0].submenu->items[1];
    // The custom actions are not shown, so only the tagging reads them.
    platform().failures.push_back({Operation::readFile, customShortcutActionsPath, outOfMemory});
    EXPECT_THROW((void)extension.menu(MenuKind::contextualMenuForItems), std::bad_alloc);
    platform().failures.clear();
    sender.representedObject = {};
    extension.performFeatureChild(sender);
    ASSERT_THAT(platform().jsonObjects, SizeIs(1));
    EXPECT_EQ(*platform().jsonObjects[0].dictionary()->at("destinationPath").string(), "/2");
}

// One reading.

TEST_F(FinderExtensionTest, MenuReadsEachSettingsFileOnce) {
    putSettings({{"menuLayout", "expanded"}});
    platform().putPropertyList(
        customDestinationsPath,
        PropertyList::Dictionary{{"copy", list({destination("c", "项目", "/c")})},
                                 {"move", list({destination("m", "项目", "/m")})}});
    FinderExtension extension;
    (void)extension.menu(MenuKind::contextualMenuForItems);
    EXPECT_THAT(platform().reads,
                ElementsAre(Pair(customDestinationsPath, 1), Pair(customShortcutActionsPath, 1),
                            Pair(featureSettingsPath, 1), Pair(viewPresetsPath, 1)));
}

TEST_F(FinderExtensionTest, ClickReadsEachSettingsFileOnce) {
    const FinderExtension extension;
    MenuItem item;
    item.title = "复制完整路径";
    item.identifier = "runScript__unknown";
    extension.performFeatureChild(item);
    EXPECT_THAT(platform().reads,
                ElementsAre(Pair(customDestinationsPath, 1), Pair(customShortcutActionsPath, 1),
                            Pair(viewPresetsPath, 1)));
}

TEST_F(FinderExtensionTest, ClickOnAnIntactItemReadsNoSettings) {
    FinderExtension extension;
    const MenuItem item = extension.menu(MenuKind::contextualMenuForItems)
                              .items[0]
                              .submenu->items[0]
                              .submenu->items[0];
    platform().reads.clear();
    extension.performFeatureChild(item);
    EXPECT_THAT(platform().reads, IsEmpty());
    EXPECT_THAT(platform().filesBelow(queuePath), SizeIs(1));
}

}  // namespace
}  // namespace quorva
