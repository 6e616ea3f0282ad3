#import <Foundation/Foundation.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#import "Simulator/GNUstep/FileError.h"

namespace {

std::filesystem::path homeDirectory() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
        return home;
    }
    const passwd* account = getpwuid(getuid());
    return account == nullptr ? "/" : account->pw_dir;
}

/// The standard directories, in the home directory.
const std::map<NSSearchPathDirectory, const char*> standardDirectories = {
    {NSDocumentDirectory, "Documents"},
    {NSDesktopDirectory, "Desktop"},
    {NSApplicationSupportDirectory, "Library/Application Support"},
    {NSDownloadsDirectory, "Downloads"},
    {NSMoviesDirectory, "Movies"},
    {NSMusicDirectory, "Music"},
    {NSPicturesDirectory, "Pictures"},
};

NSURL* directoryURL(const std::filesystem::path& path) {
    return [NSURL fileURLWithPath:[NSString stringWithUTF8String:path.c_str()] isDirectory:YES];
}

}  // namespace

@implementation NSFileManager (FoundationOfMacOS)

- (NSURL*)homeDirectoryForCurrentUser {
    return directoryURL(homeDirectory());
}

- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domainMask {
    const auto found = standardDirectories.find(directory);
    return found != standardDirectories.end() && (domainMask & NSUserDomainMask) != 0
               ? [NSArray arrayWithObject:directoryURL(homeDirectory() / found->second)]
               : [NSArray array];
}

/// macOS: a standard directory of the user, made when asked for. GNUstep has its own folders.
- (NSURL*)URLForDirectory:(NSSearchPathDirectory)directory
                 inDomain:(NSSearchPathDomainMask)domain
        appropriateForURL:(NSURL*)url
                   create:(BOOL)shouldCreate
                    error:(NSError**)error {
    (void)url;
    NSArray<NSURL*>* urls = [self URLsForDirectory:directory inDomains:domain];
    if (urls.count == 0) {
        simulator::failWithFileError(ENOENT, @"standard directory", error);
        return nil;
    }
    NSURL* found = [urls objectAtIndex:0];
    const BOOL exists = !shouldCreate || [self createDirectoryAtURL:found
                                             withIntermediateDirectories:YES
                                                              attributes:nil
                                                                   error:error];
    return exists ? found : nil;
}

/// macOS: fails when a file is in the way. GNUstep calls that a success.
- (BOOL)createDirectoryAtURL:(NSURL*)url
    withIntermediateDirectories:(BOOL)createIntermediates
                     attributes:(NSDictionary*)attributes
                          error:(NSError**)error {
    (void)attributes;
    NSString* path = url.path;
    std::error_code code;
    if (createIntermediates) {
        std::filesystem::create_directories(path.UTF8String, code);
    } else if (!std::filesystem::create_directory(path.UTF8String, code) && !code) {
        code = std::make_error_code(std::errc::file_exists);
    }
    return !code || simulator::failWithFileError(code.value(), path, error);
}

/// macOS: URLs below the directory asked for, which say whether they name directories. GNUstep's
/// lie below the current directory.
- (NSArray*)contentsOfDirectoryAtURL:(NSURL*)url
          includingPropertiesForKeys:(NSArray*)keys
                             options:(NSDirectoryEnumerationOptions)options
                               error:(NSError**)error {
    (void)keys;
    NSString* path = url.path;
    NSMutableArray* contents = [NSMutableArray array];
    std::error_code code;
    std::filesystem::directory_iterator entry(path.UTF8String, code);
    for (; !code && entry != std::filesystem::directory_iterator(); entry.increment(code)) {
        const std::string name = entry->path().filename();
        // Nil for a name that is not UTF-8, which no volume of a Mac holds.
        NSString* entryPath = [NSString stringWithUTF8String:entry->path().c_str()];
        const bool isHidden = name.starts_with('.');
        if (entryPath == nil ||
            (isHidden && (options & NSDirectoryEnumerationSkipsHiddenFiles) != 0)) {
            continue;
        }
        std::error_code unknown;
        const bool isDirectory = std::filesystem::is_directory(entry->symlink_status(unknown));
        [contents addObject:[NSURL fileURLWithPath:entryPath isDirectory:isDirectory]];
    }
    if (code) {
        simulator::failWithFileError(code.value(), path, error);
        return nil;
    }
    return contents;
}

@end
