#include "Simulator/FinderCommand/Supervisor.hpp"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "Simulator/Processes.hpp"

namespace simulator {
namespace {

using std::chrono::steady_clock;
using std::filesystem::path;

/// How long a process may take to end when it is asked to.
constexpr std::chrono::seconds grace(3);

/// Blocks the signals to wait for: that a child has ended, and those that ask to end, but for the
/// ones that whoever started this has it ignore.
sigset_t blockSignals() {
    std::signal(SIGCHLD, SIG_DFL);
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGCHLD, SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        struct sigaction action{};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            sigaddset(&signals, signal);
        }
    }
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

/// Ends the children of this process, to which every process falls whose parent has ended, until
/// there are none but those that run `spared`. A child that has ended counts until it is waited
/// for.
void endChildren(const std::string& spared) {
    std::map<pid_t, steady_clock::time_point> deadlines;
    for (bool remain = true; std::exchange(remain, false);) {
        while (waitpid(-1, nullptr, WNOHANG) > 0) {
        }
        for (const Process& process : processes()) {
            if (process.parent != getpid() ||
                (!spared.empty() && process.executable.filename() == spared)) {
                continue;
            }
            remain = true;
            const auto now = steady_clock::now();
            const auto [deadline, isNew] = deadlines.emplace(process.identifier, now + grace);
            if (now > deadline->second) {
                kill(process.identifier, SIGKILL);
            } else if (isNew) {
                kill(process.identifier, SIGTERM);
                kill(process.identifier, SIGCONT);
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(remain ? 10 : 0));
    }
}

}  // namespace

int supervise(const std::function<int(const path& folder)>& work, bool givesFolder,
              bool keepsApplication) {
    const sigset_t signals = blockSignals();
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    std::string folder;
    if (givesFolder) {
        folder = std::filesystem::temp_directory_path() / "finder-sim.XXXXXX";
        if (mkdtemp(folder.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), "no temporary folder");
        }
    }

    const pid_t supervisor = getpid();
    const pid_t worker = fork();
    if (worker == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::exit(getppid() == supervisor ? work(folder) : EXIT_FAILURE);
    }
    if (worker < 0) {
        std::perror("finder-sim: no process could be started");
    }
    int status = W_EXITCODE(EXIT_FAILURE, 0);
    int interruption = 0;
    while (worker > 0 && waitpid(worker, &status, WNOHANG) == 0) {
        const int signal = sigwaitinfo(&signals, nullptr);
        if (signal > 0 && signal != SIGCHLD) {
            interruption = signal;
            kill(worker, SIGKILL);
            waitpid(worker, &status, 0);
            break;
        }
    }
    endChildren(interruption == 0 && keepsApplication ? "Quorva" : "");
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    if (interruption == 0 && WIFEXITED(status)) {
        return WEXITSTATUS(status);
    }
    return 128 + (interruption != 0 ? interruption : WTERMSIG(status));
}

}  // namespace simulator
