#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What a JSON library leaves to its user when the text comes from anywhere.
namespace simulator {

/// How deep arrays and objects may lie in one another. A document is built and written recursively.
inline constexpr int jsonDepthLimit = 512;

/// Whether `text`, should it be JSON, keeps within the limit.
bool isWithinJSONDepthLimit(std::string_view text);

/// The text of the member `key` of `object`, the text of a valid JSON object, exactly as it stands
/// there: numbers of any size keep all their digits. Of several the last, which is the one that
/// counts. Absent when there is none.
std::optional<std::string> memberText(std::string_view object, std::string_view key);

/// `text` as a JSON string. Bytes that are not UTF-8 become U+FFFD.
std::string jsonString(const std::string& text);

}  // namespace simulator
