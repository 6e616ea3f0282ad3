// Posts a distributed notification as another process does:
//
//   post-notification NAME [USER-INFO]
//
// USER-INFO is a JSON object.

#import <Foundation/Foundation.h>

#include <cstdio>

namespace {

int fail(const char* sentence) {
    std::fprintf(stderr, "post-notification: %s\n", sentence);
    return 1;
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
    @autoreleasepool {
        if (argumentCount < 2 || argumentCount > 3) {
            return fail("expected a name and, if need be, a JSON object");
        }
        NSDictionary* userInfo = nil;
        if (argumentCount == 3) {
            NSError* error = nil;
            NSData* const text = [[NSString stringWithUTF8String:arguments[2]]
                dataUsingEncoding:NSUTF8StringEncoding];
            userInfo = [NSJSONSerialization JSONObjectWithData:text options:0 error:&error];
            if (![userInfo isKindOfClass:[NSDictionary class]]) {
                return fail("the user info is no JSON object");
            }
        }
        [[NSDistributedNotificationCenter defaultCenter]
            postNotificationName:[NSString stringWithUTF8String:arguments[1]]
                          object:nil
                        userInfo:userInfo
              deliverImmediately:YES];
    }
    return 0;
}
