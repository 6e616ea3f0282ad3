#include "QuorvaFinderExtension/Containment.hpp"

#include <exception>
#include <string>

#include "QuorvaFinderExtension/DiagnosticLog.hpp"

namespace quorva {

void logFailure(std::string_view operation, std::string_view description) noexcept {
    try {
        appendDiagnosticLog(std::string(operation).append(" failed: ").append(description));
    } catch (...) {
        // Out of memory, most likely: the line is one thing too many.
        return;
    }
}

void callContained(std::string_view operation, void (*function)(void* argument),
                   void* argument) noexcept {
    try {
        function(argument);
    } catch (const std::exception& exception) {
        logFailure(operation, exception.what());
    } catch (...) {
        logFailure(operation, "unknown exception");
    }
}

}  // namespace quorva
