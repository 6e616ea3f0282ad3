#include "Simulator/FinderCommand/Terminal.hpp"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "Simulator/Text.hpp"

namespace simulator {

std::string styled(const std::string& text, Style style) {
    static const bool showsStyles =
        isatty(STDOUT_FILENO) == 1 && std::getenv("NO_COLOR") == nullptr;
    constexpr std::array codes = {"1", "2", "1;36", "32", "31"};
    return showsStyles ? std::string("\x1b[") + codes.at(static_cast<std::size_t>(style)) + "m" +
                             text + "\x1b[0m"
                       : text;
}

std::string jsonText(const nlohmann::ordered_json& value, int indent) {
    return escaped(value.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace),
                   u'\n');
}

void print(const std::string& text) {
    if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
        throw std::system_error(errno, std::generic_category(), "the output is lost");
    }
}

}  // namespace simulator
