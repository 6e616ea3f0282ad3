#include "Simulator/FinderCommand/Terminal.hpp"

#include <unistd.h>

#include <cstdlib>

namespace simulator {
namespace {

std::string_view escapeCode(Style style) {
    switch (style) {
        case Style::bold:
            return "1";
        case Style::dim:
            return "2";
        case Style::heading:
            return "1;36";
        case Style::good:
            return "32";
        case Style::bad:
            return "31";
    }
    return "0";
}

}  // namespace

std::string styled(std::string_view text, Style style) {
    static const bool showsStyles =
        isatty(STDOUT_FILENO) == 1 && std::getenv("NO_COLOR") == nullptr;
    if (!showsStyles) {
        return std::string(text);
    }
    return std::string("\x1b[")
        .append(escapeCode(style))
        .append("m")
        .append(text)
        .append("\x1b[0m");
}

}  // namespace simulator
