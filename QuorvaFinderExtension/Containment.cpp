#include "QuorvaFinderExtension/Containment.hpp"

#include <exception>

#include "QuorvaFinderExtension/DiagnosticLog.hpp"

namespace quorva {

void callContained(std::string_view operation, void (*function)(void* argument),
                   void* argument) noexcept {
    try {
        function(argument);
    } catch (const std::exception& exception) {
        appendFailureToDiagnosticLog(operation, exception.what());
    } catch (...) {
        appendFailureToDiagnosticLog(operation, "unknown exception");
    }
}

}  // namespace quorva
