#pragma once

// GNUstep's Foundation, and what macOS 12 has beyond it.

#include_next <Foundation/Foundation.h>

typedef NSUInteger NSDataReadingOptions;

/// macOS writes the members of a JSON object in the order of their keys when asked to.
inline constexpr NSJSONWritingOptions NSJSONWritingSortedKeys = 1UL << 1;

@interface NSData (FoundationOfMacOS)

/// macOS: nil and an error when there is no file, or it is a folder, or it may not be read.
+ (instancetype)dataWithContentsOfURL:(NSURL*)url
                              options:(NSDataReadingOptions)options
                                error:(NSError**)error;

@end

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

/// macOS: failures as errors, where the older methods raise.
@interface NSFileHandle (FoundationOfMacOS)

- (BOOL)seekToEndReturningOffset:(unsigned long long*)offsetInFile error:(NSError**)error;
- (BOOL)writeData:(NSData*)data error:(NSError**)error;
- (BOOL)closeAndReturnError:(NSError**)error;

@end
