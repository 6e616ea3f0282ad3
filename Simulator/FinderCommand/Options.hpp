#pragma once

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

}  // namespace simulator
