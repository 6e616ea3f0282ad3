#include "Cocoa/UTF16.hpp"

#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace quorva {
namespace {

/// The end of the ASCII that begins `text`, which is all of most texts.
template <typename Text>
auto endOfASCII(const Text& text) {
    using Unit = std::make_unsigned_t<typename Text::value_type>;
    return std::ranges::find_if(text, [](auto unit) { return static_cast<Unit>(unit) >= 0x80; });
}

constexpr char32_t replacementCharacter = 0xFFFD;

struct DecodedCharacter {
    char32_t character;
    std::size_t length;
};

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The character that begins `text`, which is not empty.
DecodedCharacter firstCharacterOfUTF8(std::string_view text) {
    const auto byteAt = [text](std::size_t index) -> char32_t {
        return static_cast<unsigned char>(text[index]);
    };
    const char32_t lead = byteAt(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = std::size_t{2} + (lead >= 0xE0 ? 1 : 0) + (lead >= 0xF0 ? 1 : 0);
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) {
        return {replacementCharacter, 1};
    }
    char32_t character = lead & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index) {
        if ((byteAt(index) & 0xC0) != 0x80) {
            return {replacementCharacter, 1};
        }
        character = (character << 6) | (byteAt(index) & 0x3F);
    }
    const bool isOverlong =
        (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool isSurrogate = isHighSurrogate(character) || isLowSurrogate(character);
    if (isOverlong || isSurrogate || character > 0x10FFFF) {
        return {replacementCharacter, 1};
    }
    return {character, length};
}

void appendUTF8(std::string& text, char32_t character) {
    const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        append(character);
        return;
    }
    if (character < 0x800) {
        append(0xC0 | (character >> 6));
    } else {
        if (character < 0x10000) {
            append(0xE0 | (character >> 12));
        } else {
            append(0xF0 | (character >> 18));
            append(0x80 | ((character >> 12) & 0x3F));
        }
        append(0x80 | ((character >> 6) & 0x3F));
    }
    append(0x80 | (character & 0x3F));
}

}  // namespace

bool isASCII(std::string_view text) {
    return endOfASCII(text) == text.end();
}

UTF16 utf16WithUTF8(std::string_view text) {
    UTF16 units(text.begin(), endOfASCII(text));
    text.remove_prefix(units.size());
    units.reserve(units.size() + text.size());
    while (!text.empty()) {
        const auto [character, length] = firstCharacterOfUTF8(text);
        if (character < 0x10000) {
            units.push_back(static_cast<std::uint16_t>(character));
        } else {
            units.push_back(static_cast<std::uint16_t>(0xD800 + ((character - 0x10000) >> 10)));
            units.push_back(static_cast<std::uint16_t>(0xDC00 + ((character - 0x10000) & 0x3FF)));
        }
        text.remove_prefix(length);
    }
    return units;
}

std::string utf8WithUTF16(std::span<const std::uint16_t> text) {
    std::string bytes(text.begin(), endOfASCII(text));
    for (std::size_t index = bytes.size(); index < text.size(); ++index) {
        const char32_t unit = text[index];
        if (isHighSurrogate(unit) && index + 1 < text.size() && isLowSurrogate(text[index + 1])) {
            ++index;
            appendUTF8(bytes, 0x10000 + ((unit - 0xD800) << 10) + (text[index] - 0xDC00U));
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
            appendUTF8(bytes, replacementCharacter);
        } else {
            appendUTF8(bytes, unit);
        }
    }
    return bytes;
}

}  // namespace quorva
