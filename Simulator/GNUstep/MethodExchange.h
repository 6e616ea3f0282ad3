#pragma once

#import <objc/runtime.h>

namespace simulator {

/// Lets the instance methods `first` and `second` of `type` change places: a category's method
/// comes before GNUstep's own, and reaches it under its own name. A class's methods are instance
/// methods of its metaclass.
inline void exchangeMethods(Class type, SEL first, SEL second) {
    method_exchangeImplementations(class_getInstanceMethod(type, first),
                                   class_getInstanceMethod(type, second));
}

}  // namespace simulator
