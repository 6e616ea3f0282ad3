// finder-sim: Finder, as far as an extension with a menu can tell, on the command line.

#include <fcntl.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Simulator/FinderCommand/Click.hpp"
#include "Simulator/FinderCommand/Demo.hpp"
#include "Simulator/FinderCommand/ExtensionProcess.hpp"
#include "Simulator/FinderCommand/MenuEntry.hpp"
#include "Simulator/FinderCommand/Supervisor.hpp"
#include "Simulator/FinderCommand/Terminal.hpp"
#include "Simulator/Text.hpp"

namespace {

using nlohmann::ordered_json;
using simulator::ExtensionProcess;
using simulator::Options;
using std::filesystem::path;

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
    "A character that a terminal could act on is shown as \\u and its four digits.\n"
    "The protocol between the two is described in Documentation/ExtensionProtocol.md.";

/// Gives a path the form in which Finder would name it: from the root, without "." and "..", and
/// without a slash at its end. Links are not followed. Refuses the empty path, which names nothing.
CLI::Validator absolutePath() {
    return {[](std::string& text) {
                if (text.empty() || !simulator::isUTF8(text)) {
                    return std::string(text.empty() ? "a path is missing" : "a path is not UTF-8");
                }
                const path normal = std::filesystem::absolute(text).lexically_normal();
                text = normal.has_filename() ? normal : normal.parent_path();
                return std::string();
            },
            ""};
}

/// The options of the command line, as far as a command takes them.
void addOptions(CLI::App& command, Options& options, bool hasMenu, bool clicks) {
    const auto add = [&](const char* name, auto& value, const char* type, const char* text) {
        return command.add_option(name, value, text)->type_name(type);
    };
    const auto addPath = [&](const char* name, auto& value, const char* type, const char* text) {
        return add(name, value, type, text)->allow_extra_args(false)->transform(absolutePath());
    };
    const auto addChoice = [&](const char* name, std::string& value, const char* type,
                               const std::vector<std::string>& values, const char* text) {
        add(name, value, type, text)->check(CLI::IsMember(values).description(""));
    };
    if (hasMenu) {
        addPath("--select", options.selectedPaths, "PATH",
                "An item to select; once for each. Without one nothing is selected");
        addPath("--target", options.targetedPath, "DIR",
                "The folder that the Finder window shows. Without it there is none");
        addChoice("--kind", options.kind, "KIND", {"items", "container", "sidebar", "toolbar"},
                  "Where the menu is opened: items, container, sidebar or toolbar. Without it "
                  "items when something is selected, else container");
        addChoice("--language", options.language, "LANGUAGE", {"en", "zh-Hans", "zh-Hant"},
                  "The language of the menu: en, zh-Hans (the default) or zh-Hant");
    }
    addPath("--home", options.home, "DIR",
            "The home folder of the extension, its container on a Mac. The demonstration works on "
            "a copy of it")
        ->check(CLI::Validator(CLI::ExistingDirectory).description(""));
    addPath("--account-home", options.accountHome, "DIR",
            "The home folder that the user's account has, where it is not the extension's");
    if (clicks) {
        addChoice("--delivery", options.delivery, "HOW", {"intact", "finder"},
                  "How a clicked item reaches the extension: intact (the default of click) is the "
                  "very item of the menu; finder is an item rebuilt of its title, enabled state, "
                  "tag, state and indentation, as Finder does it");
    }
    command.add_flag("--json", options.printsJSON, "Print JSON instead of text for people");
    command.add_flag("--verbose", options.isVerbose,
                     "Show what the extension writes on standard error");
}

/// Gives the extension the environment that the options ask for.
void prepareEnvironment(const Options& options) {
    for (const auto& [name, value] :
         {std::pair("HOME", options.home), std::pair("SIMULATOR_ACCOUNT_HOME", options.accountHome),
          std::pair("SIMULATOR_LANGUAGE", options.language)}) {
        if (!value.empty()) {
            setenv(name, value.c_str(), 1);
        }
    }
    setenv("SIMULATOR_LAUNCH", options.launches ? "1" : "0", 1);
    const char* const home = std::getenv("HOME");
    if (home == nullptr || *home != '/') {
        throw std::runtime_error("HOME names no folder: say --home");
    }
    if (!simulator::isUTF8(home)) {
        throw std::runtime_error("the home folder's path is not UTF-8");
    }
}

void show(const Options& options, const ordered_json& response, const std::string& text) {
    simulator::print(options.printsJSON ? simulator::jsonText(response) + "\n" : text);
}

void showMenu(const Options& options, const path&) {
    ExtensionProcess extension(options.isVerbose);
    const ordered_json response = simulator::requestMenu(extension, options);
    show(options, response, simulator::menuTree(response.at("menu")));
}

void clickEntry(const Options& options, const path&) {
    ExtensionProcess extension(options.isVerbose);
    const ordered_json menu = simulator::requestMenu(extension, options).at("menu");
    const std::vector<simulator::MenuEntry> entries = simulator::menuEntries(menu);
    const ordered_json result =
        simulator::click(extension, simulator::entryNamed(entries, options.titles), options);
    show(options, result, simulator::clickText(result));
    if (result["records"].empty()) {
        throw std::runtime_error("no record of the click was written");
    }
}

void showDirectories(const Options& options, const path&) {
    ExtensionProcess extension(options.isVerbose);
    const ordered_json response = extension.ask("directories");
    std::string text;
    for (const auto& directory : response.at("directories").get<std::vector<std::string>>()) {
        text += simulator::escaped(directory) + "\n";
    }
    show(options, response, text);
}

int fail(const std::string& reason) {
    std::fprintf(stderr, "finder-sim: %s\n", simulator::escaped(reason, u'\n').c_str());
    return EXIT_FAILURE;
}

/// Returns the exit status of `work`, whose error becomes one on standard error.
int exitStatus(const std::function<void()>& work) {
    try {
        work();
        return EXIT_SUCCESS;
    } catch (const nlohmann::json::exception& exception) {
        return fail("the extension's response is not as the protocol has it: " +
                    simulator::escaped(exception.what()));
    } catch (const std::exception& exception) {
        return fail(exception.what());
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    // What is opened later never takes the place of a standard stream that is closed.
    while (open("/dev/null", O_RDONLY | O_CLOEXEC) < 3) {
    }

    Options options;
    void (*command)(const Options&, const path&) = nullptr;
    CLI::App app(description, "finder-sim");
    app.footer(footer);
    app.require_subcommand(1);
    app.get_formatter()->column_width(26);
    const auto add = [&](const char* name, auto function, bool hasMenu, bool clicks,
                         const char* text) {
        CLI::App* const subcommand = app.add_subcommand(name, text);
        subcommand->callback([&command, function] { command = function; });
        addOptions(*subcommand, options, hasMenu, clicks);
        return subcommand;
    };
    add("menu", showMenu, true, false, "Show the menu as a tree; what can't be clicked is marked");
    CLI::App* const click = add("click", clickEntry, true, true,
                                "Click an entry and show the record, the notification and the "
                                "launch");
    add("directories", showDirectories, false, false,
        "List the folders that the extension monitors");
    CLI::App* const demo = add("demo", simulator::runDemo, true, true,
                               "Show both layouts of a menu in a sample home, and a click on every "
                               "kind of entry");
    click
        ->add_option("titles", options.titles,
                     "The titles on the way to the entry, or its last ones when they say enough")
        ->type_name("TITLE")
        ->required();
    CLI::Option* const launch =
        click->add_flag("--launch", options.launches,
                        "Really start the containing application when the extension asks for it, "
                        "and end it when it has performed the record");
    click
        ->add_flag("--keep-running", options.keepsRunning,
                   "Leave the application that --launch started running")
        ->needs(launch);

    try {
        app.parse(argumentCount, arguments);
        return simulator::supervise(
            [&](const path& folder) {
                return exitStatus([&] {
                    prepareEnvironment(options);
                    command(options, folder);
                });
            },
            demo->parsed(), options.keepsRunning);
    } catch (const CLI::Success& request) {
        std::ostringstream help;
        app.exit(request, help, help);
        return exitStatus([&] { simulator::print(help.str()); });
    } catch (const CLI::ParseError& error) {
        return fail(simulator::escaped(error.what()) + " (--help says more)");
    } catch (const std::exception& exception) {
        return fail(exception.what());
    }
}
