#pragma once

// GNUstep's Foundation, and what macOS 12 has beyond it.

#include_next <Foundation/Foundation.h>

/// macOS writes the members of a JSON object in the order of their keys when asked to.
inline constexpr NSJSONWritingOptions NSJSONWritingSortedKeys = 1UL << 1;

@interface NSURL (FoundationOfMacOS)

/// macOS: whether the URL's path ends with a slash. `path` is without it.
@property (readonly) BOOL hasDirectoryPath;

@end

@interface NSFileManager (FoundationOfMacOS)

/// macOS: the container's home inside the App Sandbox. Here `$HOME` stands for it.
@property (readonly, copy) NSURL* homeDirectoryForCurrentUser;

/// macOS: the locations of a standard directory, whether they exist or not.
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domainMask;

@end
