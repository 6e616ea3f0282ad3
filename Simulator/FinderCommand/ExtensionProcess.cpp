#include "Simulator/FinderCommand/ExtensionProcess.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

namespace simulator {
namespace {

using nlohmann::ordered_json;

std::array<int, 2> makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw CommandError(std::string("no pipe: ") + std::strerror(errno));
    }
    return ends;
}

}  // namespace

std::filesystem::path buildFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

ExtensionProcess::ExtensionProcess(bool isVerbose) {
    const std::filesystem::path executable =
        buildFolder() /
        "Quorva.app/Contents/PlugIns/QuorvaFinderExtension.appex/Contents/MacOS/"
        "QuorvaFinderExtension";
    std::signal(SIGPIPE, SIG_IGN);
    const auto toExtension = makePipe();
    const auto fromExtension = makePipe();
    if (!isVerbose) {
        errors_ = memfd_create("standard error of the extension", MFD_CLOEXEC);
    }

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, toExtension[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, fromExtension[1], STDOUT_FILENO);
    if (errors_ >= 0) {
        posix_spawn_file_actions_adddup2(&files, errors_, STDERR_FILENO);
    }
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t noSignals;
    sigemptyset(&noSignals);
    sigset_t defaultSignals;
    sigemptyset(&defaultSignals);
    sigaddset(&defaultSignals, SIGPIPE);
    posix_spawnattr_setsigmask(&attributes, &noSignals);
    posix_spawnattr_setsigdefault(&attributes, &defaultSignals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::string name = executable.filename();
    std::array<char*, 2> arguments = {name.data(), nullptr};
    const int error =
        posix_spawn(&process_, executable.c_str(), &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    close(toExtension[0]);
    close(fromExtension[1]);
    input_ = toExtension[1];
    output_ = fromExtension[0];
    if (error != 0) {
        close(input_);
        close(output_);
        throw CommandError("the extension could not be started from " + executable.string() + ": " +
                           std::strerror(error));
    }
}

ExtensionProcess::~ExtensionProcess() {
    close(input_);
    close(output_);
    close(errors_);
    if (process_ > 0) {
        waitpid(process_, nullptr, 0);
    }
}

ordered_json ExtensionProcess::ask(ordered_json request) {
    request["id"] = ++lastID_;
    std::string line;
    try {
        line = request.dump() + "\n";
    } catch (const nlohmann::json::exception&) {
        throw CommandError("paths and titles must be UTF-8");
    }
    for (std::string_view rest = line; !rest.empty();) {
        const ssize_t count = write(input_, rest.data(), rest.size());
        if (count < 0 && errno != EINTR) {
            failEnded();
        }
        rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }

    std::size_t end = 0;
    while ((end = buffer_.find('\n', end)) == std::string::npos) {
        end = buffer_.size();
        std::array<char, 1 << 16> chunk{};
        const ssize_t count = read(output_, chunk.data(), chunk.size());
        if (count > 0) {
            buffer_.append(chunk.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            failEnded();
        }
    }
    ordered_json answer = ordered_json::parse(buffer_.substr(0, end));
    buffer_.erase(0, end + 1);
    if (answer.contains("error")) {
        throw CommandError("the extension answers: " + answer["error"].get<std::string>());
    }
    return answer;
}

void ExtensionProcess::failEnded() {
    int status = 0;
    waitpid(std::exchange(process_, -1), &status, 0);
    std::string message = "the extension ended";
    if (WIFSIGNALED(status)) {
        message += " by signal " + std::to_string(WTERMSIG(status));
    } else {
        message += " with status " + std::to_string(WEXITSTATUS(status));
    }
    std::array<char, 2048> errors{};
    const off_t size = errors_ < 0 ? 0 : lseek(errors_, 0, SEEK_END);
    const auto length = static_cast<off_t>(errors.size());
    const ssize_t count = errors_ < 0 ? 0
                                      : pread(errors_, errors.data(), errors.size(),
                                              size > length ? size - length : 0);
    if (count > 0) {
        message += "; its last words:\n";
        message.append(errors.data(), static_cast<std::size_t>(count));
    }
    throw CommandError(message);
}

}  // namespace simulator
