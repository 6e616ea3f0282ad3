#pragma once

#include <filesystem>
#include <functional>

namespace simulator {

struct Supervision {
    /// Whether the work gets a temporary folder.
    bool givesFolder = false;
    /// Whether a containing application that the work launched survives it.
    bool keepsApplication = false;
};

/// Carries out `work` in a process of its own, while this one only waits: for the end of the work,
/// or for a signal that asks to end. Then it ends whatever the work has started, the notification
/// daemon aside, and removes the folder that `work` gets (empty without one).
///
/// Returns the status that `work` returns, or 128 and the number of the signal. Throws when the
/// work can't begin.
int supervise(const std::function<int(const std::filesystem::path& folder)>& work,
              const Supervision& supervision);

}  // namespace simulator
