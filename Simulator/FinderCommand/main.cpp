// finder-sim: Finder, as far as an extension with a menu can tell, on the command line.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Simulator/FinderCommand/ClickReport.hpp"
#include "Simulator/FinderCommand/ContainingApplication.hpp"
#include "Simulator/FinderCommand/Demo.hpp"
#include "Simulator/FinderCommand/ExtensionProcess.hpp"
#include "Simulator/FinderCommand/MenuEntries.hpp"
#include "Simulator/FinderCommand/Options.hpp"
#include "Simulator/UTF8.hpp"
#include "Simulator/VirtualDisplay.hpp"

namespace {

using nlohmann::ordered_json;
using simulator::CommandError;
using simulator::ExtensionProcess;
using simulator::Options;

constexpr const char* description =
    R"(finder-sim plays Finder for Quorva's extension: it starts the extension from
Quorva.app/Contents/PlugIns beside this program, asks it for menus, and clicks.

  finder-sim demo
  finder-sim menu --select ~/Documents/report.txt --target ~/Documents
  finder-sim menu --target ~/Documents --kind container --language en
  finder-sim click 复制名称与路径 复制完整路径 --select ~/Documents/report.txt
  finder-sim click 复制完整路径 --select ~/a.txt --delivery finder --launch
  finder-sim click --help

The extension reads its settings from, and queues its records in, "Library/
Application Support/Quorva" below the home folder: --home, or else $HOME. Where
there is no display, a virtual one is started.)";

constexpr const char* footer =
    "finder-sim COMMAND --help lists the options of a command.\n"
    "The protocol between the two is described in Documentation/ExtensionProtocol.md.";

/// Refuses the empty path, which names nothing.
CLI::Validator somePath() {
    return {[](const std::string& path) {
                return path.empty() ? std::string("a path is missing") : std::string();
            },
            ""};
}

void addOptions(CLI::App& command, Options& options) {
    command
        .add_option("--select", options.selectedPaths,
                    "An item to select; once for each. Without one nothing is selected")
        ->type_name("PATH")
        ->allow_extra_args(false)
        ->check(somePath());
    command
        .add_option("--target", options.targetedPath,
                    "The folder that the Finder window shows. Without it there is none")
        ->type_name("DIR")
        ->check(somePath());
    command
        .add_option("--kind", options.kind,
                    "Where the menu is opened: items, container, sidebar or toolbar. Without it "
                    "items when something is selected, else container")
        ->type_name("KIND")
        ->check(CLI::IsMember({"items", "container", "sidebar", "toolbar"}).description(""));
    command
        .add_option("--home", options.home,
                    "The home folder of the extension, its container on a Mac. The demonstration "
                    "works on a copy of it")
        ->type_name("DIR")
        ->check(CLI::Validator(CLI::ExistingDirectory).description(""));
    command
        .add_option("--account-home", options.accountHome,
                    "The home folder that the user's account has, where it is not the extension's")
        ->type_name("DIR")
        ->check(somePath());
    command
        .add_option("--language", options.language,
                    "The language of the menu: en, zh-Hans (the default) or zh-Hant")
        ->type_name("LANGUAGE")
        ->check(CLI::IsMember({"en", "zh-Hans", "zh-Hant"}).description(""));
    command
        .add_option("--delivery", options.delivery,
                    "How a clicked item reaches the extension: intact (the default) is the very "
                    "item of the menu; finder is an item rebuilt of its title, enabled state, tag, "
                    "state and indentation, as Finder does it")
        ->type_name("HOW")
        ->check(CLI::IsMember({"intact", "finder"}).description(""));
    command.add_flag("--launch", options.launches,
                     "Really start the containing application when the extension asks for it, and "
                     "end it when it has performed the record");
    command.add_flag("--json", options.printsJSON, "Print JSON instead of text for people");
    command.add_flag("--verbose", options.isVerbose,
                     "Show what the extension writes on standard error");
}

/// Gives the extension the environment that the options ask for.
void prepareEnvironment(const Options& options) {
    if (const auto display = simulator::ensureDisplay(); !display) {
        throw CommandError(display.error());
    }
    if (!options.home.empty()) {
        setenv("HOME", simulator::absolutePath(options.home).c_str(), 1);
    }
    if (!options.accountHome.empty()) {
        setenv("SIMULATOR_ACCOUNT_HOME", simulator::absolutePath(options.accountHome).c_str(), 1);
    }
    if (!options.language.empty()) {
        setenv("SIMULATOR_LANGUAGE", options.language.c_str(), 1);
    }
    setenv("SIMULATOR_LAUNCH", options.launches ? "1" : "0", 1);
    if (const char* const home = std::getenv("HOME"); home != nullptr && !simulator::isUTF8(home)) {
        throw CommandError("the home folder's path is not UTF-8");
    }
}

