#pragma once

#include <filesystem>

#include "Simulator/FinderCommand/Click.hpp"

namespace simulator {

/// Shows the extension at work in a home folder below `folder`, a copy of the samples or of the
/// home that `options` name: both layouts of a menu, and a click on one entry of each kind. Throws
/// when one of them fails.
void runDemo(const Options& options, const std::filesystem::path& folder);

}  // namespace simulator
