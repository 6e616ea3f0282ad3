#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

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

/// `request` with what Finder has selected and shows.
inline nlohmann::ordered_json withFinderState(nlohmann::ordered_json request,
                                              const Options& options) {
    request["selectedPaths"] = options.selectedPaths;
    request["targetedPath"] = nullptr;
    if (!options.targetedPath.empty()) {
        request["targetedPath"] = options.targetedPath;
    }
    return request;
}

inline nlohmann::ordered_json menuRequest(const Options& options) {
    const std::string kind = options.selectedPaths.empty() ? "container" : "items";
    return withFinderState(
        {{"request", "menu"}, {"kind", options.kind.empty() ? kind : options.kind}}, options);
}

/// The request for a click, but for "indexPath".
inline nlohmann::ordered_json clickRequest(const Options& options, const std::string& delivery) {
    return withFinderState({{"request", "click"}, {"delivery", delivery}}, options);
}

}  // namespace simulator
