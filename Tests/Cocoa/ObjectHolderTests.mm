#include "Cocoa/ObjectHolder.h"

#include <gtest/gtest.h>

using quorva::ObjectHolder;

TEST(ObjectHolder, OwnsItsObjectAsLongAsItLives) {
    NSObject* object = [[NSObject alloc] init];
    const NSUInteger before = object.retainCount;
    {
        const ObjectHolder<NSObject> holder(object);
        const ObjectHolder<NSObject> copy(holder);
        EXPECT_EQ(object.retainCount, before + 2);
        EXPECT_EQ(copy.get(), object);
    }
    EXPECT_EQ(object.retainCount, before);
    [object release];
}

TEST(ObjectHolder, MovesItsObject) {
    NSObject* object = [[[NSObject alloc] init] autorelease];
    const NSUInteger before = object.retainCount;
    ObjectHolder<NSObject> source(object);
    ObjectHolder<NSObject> target;
    EXPECT_EQ(target.get(), nil);
    target = std::move(source);
    EXPECT_EQ(target.get(), object);
    EXPECT_EQ(object.retainCount, before + 1);
    target = {};
    EXPECT_EQ(object.retainCount, before);
}
