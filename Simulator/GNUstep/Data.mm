#import <Foundation/Foundation.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

#include "Simulator/FileDescriptor.hpp"
#import "Simulator/GNUstep/FileError.h"

namespace {

/// Writes all of `data`. Returns 0 or the error's number.
int write(int descriptor, NSData* data) {
    return simulator::writeAll(descriptor, {static_cast<const char*>(data.bytes), data.length});
}

/// Returns 0 or the error's number, and leaves no temporary file.
int writeAtomically(NSData* data, const std::filesystem::path& path) {
    const std::string temporary =
        path.parent_path() /
        ("." + path.filename().string().substr(0, 200) + "." + [NSUUID UUID].UUIDString.UTF8String);
    const int descriptor = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        return errno;
    }
    int result = write(descriptor, data);
    if (close(descriptor) != 0 && result == 0) {
        result = errno;
    }
    if (result == 0 && rename(temporary.c_str(), path.c_str()) != 0) {
        result = errno;
    }
    if (result != 0) {
        unlink(temporary.c_str());
    }
    return result;
}

}  // namespace

@implementation NSData (FoundationOfMacOS)

/// macOS: returns an error with every NO, and leaves no temporary file behind. GNUstep returns
/// nil for the error and prints it on the console instead.
- (BOOL)writeToURL:(NSURL*)url options:(NSUInteger)options error:(NSError**)error {
    NSString* path = url.path;
    int result = 0;
    if ((options & NSDataWritingAtomic) != 0) {
        result = writeAtomically(self, path.UTF8String);
    } else {
        const int descriptor =
            open(path.UTF8String, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        result = descriptor < 0 ? errno : write(descriptor, self);
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
    return result == 0 || simulator::failWithFileError(result, path, error);
}

@end
