// Posts a distributed notification as another process does:
//
//   post-notification NAME [SENDER [USER-INFO]]
//
// An empty SENDER is none. USER-INFO is a JSON array of its keys and values by turns, because a key
// need not be a string.

#import <Foundation/Foundation.h>

#include <cstdio>

namespace {

NSString* _Nullable argument(int argumentCount, char* arguments[], int index) {
    return index < argumentCount ? [NSString stringWithUTF8String:arguments[index]] : nil;
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
    @autoreleasepool {
        NSString* const name = argument(argumentCount, arguments, 1);
        NSString* const sender = argument(argumentCount, arguments, 2);
        NSString* const userInfoText = argument(argumentCount, arguments, 3);
        NSMutableDictionary* userInfo = nil;
        if (userInfoText != nil) {
            NSError* error = nil;
            NSArray* const keysAndValues = [NSJSONSerialization
                JSONObjectWithData:[userInfoText dataUsingEncoding:NSUTF8StringEncoding]
                           options:0
                             error:&error];
            if (![keysAndValues isKindOfClass:[NSArray class]] || keysAndValues.count % 2 != 0) {
                std::fputs("post-notification: the user info is not pairs in an array\n", stderr);
                return 1;
            }
            userInfo = [NSMutableDictionary dictionary];
            for (NSUInteger index = 0; index < keysAndValues.count; index += 2) {
                [userInfo setObject:[keysAndValues objectAtIndex:index + 1]
                             forKey:[keysAndValues objectAtIndex:index]];
            }
        }
        [[NSDistributedNotificationCenter defaultCenter]
            postNotificationName:name
                          object:sender.length == 0 ? nil : sender
                        userInfo:userInfo
              deliverImmediately:YES];
    }
    return 0;
}
