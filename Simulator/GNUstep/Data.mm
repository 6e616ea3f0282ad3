#import <Foundation/Foundation.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#import "Simulator/GNUstep/FileError.h"

namespace {

/// Writes all of `data`. Answers 0 or the error's number.
int writeAll(int descriptor, NSData* data) {
    const char* bytes = static_cast<const char*>(data.bytes);
    for (NSUInteger written = 0; written < data.length;) {
        const ssize_t count = write(descriptor, bytes + written, data.length - written);
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        written += count < 0 ? 0 : static_cast<NSUInteger>(count);
    }
    return 0;
}

/// The permissions of a file that is created without asking for any.
mode_t defaultPermissions() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// Answers 0 or the error's number, and leaves no temporary file.
int writeAtomically(NSData* data, const std::filesystem::path& path) {
    std::string temporary =
        path.parent_path() / ("." + path.filename().string().substr(0, 200) + ".XXXXXX");
    const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0) {
        return errno;
    }
    int result = writeAll(descriptor, data);
    if (result == 0 && fchmod(descriptor, defaultPermissions()) != 0) {
        result = errno;
    }
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

/// macOS: answers an error with every NO, and leaves no temporary file behind. GNUstep answers
/// nil for the error and prints it on the console instead.
- (BOOL)writeToURL:(NSURL*)url options:(NSUInteger)options error:(NSError**)error {
    NSString* path = url.path;
    int result = 0;
    if ((options & NSDataWritingAtomic) != 0) {
        result = writeAtomically(self, path.UTF8String);
    } else {
        const int descriptor =
            open(path.UTF8String, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        result = descriptor < 0 ? errno : writeAll(descriptor, self);
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
    return result == 0 || simulator::failWithFileError(result, path, error);
}

@end
