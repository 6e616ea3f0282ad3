#include "Simulator/FinderCommand/ExtensionProcess.hpp"

#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <utility>

#include "Simulator/Escaping.hpp"
#include "Simulator/FinderCommand/CommandError.hpp"

namespace simulator {
namespace {

using nlohmann::ordered_json;

/// How deep a response may be nested: it is written recursively.
constexpr int depthLimit = 512;

/// What `file` holds from `start` on.
std::string contents(const FileDescriptor& file, off_t start) {
    std::string text(
        static_cast<std::size_t>(std::max<off_t>(lseek(file.number(), 0, SEEK_END) - start, 0)),
        '\0');
    const ssize_t count = pread(file.number(), text.data(), text.size(), start);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return text;
}

}  // namespace

ExtensionProcess::ExtensionProcess(bool isVerbose)
    : isVerbose_(isVerbose), errors_(memfd_create("standard error", MFD_CLOEXEC)) {
    const std::string executable =
        std::filesystem::read_symlink("/proc/self/exe").parent_path() /
        "Quorva.app/Contents/PlugIns/QuorvaFinderExtension.appex/Contents/MacOS/"
        "QuorvaFinderExtension";
    std::array<int, 2> ends = {-1, -1};
    int error = 0;
    if (errors_.number() < 0 ||
        socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        error = errno;
    }
    socket_ = FileDescriptor(ends[0]);
    const FileDescriptor other(ends[1]);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, other.number(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, other.number(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, errors_.number(), STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    std::string name = "QuorvaFinderExtension";
    std::array<char*, 2> arguments = {name.data(), nullptr};
    if (error == 0) {
        error = posix_spawn(&process_, executable.c_str(), &files, &attributes, arguments.data(),
                            environ);
    }
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0) {
        throw CommandError("the extension could not be started from " + executable + ": " +
                           std::strerror(error));
    }
}

ordered_json ExtensionProcess::ask(ordered_json request) {
    request["id"] = ++lastID_;
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
    const ordered_json response = ordered_json::parse(
        received_.substr(0, length), [](int depth, ordered_json::parse_event_t, ordered_json&) {
            return depth <= depthLimit ? true
                                       : throw CommandError("the response is nested too deeply");
        });
    received_.erase(0, length + 1);
    if (response.at("id") != lastID_) {
        throw CommandError("the extension responded to another request");
    }
    if (response.contains("error")) {
        throw CommandError("the extension reports: " + response["error"].get<std::string>());
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
    std::string message = "the extension ended";
    message += WIFSIGNALED(status) ? " by signal " + std::to_string(WTERMSIG(status))
                                   : " with status " + std::to_string(WEXITSTATUS(status));
    const std::string errors = contents(errors_, 0);
    if (!errors.empty() && !isVerbose_) {
        message += "; its last words:\n" +
                   errors.substr(errors.size() - std::min<std::size_t>(errors.size(), 2048));
    }
    throw CommandError(message);
}

/// Shows the lines that have come to standard error since, and at the end what is left of one.
void ExtensionProcess::showErrors() {
    if (isVerbose_) {
        std::string text = contents(errors_, shownErrors_);
        text.resize(process_ > 0 ? text.rfind('\n') + 1 : text.size());
        shownErrors_ += static_cast<off_t>(text.size());
        std::fputs(escaped(text, u'\n').c_str(), stderr);
    }
}

}  // namespace simulator
