#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace simulator {

/// What the command line says.
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

/// `path`, which is not empty, as Finder would name it: from the root, without "." and "..", and
/// without a slash at its end. Links are not followed.
inline std::string absolutePath(const std::string& path) {
    const std::filesystem::path normal = std::filesystem::absolute(path).lexically_normal();
    return normal.has_filename() ? normal : normal.parent_path();
}

/// What menu requests and clicks have in common: the selection and the target.
inline nlohmann::ordered_json finderState(const std::vector<std::string>& selectedPaths,
                                          const std::string& targetedPath) {
    nlohmann::ordered_json state;
    state["selectedPaths"] = nlohmann::ordered_json::array();
    for (const std::string& path : selectedPaths) {
        state["selectedPaths"].push_back(absolutePath(path));
    }
    state["targetedPath"] = nullptr;
    if (!targetedPath.empty()) {
        state["targetedPath"] = absolutePath(targetedPath);
    }
    return state;
}

/// The request for a menu.
inline nlohmann::ordered_json menuRequest(const Options& options) {
    nlohmann::ordered_json request = finderState(options.selectedPaths, options.targetedPath);
    request["request"] = "menu";
    request["kind"] = options.kind;
    if (options.kind.empty()) {
        request["kind"] = options.selectedPaths.empty() ? "container" : "items";
    }
    return request;
}

}  // namespace simulator
