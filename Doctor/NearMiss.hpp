#pragma once

#include <span>
#include <string_view>

namespace quorva::doctor {

/// The one of `candidates` that `text` was probably meant to be: the same but for the case of its
/// letters and for what separates words, or else the nearest that is a letter or two away. Empty
/// when there is none, and for `text` that is one of them.
[[nodiscard]] std::string_view nearMiss(std::string_view text,
                                        std::span<const std::string_view> candidates);

}  // namespace quorva::doctor
