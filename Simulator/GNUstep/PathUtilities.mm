#import <Foundation/Foundation.h>

#include <cstdlib>

// macOS: the account that the process runs for. Here the simulator's user may name another one, for
// the extension alone: the linker gives the simulator's programs these functions in place of
// GNUstep's (`--wrap`), while GNUstep goes on with the real account.

extern "C" {

NSString* __real_NSUserName(void);
NSString* __real_NSHomeDirectoryForUser(NSString* name);
NSString* __wrap_NSUserName(void);
NSString* __wrap_NSHomeDirectoryForUser(NSString* name);

NSString* __wrap_NSUserName(void) {
    const char* name = std::getenv("SIMULATOR_ACCOUNT_NAME");
    return name == nullptr ? __real_NSUserName() : [NSString stringWithUTF8String:name];
}

NSString* __wrap_NSHomeDirectoryForUser(NSString* name) {
    const char* home = std::getenv("SIMULATOR_ACCOUNT_HOME");
    return home != nullptr && [name isEqualToString:__wrap_NSUserName()]
               ? [NSString stringWithUTF8String:home]
               : __real_NSHomeDirectoryForUser(name);
}
}
