#pragma once

/// Keeping what is thrown from whoever called.
namespace quorva {

/// Calls `function` with `argument`, and lets nothing that it throws out: what it throws ends in
/// the diagnostic log.
void callContained(void (*function)(void* argument), void* argument) noexcept;

/// Runs `body` so that nothing that it throws reaches the caller: around everything that the system
/// calls, because an exception there ends the extension. Usable from an `.mm` file, where a C++
/// exception can't be caught on every system. An `NSException` is contained too, but without its
/// reason, so the `.mm` file in which it is raised catches it first.
template <typename Body>
void contain(Body body) noexcept {
    callContained([](void* argument) { (*static_cast<Body*>(argument))(); }, &body);
}

}  // namespace quorva
