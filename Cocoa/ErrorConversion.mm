#import "Cocoa/ErrorConversion.h"

#import "Cocoa/StringConversion.h"

quorva::Error quorva::platformError(NSError* error) {
    const std::string description = utf8String(error.localizedDescription);
    return {description.empty() ? "The operation failed without a reason." : description};
}

quorva::Error quorva::platformError(NSException* exception) {
    const std::string reason = utf8String(exception.reason);
    return {reason.empty() ? "Exception " + utf8String(exception.name) : reason};
}
