#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "Simulator/FinderCommand/ExtensionProcess.hpp"
#include "Simulator/FinderCommand/MenuEntries.hpp"

namespace simulator {

/// Clicks `entry` of the menu that `extension` was last asked for and watches what comes of it.
///
/// `request` holds what a click needs besides: "delivery", "selectedPaths", "targetedPath". The
/// result is the extension's answer with three more members: "titles"; "records", the new records
/// by file name, each as a JSON value (or as text when it is none); and "performed", the lines that
/// a running containing application wrote about them.
nlohmann::ordered_json click(ExtensionProcess& extension, const MenuEntry& entry,
                             nlohmann::ordered_json request, const std::filesystem::path& home);

/// The result of `click` for people.
std::string clickText(const nlohmann::ordered_json& result);

}  // namespace simulator
