#include "Simulator/UTF8.hpp"

#include "Cocoa/UTF16.hpp"

bool simulator::isUTF8(std::string_view text) {
    return quorva::utf8WithUTF16(quorva::utf16WithUTF8(text)) == text;
}
