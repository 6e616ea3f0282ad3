#include "Simulator/FinderCommand/ContainingApplication.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

namespace simulator {
namespace {

using std::filesystem::path;

std::string contents(const path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Whether the process is this user's. Root may look at those of others too.
bool isOwn(const path& process) {
    struct stat status{};
    return stat(process.c_str(), &status) == 0 && status.st_uid == geteuid();
}

/// Whether the environment that the process was started with gives it the home `home`.
bool hasHome(const path& process, const path& home) {
    const std::string environment = '\0' + contents(process / "environ");
    const std::string entry = '\0' + ("HOME=" + home.string()) + '\0';
    return environment.find(entry) != std::string::npos;
}

}  // namespace

std::vector<pid_t> containingApplications(const path& home) {
    std::vector<pid_t> processes;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename();
        // Unreadable for the processes of others.
        const path executable = std::filesystem::read_symlink(entry.path() / "exe", error);
        if (error || !std::ranges::all_of(name, [](char digit) { return std::isdigit(digit); }) ||
            !executable.string().ends_with("/Quorva.app/Contents/MacOS/Quorva") ||
            !isOwn(entry.path()) || (!home.empty() && !hasHome(entry.path(), home))) {
            continue;
        }
        processes.push_back(std::atoi(name.c_str()));
    }
    return processes;
}

void endContainingApplications(const path& home, const std::vector<pid_t>& spared) {
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::vector<pid_t> processes = containingApplications(home);
        std::erase_if(processes, [&](pid_t process) {
            return std::ranges::find(spared, process) != spared.end();
        });
        if (processes.empty()) {
            return;
        }
        for (const pid_t process : processes) {
            kill(process, attempt < 60 ? SIGTERM : SIGKILL);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

std::map<std::string, std::string> QuorvaFolder::records() const {
    std::map<std::string, std::string> records;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(queue(), error)) {
        if (entry.path().extension() == ".json" && entry.is_regular_file(error)) {
            records.emplace(entry.path().filename(), contents(entry.path()));
        }
    }
    return records;
}

std::vector<std::string> QuorvaFolder::performed() const {
    std::vector<std::string> lines;
    std::ifstream stream(folder_ / "Performed.jsonl", std::ios::binary);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

QueueHold::QueueHold(const path& queue)
    : descriptor_(open(queue.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (descriptor_ >= 0) {
        flock(descriptor_, LOCK_EX);
    }
}

QueueHold::~QueueHold() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

}  // namespace simulator
