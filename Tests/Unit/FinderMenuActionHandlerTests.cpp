#include "QuorvaFinderExtension/FinderMenuActionHandler.hpp"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <thread>

#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using fakePlatform::Event;
using fakePlatform::Operation;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Action = FinderFeatureAction;

class FinderMenuActionHandlerTest : public UnitTest {
 protected:
    static void click(const MenuItem& item) {
        FinderMenuActionHandler::shared().performFeatureChild(item, Menu{});
    }

    static MenuItem titled(const std::string& title) {
        MenuItem item;
        item.title = title;
        return item;
    }

    static MenuItem withContext(FinderActionContext context) {
        MenuItem item = titled(context.title());
        item.representedObject = std::make_shared<const FinderActionContext>(std::move(context));
        return item;
    }

    static std::vector<std::string> records() { return platform().filesBelow(queuePath); }

    static nlohmann::json onlyRecord() {
        EXPECT_THAT(records(), SizeIs(1));
        return records().empty() ? nlohmann::json()
                                 : nlohmann::json::parse(*platform().contents(records().front()));
    }

    /// The journal without the writing of the log files.
    static std::vector<Event> steps() {
        std::vector<Event> result;
        std::ranges::copy_if(
            platform().journal, std::back_inserter(result), [](const Event& event) {
                return event.kind != Event::Kind::fileAppended && event.text != temporaryLogPath &&
                       event.text != containerLogPath && event.text != settingsFolder;
            });
        return result;
    }
};

TEST_F(FinderMenuActionHandlerTest, ThereIsOneHandler) {
    EXPECT_EQ(&FinderMenuActionHandler::shared(), &FinderMenuActionHandler::shared());
}

TEST_F(FinderMenuActionHandlerTest, NamesAreTheAgreedOnes) {
    EXPECT_EQ(FinderMenuActionHandler::actionQueuedNotificationName,
              "app.ferrolin.Quorva.ActionQueued");
    EXPECT_EQ(FinderMenuActionHandler::containingApplicationIdentifier, "app.ferrolin.Quorva");
}

// The order of a click.

TEST_F(FinderMenuActionHandlerTest, ClickIsLoggedQueuedAnnouncedAndTheApplicationOpened) {
    platform().uuids = {"A0000000-0000-4000-8000-000000000001"};
    platform().selectedItemURLs = {FileURL::file("/b"), FileURL::file("/a")};
    platform().targetedURL = FileURL::directory("/t");
    click(titled("合并 PDF"));
    EXPECT_THAT(
        steps(),
        ElementsAre(message("clicked sender=合并 PDF"),
                    message("action=mergePDFs title=合并 PDF selected=[\"/b\", \"/a\"] target=/t "
                            "destination=nil"),
                    Event{Event::Kind::directoryCreated, queuePath},
                    Event{Event::Kind::fileWritten,
                          queuePath + "/A0000000-0000-4000-8000-000000000001.json"},
                    message("queued action: mergePDFs"),
                    Event{Event::Kind::notificationPosted, "app.ferrolin.Quorva.ActionQueued"},
                    Event{Event::Kind::applicationOpened, "/Applications/Quorva.app"}));
}

TEST_F(FinderMenuActionHandlerTest, ClickOnAnItemThatResolvesToNothingWritesTwoLinesAndNoMore) {
    platform().selectedItemURLs = {FileURL::file("/b")};
    click(titled("no such entry"));
    EXPECT_THAT(steps(), ElementsAre(message("clicked sender=no such entry"),
                                     message("missing context for sender=no such entry")));
    EXPECT_EQ(platform().find(queuePath), nullptr);
}

TEST_F(FinderMenuActionHandlerTest, TwoClicksAreTwoRecordsAndTwoNotifications) {
    click(titled("合并 PDF"));
    click(titled("合并 PDF"));
    EXPECT_THAT(records(), SizeIs(2));
    EXPECT_THAT(platform().notifications, SizeIs(2));
}

// Selection and target.

class FinderMenuActionHandlerSelectionTest : public FinderMenuActionHandlerTest {
 protected:
    static MenuItem item() {
        return withContext({"mergePDFs", "合并 PDF", Action::requiresSelection(),
                            std::vector<FileURL>{FileURL::file("/then")},
                            FileURL::directory("/target/then"), "/d", "p"});
    }
};

