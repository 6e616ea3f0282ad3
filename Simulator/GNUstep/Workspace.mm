#import <AppKit/AppKit.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

#import "Cocoa/StringConversion.h"
#include "Simulator/EventRecorder.hpp"
#import "Simulator/GNUstep/ApplicationBundle.h"
#import "Simulator/GNUstep/FileError.h"
#import "Simulator/GNUstep/RunningApplication.h"

namespace {

bool launchesApplications() {
    const char* value = std::getenv("SIMULATOR_LAUNCH");
    return value != nullptr && std::string_view(value) == "1";
}

/// Starts the program at `path` in a session of its own, with every signal's default, nothing to
/// read, and standard error as its only output, because standard output belongs to the extension's
/// answers. Returns 0 or the error's number.
int start(NSString* path, pid_t& process) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, STDERR_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::string executable = path.UTF8String;
    char* arguments[] = {executable.data(), nullptr};
    const int result =
        posix_spawn(&process, executable.c_str(), &files, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return result;
}

}  // namespace

/// One request to open an application, carried out on a thread of its own, which then waits for the
/// application's end.
@interface SimulatorApplicationLaunch : NSObject {
   @private
    NSString* _path;
    void (^_completionHandler)(NSRunningApplication*, NSError*);
}
- (instancetype)initWithPath:(NSString*)path
           completionHandler:(void (^)(NSRunningApplication*, NSError*))completionHandler;
- (void)run;
- (void)failWithCode:(int)code;
@end

@implementation SimulatorApplicationLaunch

- (instancetype)initWithPath:(NSString*)path
           completionHandler:(void (^)(NSRunningApplication*, NSError*))completionHandler {
    self = [super init];
    if (self != nil) {
        _path = [path copy];
        // GNUstep's runtime knows no blocks as objects, so they are copied as what they are.
        _completionHandler = Block_copy(completionHandler);
    }
    return self;
}

- (void)dealloc {
    [_path release];
    Block_release(_completionHandler);
    [super dealloc];
}

- (void)run {
    pid_t process = 0;
    @autoreleasepool {
        NSString* executable = simulator::executablePathOfBundle(_path);
        int code = executable == nil ? ENOENT : 0;
        if (executable != nil && launchesApplications()) {
            code = start(executable, process);
        }
        NSRunningApplication* application = process == 0
                                                ? nil
                                                : [[[SimulatorRunningApplication alloc]
                                                      initWithProcessIdentifier:process
                                                                     bundlePath:_path] autorelease];
        _completionHandler(application, code == 0 ? nil : simulator::fileError(code, _path));
    }
    simulator::launchEnded();
    if (process != 0) {
        waitpid(process, nullptr, 0);
    }
}

- (void)failWithCode:(int)code {
    _completionHandler(nil, simulator::fileError(code, _path));
    simulator::launchEnded();
}

@end

@implementation NSWorkspaceOpenConfiguration

+ (instancetype)configuration {
    return [[[self alloc] init] autorelease];
}

- (instancetype)init {
    self = [super init];
    if (self != nil) {
        _activates = YES;
        _addsToRecentItems = YES;
    }
    return self;
}

@synthesize activates = _activates;
@synthesize addsToRecentItems = _addsToRecentItems;

@end

@implementation NSWorkspace (AppKitOfMacOS)

- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication*, NSError*))completionHandler {
    simulator::recordEvent(
        {{"event", "openApplication"},
         {"path", quorva::utf8String(applicationURL.path)},
         {"activates", static_cast<bool>(configuration.activates)},
         {"addsToRecentItems", static_cast<bool>(configuration.addsToRecentItems)}});
    SimulatorApplicationLaunch* launch =
        [[[SimulatorApplicationLaunch alloc] initWithPath:applicationURL.path
                                        completionHandler:completionHandler] autorelease];
    simulator::launchBegan();
    @try {
        [NSThread detachNewThreadSelector:@selector(run) toTarget:launch withObject:nil];
    } @catch (NSException* exception) {
        [launch failWithCode:EAGAIN];
    }
}

@end
