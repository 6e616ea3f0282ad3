#pragma once

#include <stdexcept>

namespace simulator {

/// Why a command can't go on, in one sentence.
class CommandError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace simulator
