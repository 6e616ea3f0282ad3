#import <Foundation/Foundation.h>
#include <unistd.h>

#include <cerrno>

#import "Simulator/GNUstep/FileError.h"

@implementation NSFileHandle (FoundationOfMacOS)

- (BOOL)seekToEndReturningOffset:(unsigned long long*)offsetInFile error:(NSError**)error {
    const off_t offset = lseek(self.fileDescriptor, 0, SEEK_END);
    if (offset < 0) {
        return simulator::failWithFileError(errno, @"file", error);
    }
    if (offsetInFile != nullptr) {
        *offsetInFile = static_cast<unsigned long long>(offset);
    }
    return YES;
}

- (BOOL)writeData:(NSData*)data error:(NSError**)error {
    const char* bytes = static_cast<const char*>(data.bytes);
    for (NSUInteger written = 0; written < data.length;) {
        const ssize_t count = write(self.fileDescriptor, bytes + written, data.length - written);
        if (count < 0 && errno != EINTR) {
            return simulator::failWithFileError(errno, @"file", error);
        }
        written += count < 0 ? 0 : static_cast<NSUInteger>(count);
    }
    return YES;
}

- (BOOL)closeAndReturnError:(NSError**)error {
    @try {
        [self closeFile];
        return YES;
    } @catch (NSException*) {
        return simulator::failWithFileError(EBADF, @"file", error);
    }
}

@end
