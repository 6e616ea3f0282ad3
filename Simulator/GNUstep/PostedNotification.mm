#import "Simulator/GNUstep/PostedNotification.h"

#include <optional>
#include <string>

#include "Simulator/EventRecorder.hpp"

void simulator::recordPostedNotification(NSString* name, NSString*, NSDictionary* userInfo, BOOL) {
    std::optional<std::string> json;
    if (userInfo != nil) {
        NSError* error = nil;
        NSData* data = [NSJSONSerialization dataWithJSONObject:userInfo options:0 error:&error];
        json = std::string(static_cast<const char*>(data.bytes), data.length);
    }
    recordNotification(name.UTF8String, json);
}
