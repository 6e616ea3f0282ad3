#include "Simulator/ExtensionHost/VirtualDisplay.hpp"

#include <X11/Xlib.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

std::expected<void, std::string> simulator::ensureDisplay() {
    if (Display* const display = XOpenDisplay(nullptr)) {
        XCloseDisplay(display);
        return {};
    }
    // Should this process end before the signal is asked for, the server fails to write its number.
    FILE* const output = popen(
        "exec setpriv --pdeathsig TERM Xvfb -displayfd 1 -screen 0 640x480x24 -nolisten tcp"
        " -noreset </dev/null 2>/dev/null",
        "re");
    if (output == nullptr) {
        return std::unexpected(std::string("no virtual display: ") + std::strerror(errno));
    }
    unsigned number = 0;
    if (std::fscanf(output, "%u", &number) != 1) {
        const int status = pclose(output);
        return std::unexpected(WIFEXITED(status) && WEXITSTATUS(status) == 127
                                   ? "there is no display, and no Xvfb to start a virtual one with"
                                   : "there is no display, and Xvfb did not start");
    }
    // The stream stays open: to close it is to wait for the server.
    setenv("DISPLAY", (":" + std::to_string(number)).c_str(), 1);
    return {};
}
