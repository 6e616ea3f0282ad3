#pragma once

#include <stdexcept>
#include <utility>

namespace simulator {

/// The document that `text` holds. Throws std::exception when it holds none, or one that is nested
/// more than 512 deep: the library reads any depth, but copies and writes recursively.
template <typename JSON, typename Text>
JSON parseJSON(Text&& text) {
    using Event = typename JSON::parse_event_t;
    return JSON::parse(std::forward<Text>(text), [](int depth, Event event, const JSON&) {
        if (depth >= 512 && (event == Event::array_start || event == Event::object_start)) {
            throw std::length_error("it is nested too deeply");
        }
        return true;
    });
}

}  // namespace simulator
