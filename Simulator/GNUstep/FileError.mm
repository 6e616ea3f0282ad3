#import "Simulator/GNUstep/FileError.h"

#include <system_error>

NSError* simulator::fileError(int code, NSString* path) {
    const std::string reason = std::generic_category().message(code);
    NSString* description =
        [NSString stringWithFormat:@"\"%@\": %s.", path.lastPathComponent, reason.c_str()];
    return [NSError
        errorWithDomain:NSPOSIXErrorDomain
                   code:code
               userInfo:[NSDictionary dictionaryWithObjectsAndKeys:description,
                                                                   NSLocalizedDescriptionKey, path,
                                                                   NSFilePathErrorKey, nil]];
}

BOOL simulator::failWithFileError(int code, NSString* path, NSError** error) {
    if (error != nullptr) {
        *error = fileError(code, path);
    }
    return NO;
}
