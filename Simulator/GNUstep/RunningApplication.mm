#import "Simulator/GNUstep/RunningApplication.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#import "Simulator/GNUstep/ApplicationBundle.h"

namespace {

using std::filesystem::path;

/// Whether the process that this folder of "/proc" is about was started with the home folder that
/// this one has, as far as this user may know.
bool sharesHome(const path& process) {
    const char* const home = std::getenv("HOME");
    std::ifstream stream(process / "environ", std::ios::binary);
    const std::string environment(std::istreambuf_iterator<char>(stream), {});
    const std::string variable = "HOME=" + std::string(home == nullptr ? "" : home);
    return ('\0' + environment).find('\0' + variable + '\0') != std::string::npos;
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

/// macOS: the applications of the user's session. Here: the processes of this home folder whose
/// program lies in a bundle with that identifier. For a program that lies in a bundle itself, that
/// is the bundle around it: an application of another build is another one.
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
    NSMutableArray* applications = [NSMutableArray array];
    NSString* own = simulator::ownBundlePath();
    std::error_code error;
    std::filesystem::directory_iterator entry("/proc", error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code unknown;
        const path executable = std::filesystem::read_symlink(entry->path() / "exe", unknown);
        const pid_t identifier = std::atoi(entry->path().filename().c_str());
        NSString* bundle =
            simulator::bundlePathOfExecutable([NSString stringWithUTF8String:executable.c_str()]);
        if (identifier <= 0 || bundle == nil || !sharesHome(entry->path()) ||
            (own != nil && ![own hasPrefix:[bundle stringByAppendingString:@"/"]])) {
            continue;
        }
        SimulatorRunningApplication* application =
            [[[SimulatorRunningApplication alloc] initWithProcessIdentifier:identifier
                                                                 bundlePath:bundle] autorelease];
        if ([application.bundleIdentifier isEqual:bundleIdentifier]) {
            [applications addObject:application];
        }
    }
    return applications;
}

@end
