#pragma once

#include <expected>
#include <string>

namespace simulator {

/// Sees to it that the environment names a display that answers: the one that is there, or else a
/// virtual one that this call starts, names in `DISPLAY`, and that ends with the calling thread's
/// process. Fails with one sentence.
std::expected<void, std::string> ensureDisplay();

}  // namespace simulator
