#import "Simulator/GNUstep/RunningApplication.h"

#import "Simulator/GNUstep/ApplicationBundle.h"
#include "Simulator/Processes.hpp"

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
    for (const simulator::Process& process : simulator::processes()) {
        NSString* path = simulator::bundlePathOfExecutable(
            [NSString stringWithUTF8String:process.executable.c_str()]);
        if (path == nil || !simulator::sharesHome(process) ||
            (own != nil && ![own hasPrefix:[path stringByAppendingString:@"/"]])) {
            continue;
        }
        SimulatorRunningApplication* application =
            [[[SimulatorRunningApplication alloc] initWithProcessIdentifier:process.identifier
                                                                 bundlePath:path] autorelease];
        if ([application.bundleIdentifier isEqual:bundleIdentifier]) {
            [applications addObject:application];
        }
    }
    return applications;
}

@end