TEST_F(FinderMenuActionHandlerSelectionTest, SelectionAndTargetOfTheClickCount) {
    platform().selectedItemURLs = {FileURL::file("/now")};
    platform().targetedURL = FileURL::directory("/target/now");
    click(item());
    EXPECT_EQ(onlyRecord().at("selectedPaths"), nlohmann::json({"/now"}));
    EXPECT_EQ(onlyRecord().at("targetedPath"), "/target/now");
}

TEST_F(FinderMenuActionHandlerSelectionTest, WithoutSelectionAtTheClickTheMenusCounts) {
    for (const auto& none :
         {std::optional<std::vector<FileURL>>(), std::optional(std::vector<FileURL>{})}) {
        fakePlatform::reset();
        platform().selectedItemURLs = none;
        platform().targetedURL = FileURL::directory("/target/now");
        click(item());
        EXPECT_EQ(onlyRecord().at("selectedPaths"), nlohmann::json({"/then"}));
        EXPECT_EQ(onlyRecord().at("targetedPath"), "/target/now");
    }
}

TEST_F(FinderMenuActionHandlerSelectionTest, WithoutTargetAtTheClickTheMenusCounts) {
    platform().selectedItemURLs = {FileURL::file("/now")};
    click(item());
    EXPECT_EQ(onlyRecord().at("selectedPaths"), nlohmann::json({"/now"}));
    EXPECT_EQ(onlyRecord().at("targetedPath"), "/target/then");
    EXPECT_THAT(messages(), Contains("action=mergePDFs title=合并 PDF selected=[\"/now\"] "
                                     "target=/target/then destination=/d"));
}

TEST_F(FinderMenuActionHandlerSelectionTest, WithoutAnyTheRecordIsEmptyAndTheLineSaysNil) {
    click(titled("合并 PDF"));
    EXPECT_EQ(onlyRecord().at("selectedPaths"), nlohmann::json::array());
    EXPECT_EQ(onlyRecord().at("targetedPath"), "");
    EXPECT_THAT(messages(), Contains("action=mergePDFs title=合并 PDF selected=[] target=nil "
                                     "destination=nil"));
}

// Every kind of entry by every route.

enum class Route { object, dictionary, identifier, tag, title };

struct Expectation {
    Route route;
    /// Null when the route leads nowhere.
    const char* actionID;
    const char* title;
    const char* destinationPath;
    const char* presetID;
    /// The line of the resolution, empty when it writes none.
    const char* resolutionLine;
};

struct RouteRow {
    const char* kind;
    /// Finds the entry in the built menu.
    const char* title;
    std::vector<Expectation> expectations;
};

class ClickRoutesTest : public FinderMenuActionHandlerTest {
 protected:
    static void putSettings() {
        platform().putPropertyList(
            customDestinationsPath,
            PropertyList::Dictionary{
                {"copy", list({destination("c", "项目", "/copies")})},
                {"move", list({destination("m", "项目", "/moves")})},
                {"quickOpen", list({destination("q", "工作", "/jobs"),
                                    destination("h", "用户目录", "/Users/ada")})},
                {"openApplication", list({destination("x", "应用", "/x.app")})}});
        platform().putPropertyList(customShortcutActionsPath, list({shortcut("s", "快捷", "S"),
                                                                    script("p", "脚本", "/p.sh")}));
        platform().putPropertyList(viewPresetsPath,
                                   list({preset("v", "列表 · 名称 2"), preset("w", "图标")}));
        platform().selectedItemURLs = {FileURL::file("/a"), FileURL::file("/b")};
        platform().targetedURL = FileURL::directory("/t");
    }

    static void collect(const std::vector<MenuItem>& items, std::vector<MenuItem>& result) {
        for (const MenuItem& item : items) {
            if (item.submenu) {
                collect(item.submenu->items, result);
            } else {
                result.push_back(item);
            }
        }
    }

    /// The first entry of the built menu titled `title`; for `nth` 1 the second, and so on.
    static MenuItem builtItem(const std::string& title) {
        const FinderSelection selection = *platform().selectedItemURLs;
        const std::vector<FinderFeature> features(allFinderFeatures.begin(),
                                                  allFinderFeatures.end());
        std::vector<MenuItem> items;
        collect(featureMenuItems(request(selection, platform().targetedURL),
                                 FinderFeatureSettings::menuSettings(), features),
                items);
        const auto found = std::ranges::find(items, title, &MenuItem::title);
        EXPECT_NE(found, items.end()) << title;
        return found == items.end() ? MenuItem() : *found;
    }

