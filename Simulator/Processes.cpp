#include "Simulator/Processes.hpp"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace simulator {
namespace {

using std::filesystem::path;

std::string contents(const path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

std::vector<Process> processes() {
    std::vector<Process> found;
    std::error_code error;
    std::filesystem::directory_iterator entry("/proc", error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const pid_t identifier = std::atoi(entry->path().filename().c_str());
        if (identifier <= 0) {
            continue;
        }
        // "17 (name) S 1 ...", where the name holds anything.
        const std::string status = contents(entry->path() / "stat");
        std::istringstream fields(status.substr(status.rfind(')') + 1));
        char state = 0;
        pid_t parent = 0;
        if (fields >> state >> parent) {
            std::error_code unknown;
            found.push_back({identifier, parent,
                             std::filesystem::read_symlink(entry->path() / "exe", unknown)});
        }
    }
    return found;
}

bool sharesHome(const Process& process) {
    const char* const home = std::getenv("HOME");
    const std::string variable = '\0' + ("HOME=" + std::string(home == nullptr ? "" : home)) + '\0';
    const path folder = path("/proc") / std::to_string(process.identifier);
    return ('\0' + contents(folder / "environ")).find(variable) != std::string::npos;
}

}  // namespace simulator
