#import <Foundation/Foundation.h>

#include <pwd.h>

#include <cstdlib>
#include <cstring>
#include <string_view>

// macOS: the account that the process runs for. Here the simulator's user may name another one, for
// the extension alone: the linker gives the simulator's programs these functions in place of
// GNUstep's and the system's (`--wrap`), while GNUstep goes on with the real account.

extern "C" {

NSString* __real_NSUserName(void);
NSString* __real_NSHomeDirectoryForUser(NSString* name);
NSString* __wrap_NSUserName(void);
NSString* __wrap_NSHomeDirectoryForUser(NSString* name);
int __real_getpwnam_r(const char* name, passwd* account, char* buffer, size_t size, passwd** found);
int __wrap_getpwnam_r(const char* name, passwd* account, char* buffer, size_t size, passwd** found);

NSString* __wrap_NSUserName(void) {
    const char* name = std::getenv("SIMULATOR_ACCOUNT_NAME");
    return name == nullptr ? __real_NSUserName() : [NSString stringWithUTF8String:name];
}

/// macOS: inside the App Sandbox the container, for every user.
NSString* __wrap_NSHomeDirectoryForUser(NSString* name) {
    const char* container = std::getenv("HOME");
    if (container != nullptr && std::string_view(container).contains("/Library/Containers/")) {
        return [NSString stringWithUTF8String:container];
    }
    const char* home = std::getenv("SIMULATOR_ACCOUNT_HOME");
    return home != nullptr && [name isEqualToString:__wrap_NSUserName()]
               ? [NSString stringWithUTF8String:home]
               : __real_NSHomeDirectoryForUser(name);
}

int __wrap_getpwnam_r(const char* name, passwd* account, char* buffer, size_t size,
                      passwd** found) {
    const char* home = std::getenv("SIMULATOR_ACCOUNT_HOME");
    if (home == nullptr || std::strcmp(name, __wrap_NSUserName().UTF8String) != 0) {
        return __real_getpwnam_r(name, account, buffer, size, found);
    }
    *found = nullptr;
    if (std::strlen(home) >= size) {
        return ERANGE;
    }
    *account = {};
    account->pw_dir = std::strcpy(buffer, home);
    *found = account;
    return 0;
}
}
