#include "QuorvaFinderExtension/Containment.hpp"

#include <exception>

#include "QuorvaFinderExtension/DiagnosticLog.hpp"

namespace quorva {

void callContained(void (*function)(void* argument), void* argument) noexcept {
    try {
        function(argument);
    } catch (const std::exception& exception) {
        appendDiagnosticLog(exception.what());
    } catch (...) {
        appendDiagnosticLog("unknown exception");
    }
}

}  // namespace quorva
