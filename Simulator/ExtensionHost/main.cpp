// Stands in for the system's entry of an app extension: makes the principal object that the
// process's own bundle names, and answers for Finder.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "Simulator/ExtensionHost/Extension.hpp"
#include "Simulator/ExtensionHost/ExtensionProtocol.hpp"
#include "Simulator/ExtensionHost/VirtualDisplay.hpp"
#include "Simulator/FileDescriptor.hpp"

namespace {

int fail(const std::string& message) {
    std::fprintf(stderr, "QuorvaFinderExtension: %s\n", message.c_str());
    return 1;
}

/// A private copy of `descriptor`, which no process that this one starts inherits; whoever uses the
/// descriptor itself from now on gets `replacement`.
int takeOver(int descriptor, int replacement) {
    const int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, 3);
    dup2(replacement, descriptor);
    return copy;
}

/// Writes a line. Whoever asked may be gone when the answer is ready, and a signal would not say
/// so. Returns 0 or the error's number, with which the signal stays blocked and pending.
int writeLine(int descriptor, const std::string& line) {
    sigset_t brokenPipe;
    sigset_t former;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, &former);
    const int error = simulator::writeAll(descriptor, line + "\n");
    if (error == 0) {
        pthread_sigmask(SIG_SETMASK, &former, nullptr);
    }
    return error;
}

}  // namespace

int main() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            return fail("standard input, standard output and standard error must be open");
        }
    }
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing < 0) {
        return fail("there is no /dev/null");
    }
    const int input = takeOver(STDIN_FILENO, nothing);
    const int output = takeOver(STDOUT_FILENO, STDERR_FILENO);
    if (input < 0 || output < 0) {
        return fail(std::string("no file descriptor: ") + std::strerror(errno));
    }

    if (const auto display = simulator::ensureDisplay(); !display) {
        return fail(display.error());
    }
    bool hasStarted = false;
    simulator::enterExtension([&] { hasStarted = simulator::startExtension(); });
    if (!hasStarted) {
        return fail("Info.plist names no principal class that is a subclass of FIFinderSync");
    }

    std::string received;
    std::array<char, 1 << 16> chunk{};
    for (bool isAtEnd = false; !isAtEnd;) {
        simulator::enterExtension([&] { simulator::runRunLoopUntilReadable(input); });
        const ssize_t count = read(input, chunk.data(), chunk.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
            continue;
        }
        isAtEnd = count <= 0;
        std::size_t end = received.size();
        if (!isAtEnd) {
            received.append(chunk.data(), static_cast<std::size_t>(count));
        } else if (!received.empty()) {
            received += '\n';  // which the last line may lack
        }
        std::size_t start = 0;
        for (; (end = received.find('\n', end)) != std::string::npos; start = ++end) {
            const auto line = std::string_view(received).substr(start, end - start);
            std::string answer;
            simulator::enterExtension([&] { answer = simulator::answer(line); });
            if (const int error = writeLine(output, answer); error != 0) {
                return fail(std::string("an answer could not be written: ") + std::strerror(error));
            }
        }
        received.erase(0, start);
    }
    return 0;
}
