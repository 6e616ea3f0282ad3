#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <tuple>

#include "QuorvaFinderExtension/DiagnosticLog.hpp"
#include "QuorvaFinderExtension/FinderExtension.hpp"
#include "Tests/Unit/UnitTest.hpp"

/// What the extension does is done while each of its calls of the platform fails, alone and
/// together with a later one: once as the platform's headers say, once for want of memory.
namespace quorva {
namespace {

using fakePlatform::Event;
using fakePlatform::Operation;

/// Which calls fail, and what they throw: nothing when they only fail.
struct Fault {
    std::set<std::size_t> calls;
    std::exception_ptr exception;
};

std::ostream& operator<<(std::ostream& stream, const Fault& fault) {
    for (const std::size_t call : fault.calls) {
        stream << "call " << call << ' ';
    }
    return stream << (fault.exception == nullptr ? "fails" : "throws");
}

/// What can be seen of something that the extension did.
struct Outcome {
    bool threw = false;
    /// The new entries of the log, as the console got them.
    std::vector<std::string> messages;
    /// What was written to the log files behind what they held.
    std::string temporaryLog;
    std::string containerLog;
    /// The new records.
    std::vector<nlohmann::json> records;
    std::size_t notifications = 0;
    std::size_t launches = 0;
    std::set<FileURL> monitored;
    /// The entries of the menu, in order.
    std::vector<std::string> menu;
    std::vector<std::string> unifiedLog;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// The entries of `menu` with all that a click on them needs; a submenu is indented.
void describe(const Menu& menu, const std::string& indentation, std::vector<std::string>& lines) {
    for (const MenuItem& item : menu.items) {
        std::string line = indentation + (item.isSeparator ? "-" : item.title) + " | " +
                           (item.enabled ? "enabled" : "disabled") + " | " +
                           item.identifier.value_or("");
        if (const FinderActionContext* const context = attachedContext(item)) {
            line += testing::PrintToString(*context);
        } else if (const auto* const dictionary =
                       std::get_if<PropertyList::Dictionary>(&item.representedObject)) {
            line += *dictionary->find("actionID")->second.string() + " | " +
                    std::to_string(dictionary->find("selectedPaths")->second.array()->size()) +
                    " selected | " + *dictionary->find("targetedPath")->second.string();
        }
        lines.push_back(line);
        if (item.submenu) {
            describe(*item.submenu, indentation + "  ", lines);
        }
    }
}

/// The first item of `menu` with `title`, null when there is none.
const MenuItem* itemTitled(const Menu& menu, const std::string& title) {
    for (const MenuItem& item : menu.items) {
        const MenuItem* const found = item.submenu          ? itemTitled(*item.submenu, title)
                                      : item.title == title ? &item
                                                            : nullptr;
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

class FaultInjectionTest : public UnitTest {
 protected:
    /// Puts what is to be done on a machine that has every kind of entry.
    static void prepare(const char* layout) {
        fakePlatform::reset();
        platform().selectedItemURLs = {FileURL::file("/s/a"), FileURL::file("/s/b")};
        platform().targetedURL = FileURL::directory("/t");
        platform().putDirectory("/Applications/Pages.app");
        platform().putDirectory("/Users/ada/Projects");
        platform().putPropertyList(
            featureSettingsPath,
            PropertyList::Dictionary{
                {"menuLayout", layout},
                {"enabledFeatureIDs", strings({"quickOpen", "copyFile", "organizeFile", "pdfTools",
                                               "openWith", "viewOptions", "customActions"})}});
        platform().putPropertyList(
            customDestinationsPath,
            PropertyList::Dictionary{
                {"copy", list({destination("c", "备份", "/backup")})},
                {"move", list({destination("m", "归档", "/archive")})},
                {"quickOpen", list({destination("q", "项目", "/projects")})},
                {"openApplication", list({destination("z", "Zed", "/Applications/Zed.app")})}});
        platform().putPropertyList(
            customShortcutActionsPath,
            list({shortcut("s", "缩图", "Shrink"), script("r", "清理", "/scripts/clean.sh")}));
        platform().putPropertyList(viewPresetsPath,
                                   list({preset("big", "大图标"), preset("small", "小列表")}));
    }

    using Work = std::function<void(FinderExtension&)>;

    /// Does `work` and says what could be seen of it.
    static Outcome outcome(FinderExtension& extension, const Work& work) {
        const std::size_t messagesBefore = messages().size();
        const std::size_t recordsBefore = recordFiles().size();
        const std::size_t notificationsBefore = platform().notifications.size();
        const std::size_t launchesBefore = platform().launches.size();
        const std::size_t unifiedBefore = platform().unifiedLog.size();
        const std::string temporaryBefore = platform().contents(temporaryLogPath).value_or("");
        const std::string containerBefore = platform().contents(containerLogPath).value_or("");
        Outcome result;
        try {
            work(extension);
        } catch (const std::bad_alloc&) {
            result.threw = true;
        }
        result.messages.assign(messages().begin() + static_cast<std::ptrdiff_t>(messagesBefore),
                               messages().end());
        const auto added = [](const std::string& before, const std::string& path) {
            const std::string now = platform().contents(path).value_or("");
            return now.starts_with(before) ? now.substr(before.size()) : now;
        };
        result.temporaryLog = added(temporaryBefore, temporaryLogPath);
        result.containerLog = added(containerBefore, containerLogPath);
        const std::vector<std::string> files = recordFiles();
        for (std::size_t index = recordsBefore; index < files.size(); ++index) {
            EXPECT_TRUE(files[index].ends_with(".json"));
            result.records.push_back(
                nlohmann::json::parse(*platform().contents(files[index]), nullptr, false));
        }
        result.notifications = platform().notifications.size() - notificationsBefore;
        result.launches = platform().launches.size() - launchesBefore;
        result.monitored = platform().directoryURLs;
        for (std::size_t index = unifiedBefore; index < platform().unifiedLog.size(); ++index) {
            result.unifiedLog.push_back(platform().unifiedLog[index].message);
        }
        return result;
    }

    /// Below the queue folder, and below the one for want of Application Support.
    static std::vector<std::string> recordFiles() {
        std::vector<std::string> files = platform().filesBelow(queuePath);
        const std::vector<std::string> more = platform().filesBelow(temporaryQueuePath);
        files.insert(files.end(), more.begin(), more.end());
        return files;
    }

    static inline const std::string temporaryQueuePath = "/tmp/quorva-action-queue";

    /// Whether one of the three logs has a line with `text` in it.
    static bool isLogged(const Outcome& outcome, const std::string& text) {
        return outcome.temporaryLog.contains(text) || outcome.containerLog.contains(text) ||
               std::ranges::any_of(outcome.messages, [&](const std::string& message) {
                   return message.contains(text);
               });
    }

    /// Each of `calls` alone, and with a later one: the next and those at a distance of 4, 16, 64 …
    /// or, for want of memory, the next. All pairs would be tens of thousands, most of which fail
    /// two things that have nothing to do with each other. A translation that can't be had is in no
    /// pair, because what is shown instead is what this machine shows anyway. Under a sanitizer,
    /// where each takes ten times as long, there are pairs of neighbours only.
    static std::vector<Fault> faults(const std::vector<Operation>& calls) {
#if __has_feature(address_sanitizer)
        constexpr bool isInstrumented = true;
#else
        constexpr bool isInstrumented = false;
#endif
        std::vector<Fault> result;
        for (const std::exception_ptr& exception : {std::exception_ptr(), outOfMemory}) {
            for (std::size_t call = 0; call < calls.size(); ++call) {
                result.push_back({{call}, exception});
                const std::size_t farthest =
                    exception == nullptr && !isInstrumented ? calls.size() : 1;
                for (std::size_t step = 1; call + step < calls.size() && step <= farthest;
                     step *= 4) {
                    if (calls[call] != Operation::localizeString &&
                        calls[call + step] != Operation::localizeString) {
                        result.push_back({{call, call + step}, exception});
                    }
                }
            }
        }
        return result;
    }

    /// Does `work` under every fault on the machine as it is, checks what `check` says of the
    /// outcome, and that the same work succeeds afterwards as if there had been no fault.
    template <typename Check>
    static void tryFaults(const char* name, const Work& work, Check check) {
        FinderExtension extension;
        // Some work is a click in the menu of before.
        static_cast<void>(extension.menu(MenuKind::contextualMenuForItems));
        const fakePlatform::State machine = platform();
        const auto begin = [&machine](const Fault& fault) {
            platform() = machine;
            platform().calls.clear();
            platform().failingCalls = fault.calls;
            platform().failingCallsThrow = fault.exception;
        };
        begin({});
        const Outcome undisturbed = outcome(extension, work);
        const std::vector<Operation> calls = platform().calls;
        const Outcome undisturbedNext = outcome(extension, work);
        const std::vector<Fault> all = faults(calls);
        ASSERT_FALSE(all.empty());
        ASSERT_FALSE(undisturbedNext.temporaryLog.empty());
        ASSERT_FALSE(undisturbedNext.containerLog.empty());
        for (const Fault& fault : all) {
            SCOPED_TRACE(testing::PrintToString(fault));
            begin(fault);
            const Outcome disturbed = outcome(extension, work);
            EXPECT_TRUE(fault.exception != nullptr || !disturbed.threw);
            check(fault, disturbed, undisturbed);
            platform().failingCalls.clear();
            platform().directoryURLs.clear();
            Outcome next = outcome(extension, work);
            EXPECT_TRUE(next.temporaryLog.ends_with(undisturbedNext.temporaryLog));
            EXPECT_TRUE(next.containerLog.ends_with(undisturbedNext.containerLog));
            next.temporaryLog = undisturbedNext.temporaryLog;
            next.containerLog = undisturbedNext.containerLog;
            EXPECT_TRUE(next == undisturbedNext);
            if (HasFailure()) {
                return;
            }
        }
        std::printf("%s: %zu calls of the platform, %zu faults tried\n", name, calls.size(),
                    all.size());
    }

    static const std::vector<std::string>& settingsPaths() {
        static const std::vector<std::string> paths = {featureSettingsPath, customDestinationsPath,
                                                       customShortcutActionsPath, viewPresetsPath};
        return paths;
    }

    /// The outcomes of `work` on machines that lack some of the settings files, the selection, and
    /// the target, and on one that can't tell the home: what is there to see when one of them can't
    /// be had.
    static std::vector<Outcome> outcomesOfLess(const Work& work) {
        FinderExtension extension;
        static_cast<void>(extension.menu(MenuKind::contextualMenuForItems));
        const fakePlatform::State machine = platform();
        std::vector<Outcome> outcomes;
        for (unsigned lacking = 0; lacking < 64; ++lacking) {
            platform() = machine;
            for (std::size_t index = 0; index < settingsPaths().size(); ++index) {
                if ((lacking >> index & 1) != 0) {
                    platform().entries.erase(settingsPaths()[index]);
                }
            }
            if ((lacking & 16) != 0) {
                platform().selectedItemURLs.reset();
            }
            if ((lacking & 32) != 0) {
                platform().targetedURL.reset();
            }
            outcomes.push_back(outcome(extension, work));
        }
        platform() = machine;
        platform().homeDirectory = FileURL::directory("/");
        outcomes.push_back(outcome(extension, work));
        platform() = machine;
        return outcomes;
    }
};

// The menu.

class MenuFaultInjectionTest : public FaultInjectionTest,
                               public testing::WithParamInterface<const char*> {};

TEST_P(MenuFaultInjectionTest, MenuHoldsTheUsersEntriesOrTheDefaultsAndTheNextIsAsEver) {
    prepare(GetParam());
    std::vector<std::string> menu;
    const Work work = [&menu](FinderExtension& extension) {
        menu.clear();
        describe(extension.menu(MenuKind::contextualMenuForItems), "", menu);
    };
    std::set<std::string> possible;
    const auto withoutIndentation = [](const std::string& line) {
        return line.substr(std::min(line.find_first_not_of(' '), line.size()));
    };
    static_cast<void>(outcomesOfLess([&](FinderExtension& extension) {
        work(extension);
        std::ranges::transform(menu, std::inserter(possible, possible.end()), withoutIndentation);
    }));
    std::vector<std::string> undisturbedMenu;
    tryFaults(
        GetParam(),
        [&](FinderExtension& extension) {
            work(extension);
            if (platform().failingCalls.empty()) {
                EXPECT_TRUE(undisturbedMenu.empty() || menu == undisturbedMenu);
                undisturbedMenu = menu;
            }
        },
        [&](const Fault& fault, const Outcome& disturbed, const Outcome& undisturbed) {
            EXPECT_EQ(disturbed.records.size(), 0U);
            if (disturbed.threw) {
                EXPECT_NE(fault.exception, nullptr);
                return;
            }
            EXPECT_FALSE(menu.empty());
            for (const std::string& line : menu) {
                EXPECT_TRUE(possible.contains(withoutIndentation(line))) << line;
            }
            EXPECT_FALSE(menu.front().starts_with("- ") || menu.back().starts_with("- "));
            EXPECT_TRUE(fault.exception != nullptr || isLogged(disturbed, "menu kind="));
            EXPECT_LE(disturbed.unifiedLog.size(), undisturbed.unifiedLog.size());
        });
}

INSTANTIATE_TEST_SUITE_P(Layouts, MenuFaultInjectionTest, testing::Values("collapsed", "expanded"),
                         [](const auto& layout) { return std::string(layout.param); });

// A click.

struct Clicked {
    const char* name;
    const char* title;

    friend void PrintTo(const Clicked& clicked, std::ostream* stream) { *stream << clicked.title; }
};

class ClickFaultInjectionTest : public FaultInjectionTest,
                                public testing::WithParamInterface<Clicked> {
 protected:
    /// Where `kind` comes in the journal; its end when it does not.
    static std::size_t position(Event::Kind kind, const std::string& text) {
        const auto found = std::ranges::find_if(platform().journal, [&](const Event& event) {
            return event.kind == kind && event.text.starts_with(text);
        });
        return static_cast<std::size_t>(found - platform().journal.begin());
    }

    /// The tag of the item that is clicked.
    static inline std::int64_t tag_ = 0;

    static void checkAnnouncement(const Fault& fault, const Outcome& disturbed) {
        EXPECT_FALSE(disturbed.threw) << "a click whose record is written has not failed";
        const std::size_t record = std::min(position(Event::Kind::fileWritten, queuePath),
                                            position(Event::Kind::fileWritten, temporaryQueuePath));
        const std::size_t notification = position(Event::Kind::notificationPosted, "");
        const std::size_t launch = position(Event::Kind::applicationOpened, "");
        EXPECT_LT(record, std::min(notification, launch));
        if (disturbed.notifications == 1 && disturbed.launches == 1) {
            EXPECT_LT(notification, launch);
        }
        // What a failure wants to say may itself fail for want of memory.
        if (fault.exception != nullptr && fault.calls.size() > 1) {
            return;
        }
        EXPECT_TRUE(disturbed.notifications == 1 ||
                    isLogged(disturbed, "announcing the record failed: "));
        EXPECT_TRUE(disturbed.launches == 1 || isLogged(disturbed, "failed to open app: ") ||
                    isLogged(disturbed, "opening the containing application failed: "));
        EXPECT_TRUE(fault.exception != nullptr || isLogged(disturbed, "queued action: "));
    }
};

TEST_P(ClickFaultInjectionTest, ClickIsOneWholeRecordOrALineThatSaysWhyThereIsNone) {
    prepare("expanded");
    const Work work = [](FinderExtension& extension) {
        // As Finder gives it back.
        MenuItem sender;
        sender.title = GetParam().title;
        sender.tag = tag_;
        extension.performFeatureChild(sender);
    };
    FinderExtension extension;
    const MenuItem* const item =
        itemTitled(extension.menu(MenuKind::contextualMenuForItems), GetParam().title);
    ASSERT_NE(item, nullptr);
    tag_ = item->tag;
    prepare("expanded");
    std::set<nlohmann::json> possible;
    for (const Outcome& outcome : outcomesOfLess(work)) {
        possible.insert(outcome.records.begin(), outcome.records.end());
    }
    tryFaults(GetParam().name, work,
              [&](const Fault& fault, const Outcome& disturbed, const Outcome& undisturbed) {
                  ASSERT_EQ(undisturbed.records.size(), 1U);
                  ASSERT_LE(disturbed.records.size(), 1U);
                  if (disturbed.records.size() == 1) {
                      EXPECT_TRUE(possible.contains(disturbed.records.front()))
                          << disturbed.records.front();
                      checkAnnouncement(fault, disturbed);
                      return;
                  }
                  EXPECT_EQ(disturbed.notifications, 0U);
                  EXPECT_EQ(disturbed.launches, 0U);
                  if (fault.exception == nullptr) {
                      EXPECT_TRUE(isLogged(disturbed, "missing context for sender=") ||
                                  (isLogged(disturbed, "queue failed: ") &&
                                   isLogged(disturbed, "suppressed queue error alert: ")));
                  }
              });
}

INSTANTIATE_TEST_SUITE_P(Entries, ClickFaultInjectionTest,
                         testing::Values(Clicked{"command", "合并 PDF"},
                                         Clicked{"copyDestination", "复制到备份"},
                                         Clicked{"moveDestination", "移动到归档"},
                                         Clicked{"place", "项目"}, Clicked{"application", "Zed"},
                                         Clicked{"viewPreset", "小列表"},
                                         Clicked{"shortcut", "缩图"}, Clicked{"script", "清理"}),
                         [](const auto& clicked) { return std::string(clicked.param.name); });

// The monitored folders.

class RefreshFaultInjectionTest : public FaultInjectionTest {
 protected:
    static void check(const Fault& fault, const Outcome& disturbed, const Outcome&) {
        if (disturbed.threw) {
            return;
        }
        if (disturbed.monitored.empty()) {
            EXPECT_TRUE(isLogged(disturbed, "setting the monitored folders failed: "));
        } else {
            EXPECT_THAT(
                disturbed.monitored,
                testing::IsSupersetOf(directories({"/Applications", "/Volumes", "/Users/ada"})));
        }
        EXPECT_TRUE(fault.exception != nullptr || isLogged(disturbed, " monitored=["));
    }
};

TEST_F(RefreshFaultInjectionTest, StartMonitorsTheHomeOrSaysWhyNot) {
    prepare("collapsed");
    tryFaults("start", [](FinderExtension& extension) { extension.start(); }, check);
}

TEST_F(RefreshFaultInjectionTest, ChangedSettingsMonitorTheHomeOrSayWhyNot) {
    prepare("collapsed");
    tryFaults(
        "settings changed",
        [](FinderExtension& extension) {
            extension.handleSettingsChanged(PropertyList::Dictionary{{"reason", "test"}});
        },
        check);
}

// The log.

TEST_F(FaultInjectionTest, LineReachesOneOfTheThreeLogsAtLeast) {
    prepare("collapsed");
    tryFaults(
        "log", [](FinderExtension&) { appendDiagnosticLog("the line"); },
        [](const Fault& fault, const Outcome& disturbed, const Outcome&) {
            EXPECT_FALSE(disturbed.threw);
            EXPECT_TRUE(fault.exception != nullptr || isLogged(disturbed, "the line"));
        });
}

}  // namespace
}  // namespace quorva
