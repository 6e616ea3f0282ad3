#import <Foundation/Foundation.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#import "Cocoa/ObjectHolder.h"
#import "Simulator/GNUstep/PostedNotification.h"

// macOS: a daemon passes notifications between the processes of a user, and neither posting nor
// observing fails. GNUstep's daemon dies of a few dozen quick notifications, and who waits for it
// waits for good. Here each process that observes listens on a socket of its own, and whoever posts
// writes to all of them. The sockets' names are abstract: they end with their process.

namespace {

using quorva::ObjectHolder;

/// The beginning of the sockets' names. The processes of one user that have one temporary folder
/// hear one another.
std::string socketPrefix() {
    std::error_code error;
    const std::string folder = std::filesystem::temp_directory_path(error);
    return "quorva-notifications-" + std::to_string(geteuid()) + "-" +
           std::to_string(std::hash<std::string>()(folder)) + "-";
}

/// The names of the sockets that listen.
std::set<std::string> socketNames() {
    const std::string prefix = "@" + socketPrefix();
    std::set<std::string> names;
    std::ifstream sockets("/proc/net/unix");
    for (std::string line; std::getline(sockets, line);) {
        if (const std::size_t name = line.find(prefix); name != std::string::npos) {
            names.insert(line.substr(name + 1));
        }
    }
    return names;
}

/// Calls `bind` or `connect` with the address of that name.
template <typename Operation>
bool call(Operation operation, int descriptor, const std::string& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::size_t length = name.copy(address.sun_path + 1, sizeof address.sun_path - 1);
    return operation(descriptor, reinterpret_cast<const sockaddr*>(&address),
                     static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length)) == 0;
}

/// Nobody waits for a process that hangs for longer than this.
void limitWaiting(int descriptor) {
    constexpr timeval limit{2, 0};
    setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

/// Whether the process at the other end belongs to this user: any user may take any name.
bool isConnectedToOwnUser(int descriptor) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == geteuid();
}

void sendMessage(NSData* message, const std::string& name) {
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    limitWaiting(descriptor);
    errno = ETIMEDOUT;  // What a send that was cut short by the limit does not say.
    const bool isSent = call(connect, descriptor, name) && isConnectedToOwnUser(descriptor) &&
                        send(descriptor, message.bytes, message.length, MSG_NOSIGNAL) ==
                            static_cast<ssize_t>(message.length);
    // The process may have ended since its name was read.
    if (!isSent && errno != ECONNREFUSED && errno != EPIPE && errno != ECONNRESET) {
        NSLog(@"a notification did not reach the process %s: %s",
              name.substr(name.rfind('-') + 1).c_str(), std::strerror(errno));
    }
    close(descriptor);
}

/// What the next process that connects sends; nil when that is nothing.
NSData* nextMessage(int listener) {
    const int descriptor = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (descriptor < 0) {
        usleep(10'000);  // Out of descriptors, for one.
        return nil;
    }
    limitWaiting(descriptor);
    NSMutableData* message = [NSMutableData data];
    char buffer[65536];
    ssize_t count = isConnectedToOwnUser(descriptor) ? 1 : -1;
    while (count > 0 && (count = read(descriptor, buffer, sizeof buffer)) > 0) {
        [message appendBytes:buffer length:static_cast<NSUInteger>(count)];
    }
    close(descriptor);
    return count == 0 ? message : nil;
}

bool admits(NSString* expected, NSString* actual) {
    return expected == nil || [expected isEqual:actual];
}

struct Observation {
    id observer;
    SEL selector;
    ObjectHolder<NSString> name;
    ObjectHolder<NSString> object;
    NSNotificationSuspensionBehavior behavior;
};

/// In the order of registration. They, the suspension and what it holds belong to the main thread.
std::map<unsigned long, Observation>& observations() {
    static auto& map = *new std::map<unsigned long, Observation>();
    return map;
}

bool isSuspended = false;

struct Delivery {
    unsigned long observation;
    ObjectHolder<NSNotification> notification;

    /// Whether a coalescing observer wants `later` in place of this one.
    [[nodiscard]] bool isReplacedBy(const Delivery& later) const {
        NSNotification* own = notification.get();
        NSNotification* other = later.notification.get();
        return observation == later.observation && [own.name isEqual:other.name] &&
               (own.object == other.object || [own.object isEqual:other.object]);
    }
};

std::vector<Delivery>& held() {
    static auto& deliveries = *new std::vector<Delivery>();
    return deliveries;
}

/// Any observation may be removed meanwhile.
void perform(const std::vector<Delivery>& deliveries) {
    for (const Delivery& delivery : deliveries) {
        if (const auto found = observations().find(delivery.observation);
            found != observations().end()) {
            [found->second.observer performSelector:found->second.selector
                                         withObject:delivery.notification.get()];
        }
    }
}

void deliver(NSNotification* notification, bool immediately) {
    std::vector<Delivery> due;
    std::vector<Delivery> later;
    for (const auto& [number, observation] : observations()) {
        if (!admits(observation.name.get(), notification.name) ||
            !admits(observation.object.get(), notification.object)) {
            continue;
        }
        const Delivery delivery{number, ObjectHolder<NSNotification>(notification)};
        if (!isSuspended || immediately ||
            observation.behavior == NSNotificationSuspensionBehaviorDeliverImmediately) {
            due.push_back(delivery);
        } else if (observation.behavior != NSNotificationSuspensionBehaviorDrop) {
            later.push_back(delivery);
        }
    }
    // As if the suspension ended for a moment: what is held comes first.
    const auto earlier = due.empty() ? std::vector<Delivery>() : std::exchange(held(), {});
    for (const Delivery& delivery : later) {
        if (observations().at(delivery.observation).behavior ==
            NSNotificationSuspensionBehaviorCoalesce) {
            std::erase_if(held(), [&](const Delivery& old) { return old.isReplacedBy(delivery); });
        }
        held().push_back(delivery);
    }
    perform(earlier);
    perform(due);
}

}  // namespace

