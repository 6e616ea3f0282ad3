#pragma once

#import <Foundation/Foundation.h>

namespace simulator {

/// An error of the POSIX domain with a localized description that names the file at `path`. macOS
/// gives every failed file operation one; GNUstep's are partly absent and partly without a
/// description.
NSError* fileError(int code, NSString* path);

/// Sets `*error` to `fileError(code, path)` where the caller asked for it, and returns NO.
BOOL failWithFileError(int code, NSString* path, NSError** error);

}  // namespace simulator
