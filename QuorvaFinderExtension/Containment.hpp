#pragma once

#include <string_view>

/// Keeping what is thrown from whoever called.
namespace quorva {

/// Calls `function` with `argument`, and lets nothing that it throws out: what it throws is written
/// to the diagnostic log as the failure of `operation`.
void callContained(std::string_view operation, void (*function)(void* argument),
                   void* argument) noexcept;

/// Runs `body` so that nothing that it throws reaches the caller.
template <typename Body>
void contain(std::string_view operation, Body body) noexcept {
    callContained(operation, [](void* argument) { (*static_cast<Body*>(argument))(); }, &body);
}

}  // namespace quorva
