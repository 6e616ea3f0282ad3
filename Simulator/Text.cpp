#include "Simulator/Text.hpp"

#include "Cocoa/UTF16.hpp"

namespace simulator {
namespace {

bool isHarmless(quorva::UTF16::value_type unit) {
    return unit >= u' ' && (unit < 0x7F || unit > 0x9F) && unit != 0x061C && unit != 0x200E &&
           unit != 0x200F && (unit < 0x2028 || unit > 0x202E) && (unit < 0x2066 || unit > 0x2069) &&
           unit != 0xFFFD;
}

}  // namespace

bool isUTF8(std::string_view text) {
    return quorva::utf8WithUTF16(quorva::utf16WithUTF8(text)) == text;
}

std::string escaped(std::string_view text) {
    quorva::UTF16 result;
    for (const auto unit : quorva::utf16WithUTF8(text)) {
        if (isHarmless(unit)) {
            result.push_back(unit);
            continue;
        }
        result.insert(result.end(), {u'\\', u'u'});
        for (int shift = 12; shift >= 0; shift -= 4) {
            result.push_back(u"0123456789abcdef"[(unit >> shift) & 0xF]);
        }
    }
    return quorva::utf8WithUTF16(result);
}

}  // namespace simulator
