#include "Simulator/FinderCommand/Demo.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <string_view>
#include <thread>

#include "Simulator/FinderCommand/ClickReport.hpp"
#include "Simulator/FinderCommand/ContainingApplication.hpp"
#include "Simulator/FinderCommand/ExtensionProcess.hpp"
#include "Simulator/FinderCommand/MenuEntries.hpp"
#include "Simulator/FinderCommand/Terminal.hpp"

namespace simulator {
namespace {

using nlohmann::ordered_json;
using std::filesystem::path;

/// The home folder of the demonstration. It goes, with the applications that were launched for it,
/// when this goes or the command is interrupted.
class DemoHome {
 public:
    explicit DemoHome(const path& original) {
        std::string name = std::filesystem::temp_directory_path() / "finder-sim-demo.XXXXXX";
        if (mkdtemp(name.data()) == nullptr) {
            throw CommandError("no temporary folder could be made");
        }
        folder_ = name;
        cleanUpWhenInterrupted();
        std::error_code error;
        std::filesystem::copy(original, home(), std::filesystem::copy_options::recursive, error);
        if (error) {
            throw CommandError("the home " + original.string() +
                               " can't be copied: " + error.message());
        }
    }
    DemoHome(const DemoHome&) = delete;
    DemoHome& operator=(const DemoHome&) = delete;
    ~DemoHome() { cleanUp(); }

    [[nodiscard]] path home() const { return folder_ / "ada"; }

 private:
    void cleanUp() const {
        endContainingApplications(home());
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
    }

    /// The signals are blocked in all threads and waited for in one, where cleaning up is allowed.
    void cleanUpWhenInterrupted() const {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGINT);
        sigaddset(&signals, SIGTERM);
        sigaddset(&signals, SIGHUP);
        pthread_sigmask(SIG_BLOCK, &signals, nullptr);
        std::thread([this, signals] {
            int signal = 0;
            sigwait(&signals, &signal);
            cleanUp();
            _exit(128 + signal);
        }).detach();
    }

    path folder_;
};

/// Writes the other layout into the settings. Answers false when the file names none.
bool setLayout(const path& home, std::string_view from, std::string_view to) {
    const path file = home / "Library/Application Support/Quorva/FeatureSettings.plist";
    std::ifstream stream(file, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(stream), {});
    const std::string before = "<string>" + std::string(from) + "</string>";
    const std::size_t position = text.find(before);
    if (position == std::string::npos) {
        return false;
    }
    text.replace(position, before.size(), "<string>" + std::string(to) + "</string>");
    std::ofstream(file, std::ios::binary) << text;
    return true;
}

/// What the entry hands over, by the object that is attached to it.
std::string actionID(const MenuEntry& entry) {
    const ordered_json& object = entry.item["representedObject"];
    return object.is_object() ? object.value("actionID", "") : "";
}

struct DemoClick {
    std::string_view what;
    /// The beginning of the action identifier.
    std::string_view actionID;
    std::string_view delivery;
};

constexpr auto demoClicks = std::to_array<DemoClick>({
    {"a command of the catalogue", "copyFullPath", "intact"},
    {"a folder to copy to", "copyFilesToFolder", "finder"},
    {"a folder to move to", "moveFilesToFolder", "finder"},
    {"a quick-open location", "quickOpenPath", "finder"},
    {"an application to open with", "openWithApplicationPath", "intact"},
    {"a view preset", "finderViewPreset__", "finder"},
    {"a custom shortcut", "runShortcut__", "intact"},
    {"a custom script", "runScript__", "finder"},
});

class Demo {
 public:
    explicit Demo(const Options& options)
        : options_(options),
          home_(options.home.empty() ? buildFolder() / "Samples/Home" : path(options.home)) {
        setenv("HOME", home_.home().c_str(), 1);
        setenv("SIMULATOR_LAUNCH", "1", 1);
        setenv("SIMULATOR_ACCOUNT_NAME", "ada", 0);
        setenv("SIMULATOR_ACCOUNT_HOME", "/Users/ada", 0);
        if (options_.selectedPaths.empty() && options_.targetedPath.empty()) {
            const path reports = home_.home() / "Documents/Reports";
            options_.targetedPath = reports;
            options_.selectedPaths = {reports / "季度报告.txt", reports / "Budget 2026.csv"};
        }
    }

