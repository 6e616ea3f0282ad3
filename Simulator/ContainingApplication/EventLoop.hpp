#pragma once

namespace simulator {

/// Delivers events to the application until it is asked to end. On Linux it then returns between
/// two records; on a Mac it is the system's own loop, which need not return, and a signal ends the
/// process at once. Main thread only.
void runEventLoop();

}  // namespace simulator
