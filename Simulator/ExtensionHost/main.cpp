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
#include <optional>
#include <string>
#include <string_view>

#include "Simulator/ExtensionHost/Extension.hpp"
#include "Simulator/ExtensionHost/ExtensionProtocol.hpp"
#include "Simulator/VirtualDisplay.hpp"
#include "Simulator/WriteAll.hpp"

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

/// The lines of a descriptor. While it waits for one, the run loop runs.
class LineReader {
 public:
    explicit LineReader(int descriptor) : descriptor_(descriptor) {}

    /// The next line without its line feed, which the last may lack. Nothing at the end of input.
    /// The text is good until the next call.
    std::optional<std::string_view> next() {
        buffer_.erase(0, consumed_);
        consumed_ = 0;
        std::size_t searched = 0;
        while (true) {
            const std::size_t end = buffer_.find('\n', searched);
            if (end != std::string::npos) {
                consumed_ = end + 1;
                return std::string_view(buffer_).substr(0, end);
            }
            searched = buffer_.size();
            if (!readMore()) {
                consumed_ = buffer_.size();
                return buffer_.empty() ? std::nullopt : std::optional<std::string_view>(buffer_);
            }
        }
    }

 private:
    bool readMore() {
        if (isAtEnd_) {
            return false;
        }
        simulator::runRunLoopUntilReadable(descriptor_);
        std::array<char, 1 << 16> chunk{};
        const ssize_t count = read(descriptor_, chunk.data(), chunk.size());
        if (count > 0) {
            buffer_.append(chunk.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
            isAtEnd_ = true;
        }
        return !isAtEnd_;
    }

    int descriptor_;
    std::string buffer_;
    std::size_t consumed_ = 0;
    bool isAtEnd_ = false;
};

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
    if (const auto started = simulator::startExtension(); !started) {
        return fail(started.error());
    }

    LineReader lines(input);
    while (const auto line = lines.next()) {
        if (const int error = writeLine(output, simulator::answer(*line)); error != 0) {
            return fail(std::string("an answer could not be written: ") + std::strerror(error));
        }
    }
    return 0;
}
