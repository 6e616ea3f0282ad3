#pragma once

#include <expected>
#include <string>

namespace quorva {

/// Why a platform call failed, in the platform's own words or, where it has none, in ours.
///
/// The one error type of the whole extension. It carries what is reported and nothing to branch on:
/// no caller treats one failure differently from another.
struct [[nodiscard]] Error {
    /// The platform's localized description of the failure, never empty.
    std::string localizedDescription;

    friend bool operator==(const Error&, const Error&) = default;
};

/// The outcome of a platform call that can fail.
template <typename Value>
using Result = std::expected<Value, Error>;

}  // namespace quorva
