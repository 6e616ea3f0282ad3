#pragma once

namespace simulator {

/// Delivers what happens to the application until it is asked to end, which it then does between
/// two records. On a Mac the system's own loop, which may not return. Main thread only.
void runEventLoop();

}  // namespace simulator
