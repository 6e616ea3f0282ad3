#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

/// What the programs of benchmarks share.
namespace benchmarks {

/// Takes the arguments of the library; ends the process when there are others. Nothing but results
/// is printed from then on: to standard error the library describes the machine, the frameworks
/// miss fonts, and the extension logs.
inline void initialize(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments) ||
        std::freopen("/dev/null", "w", stderr) == nullptr) {
        std::exit(EXIT_FAILURE);
    }
}

}  // namespace benchmarks
