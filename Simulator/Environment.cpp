#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "Simulator/Text.hpp"

namespace {

/// macOS: starts with any environment. GNUstep raises for a variable that is not UTF-8, so such
/// ones are left out; without its home folder, however, there is nothing to show or to perform.
void leaveOutWhatIsNotUTF8(int, char** arguments, char** environment) {
    const char* const program = *arguments == nullptr ? "simulator" : basename(*arguments);
    char** kept = environment;
    for (char** variable = environment; *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        if (simulator::isUTF8(text)) {
            *kept++ = *variable;
        } else if (text.starts_with("HOME=")) {
            dprintf(STDERR_FILENO, "%s: the home folder that HOME names is not UTF-8\n", program);
            _exit(EXIT_FAILURE);
        } else {
            dprintf(STDERR_FILENO,
                    "%s: the environment variable %.*s is not UTF-8 and is left out\n", program,
                    static_cast<int>(text.find('=')), *variable);
        }
    }
    *kept = nullptr;
}

/// GNUstep keeps a copy of the environment from the moment in which its library is loaded, before
/// any constructor of the program. This comes before the libraries' too.
[[gnu::section(".preinit_array"),
  gnu::used]] void (*const beforeTheLibraries)(int, char**, char**) = leaveOutWhatIsNotUTF8;

}  // namespace
