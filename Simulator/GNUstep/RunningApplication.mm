#import "Simulator/GNUstep/RunningApplication.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#import "Simulator/GNUstep/ApplicationBundle.h"

namespace {

/// The bundle that the program of the process in `folder` (of `/proc`) lies in. nil when the
/// process is another user's, has ended, or is no application.
NSString* bundlePathOfProcess(const std::filesystem::path& folder) {
    struct stat status;
    std::error_code error;
    const auto executable = std::filesystem::read_symlink(folder / "exe", error);
    if (error || stat(folder.c_str(), &status) != 0 || status.st_uid != geteuid()) {
        return nil;
    }
    return simulator::bundlePathOfExecutable([NSString stringWithUTF8String:executable.c_str()]);
}

}  // namespace

@implementation SimulatorRunningApplication

- (instancetype)initWithProcessIdentifier:(pid_t)processIdentifier
                               bundlePath:(NSString*)bundlePath {
    self = [super init];
    if (self != nil) {
        _processIdentifier = processIdentifier;
        _bundlePath = [bundlePath copy];
    }
    return self;
}

- (void)dealloc {
    [_bundlePath release];
    [super dealloc];
}

- (pid_t)processIdentifier {
    return _processIdentifier;
}

- (NSURL*)bundleURL {
    return [NSURL fileURLWithPath:_bundlePath isDirectory:YES];
}

- (NSString*)bundleIdentifier {
    return [simulator::infoDictionaryOfBundle(_bundlePath) objectForKey:@"CFBundleIdentifier"];
}

@end

@implementation NSRunningApplication (AppKitOfMacOS)

/// macOS: the applications of the user's session. Here: the processes of this user whose program
/// lies in a bundle with that identifier.
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
    NSMutableArray* applications = [NSMutableArray array];
    std::error_code error;
    std::filesystem::directory_iterator process("/proc", error);
    for (; !error && process != std::filesystem::directory_iterator(); process.increment(error)) {
        NSString* bundlePath = bundlePathOfProcess(process->path());
        if (bundlePath == nil) {
            continue;
        }
        const pid_t identifier = std::atoi(process->path().filename().c_str());
        SimulatorRunningApplication* application = [[[SimulatorRunningApplication alloc]
            initWithProcessIdentifier:identifier
                           bundlePath:bundlePath] autorelease];
        if (identifier > 0 && [application.bundleIdentifier isEqual:bundleIdentifier]) {
            [applications addObject:application];
        }
    }
    return applications;
}

@end