@interface NSDistributedNotificationCenter (Simulator)
- (void)simulatorListen;
- (void)simulatorListenOn:(NSNumber*)listener;
- (void)simulatorReceive:(NSData*)message;
@end

@implementation NSDistributedNotificationCenter (Simulator)

- (void)addObserver:(id)observer
              selector:(SEL)selector
                  name:(NSString*)name
                object:(NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)behavior {
    static unsigned long count = 0;
    observations().emplace(++count, Observation{observer, selector, ObjectHolder<NSString>(name),
                                                ObjectHolder<NSString>(object), behavior});
    [self simulatorListen];
}

- (void)removeObserver:(id)observer name:(NSString*)name object:(NSString*)object {
    std::erase_if(observations(), [&](const auto& entry) {
        return entry.second.observer == observer && admits(name, entry.second.name.get()) &&
               admits(object, entry.second.object.get());
    });
}

- (void)postNotificationName:(NSString*)name
                      object:(NSString*)object
                    userInfo:(NSDictionary*)userInfo
          deliverImmediately:(BOOL)deliverImmediately {
    @try {
        if (&simulator::recordPostedNotification != nullptr) {
            simulator::recordPostedNotification(name, object, userInfo, deliverImmediately);
        }
        NSData* message = [NSArchiver
            archivedDataWithRootObject:[NSArray arrayWithObjects:@(deliverImmediately), name,
                                                                 userInfo == nil ? @{} : userInfo,
                                                                 object, nil]];
        for (const std::string& socketName : socketNames()) {
            sendMessage(message, socketName);
        }
    } @catch (NSException* exception) {
        NSLog(@"notification %@ was not delivered: %@", name, exception.reason);
    }
}

- (BOOL)suspended {
    return isSuspended;
}

- (void)setSuspended:(BOOL)suspended {
    isSuspended = suspended;
    if (!suspended) {
        perform(std::exchange(held(), {}));
    }
}

/// Begins to listen for other processes, once.
- (void)simulatorListen {
    static int listener = -1;
    if (listener >= 0) {
        return;
    }
    listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    @try {
        if (!call(bind, listener, socketPrefix() + std::to_string(getpid())) ||
            listen(listener, SOMAXCONN) != 0) {
            NSLog(@"notifications of other processes are not observed: %s", std::strerror(errno));
            return;
        }
        [NSThread detachNewThreadSelector:@selector(simulatorListenOn:)
                                 toTarget:self
                               withObject:@(listener)];
    } @catch (NSException* exception) {
        NSLog(@"notifications of other processes are not observed: %@", exception.reason);
    }
}

- (void)simulatorListenOn:(NSNumber*)listener {
    sigset_t signals;
    sigfillset(&signals);
    pthread_sigmask(SIG_SETMASK, &signals, nullptr);
    while (true) {
        @autoreleasepool {
            if (NSData* message = nextMessage(listener.intValue)) {
                [self performSelectorOnMainThread:@selector(simulatorReceive:)
                                       withObject:message
                                    waitUntilDone:NO];
            }
        }
    }
}

- (void)simulatorReceive:(NSData*)message {
    @try {
        NSArray* parts = [NSUnarchiver unarchiveObjectWithData:message];
        NSDictionary* userInfo = [parts objectAtIndex:2];
        deliver([NSNotification notificationWithName:[parts objectAtIndex:1]
                                              object:parts.count > 3 ? [parts objectAtIndex:3] : nil
                                            userInfo:userInfo.count > 0 ? userInfo : nil],
                [[parts objectAtIndex:0] boolValue]);
    } @catch (NSException* exception) {
        NSLog(@"a notification was not delivered: %@", exception.reason);
    }
}

@end
