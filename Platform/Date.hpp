#pragma once

namespace quorva::platform {

/// Now, in seconds since 1970-01-01 00:00:00 UTC, with a fraction.
[[nodiscard]] double timeIntervalSince1970();

}  // namespace quorva::platform
