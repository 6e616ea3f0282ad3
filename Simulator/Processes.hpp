#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace simulator {

struct Process {
    pid_t identifier;
    pid_t parent;
    /// The program that runs. Empty when it has ended, or is not for this user to know.
    std::filesystem::path executable;
};

/// The processes of the machine, those among them that have ended but were not waited for.
std::vector<Process> processes();

/// Whether the process was started with the home folder that this one has, as far as this user may
/// know.
bool sharesHome(const Process& process);

}  // namespace simulator
