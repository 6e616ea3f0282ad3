#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "Simulator/FinderCommand/ExtensionProcess.hpp"
#include "Simulator/FinderCommand/MenuEntry.hpp"

namespace simulator {

/// What the command line says. Paths are absolute; what was not said is empty.
struct Options {
    std::vector<std::string> selectedPaths;
    std::string targetedPath;
    std::string kind;
    std::string home;
    std::string accountHome;
    std::string language;
    std::string delivery;
    bool launches = false;
    bool keepsRunning = false;
    bool printsJSON = false;
    bool isVerbose = false;
    std::vector<std::string> titles;
};

/// The "Quorva" folder of Application Support below the home folder that `HOME` names.
std::filesystem::path quorvaFolder();

/// The extension's response to the request for the menu that `options` describe.
nlohmann::ordered_json requestMenu(ExtensionProcess& extension, const Options& options);

/// Clicks `entry` of the menu that `extension` was last asked for and watches what comes of it.
///
/// The result is the extension's response with three more members: "titles"; "records", the new
/// records of the queue (or else of the folder that stands in for it) by file name, each as a JSON
/// value or, where it is none, as a string; and "performed", what a containing application that
/// runs, or is launched as `options` say, wrote down about them.
nlohmann::ordered_json click(ExtensionProcess& extension, const MenuEntry& entry,
                             const Options& options);

/// The result of `click` for people.
std::string clickText(const nlohmann::ordered_json& result);

}  // namespace simulator
