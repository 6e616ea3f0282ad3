#pragma once

#import <Foundation/Foundation.h>

#include <string_view>

#include "Cocoa/ErrorConversion.h"
#include "QuorvaFinderExtension/Containment.hpp"
#include "QuorvaFinderExtension/DiagnosticLog.hpp"

namespace quorva {

/// Runs `body`, which is what the extension does when the system calls it, and lets nothing out: an
/// exception of either kind is written to the diagnostic log as the failure of `operation`, because
/// one that reached the system would end the extension, and with it the menu. Autoreleased objects
/// are gone afterwards.
///
/// Around every method and block that the system calls, and nowhere else. A C++ exception is caught
/// in the core, because an `.mm` file can't catch one on every system.
template <typename Body>
void enterFromSystem(std::string_view operation, Body body) {
    @autoreleasepool {
        contain(operation, [&] {
            @try {
                body();
            } @catch (NSException* exception) {
                appendFailureToDiagnosticLog(operation,
                                             platformError(exception).localizedDescription);
            }
        });
    }
}

}  // namespace quorva
