#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "Simulator/UTF8.hpp"

namespace {

void say(const std::string& line) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}

/// macOS: starts with any environment. GNUstep raises for a variable that is not UTF-8, so such
/// ones are left out; without its home folder, however, there is nothing to show or to perform.
void leaveOutWhatIsNoText(int, char** arguments, char** environment) {
    const std::string_view path = *arguments == nullptr ? "simulator" : *arguments;
    const std::string prefix = std::string(path.substr(path.rfind('/') + 1)) + ": ";
    char** kept = environment;
    for (char** variable = environment; *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        if (simulator::isUTF8(text)) {
            *kept++ = *variable;
            continue;
        }
        if (text.starts_with("HOME=")) {
            say(prefix + "the home folder that HOME names is not UTF-8\n");
            _exit(EXIT_FAILURE);
        }
        say(prefix + "the environment variable " + std::string(text.substr(0, text.find('='))) +
            " is not UTF-8 and is left out\n");
    }
    *kept = nullptr;
}

/// GNUstep keeps a copy of the environment from the moment in which its library is loaded, before
/// any constructor of the program. This comes before the libraries' too.
[[gnu::section(".preinit_array"),
  gnu::used]] void (*const beforeTheLibraries)(int, char**, char**) = leaveOutWhatIsNoText;

}  // namespace
