#import "Simulator/GNUstep/PostedNotification.h"

#include "Simulator/EventRecorder.hpp"
#import "Simulator/GNUstep/JSONConversion.h"

void simulator::recordPostedNotification(NSString* name, NSString* object, NSDictionary* userInfo,
                                         BOOL deliverImmediately) {
    recordEvent({{"event", "notification"},
                 {"name", jsonWithFoundationObject(name)},
                 {"object", jsonWithFoundationObject(object)},
                 {"userInfo", jsonWithFoundationObject(userInfo)},
                 {"immediately", static_cast<bool>(deliverImmediately)}});
}