    void run() {
        std::error_code error;
        std::filesystem::create_directories(QuorvaFolder(home_.home()).queue(), error);
        ExtensionProcess extension(options_.isVerbose);

        say(styled("A menu", Style::heading) + "\n");
        if (!options_.targetedPath.empty()) {
            say("  in        " + options_.targetedPath + "\n");
        }
        for (const std::string& selected : options_.selectedPaths) {
            say("  selected  " + selected + "\n");
        }
        const bool hasLayout = setLayout(home_.home(), "expanded", "collapsed") ||
                               setLayout(home_.home(), "collapsed", "collapsed");
        ordered_json menu = showMenu(extension, hasLayout ? "collapsed" : "its own");
        if (hasLayout && setLayout(home_.home(), "collapsed", "expanded")) {
            menu = showMenu(extension, "expanded");
        }

        const std::vector<MenuEntry> entries = menuEntries(menu);
        for (const DemoClick& demoClick : demoClicks) {
            clickOn(extension, entries, demoClick);
        }
        say("\n" + styled("What Quorva wrote down in Performed.jsonl", Style::heading) + "\n");
        for (const std::string& line : QuorvaFolder(home_.home()).performed()) {
            say("  " + line + "\n");
        }
        if (options_.printsJSON) {
            std::printf("%s\n", report_.dump(2).c_str());
        }
    }

 private:
    void say(const std::string& text) const {
        if (!options_.printsJSON) {
            std::fputs(text.c_str(), stdout);
            std::fflush(stdout);
        }
    }

    ordered_json showMenu(ExtensionProcess& extension, const std::string& layout) {
        ordered_json menu = extension.ask(menuRequest(options_))["menu"];
        say("\n" + styled("Layout: " + layout, Style::heading) + "\n" + menuTree(menu));
        report_["menus"].push_back({{"layout", layout}, {"menu", menu}});
        return menu;
    }

    void clickOn(ExtensionProcess& extension, const std::vector<MenuEntry>& entries,
                 const DemoClick& demoClick) {
        const std::string delivery =
            options_.delivery.empty() ? std::string(demoClick.delivery) : options_.delivery;
        say("\n" + styled("A click on " + std::string(demoClick.what), Style::heading) +
            styled(delivery == "finder" ? ", the item rebuilt as Finder does it"
                                        : ", the very item of the menu",
                   Style::dim) +
            "\n");
        const auto isMeant = [&](const MenuEntry& entry) {
            return entry.isClickable && actionID(entry).starts_with(demoClick.actionID);
        };
        // Of several the last: behind the built-in ones come the user's own.
        const auto found = std::ranges::find_if(entries.rbegin(), entries.rend(), isMeant);
        if (found == entries.rend()) {
            say(styled("  There is none in this menu.", Style::dim) + "\n");
            return;
        }
        ordered_json request = finderState(options_.selectedPaths, options_.targetedPath);
        request["delivery"] = delivery;
        const ordered_json result = click(extension, *found, std::move(request), home_.home());
        say(clickText(result));
        report_["clicks"].push_back(result);
        if (result["records"].size() != 1 || result["performed"].size() != 1) {
            throw CommandError("the click on " + breadcrumbs(found->titles) + " was not performed");
        }
    }

    Options options_;
    DemoHome home_;
    ordered_json report_ = {{"menus", ordered_json::array()}, {"clicks", ordered_json::array()}};
};

}  // namespace

void runDemo(const Options& options) {
    const std::vector<pid_t> running = containingApplications({});
    if (!running.empty()) {
        throw CommandError("Quorva is already running as process " +
                           std::to_string(running.front()) +
                           ", so the demonstration could not launch it: end it first");
    }
    Demo(options).run();
}

}  // namespace simulator
