#pragma once

#include <optional>
#include <string>

#include "Simulator/FinderCommand/Options.hpp"

namespace simulator {

/// Shows the extension at work in a home folder of its own, a copy of the samples or of the home
/// that `options` names: both layouts of a menu, and a click on one entry of each kind. Leaves
/// nothing behind. Throws CommandError.
void runDemo(const Options& options);

}  // namespace simulator
