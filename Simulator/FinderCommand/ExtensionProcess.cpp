#include "Simulator/FinderCommand/ExtensionProcess.hpp"

#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "Simulator/JSONText.hpp"
#include "Simulator/Text.hpp"

namespace simulator {
namespace {

using nlohmann::ordered_json;

void require(bool succeeded) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), "the extension was not started");
    }
}

std::string contents(const FileDescriptor& file) {
    std::string text(static_cast<std::size_t>(lseek(file.number(), 0, SEEK_END)), '\0');
    const ssize_t count = pread(file.number(), text.data(), text.size(), 0);
    return text.substr(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
}

}  // namespace

ExtensionProcess::ExtensionProcess(bool isVerbose)
    : isVerbose_(isVerbose), errors_(memfd_create("standard error", MFD_CLOEXEC)) {
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe");
    const std::string executable = folder.parent_path() /
                                   "Quorva.app/Contents/PlugIns/QuorvaFinderExtension.appex/"
                                   "Contents/MacOS/QuorvaFinderExtension";
    std::array<int, 2> ends{};
    require(errors_.number() >= 0 &&
            socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0);
    socket_ = FileDescriptor(ends[0]);
    const FileDescriptor other(ends[1]);
    process_ = fork();
    require(process_ >= 0);
    if (process_ == 0) {
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        dup2(other.number(), STDIN_FILENO);
        dup2(other.number(), STDOUT_FILENO);
        dup2(errors_.number(), STDERR_FILENO);
        execl(executable.c_str(), "QuorvaFinderExtension", nullptr);
        std::perror(executable.c_str());
        _exit(127);
    }
}

ordered_json ExtensionProcess::ask(const std::string& name, ordered_json request) {
    request["id"] = ++lastID_;
    request["request"] = name;
    const std::string line = request.dump() + "\n";
    if (send(socket_.number(), line.data(), line.size(), MSG_NOSIGNAL) < 0) {
        failEnded();
    }
    std::size_t length = 0;
    while ((length = received_.find('\n', length)) == std::string::npos) {
        length = received_.size();
        pollfd waiting = {socket_.number(), POLLIN, 0};
        poll(&waiting, 1, 100);
        showErrors();
        std::array<char, 1 << 16> chunk{};
        const ssize_t count = recv(socket_.number(), chunk.data(), chunk.size(), MSG_DONTWAIT);
        if (count > 0) {
            received_.append(chunk.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EAGAIN) {
            failEnded();
        }
    }
    const auto response = parseJSON<ordered_json>(received_.substr(0, length));
    received_.erase(0, length + 1);
    if (response.at("id") != lastID_) {
        throw std::runtime_error("the extension responded to another request");
    }
    if (response.contains("error")) {
        throw std::runtime_error("the extension reports: " + response["error"].get<std::string>());
    }
    return response;
}

/// Returns the status that the extension ended with.
int ExtensionProcess::end() {
    int status = 0;
    if (process_ > 0) {
        socket_ = FileDescriptor();
        const FileDescriptor process(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)));
        pollfd ending = {process.number(), POLLIN, 0};
        if (poll(&ending, 1, 3000) != 1) {
            kill(process_, SIGKILL);
        }
        waitpid(std::exchange(process_, -1), &status, 0);
        showErrors();
    }
    return status;
}

void ExtensionProcess::failEnded() {
    const int status = end();
    const std::string errors = isVerbose_ ? "" : contents(errors_);
    throw std::runtime_error(
        "the extension ended " +
        (WIFSIGNALED(status) ? "by signal " + std::to_string(WTERMSIG(status))
                             : "with status " + std::to_string(WEXITSTATUS(status))) +
        (errors.empty() ? "" : "; its last words:\n") +
        errors.substr(errors.size() - std::min<std::size_t>(errors.size(), 2048)));
}

/// Shows the lines that have come to standard error since, and at the end what is left of one.
void ExtensionProcess::showErrors() {
    if (isVerbose_) {
        const std::string text = contents(errors_).substr(shownErrors_);
        const std::size_t length = process_ > 0 ? text.rfind('\n') + 1 : text.size();
        shownErrors_ += length;
        std::fputs(escaped(text.substr(0, length), u'\n').c_str(), stderr);
    }
}

}  // namespace simulator