    /// The dictionary that says the same as the context attached to `item`.
    static PropertyList::Dictionary dictionaryForm(const MenuItem& item) {
        const FinderActionContext* const context = attachedContext(item);
        if (context == nullptr) {
            return std::get<PropertyList::Dictionary>(item.representedObject);
        }
        return {{"actionID", context->actionID()},
                {"title", context->title()},
                {"selectedPaths", strings({"/a", "/b"})},
                {"targetedPath", "/t"},
                {"destinationPath", context->destinationPath()},
                {"presetID", context->presetID()}};
    }

    /// What arrives when only `route` is left of `item`.
    static MenuItem delivered(const MenuItem& item, Route route) {
        MenuItem result = titled(route == Route::title ? item.title : "unknown title");
        switch (route) {
            case Route::object:
                result.representedObject = item.representedObject;
                break;
            case Route::dictionary:
                result.representedObject = dictionaryForm(item);
                break;
            case Route::identifier:
                result.identifier = item.identifier;
                break;
            case Route::tag:
                result.tag = item.tag;
                break;
            case Route::title:
                break;
        }
        return result;
    }

    static const char* name(Route route) {
        switch (route) {
            case Route::object:
                return "object";
            case Route::dictionary:
                return "dictionary";
            case Route::identifier:
                return "identifier";
            case Route::tag:
                return "tag";
            case Route::title:
                return "title";
        }
        return "";
    }

    static void expectClick(const MenuItem& item, const Expectation& expected) {
        platform().consoleLines.clear();
        platform().timeIntervalSince1970 = 1794787578.5;
        click(item);
        std::vector<std::string> lines = {"clicked sender=" + item.title};
        if (expected.actionID == nullptr) {
            lines.push_back("missing context for sender=" + item.title);
            EXPECT_EQ(messages(), lines);
            EXPECT_THAT(records(), IsEmpty());
            EXPECT_THAT(platform().notifications, IsEmpty());
            EXPECT_THAT(platform().launches, IsEmpty());
            return;
        }
        if (*expected.resolutionLine != '\0') {
            lines.emplace_back(expected.resolutionLine);
        }
        const std::string destinationText =
            *expected.destinationPath == '\0' ? "nil" : expected.destinationPath;
        lines.push_back(std::string("action=") + expected.actionID + " title=" + expected.title +
                        R"( selected=["/a", "/b"] target=/t destination=)" + destinationText);
        lines.push_back(std::string("queued action: ") + expected.actionID);
        EXPECT_EQ(messages(), lines);
        EXPECT_EQ(onlyRecord(), nlohmann::json({{"actionID", expected.actionID},
                                                {"createdAt", 1794787578.5},
                                                {"destinationPath", expected.destinationPath},
                                                {"presetID", expected.presetID},
                                                {"selectedPaths", {"/a", "/b"}},
                                                {"targetedPath", "/t"},
                                                {"title", expected.title}}));
        EXPECT_THAT(platform().notifications, ElementsAre("app.ferrolin.Quorva.ActionQueued"));
        EXPECT_THAT(platform().launches, SizeIs(1));
    }
};

