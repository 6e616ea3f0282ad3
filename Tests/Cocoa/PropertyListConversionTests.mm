#import "Cocoa/PropertyListConversion.h"

#include <gtest/gtest.h>

#include <limits>

#import "Cocoa/StringConversion.h"
#include "Platform/PropertyListSerialization.hpp"

using quorva::FoundationObjectConverter;
using quorva::PropertyList;
using quorva::propertyListEntries;

namespace {

/// `object` in `depth` arrays.
id nested(id object, std::size_t depth) {
    for (std::size_t level = 0; level < depth; ++level) {
        object = [NSArray arrayWithObject:object];
    }
    return object;
}

/// What lies in the arrays of `value`.
PropertyList innermost(PropertyList value) {
    while (value.array() != nullptr) {
        value = value.array()->front();
    }
    return value;
}

}  // namespace

TEST(PropertyListConversion, KeepsEveryTypeBothWays) {
    const PropertyList values[] = {
        "没有",
        "",
        true,
        false,
        std::int64_t{0},
        std::int64_t{1},
        std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max(),
        0.0,
        1.0,
        -1.5e300,
        std::numeric_limits<double>::infinity(),
        PropertyList::Date{1763665000.5},
        quorva::dataWithText("bytes"),
        quorva::Data{},
        PropertyList::Array{},
        PropertyList::Array{"a", true, PropertyList::Array{}},
        PropertyList::Dictionary{},
        PropertyList::Dictionary{{"", "a"}, {"没有", PropertyList::Dictionary{{"b", 1.0}}}}};
    FoundationObjectConverter converter;
    for (const PropertyList& value : values) {
        EXPECT_EQ(quorva::propertyList(converter.object(value)), value);
    }
}

TEST(PropertyListConversion, TellsBooleansFromNumbers) {
    EXPECT_EQ(quorva::propertyList([NSNumber numberWithBool:YES]), PropertyList(true));
    EXPECT_EQ(quorva::propertyList([NSNumber numberWithInt:1]), PropertyList(std::int64_t{1}));
    EXPECT_EQ(quorva::propertyList([NSNumber numberWithInt:0]), PropertyList(std::int64_t{0}));
    EXPECT_EQ(quorva::propertyList([NSNumber numberWithFloat:0.5F]), PropertyList(0.5));
    EXPECT_EQ(quorva::propertyList([NSNumber numberWithUnsignedLongLong:UINT64_MAX]),
              PropertyList(18446744073709551615.0));
}

TEST(PropertyListConversion, ValueOfAnotherClassIsUnsupportedWhereItStands) {
    const PropertyList unsupported = PropertyList::Unsupported();
    EXPECT_EQ(quorva::propertyList(nil), unsupported);
    EXPECT_EQ(quorva::propertyList([NSNull null]), unsupported);
    EXPECT_EQ(quorva::propertyList([NSURL URLWithString:@"file:///"]), unsupported);
    EXPECT_EQ(quorva::propertyList([NSArray arrayWithObjects:@"a", [NSNull null], nil]),
              PropertyList(PropertyList::Array{"a", unsupported}));
    EXPECT_EQ(quorva::propertyList([NSDictionary dictionaryWithObject:[NSSet set] forKey:@"a"]),
              PropertyList(PropertyList::Dictionary{{"a", unsupported}}));
}

TEST(PropertyListConversion, DictionaryWithAKeyThatIsNotAStringIsUnsupportedWhereItStands) {
    id dictionary = [NSDictionary dictionaryWithObject:@"a" forKey:[NSNumber numberWithInt:1]];
    EXPECT_EQ(quorva::propertyList([NSArray arrayWithObject:dictionary]),
              PropertyList(PropertyList::Array{PropertyList::Unsupported()}));
}

TEST(PropertyListConversion, ReadsToTheDepthLimitAndNoFurther) {
    EXPECT_EQ(innermost(*quorva::propertyList(nested(@"a", quorva::propertyListDepthLimit - 1))),
              PropertyList("a"));
    EXPECT_EQ(innermost(*quorva::propertyList(nested(@"a", quorva::propertyListDepthLimit))),
              PropertyList(PropertyList::Unsupported()));
}

