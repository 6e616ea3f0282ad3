#pragma once

#include <sys/types.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace simulator {

/// Why a command can't go on, in one sentence.
class CommandError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The folder that this program lies in: the build folder.
std::filesystem::path buildFolder();

/// The extension as a process of its own, started from its bundle. Asks it line by line; ends it
/// when the owner lets go.
class ExtensionProcess {
 public:
    /// The extension gets this process's environment. What it says on standard error is shown when
    /// `isVerbose`, and otherwise only should it end. Throws CommandError.
    explicit ExtensionProcess(bool isVerbose);
    ExtensionProcess(const ExtensionProcess&) = delete;
    ExtensionProcess& operator=(const ExtensionProcess&) = delete;
    ~ExtensionProcess();

    /// The answer to `request`, whose "id" is added here. Throws CommandError when the extension
    /// answers with an error or has ended.
    nlohmann::ordered_json ask(nlohmann::ordered_json request);

 private:
    [[noreturn]] void failEnded();

    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    /// A file in memory that holds the standard error of the extension, or -1.
    int errors_ = -1;
    std::string buffer_;
    int lastID_ = 0;
};

}  // namespace simulator
