#include "Doctor/NearMiss.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace quorva::doctor {

namespace {

constexpr std::size_t shortLength = 4;

/// `text` without what people vary when they write an identifier.
std::string folded(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (character >= 'A' && character <= 'Z') {
            result += static_cast<char>(character - 'A' + 'a');
        } else if (character != '-' && character != '_' && character != ' ') {
            result += character;
        }
    }
    return result;
}

/// How many letters are to be changed, added or left out to make one of the other.
std::size_t editDistance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> row(right.size() + 1);
    for (std::size_t column = 0; column <= right.size(); ++column) {
        row[column] = column;
    }
    for (std::size_t line = 0; line < left.size(); ++line) {
        std::size_t diagonal = std::exchange(row[0], line + 1);
        for (std::size_t column = 0; column < right.size(); ++column) {
            const std::size_t changed = diagonal + (left[line] == right[column] ? 0 : 1);
            diagonal = row[column + 1];
            row[column + 1] = std::min({changed, diagonal + 1, row[column] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string_view nearMiss(std::string_view text, std::span<const std::string_view> candidates) {
    if (std::ranges::find(candidates, text) != candidates.end()) {
        return {};
    }
    const std::string written = folded(text);
    std::string_view nearest;
    std::size_t limit = written.size() <= shortLength ? 1 : 2;
    for (const std::string_view candidate : candidates) {
        const std::string meant = folded(candidate);
        if (meant.empty() || written.size() > meant.size() + limit ||
            meant.size() > written.size() + limit) {
            continue;
        }
        const std::size_t distance = editDistance(written, meant);
        if (distance == 0) {
            return candidate;
        }
        if (distance < limit || (distance == limit && nearest.empty())) {
            nearest = candidate;
            limit = distance;
        }
    }
    return nearest;
}

}  // namespace quorva::doctor