TEST(PropertyListConversion, EndsForACycle) {
    NSMutableArray* array = [NSMutableArray array];
    [array addObject:[NSArray arrayWithObject:array]];
    EXPECT_EQ(innermost(*quorva::propertyList(array)), PropertyList(PropertyList::Unsupported()));
    [array removeAllObjects];
}

TEST(PropertyListConversion, EndsForSharedReferencesThatExplode) {
    id object = @"a";
    for (int level = 0; level < 40; ++level) {
        object = [NSArray arrayWithObjects:object, object, nil];
    }
    EXPECT_FALSE(quorva::propertyList(object));
}

TEST(PropertyListConversion, ReadsAsManyValuesAsTheLimitAndNotMore) {
    // The array is a value itself.
    NSMutableArray* array = [NSMutableArray array];
    for (std::size_t count = 1; count < quorva::propertyListValueLimit; ++count) {
        [array addObject:[NSNull null]];
    }
    EXPECT_TRUE(quorva::propertyList(array));
    [array addObject:[NSNull null]];
    EXPECT_FALSE(quorva::propertyList(array));
}

TEST(PropertyListConversion, ReadsAsMuchTextAndDataAsTheLimitAndNotMore) {
    NSData* half = [NSMutableData dataWithLength:quorva::propertyListByteLimit / 2];
    EXPECT_TRUE(quorva::propertyList([NSArray arrayWithObjects:half, half, nil]));
    EXPECT_FALSE(quorva::propertyList([NSArray arrayWithObjects:half, half, @"a", nil]));
    NSData* rest = [NSMutableData dataWithLength:quorva::propertyListByteLimit - 1];
    EXPECT_TRUE(quorva::propertyList([NSDictionary dictionaryWithObject:rest forKey:@"a"]));
    EXPECT_FALSE(quorva::propertyList([NSDictionary dictionaryWithObject:rest forKey:@"ab"]));
}

TEST(PropertyListEntries, KeepWhatIsUnsupportedBesideTheOthers) {
    NSDictionary* dictionary = [NSDictionary
        dictionaryWithObjectsAndKeys:@"settings", @"reason", [NSNull null], @"foreign",
                                     [NSArray arrayWithObject:[NSNull null]], @"list", nil];
    const PropertyList unsupported = PropertyList::Unsupported();
    EXPECT_EQ(propertyListEntries(dictionary),
              (PropertyList::Dictionary{{"reason", "settings"},
                                        {"foreign", unsupported},
                                        {"list", PropertyList::Array{unsupported}}}));
    EXPECT_EQ(propertyListEntries([NSDictionary dictionary]), PropertyList::Dictionary{});
}

TEST(PropertyListEntries, AreNothingForWhatIsNotADictionaryWithStringKeys) {
    EXPECT_EQ(propertyListEntries(nil), std::nullopt);
    EXPECT_EQ(propertyListEntries(@"text"), std::nullopt);
    NSDictionary* dictionary = [NSDictionary
        dictionaryWithObjectsAndKeys:@"a", @"b", @"c", [NSNumber numberWithInt:1], nil];
    EXPECT_EQ(propertyListEntries(dictionary), std::nullopt);
}

TEST(FoundationObjectConverter, MakesASharedArrayOnce) {
    const PropertyList paths = PropertyList::Array{"/a", "/b"};
    const PropertyList equalPaths = PropertyList::Array{"/a", "/b"};
    FoundationObjectConverter converter;
    NSDictionary* first = converter.dictionary({{"selectedPaths", paths}});
    NSDictionary* second = converter.dictionary({{"selectedPaths", paths}});
    EXPECT_EQ([first objectForKey:@"selectedPaths"], [second objectForKey:@"selectedPaths"]);
    EXPECT_NE([first objectForKey:@"selectedPaths"], converter.object(equalPaths));
}
