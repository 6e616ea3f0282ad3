#include "QuorvaFinderExtension/FinderSync.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using fakePlatform::Event;
using fakePlatform::Operation;
using fakePlatform::UnifiedLogRecord;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using URLs = std::set<FileURL>;

class FinderSyncTest : public UnitTest {
 protected:
    static void putSettings(PropertyList::Dictionary root) {
        platform().putPropertyList(featureSettingsPath, std::move(root));
    }

    /// Forgets what happened so far.
    static void clearHistory() {
        platform().journal.clear();
        platform().consoleLines.clear();
        platform().unifiedLog.clear();
    }

    static URLs directories(std::initializer_list<const char*> paths) {
        URLs urls;
        for (const char* const path : paths) {
            urls.insert(FileURL::directory(path));
        }
        return urls;
    }

    /// The folders monitored on the machine as made.
    static URLs defaultDirectories() {
        return directories({
            "/Applications",
            "/Users/ada",
            "/Users/ada/Desktop",
            "/Users/ada/Documents",
            "/Users/ada/Downloads",
            "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs",
            "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Desktop",
            "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Documents",
            "/Users/ada/Movies",
            "/Users/ada/Music",
            "/Users/ada/Pictures",
            "/Volumes",
        });
    }

    static inline const std::string defaultDirectoryList =
        R"(["/Applications", "/Users/ada", "/Users/ada/Desktop", "/Users/ada/Documents", )"
        R"("/Users/ada/Downloads", "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs", )"
        R"("/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Desktop", )"
        R"("/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Documents", )"
        R"("/Users/ada/Movies", "/Users/ada/Music", "/Users/ada/Pictures", "/Volumes"])";
};

TEST_F(FinderSyncTest, ToolbarItemHasItsNameAndToolTip) {
    EXPECT_EQ(FinderSync::toolbarItemName, "Quorva");
    EXPECT_EQ(FinderSync::toolbarItemToolTip, "Send selected files to Quorva");
}

TEST_F(FinderSyncTest, SettingsNotificationHasItsName) {
    EXPECT_EQ(FinderSync::settingsChangedNotificationName, "app.ferrolin.Quorva.SettingsChanged");
}

// Start and refresh.

TEST_F(FinderSyncTest, StartSetsTheMonitoredFolders) {
    const FinderSync finderSync;
    EXPECT_EQ(platform().directoryURLs, defaultDirectories());
}

