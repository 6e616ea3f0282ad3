#include "Platform/PropertyList.hpp"

#include <cstdint>
#include <limits>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

/// How many of the accessors know the value.
int answeringAccessors(const PropertyList& value) {
    return (value.dictionary() != nullptr ? 1 : 0) + (value.array() != nullptr ? 1 : 0) +
           (value.string() != nullptr ? 1 : 0) + (value.boolean() != nullptr ? 1 : 0) +
           (value.integer() != nullptr ? 1 : 0) + (value.real() != nullptr ? 1 : 0) +
           (value.date() != nullptr ? 1 : 0) + (value.data() != nullptr ? 1 : 0);
}

TEST(PropertyListTest, EachTypeAnswersOnlyToItsOwnAccessor) {
    const PropertyList dictionary = PropertyList::Dictionary{};
    EXPECT_NE(dictionary.dictionary(), nullptr);
    EXPECT_EQ(answeringAccessors(dictionary), 1);

    const PropertyList array = PropertyList::Array{};
    EXPECT_NE(array.array(), nullptr);
    EXPECT_EQ(answeringAccessors(array), 1);

    const PropertyList string = "1";
    EXPECT_EQ(*string.string(), "1");
    EXPECT_EQ(answeringAccessors(string), 1);

    const PropertyList boolean = true;
    EXPECT_TRUE(*boolean.boolean());
    EXPECT_EQ(answeringAccessors(boolean), 1);

    const PropertyList integer = std::int64_t{1};
    EXPECT_EQ(*integer.integer(), 1);
    EXPECT_EQ(answeringAccessors(integer), 1);

    const PropertyList real = 1.0;
    EXPECT_EQ(*real.real(), 1.0);
    EXPECT_EQ(answeringAccessors(real), 1);

    const PropertyList date = PropertyList::Date{1.0};
    EXPECT_EQ(*date.date(), PropertyList::Date{1.0});
    EXPECT_EQ(answeringAccessors(date), 1);

    const PropertyList data = dataWithText("1");
    EXPECT_EQ(*data.data(), dataWithText("1"));
    EXPECT_EQ(answeringAccessors(data), 1);
}

TEST(PropertyListTest, TextKeepsItsBytes) {
    using std::string_view_literals::operator""sv;
    const PropertyList value = "a\0b"sv;
    EXPECT_EQ(*value.string(), "a\0b"sv);
}

TEST(PropertyListTest, ValuesOfDifferentTypesDiffer) {
    const std::vector<PropertyList> values = {
        PropertyList::Dictionary{}, PropertyList::Array{}, "1", true, std::int64_t{1}, 1.0,
        PropertyList::Date{1.0},    dataWithText("1")};
    for (std::size_t left = 0; left < values.size(); ++left) {
        for (std::size_t right = 0; right < values.size(); ++right) {
            EXPECT_EQ(values[left] == values[right], left == right) << left << ' ' << right;
        }
    }
}

TEST(PropertyListTest, ContainersAreComparedByTheirValues) {
    const PropertyList value = texts({{"id", "a"}});
    EXPECT_EQ(value, texts({{"id", "a"}}));
    EXPECT_FALSE(value == texts({{"id", "b"}}));
    EXPECT_EQ(PropertyList(list({value, "x"})), PropertyList(list({value, "x"})));
    EXPECT_FALSE(PropertyList(list({value, "x"})) == PropertyList(list({value})));
}

TEST(PropertyListTest, CopiesShareTheirContainers) {
    const PropertyList value = strings({"a"});
    const PropertyList copy = value;
    EXPECT_EQ(copy.array(), value.array());
}

TEST(PropertyListUnsupportedTest, IsOfNoTypeAndEqualsOnlyItself) {
    const PropertyList value = PropertyList::Unsupported();
    EXPECT_EQ(answeringAccessors(value), 0);
    EXPECT_TRUE(value == PropertyList(PropertyList::Unsupported()));
    EXPECT_FALSE(value == PropertyList(""));
}

}  // namespace
}  // namespace quorva
