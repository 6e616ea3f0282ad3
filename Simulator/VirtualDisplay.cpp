#include "Simulator/VirtualDisplay.hpp"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace simulator {
namespace {

/// Whether the X server that `DISPLAY` names lets this process in, by the library that will open
/// the display in earnest.
bool displayAnswers() {
    if (std::getenv("DISPLAY") == nullptr) {
        return false;
    }
    void* const library = dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return false;
    }
    auto* const open = reinterpret_cast<void* (*)(const char*)>(dlsym(library, "XOpenDisplay"));
    auto* const close = reinterpret_cast<int (*)(void*)>(dlsym(library, "XCloseDisplay"));
    void* const display = open == nullptr || close == nullptr ? nullptr : open(nullptr);
    if (display != nullptr) {
        close(display);
    }
    dlclose(library);
    return display != nullptr;
}

/// What the server's process does. Never returns.
[[noreturn]] void runServer(pid_t parent, int displayNumberDescriptor) {
    // The signal comes only if the parent still lives when it is asked for.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) {
        _exit(0);
    }
    const int nothing = open("/dev/null", O_RDWR);
    if (nothing < 0) {
        _exit(1);
    }
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
    const int descriptor = dup(displayNumberDescriptor);
    execlp("Xvfb", "Xvfb", "-displayfd", std::to_string(descriptor).c_str(), "-screen", "0",
           "640x480x24", "-nolisten", "tcp", "-noreset", nullptr);
    _exit(127);
}

}  // namespace

std::expected<void, std::string> ensureDisplay() {
    if (displayAnswers()) {
        return {};
    }

    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::unexpected(std::string("no virtual display: ") + std::strerror(errno));
    }
    const pid_t parent = getpid();
    const pid_t server = fork();
    if (server == 0) {
        runServer(parent, ends[1]);
    }
    close(ends[1]);
    if (server < 0) {
        close(ends[0]);
        return std::unexpected(std::string("no virtual display: ") + std::strerror(errno));
    }

    std::string number;
    char character = 0;
    while (number.find('\n') == std::string::npos) {
        const ssize_t count = read(ends[0], &character, 1);
        if (count == 1) {
            number += character;
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    close(ends[0]);
    if (!number.ends_with('\n')) {
        int status = 0;
        waitpid(server, &status, 0);
        return std::unexpected(WIFEXITED(status) && WEXITSTATUS(status) == 127
                                   ? "there is no display, and no Xvfb to start a virtual one with"
                                   : "there is no display, and Xvfb did not start");
    }
    number.pop_back();
    setenv("DISPLAY", (":" + number).c_str(), 1);
    return {};
}

}  // namespace simulator
