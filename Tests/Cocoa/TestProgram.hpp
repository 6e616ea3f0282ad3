#pragma once

#include <filesystem>

/// The absolute path of the program that runs the tests. Some tests start copies of it.
[[nodiscard]] const std::filesystem::path& testProgram();
