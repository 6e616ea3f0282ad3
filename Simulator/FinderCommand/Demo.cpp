#include "Simulator/FinderCommand/Demo.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>

#include "Simulator/FinderCommand/Terminal.hpp"
#include "Simulator/Text.hpp"

namespace simulator {
namespace {

using nlohmann::ordered_json;
using nlohmann::literals::operator""_json_pointer;
using std::filesystem::path;

/// What is clicked, the beginning of its action identifier, and how it is delivered.
constexpr auto demoClicks = std::to_array<std::array<const char*, 3>>({
    {"a command of the catalogue", "copyFullPath", "intact"},
    {"a folder to copy to", "copyFilesToFolder", "finder"},
    {"a folder to move to", "moveFilesToFolder", "finder"},
    {"a quick-open location", "quickOpenPath", "finder"},
    {"an application to open with", "openWithApplicationPath", "intact"},
    {"a view preset", "finderViewPreset__", "finder"},
    {"a custom shortcut", "runShortcut__", "intact"},
    {"a custom script", "runScript__", "finder"},
});

/// Makes `layout` the one of the settings. Returns false when they name none.
bool setLayout(const std::string& layout) {
    const path file = quorvaFolder() / "FeatureSettings.plist";
    const std::regex anyLayout("<string>(collapsed|expanded)</string>");
    std::ifstream stream(file, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    if (!std::regex_search(text, anyLayout)) {
        return false;
    }
    std::ofstream(file, std::ios::binary)
        << std::regex_replace(text, anyLayout, "<string>" + layout + "</string>");
    return true;
}

/// Copies the home folder into `folder`, and makes the copy the home folder of this process.
Options prepareHome(Options options, const path& folder) {
    const path home = folder / "ada";
    const path buildFolder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const path original = options.home.empty() ? buildFolder / "Samples/Home" : path(options.home);
    std::error_code error;
    std::filesystem::copy(original, home, std::filesystem::copy_options::recursive, error);
    if (error) {
        throw std::runtime_error("the home " + original.string() +
                                 " can't be copied: " + error.message());
    }
    setenv("HOME", home.c_str(), 1);
    setenv("SIMULATOR_LAUNCH", "1", 1);
    setenv("SIMULATOR_ACCOUNT_NAME", "ada", 0);
    setenv("SIMULATOR_ACCOUNT_HOME", "/Users/ada", 0);
    options.launches = true;
    if (options.selectedPaths.empty() && options.targetedPath.empty()) {
        const path reports = home / "Documents/Reports";
        options.targetedPath = reports;
        options.selectedPaths = {reports / "季度报告.txt", reports / "Budget 2026.csv"};
    }
    return options;
}

class Demo {
 public:
    explicit Demo(Options options) : options_(std::move(options)), extension_(options_.isVerbose) {}

    void run() {
        say(styled("A menu", Style::heading) + "\n");
        if (!options_.targetedPath.empty()) {
            say("  in        " + escaped(options_.targetedPath) + "\n");
        }
        for (const std::string& selected : options_.selectedPaths) {
            say("  selected  " + escaped(selected) + "\n");
        }
        ordered_json menu = setLayout("collapsed") ? showMenu("collapsed") : showMenu("its own");
        if (setLayout("expanded")) {
            menu = showMenu("expanded");
        }
        const std::vector<MenuEntry> entries = menuEntries(menu);
        for (const auto& [what, actionID, delivery] : demoClicks) {
            clickOn(entries, what, actionID, delivery);
        }
        say("\n" + styled("What Quorva wrote down in Performed.jsonl", Style::heading) + "\n");
        for (const ordered_json& result : report_["clicks"]) {
            say("  " + jsonText(result["performed"][0], -1) + "\n");
        }
        if (options_.printsJSON) {
            print(jsonText(report_) + "\n");
        }
    }

 private:
    void say(const std::string& text) const {
        if (!options_.printsJSON) {
            print(text);
        }
    }

    ordered_json showMenu(const std::string& layout) {
        const ordered_json menu = requestMenu(extension_, options_).at("menu");
        say("\n" + styled("Layout: " + layout, Style::heading) + "\n" + menuTree(menu));
        report_["menus"].push_back({{"layout", layout}, {"menu", menu}});
        return menu;
    }

    void clickOn(const std::vector<MenuEntry>& entries, const std::string& what,
                 const std::string& actionID, const std::string& delivery) {
        Options options = options_;
        options.delivery = options.delivery.empty() ? delivery : options.delivery;
        say("\n" + styled("A click on " + what, Style::heading) +
            styled(options.delivery == "finder" ? ", the item rebuilt as Finder does it"
                                                : ", the very item of the menu",
                   Style::dim) +
            "\n");
        // Of several the last: behind the built-in ones come the user's own.
        const auto lastFirst = std::views::reverse(entries);
        const auto found = std::ranges::find_if(lastFirst, [&](const MenuEntry& entry) {
            return entry.isClickable &&
                   entry.item->value("/representedObject/actionID"_json_pointer, "")
                       .starts_with(actionID);
        });
        if (found == lastFirst.end()) {
            say(styled("  There is none in this menu.", Style::dim) + "\n");
            return;
        }
        const ordered_json result = click(extension_, *found, options);
        say(clickText(result));
        if (result["records"].size() != 1 || result["performed"].size() != 1) {
            throw std::runtime_error("the click on " + breadcrumbs(found->titles) +
                                     " was not performed");
        }
        report_["clicks"].push_back(result);
    }

    Options options_;
    ExtensionProcess extension_;
    ordered_json report_ = {{"menus", ordered_json::array()}, {"clicks", ordered_json::array()}};
};

}  // namespace

void runDemo(const Options& options, const path& folder) {
    Demo(prepareHome(options, folder)).run();
}

}  // namespace simulator
