#pragma once

#include <sys/types.h>

#include <nlohmann/json.hpp>
#include <string>

#include "Simulator/FileDescriptor.hpp"

namespace simulator {

/// The extension as a process of its own, started from its bundle beside this program. Asks it line
/// by line; ends it when the owner lets go.
class ExtensionProcess {
 public:
    /// The extension gets this process's environment. What it says on standard error is shown when
    /// `isVerbose`, and otherwise only should it end. Throws when it can't be started.
    explicit ExtensionProcess(bool isVerbose);
    ExtensionProcess(const ExtensionProcess&) = delete;
    ExtensionProcess& operator=(const ExtensionProcess&) = delete;
    ~ExtensionProcess() { end(); }

    /// The response to the request `name` with the members of `request`. Throws when the extension
    /// reports an error or has ended, and the library's exception when the line is not a response.
    nlohmann::ordered_json ask(const std::string& name, nlohmann::ordered_json request = {});

 private:
    [[noreturn]] void failEnded();
    int end();
    void showErrors();

    bool isVerbose_;
    pid_t process_ = -1;
    /// The other end is the extension's standard input and standard output.
    FileDescriptor socket_;
    /// A file in memory that is the extension's standard error.
    FileDescriptor errors_;
    std::size_t shownErrors_ = 0;
    std::string received_;
    int lastID_ = 0;
};

}  // namespace simulator