TEST_F(ClickRoutesTest, EveryKindOfEntryArrivesByEveryRouteThatKnowsIt) {
    using enum Route;
    const RouteRow rows[] = {
        {"catalogue command",
         "复制完整路径",
         {{object, "copyFullPath", "复制完整路径", "", "", ""},
          {dictionary, "copyFullPath", "复制完整路径", "", "", ""},
          {identifier, nullptr, "", "", "", ""},
          {tag, nullptr, "", "", "", ""},
          {title, "copyFullPath", "复制完整路径", "", "", ""}}},
        {"copy destination",
         "复制到项目",
         {{object, "copyFilesToFolder", "复制到项目", "/copies", "", ""},
          {dictionary, "copyFilesToFolder", "复制到项目", "/copies", "", ""},
          {identifier, nullptr, "", "", "", ""},
          {tag, nullptr, "", "", "", ""},
          {title, nullptr, "", "", "", ""}}},
        {"move destination",
         "移动到项目",
         {{object, "moveFilesToFolder", "移动到项目", "/moves", "", ""},
          {dictionary, "moveFilesToFolder", "移动到项目", "/moves", "", ""},
          {identifier, nullptr, "", "", "", ""},
          {tag, nullptr, "", "", "", ""},
          {title, nullptr, "", "", "", ""}}},
        {"quick-open location",
         "工作",
         {{object, "quickOpenPath", "工作", "/jobs", "", ""},
          {dictionary, "quickOpenPath", "工作", "/jobs", "", ""},
          {identifier, nullptr, "", "", "", ""},
          {tag, nullptr, "", "", "", ""},
          {title, nullptr, "", "", "", ""}}},
        {"quick-open location titled like a command",
         "用户目录",
         {{object, "quickOpenPath", "用户目录", "/Users/ada", "", ""},
          {dictionary, "quickOpenPath", "用户目录", "/Users/ada", "", ""},
          {identifier, nullptr, "", "", "", ""},
          {tag, nullptr, "", "", "", ""},
          {title, "quickOpenHome", "用户目录", "", "", ""}}},
        {"quick-open entry that asks for a path",
         "打开指定路径...",
         {{object, "quickOpenTypedPath", "打开指定路径...", "", "", ""},
          {dictionary, "quickOpenTypedPath", "打开指定路径...", "", "", ""},
          {identifier, nullptr, "", "", "", ""},
          {tag, nullptr, "", "", "", ""},
          {title, "quickOpenTypedPath", "打开指定路径...", "", "", ""}}},
        {"application",
         "应用",
         {{object, "openWithApplicationPath", "应用", "/x.app", "", ""},
          {dictionary, "openWithApplicationPath", "应用", "/x.app", "", ""},
          {identifier, "openWithApplicationPath", "应用", "/x.app", "",
           "resolved open-with app from identifier=openWithApplicationPath__x destination=/x.app"},
          {tag, nullptr, "", "", "", ""},
          {title, "openWithApplicationPath", "应用", "/x.app", "",
           "resolved open-with app from title=应用 destination=/x.app"}}},
        {"shortcut",
         "快捷",
         {{object, "runShortcut__s", "快捷", "", "", ""},
          {dictionary, "runShortcut__s", "快捷", "", "", ""},
          {identifier, "runShortcut__s", "快捷", "", "",
           "resolved custom action from identifier=runShortcut__s"},
          {tag, nullptr, "", "", "", ""},
          {title, "runShortcut__s", "快捷", "", "",
           "resolved custom action from title=快捷 actionID=runShortcut__s"}}},
        {"script",
         "脚本",
         {{object, "runScript__p", "脚本", "", "", ""},
          {dictionary, "runScript__p", "脚本", "", "", ""},
          {identifier, "runScript__p", "脚本", "", "",
           "resolved custom action from identifier=runScript__p"},
          {tag, nullptr, "", "", "", ""},
          {title, "runScript__p", "脚本", "", "",
           "resolved custom action from title=脚本 actionID=runScript__p"}}},
        {"view preset",
         "列表 · 名称",
         {{object, "finderViewPreset__v", "列表 · 名称", "", "", ""},
          {dictionary, "finderViewPreset__v", "列表 · 名称", "", "", ""},
          {identifier, "finderViewPreset__v", "列表 · 名称", "", "v",
           "resolved view preset from identifier=finderViewPreset__v"},
          {tag, "finderViewPreset__v", "列表 · 名称", "", "v",
           "resolved view preset from tag=700000 actionID=finderViewPreset__v"},
          {title, "finderViewPreset__v", "列表 · 名称", "", "v",
           "resolved view preset from title=列表 · 名称 actionID=finderViewPreset__v"}}},
        {"second view preset",
         "图标",
         {{object, "finderViewPreset__w", "图标", "", "", ""},
          {dictionary, "finderViewPreset__w", "图标", "", "", ""},
          {identifier, "finderViewPreset__w", "图标", "", "w",
           "resolved view preset from identifier=finderViewPreset__w"},
          {tag, "finderViewPreset__w", "图标", "", "w",
           "resolved view preset from tag=700001 actionID=finderViewPreset__w"},
          {title, "finderViewPreset__w", "图标", "", "w",
           "resolved view preset from title=图标 actionID=finderViewPreset__w"}}},
    };
    for (const RouteRow& row : rows) {
        for (const Expectation& expected : row.expectations) {
            SCOPED_TRACE(std::string(row.kind) + " by " + name(expected.route));
            fakePlatform::reset();
            putSettings();
            expectClick(delivered(builtItem(row.title), expected.route), expected);
        }
    }
}

