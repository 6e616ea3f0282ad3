#pragma once

#include <filesystem>
#include <functional>

namespace simulator {

/// Carries out `work` in a process of its own, while this one only waits: for the end of the work,
/// or for a signal that asks to end. Then it ends whatever the work has started, but for the
/// containing application when `keepsApplication` and nothing has interrupted the work, and removes
/// the temporary folder that `work` gets when `givesFolder`.
///
/// Returns the status that `work` returns, or 128 and the number of the signal. Throws when the
/// work can't begin.
int supervise(const std::function<int(const std::filesystem::path& folder)>& work, bool givesFolder,
              bool keepsApplication);

}  // namespace simulator
