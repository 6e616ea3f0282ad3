#include "Simulator/VirtualDisplay.hpp"

#include <X11/Xlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "Simulator/FileDescriptor.hpp"

namespace simulator {
namespace {

/// What the server's process does: it writes the display's number to `output`. Never returns.
[[noreturn]] void runServer(pid_t parent, int output) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // The signal comes only if the parent still lives when it is asked for.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int nothing = open("/dev/null", O_RDWR);
    if (getppid() == parent && nothing >= 0) {
        dup2(nothing, STDIN_FILENO);
        dup2(output, STDOUT_FILENO);
        dup2(nothing, STDERR_FILENO);
        execlp("Xvfb", "Xvfb", "-displayfd", "1", "-screen", "0", "640x480x24", "-nolisten", "tcp",
               "-noreset", nullptr);
    }
    _exit(127);
}

}  // namespace

std::expected<void, std::string> ensureDisplay() {
    if (Display* const display = XOpenDisplay(nullptr)) {
        XCloseDisplay(display);
        return {};
    }

    std::array<int, 2> ends{};
    const pid_t parent = getpid();
    const pid_t server = pipe2(ends.data(), O_CLOEXEC) == 0 ? fork() : -1;
    if (server == 0) {
        runServer(parent, ends[1]);
    }
    if (server < 0) {
        return std::unexpected(std::string("no virtual display: ") + std::strerror(errno));
    }
    const FileDescriptor input(ends[0]);
    close(ends[1]);

    std::string number;
    for (char digit = 0; read(input.number(), &digit, 1) == 1 && digit != '\n';) {
        number += digit;
    }
    if (number.empty()) {
        int status = 0;
        waitpid(server, &status, 0);
        return std::unexpected(WIFEXITED(status) && WEXITSTATUS(status) == 127
                                   ? "there is no display, and no Xvfb to start a virtual one with"
                                   : "there is no display, and Xvfb did not start");
    }
    setenv("DISPLAY", (":" + number).c_str(), 1);
    return {};
}

}  // namespace simulator