// Failures of the queue.

TEST_F(FinderMenuActionHandlerTest, FailureToQueueIsLoggedTwiceAndEndsTheClick) {
    for (const Operation operation :
         {Operation::createDirectory, Operation::serializeJSON, Operation::writeAtomically}) {
        fakePlatform::reset();
        // The logs exist, so that only the record needs what fails.
        platform().putFile(temporaryLogPath, "");
        platform().putFile(containerLogPath, "");
        platform().fail(operation, "没有空间");
        click(titled("合并 PDF"));
        EXPECT_THAT(messages(),
                    ElementsAre("clicked sender=合并 PDF",
                                "action=mergePDFs title=合并 PDF selected=[] target=nil "
                                "destination=nil",
                                "queue failed: mergePDFs error=没有空间",
                                "suppressed queue error alert: 没有空间"));
        EXPECT_THAT(records(), IsEmpty());
        EXPECT_THAT(platform().notifications, IsEmpty());
        EXPECT_THAT(platform().launches, IsEmpty());
        EXPECT_NE(platform().contents(containerLogPath)->find("queue failed: mergePDFs"),
                  std::string::npos);
    }
}

TEST_F(FinderMenuActionHandlerTest, FileInPlaceOfTheQueueIsAFailureToQueue) {
    platform().putFile(queuePath, "a file");
    click(titled("合并 PDF"));
    EXPECT_TRUE(messages().back().starts_with("suppressed queue error alert: "));
    EXPECT_THAT(platform().notifications, IsEmpty());
    EXPECT_THAT(platform().launches, IsEmpty());
}

TEST_F(FinderMenuActionHandlerTest, WithoutApplicationSupportTheClickIsQueuedElsewhere) {
    platform().fail(Operation::lookUpApplicationSupport);
    click(titled("合并 PDF"));
    EXPECT_THAT(platform().filesBelow("/tmp/quorva-action-queue"), SizeIs(1));
    EXPECT_THAT(platform().notifications, SizeIs(1));
}

// The launch.

TEST_F(FinderMenuActionHandlerTest, FailureToPostIsLoggedAndTheApplicationStillOpened) {
    platform().fail(Operation::postNotification, "no center");
    click(titled("合并 PDF"));
    EXPECT_THAT(records(), SizeIs(1));
    EXPECT_EQ(messages().back(), "announcing the record failed: no center");
    EXPECT_THAT(platform().launches, SizeIs(1));
}

TEST_F(FinderMenuActionHandlerTest, RunningApplicationIsNotOpened) {
    for (const std::size_t count : {std::size_t{1}, std::size_t{2}}) {
        fakePlatform::reset();
        platform().runningApplications["app.ferrolin.Quorva"] = count;
        click(titled("合并 PDF"));
        EXPECT_THAT(platform().notifications, SizeIs(1));
        EXPECT_THAT(platform().launches, IsEmpty());
    }
}

TEST_F(FinderMenuActionHandlerTest, OtherRunningApplicationsDoNotCount) {
    platform().runningApplications = {{"app.ferrolin.Quorva.FinderExtension", 1},
                                      {"app.ferrolin.quorva", 1}};
    click(titled("合并 PDF"));
    EXPECT_THAT(platform().launches, SizeIs(1));
}

TEST_F(FinderMenuActionHandlerTest, ApplicationThreeLevelsAboveTheBundleIsOpenedInTheBackground) {
    platform().mainBundleURL =
        FileURL::directory("/Volumes/Big/Q 2.app/Contents/PlugIns/QuorvaFinderExtension.appex");
    click(titled("合并 PDF"));
    ASSERT_THAT(platform().launches, SizeIs(1));
    EXPECT_EQ(platform().launches.front().url.path(), "/Volumes/Big/Q 2.app");
    EXPECT_EQ(platform().launches.front().configuration,
              (platform::OpenConfiguration{.activates = false, .addsToRecentItems = false}));
}

