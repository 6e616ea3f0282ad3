#include "Simulator/FinderCommand/Terminal.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Simulator/Escaping.hpp"
#include "Simulator/FinderCommand/CommandError.hpp"

namespace simulator {

std::string styled(std::string_view text, Style style) {
    static const bool showsStyles =
        isatty(STDOUT_FILENO) == 1 && std::getenv("NO_COLOR") == nullptr;
    constexpr const char* codes[] = {"1", "2", "1;36", "32", "31"};
    const std::string plain(text);
    return showsStyles
               ? std::string("\x1b[") + codes[static_cast<int>(style)] + "m" + plain + "\x1b[0m"
               : plain;
}

std::string jsonText(const nlohmann::ordered_json& value) {
    return escaped(value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace),
                   u'\n');
}

void print(const std::string& text) {
    if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
        throw CommandError(std::string("the output is lost: ") + std::strerror(errno));
    }
}

}  // namespace simulator
