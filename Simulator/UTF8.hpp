#pragma once

#include <string_view>

namespace simulator {

/// Whether `text` is well-formed UTF-8.
bool isUTF8(std::string_view text);

}  // namespace simulator
