#pragma once

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

/// While one stands, the next call of a class method raises an exception. Later calls don't, so
/// that the failure can be reported by means of the method.
class RaisingMethod {
   public:
    RaisingMethod(Class owner, SEL selector) {
        method_ = class_getClassMethod(owner, selector);
        implementation_ = method_setImplementation(method_, reinterpret_cast<IMP>(raise));
    }

    RaisingMethod(const RaisingMethod&) = delete;
    RaisingMethod& operator=(const RaisingMethod&) = delete;

    ~RaisingMethod() { method_setImplementation(method_, implementation_); }

   private:
    static id raise(id, SEL) {
        method_setImplementation(method_, implementation_);
        [NSException raise:NSInternalInconsistencyException format:@"raised"];
        return nil;
    }

    static inline Method method_;
    static inline IMP implementation_;
};