TEST_F(FinderSyncTest, StartSetsTheFoldersThenLogsToBothLogs) {
    const FinderSync finderSync;
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

TEST_F(FinderSyncTest, UnifiedLogRecordsCarrySubsystemAndCategory) {
    const FinderSync finderSync;
    EXPECT_THAT(platform().unifiedLog,
                ElementsAre(UnifiedLogRecord{
                    "app.ferrolin.Quorva.FinderExtension", "FinderSync",
                    "FinderSync refreshed directories. reason=started, count=12"}));
}

TEST_F(FinderSyncTest, ChangedSettingsRefreshTheFoldersWithTheSendersReason) {
    FinderSync finderSync;
    clearHistory();
    platform().putDirectory("/Users/ada/Projects");
    finderSync.handleSettingsChanged(PropertyList::Dictionary{{"reason", "menu edited"}});
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

TEST_F(FinderSyncTest, ChangedSettingsReplaceTheFolders) {
    platform().putDirectory("/Users/ada/Projects");
    FinderSync finderSync;
    platform().entries.erase("/Users/ada/Projects");
    finderSync.handleSettingsChanged(PropertyList::Dictionary{{"reason", "x"}});
    EXPECT_EQ(platform().directoryURLs, defaultDirectories());
}

TEST_F(FinderSyncTest, NotificationWithoutATextAsReasonHasTheReasonUnknown) {
    const std::optional<PropertyList::Dictionary> infos[] = {
        std::nullopt,
        PropertyList::Dictionary{},
        PropertyList::Dictionary{{"Reason", "x"}},
        PropertyList::Dictionary{{"reason", true}},
        PropertyList::Dictionary{{"reason", std::int64_t{1}}},
        PropertyList::Dictionary{{"reason", strings({"x"})}},
    };
    for (const auto& info : infos) {
        FinderSync finderSync;
        clearHistory();
        finderSync.handleSettingsChanged(info);
        EXPECT_THAT(messages(),
                    ElementsAre("settings changed notification reason=unknown",
                                "settings-changed:unknown monitored=" + defaultDirectoryList));
        EXPECT_EQ(platform().unifiedLog.front().message,
                  "FinderSync refreshed directories. reason=settings-changed:unknown, count=12");
    }
}

TEST_F(FinderSyncTest, ReasonMayBeEmptyOrHoldAnything) {
    FinderSync finderSync;
    for (const char* const reason : {"", "a\n\"b\" %@ 😀"}) {
        clearHistory();
        finderSync.handleSettingsChanged(PropertyList::Dictionary{{"reason", reason}});
        EXPECT_EQ(messages().at(0), std::string("settings changed notification reason=") + reason);
        EXPECT_EQ(messages().at(1),
                  std::string("settings-changed:") + reason + " monitored=" + defaultDirectoryList);
    }
}

TEST_F(FinderSyncTest, PathOfTwoURLsIsListedTwice) {
    platform().standardDirectories[SearchPathDirectory::movies] = {FileURL::file("/Films")};
    const FinderSync finderSync;
    EXPECT_TRUE(platform().directoryURLs.contains(FileURL::file("/Films")));
    EXPECT_TRUE(platform().directoryURLs.contains(FileURL::directory("/Films")));
    EXPECT_NE(messages().front().find(R"("/Films", "/Films")"), std::string::npos);
}

// The monitored folders.

TEST_F(FinderSyncTest, ContainersHomeAndTheRealHomeAreBothMonitored) {
    platform().enterSandbox();
    const URLs urls = monitoredDirectoryURLs();
    const std::string container =
        "/Users/ada/Library/Containers/app.ferrolin.Quorva.FinderExtension/Data";
    for (const std::string& path :
         {container, container + "/Desktop", container + "/Pictures", std::string("/Users/ada"),
          std::string("/Users/ada/Desktop"), std::string("/Users/ada/Documents")}) {
        EXPECT_TRUE(urls.contains(FileURL::directory(path))) << path;
    }
    EXPECT_FALSE(urls.contains(FileURL::directory(container + "/Library/Application Support")));
}

TEST_F(FinderSyncTest, BaseFoldersAreMonitoredWhetherOrNotTheyExist) {
    platform().entries.clear();
    platform().standardDirectories.clear();
    EXPECT_EQ(monitoredDirectoryURLs(),
              directories({"/Applications", "/Volumes", "/Users/ada", "/Users/ada/Desktop",
                           "/Users/ada/Documents",
                           "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs",
                           "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Desktop",
                           "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Documents"}));
}

TEST_F(FinderSyncTest, FirstURLOfEachStandardDirectoryIsMonitored) {
    for (const auto directory : {SearchPathDirectory::desktop, SearchPathDirectory::documents,
                                 SearchPathDirectory::downloads, SearchPathDirectory::movies,
                                 SearchPathDirectory::music, SearchPathDirectory::pictures}) {
        fakePlatform::reset();
        platform().standardDirectories[directory] = {FileURL::directory("/Volumes/Big/First"),
                                                     FileURL::directory("/Volumes/Big/Second")};
        const URLs urls = monitoredDirectoryURLs();
        EXPECT_TRUE(urls.contains(FileURL::directory("/Volumes/Big/First")));
        EXPECT_FALSE(urls.contains(FileURL::directory("/Volumes/Big/Second")));
    }
}

TEST_F(FinderSyncTest, ApplicationSupportIsNotMonitored) {
    platform().standardDirectories[SearchPathDirectory::applicationSupport] = {
        FileURL::directory("/Volumes/Big/Support")};
    EXPECT_FALSE(monitoredDirectoryURLs().contains(FileURL::directory("/Volumes/Big/Support")));
}

TEST_F(FinderSyncTest, VisibleFoldersInTheRealHomeAreMonitored) {
    platform().putDirectory("/Users/ada/Projects/Deep");
    platform().putDirectory("/Users/ada/.hidden");
    platform().putDirectory("/Users/ada/Attribute");
    platform().find("/Users/ada/Attribute")->hidden = true;
    platform().putFile("/Users/ada/notes.txt", "");
    URLs expected = defaultDirectories();
    expected.insert(FileURL::directory("/Users/ada/Projects"));
    EXPECT_EQ(monitoredDirectoryURLs(), expected);
}

TEST_F(FinderSyncTest, FoldersOfTheRealHomeAreListedAndNotThoseOfTheContainer) {
    platform().enterSandbox();
    platform().putDirectory("/Users/ada/Projects");
    platform().putDirectory(platform().homeDirectory.path() + "/Inner");
    const URLs urls = monitoredDirectoryURLs();
    EXPECT_TRUE(urls.contains(FileURL::directory("/Users/ada/Projects")));
    EXPECT_FALSE(urls.contains(platform().homeDirectory.appendingDirectory("Inner")));
}

TEST_F(FinderSyncTest, HomeThatCannotBeListedLeavesTheOtherFolders) {
    platform().putDirectory("/Users/ada/Projects");
    platform().fail(Operation::listDirectory);
    EXPECT_EQ(monitoredDirectoryURLs(), defaultDirectories());
    platform().failures.clear();
    platform().putDirectory("/Users/ada").readable = false;
    EXPECT_EQ(monitoredDirectoryURLs(), defaultDirectories());
}

TEST_F(FinderSyncTest, HomeBehindASymbolicLinkIsMonitoredUnderBothPaths) {
    platform().putDirectory("/Volumes/Big/ada/Projects");
    std::erase_if(platform().entries,
                  [](const auto& entry) { return entry.first.starts_with("/Users/ada"); });
    platform().putSymbolicLink("/Users/ada", "/Volumes/Big/ada");
    const URLs urls = monitoredDirectoryURLs();
    for (const char* const path :
         {"/Users/ada", "/Volumes/Big/ada", "/Users/ada/Desktop", "/Volumes/Big/ada/Desktop",
          "/Users/ada/Projects", "/Volumes/Big/ada/Projects"}) {
        EXPECT_TRUE(urls.contains(FileURL::directory(path))) << path;
    }
}

// The variants of a URL.

TEST_F(FinderSyncTest, NoURLsHaveNoVariants) {
    EXPECT_THAT(normalizedDirectoryVariants({}), IsEmpty());
}

TEST_F(FinderSyncTest, PlainDirectoryIsItsOnlyVariant) {
    EXPECT_EQ(normalizedDirectoryVariants({FileURL::directory("/Users/ada")}),
              directories({"/Users/ada"}));
}

TEST_F(FinderSyncTest, FileURLGetsADirectoryVariant) {
    EXPECT_EQ(normalizedDirectoryVariants({FileURL::file("/Users/ada")}),
              (URLs{FileURL::file("/Users/ada"), FileURL::directory("/Users/ada")}));
}

TEST_F(FinderSyncTest, VariantsAreTheURLItsStandardFormAndItsResolvedPath) {
    platform().putSymbolicLink("/var", "/private/var");
    platform().putDirectory("/private/var/data");
    EXPECT_EQ(normalizedDirectoryVariants({FileURL::directory("/var/./data")}),
              directories({"/var/./data", "/var/data", "/private/var/data"}));
}

TEST_F(FinderSyncTest, VariantsOfSeveralURLsMerge) {
    platform().putSymbolicLink("/link", "/Users/ada");
    EXPECT_EQ(
        normalizedDirectoryVariants({FileURL::directory("/link"), FileURL::directory("/Users/ada"),
                                     FileURL::directory("/link")}),
        directories({"/link", "/Users/ada"}));
}

// The real home.

struct HomeRow {
    const char* description;
    std::optional<std::string> accountHome;
    std::map<SearchPathDirectory, std::string> standardDirectories;
    const char* realHome;
};

TEST_F(FinderSyncTest, RealHomeIsTheFirstThatIsAUsersAndInNoContainer) {
    using enum SearchPathDirectory;
    const std::string container = "/Users/ada/Library/Containers/x/Data";
    const HomeRow rows[] = {
        {"the account's home", "/Users/ada", {{desktop, "/Users/bob/Desktop"}}, "/Users/ada"},
        {"an account's home of another name", "/Users/x y", {}, "/Users/x y"},
        {"no account, desktop", std::nullopt, {{desktop, "/Users/bob/Desktop"}}, "/Users/bob"},
        {"account in a container", container, {{desktop, "/Users/bob/Desktop"}}, "/Users/bob"},
        {"account elsewhere", "/home/ada", {{desktop, "/Users/bob/Desktop"}}, "/Users/bob"},
        {"account's prefix to the letter", "/users/ada", {{desktop, "/Users/bob/D"}}, "/Users/bob"},
        {"account without a folder", "/Users", {{desktop, "/Users/bob/Desktop"}}, "/Users/bob"},
        {"container's name within a name",
         "/Users/ada/Library/ContainersX/y",
         {},
         "/Users/ada/Library/ContainersX/y"},
        {"desktop in a container, downloads next",
         std::nullopt,
         {{desktop, container + "/Desktop"},
          {downloads, "/Users/bob/Downloads"},
          {movies, "/Users/eve/Movies"}},
         "/Users/bob"},
        {"desktop elsewhere, movies next",
         std::nullopt,
         {{desktop, "/Volumes/Big/Desktop"},
          {movies, "/Users/bob/Movies"},
          {music, "/Users/eve/Music"}},
         "/Users/bob"},
        {"music before pictures",
         std::nullopt,
         {{pictures, "/Users/eve/Pictures"}, {music, "/Users/bob/Music"}},
         "/Users/bob"},
        {"pictures last", std::nullopt, {{pictures, "/Users/bob/Pictures"}}, "/Users/bob"},
        {"documents are not consulted",
         std::nullopt,
         {{documents, "/Users/bob/Documents"}},
         "/Users/ada"},
        {"application support is not consulted",
         std::nullopt,
         {{applicationSupport, "/Users/bob/Support"}},
         "/Users/ada"},
        {"nothing qualifies",
         container,
         {{desktop, container + "/Desktop"}, {downloads, "/Downloads"}},
         "/Users/ada"},
    };
    for (const HomeRow& row : rows) {
        fakePlatform::reset();
        platform().homeDirectoriesByUserName.clear();
        if (row.accountHome) {
            platform().homeDirectoriesByUserName["ada"] = *row.accountHome;
        }
        platform().standardDirectories.clear();
        for (const auto& [directory, path] : row.standardDirectories) {
            platform().standardDirectories[directory] = {FileURL::directory(path)};
        }
        EXPECT_EQ(realUserHomeURL(), FileURL::directory(row.realHome)) << row.description;
    }
}

TEST_F(FinderSyncTest, OnlyTheFirstURLOfAStandardDirectoryIsConsultedForTheRealHome) {
    platform().homeDirectoriesByUserName.clear();
    platform().standardDirectories = {
        {SearchPathDirectory::desktop,
         {FileURL::directory("/Volumes/Big/Desktop"), FileURL::directory("/Users/bob/Desktop")}}};
    EXPECT_EQ(realUserHomeURL(), FileURL::directory("/Users/ada"));
}

TEST_F(FinderSyncTest, RealHomeDoesNotDependOnTheReportedHome) {
    platform().homeDirectory = FileURL::directory("/Users/eve");
    EXPECT_EQ(realUserHomeURL(), FileURL::directory("/Users/ada"));
}

// The selection.

TEST_F(FinderSyncTest, SelectionIsEmptyWhenFinderGivesNone) {
    EXPECT_TRUE(currentFinderSelection().empty());
    platform().selectedItemURLs = std::vector<FileURL>{};
    EXPECT_TRUE(currentFinderSelection().empty());
    platform().selectedItemURLs = {FileURL::file("/b"), FileURL::file("/a")};
    EXPECT_THAT(currentFinderSelection().urls(),
                ElementsAre(FileURL::file("/b"), FileURL::file("/a")));
}

// The menu.

class FinderSyncMenuTest : public FinderSyncTest {
 protected:
    FinderSyncMenuTest() { clearHistory(); }

    Menu menu(MenuKind kind = MenuKind::contextualMenuForItems) const {
        return finderSync_.menu(kind);
    }

    const FinderSync finderSync_;
};

TEST_F(FinderSyncMenuTest, WithoutFileTheMenuIsOneItemWithTheDefaultFeatures) {
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

TEST_F(FinderSyncMenuTest, UngroupedMenuHoldsTheFeaturesThemselves) {
    putSettings({{"enabledFeatureIDs", strings({"pdfTools", "copyPath"})}});
    EXPECT_THAT(titles(menu().items), ElementsAre("处理 PDF", "复制名称与路径"));
    EXPECT_EQ(messages().back(), "menu topLevel=2");
}

TEST_F(FinderSyncMenuTest, ExpandedMenuSeparatesTheFeatures) {
    putSettings({{"enabledFeatureIDs", strings({"archiveTools", "openWith", "viewOptions"})},
                 {"menuLayout", "expanded"}});
    EXPECT_THAT(
        titles(menu().items),
        ElementsAre("压缩为 ZIP", "解压到当前文件夹", "解压到同名文件夹", "-", "在 Finder 中显示",
                    "-", "列表 · 最近修改", "图标 · 按名称", "分栏 · 按名称"));
    EXPECT_EQ(messages().back(), "menu topLevel=9");
}

TEST_F(FinderSyncMenuTest, ExpandedFeaturesWithoutItemsLeaveNoSeparator) {
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

TEST_F(FinderSyncMenuTest, ExpandedLastFeatureWithoutItemsLeavesNoSeparator) {
    putSettings({{"enabledFeatureIDs", strings({"archiveTools", "customActions"})},
                 {"menuLayout", "expanded"}});
    EXPECT_THAT(titles(menu().items),
                ElementsAre("压缩为 ZIP", "解压到当前文件夹", "解压到同名文件夹"));
}

TEST_F(FinderSyncMenuTest, GroupedExpandedMenuIsOneItemWithTheSeparatedRuns) {
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

TEST_F(FinderSyncMenuTest, GroupedItemIsThereEvenWithoutItems) {
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

TEST_F(FinderSyncMenuTest, UngroupedMenuMayBeEmpty) {
    putSettings({{"enabledFeatureIDs", strings({"customActions"})}});
    const Menu result = menu();
    EXPECT_EQ(result.title, "Quorva");
    EXPECT_THAT(result.items, IsEmpty());
    EXPECT_EQ(messages().back(), "menu topLevel=0");
}

TEST_F(FinderSyncMenuTest, WithoutFeaturesOneDisabledItemSaysSoWhateverTheGrouping) {
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

TEST_F(FinderSyncMenuTest, TextOfTheMenuWithoutFeaturesIsLocalised) {
    platform().translations["没有已启用功能"] = "No features enabled";
    putSettings({{"enabledFeatureIDs", PropertyList::Array{}}});
    EXPECT_THAT(titles(menu().items), ElementsAre("No features enabled"));
}

TEST_F(FinderSyncMenuTest, RequestIsLoggedToTheUnifiedLogThenToTheDiagnosticLog) {
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

TEST_F(FinderSyncMenuTest, RequestWithoutSelectionAndTargetIsLoggedAsSuch) {
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

TEST_F(FinderSyncMenuTest, EveryKindGivesTheSameMenuAndIsLogged) {
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

TEST_F(FinderSyncMenuTest, ItemsCarryTheSelectionAndTheTargetOfTheRequest) {
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

TEST_F(FinderSyncMenuTest, EntriesThatCannotActAreShownDisabled) {
    putSettings({{"enabledFeatureIDs", strings({"pdfTools"})}, {"menuLayout", "expanded"}});
    const Menu result = menu();
    EXPECT_THAT(result.items, SizeIs(4));
    for (const MenuItem& item : result.items) {
        EXPECT_FALSE(item.enabled);
    }
}

TEST_F(FinderSyncMenuTest, EveryRequestReadsTheSettingsAfresh) {
    putSettings({{"enabledFeatureIDs", strings({"pdfTools"})}});
    EXPECT_THAT(titles(menu().items), ElementsAre("处理 PDF"));
    putSettings({{"enabledFeatureIDs", strings({"copyPath"})}});
    EXPECT_THAT(titles(menu().items), ElementsAre("复制名称与路径"));
}

// Nothing that goes wrong reaches the system.

TEST_F(FinderSyncTest, ExhaustedMemoryAtTheStartLeavesAnExtensionThatAnswers) {
    platform().raise(Operation::setDirectoryURLs, outOfMemory);
    const FinderSync finderSync;
    EXPECT_THAT(platform().directoryURLs, IsEmpty());
    EXPECT_THAT(finderSync.menu(MenuKind::contextualMenuForItems).items, SizeIs(1));
}

TEST_F(FinderSyncTest, ExhaustedMemoryAtARefreshKeepsTheFolders) {
    FinderSync finderSync;
    platform().raise(Operation::setDirectoryURLs, outOfMemory);
    platform().putDirectory("/Users/ada/Projects");
    finderSync.handleSettingsChanged(std::nullopt);
    EXPECT_EQ(platform().directoryURLs, defaultDirectories());
}

TEST_F(FinderSyncTest, MenuThatCannotBeBuiltIsEmptyAndTheReasonIsLogged) {
    const FinderSync finderSync;
    platform().raise(Operation::readSelection, outOfMemory);
    EXPECT_THAT(finderSync.menu(MenuKind::contextualMenuForItems).items, IsEmpty());
    EXPECT_EQ(messages().back(), std::bad_alloc().what());
    platform().failures.clear();
    EXPECT_THAT(finderSync.menu(MenuKind::contextualMenuForItems).items, SizeIs(1));
}

TEST_F(FinderSyncTest, ExceptionsOfAnyTypeAreKeptFromTheSystem) {
    const FinderSync finderSync;
    platform().raise(Operation::localizeString, std::make_exception_ptr(1));
    EXPECT_THAT(finderSync.menu(MenuKind::contextualMenuForItems).items, IsEmpty());
}

TEST_F(FinderSyncTest, ClickThatGoesWrongEndsQuietly) {
    const FinderSync finderSync;
    for (const Operation operation :
         {Operation::readSelection, Operation::localizeString, Operation::readFile,
          Operation::generateUUID, Operation::postNotification, Operation::countRunningApplications,
          Operation::openApplication, Operation::logToConsole}) {
        fakePlatform::reset();
        platform().raise(operation, outOfMemory);
        MenuItem item;
        item.title = "复制完整路径";
        finderSync.performFeatureChild(item);
    }
}

TEST_F(FinderSyncTest, ClickIsHandedToTheContainingApplication) {
    const FinderSync finderSync;
    MenuItem item;
    item.title = "复制完整路径";
    finderSync.performFeatureChild(item);
    EXPECT_THAT(platform().filesBelow(queuePath), SizeIs(1));
    EXPECT_THAT(platform().notifications, ElementsAre("app.ferrolin.Quorva.ActionQueued"));
    EXPECT_THAT(platform().launches, SizeIs(1));
}

}  // namespace
}  // namespace quorva
