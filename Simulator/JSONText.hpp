#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>

namespace simulator {

/// How deep arrays and objects may lie in one another: the library reads any depth, but copies and
/// writes recursively.
inline constexpr int jsonDepthLimit = 512;

/// The document that `text` holds. Throws std::exception when it holds none, or one that is nested
/// more deeply than `jsonDepthLimit`.
template <typename Text>
nlohmann::json parseJSON(const Text& text) {
    using Event = nlohmann::json::parse_event_t;
    return nlohmann::json::parse(text, [](int depth, Event event, const nlohmann::json&) {
        if (depth >= jsonDepthLimit &&
            (event == Event::array_start || event == Event::object_start)) {
            throw std::length_error("it is nested too deeply");
        }
        return true;
    });
}

}  // namespace simulator
