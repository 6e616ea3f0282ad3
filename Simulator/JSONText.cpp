#include "Simulator/JSONText.hpp"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>

namespace simulator {
namespace {

using nlohmann::json;

/// Where the string that begins at `start` ends: behind its closing quotation mark.
std::size_t endOfString(std::string_view text, std::size_t start) {
    std::size_t position = start + 1;
    while (position < text.size() && text[position] != '"') {
        position += text[position] == '\\' ? 2 : 1;
    }
    return std::min(position + 1, text.size());
}

}  // namespace

bool isWithinJSONDepthLimit(std::string_view text) {
    int depth = 0;
    for (std::size_t position = 0; position < text.size();) {
        const char character = text[position];
        if (character == '"') {
            position = endOfString(text, position);
            continue;
        }
        if (character == '{' || character == '[') {
            ++depth;
        } else if (character == '}' || character == ']') {
            --depth;
        }
        if (depth > jsonDepthLimit) {
            return false;
        }
        ++position;
    }
    return true;
}

std::optional<std::string> memberText(std::string_view object, std::string_view key) {
    std::optional<std::string> result;
    std::string name;
    bool isValue = false;
    int depth = 0;
    std::size_t valueStart = 0;
    for (std::size_t position = 0; position < object.size();) {
        const char character = object[position];
        if (character == '"') {
            const std::size_t end = endOfString(object, position);
            if (depth == 1 && !isValue) {
                name = json::parse(object.substr(position, end - position)).get<std::string>();
            }
            position = end;
            continue;
        }
        const bool closes = character == '}' || character == ']';
        if (depth == 1 && isValue && (character == ',' || closes)) {
            if (name == key) {
                std::string_view value = object.substr(valueStart, position - valueStart);
                constexpr std::string_view blanks = " \t\r\n";
                value.remove_prefix(value.find_first_not_of(blanks));
                value = value.substr(0, value.find_last_not_of(blanks) + 1);
                result = value;
            }
            isValue = false;
        } else if (depth == 1 && character == ':') {
            isValue = true;
            valueStart = position + 1;
        }
        if (character == '{' || character == '[') {
            ++depth;
        } else if (closes) {
            --depth;
        }
        ++position;
    }
    return result;
}

std::string jsonString(const std::string& text) {
    return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace simulator
