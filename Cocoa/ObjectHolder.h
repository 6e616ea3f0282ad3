#pragma once

#import <Foundation/Foundation.h>

#include <utility>

namespace quorva {

/// Owns one Objective-C object: keeps it for as long as the holder lives.
template <typename Object>
class ObjectHolder {
   public:
    ObjectHolder() = default;
    explicit ObjectHolder(Object* object) : object_([object retain]) {}
    ObjectHolder(const ObjectHolder& other) : ObjectHolder(other.object_) {}
    ObjectHolder(ObjectHolder&& other) noexcept : object_(std::exchange(other.object_, nil)) {}
    ObjectHolder& operator=(ObjectHolder other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ObjectHolder() { [object_ release]; }

    /// The object, or nil for an empty holder.
    [[nodiscard]] Object* get() const { return object_; }

   private:
    Object* object_ = nil;
};

}  // namespace quorva