std::filesystem::path homeFolder() {
    const char* const home = std::getenv("HOME");
    if (home == nullptr || *home != '/') {
        throw CommandError("HOME names no folder: say --home");
    }
    return home;
}

void print(const std::string& text) {
    std::fputs(text.c_str(), stdout);
}

void showMenu(const Options& options) {
    ExtensionProcess extension(options.isVerbose);
    const ordered_json answer = extension.ask(simulator::menuRequest(options));
    print(options.printsJSON ? answer.dump(2) + "\n" : simulator::menuTree(answer["menu"]));
}

/// The containing applications that are launched while this is there. They end with it.
class LaunchedApplications {
 public:
    explicit LaunchedApplications(std::filesystem::path home)
        : home_(std::move(home)), before_(simulator::containingApplications(home_)) {}
    LaunchedApplications(const LaunchedApplications&) = delete;
    LaunchedApplications& operator=(const LaunchedApplications&) = delete;
    ~LaunchedApplications() { simulator::endContainingApplications(home_, before_); }

 private:
    std::filesystem::path home_;
    std::vector<pid_t> before_;
};

void clickEntry(const Options& options) {
    const std::filesystem::path home = homeFolder();
    if (options.launches) {
        // There to be held back, so that the record can be shown before it is performed.
        std::error_code error;
        std::filesystem::create_directories(simulator::QuorvaFolder(home).queue(), error);
    }
    std::optional<LaunchedApplications> launched;
    if (options.launches && !options.keepsRunning) {
        launched.emplace(home);
    }
    ExtensionProcess extension(options.isVerbose);
    const ordered_json menu = extension.ask(simulator::menuRequest(options))["menu"];
    const auto entries = simulator::menuEntries(menu);
    ordered_json request = simulator::finderState(options.selectedPaths, options.targetedPath);
    request["delivery"] = options.delivery.empty() ? "intact" : options.delivery;
    const ordered_json result = simulator::click(
        extension, simulator::entryNamed(entries, options.titles), std::move(request), home);
    print(options.printsJSON ? result.dump(2) + "\n" : simulator::clickText(result));
}

void showDirectories(const Options& options) {
    ExtensionProcess extension(options.isVerbose);
    const ordered_json answer = extension.ask({{"request", "directories"}});
    if (options.printsJSON) {
        print(answer.dump(2) + "\n");
        return;
    }
    for (const std::string directory : answer["directories"]) {
        print(directory + "\n");
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    Options options;
    CLI::App app(description, "finder-sim");
    app.footer(footer);
    app.require_subcommand(1);
    app.get_formatter()->column_width(26);

    CLI::App* const menu =
        app.add_subcommand("menu", "Show the menu as a tree; what can't be clicked is marked");
    CLI::App* const click = app.add_subcommand(
        "click", "Click an entry and show the record, the notification and the launch");
    click
        ->add_option("titles", options.titles,
                     "The titles on the way to the entry, or its last ones when they say enough")
        ->type_name("TITLE")
        ->required();
    click->add_flag("--keep-running", options.keepsRunning,
                    "Leave the application that --launch started running");
    CLI::App* const directories =
        app.add_subcommand("directories", "List the folders that the extension monitors");
    CLI::App* const demo = app.add_subcommand(
        "demo", "Show both layouts of a menu in a sample home, and a click on every kind of entry");
    for (CLI::App* const command : {menu, click, directories, demo}) {
        addOptions(*command, options);
    }
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "finder-sim: %s (--help says more)\n", error.what());
        return 1;
    }

    try {
        prepareEnvironment(options);
        if (menu->parsed()) {
            showMenu(options);
        } else if (click->parsed()) {
            clickEntry(options);
        } else if (directories->parsed()) {
            showDirectories(options);
        } else {
            simulator::runDemo(options);
        }
    } catch (const std::exception& exception) {
        std::fflush(stdout);
        std::fprintf(stderr, "finder-sim: %s\n", exception.what());
        return 1;
    }
    return 0;
}