TEST_F(FinderMenuActionHandlerTest, OpenConfigurationsAreComparedByEveryField) {
    expectEveryFieldCounts<platform::OpenConfiguration>(
        {.activates = false, .addsToRecentItems = false},
        {{.activates = true, .addsToRecentItems = false},
         {.activates = false, .addsToRecentItems = true}});
}

TEST_F(FinderMenuActionHandlerTest, SuccessfulLaunchLogsNothing) {
    click(titled("合并 PDF"));
    platform().consoleLines.clear();
    platform().launches.front().completion(std::nullopt);
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(FinderMenuActionHandlerTest, FailedLaunchIsLoggedAndTheRecordStays) {
    click(titled("合并 PDF"));
    platform().consoleLines.clear();
    platform().launches.front().completion(Error{"找不到应用"});
    EXPECT_THAT(messages(), ElementsAre("failed to open app: 找不到应用"));
    EXPECT_THAT(records(), SizeIs(1));
    EXPECT_NE(platform().contents(containerLogPath)->find("failed to open app: 找不到应用\n"),
              std::string::npos);
}

TEST_F(FinderMenuActionHandlerTest, LaunchMayCompleteOnAnotherThreadWhileTheNextClickIsHandled) {
    click(titled("合并 PDF"));
    const auto completion = platform().launches.front().completion;
    constexpr int times = 100;
    std::thread queue([&completion] {
        for (int count = 0; count < times; ++count) {
            completion(Error{"late"});
        }
    });
    for (int count = 0; count < times; ++count) {
        click(titled("拆分 PDF"));
    }
    queue.join();
    EXPECT_EQ(std::ranges::count(messages(), "failed to open app: late"), times);
    EXPECT_THAT(records(), SizeIs(times + 1));
}

TEST_F(FinderMenuActionHandlerTest, CompletionOutlivesTheClickedItem) {
    auto item = std::make_unique<MenuItem>(titled("合并 PDF"));
    click(*item);
    item.reset();
    const auto completion = std::move(platform().launches.front().completion);
    platform().launches.clear();
    std::thread([&completion] { completion(Error{"late"}); }).join();
    EXPECT_THAT(messages(), Contains("failed to open app: late"));
}

// Memory that runs out.

TEST_F(FinderMenuActionHandlerTest, ClickThatFailsBeforeTheRecordFailsAndHandsNothingOver) {
    for (const Operation operation :
         {Operation::readSelection, Operation::localizeString, Operation::readFile,
          Operation::generateUUID, Operation::readClock}) {
        fakePlatform::reset();
        platform().raise(operation, outOfMemory);
        const MenuItem item = titled("复制完整路径");
        // The log reads the clock too, and does without the line.
        EXPECT_THROW(click(item), std::bad_alloc);
        EXPECT_THAT(records(), IsEmpty());
        EXPECT_THAT(platform().notifications, IsEmpty());
        EXPECT_THAT(platform().launches, IsEmpty());
    }
}

TEST_F(FinderMenuActionHandlerTest, ClickWhoseRecordIsWrittenDoesNotFail) {
    struct Row {
        Operation operation;
        const char* lastMessage;
        std::size_t notifications;
        std::size_t launches;
    };
    for (const Row& row :
         {Row{Operation::postNotification, "announcing the record failed: std::bad_alloc", 0, 1},
          Row{Operation::countRunningApplications,
              "opening the containing application failed: std::bad_alloc", 1, 0},
          Row{Operation::openApplication,
              "opening the containing application failed: std::bad_alloc", 1, 0}}) {
        fakePlatform::reset();
        platform().raise(row.operation, outOfMemory);
        EXPECT_NO_THROW(click(titled("复制完整路径")));
        EXPECT_THAT(records(), SizeIs(1));
        EXPECT_THAT(messages(), Contains("queued action: copyFullPath"));
        EXPECT_EQ(messages().back(), row.lastMessage);
        EXPECT_THAT(platform().notifications, SizeIs(row.notifications));
        EXPECT_THAT(platform().launches, SizeIs(row.launches));
    }
}

}  // namespace
}  // namespace quorva
