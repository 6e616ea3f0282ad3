#pragma once

#import <Foundation/Foundation.h>

namespace simulator {

/// Records a notification that this process posts. A program without a recorder lacks this
/// function.
[[gnu::weak]] void recordPostedNotification(NSString* name, NSString* object,
                                            NSDictionary* userInfo, BOOL deliverImmediately);

}  // namespace simulator
