#include "Platform/JSONSerialization.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

using quorva::PropertyList;

namespace {

std::string text(const quorva::Data& data) {
    return {reinterpret_cast<const char*>(data.data()), data.size()};
}

const PropertyList record =
    PropertyList::Dictionary{{"title", "没有\n\"引号\" / \\ \U0001F600"},
                             {"createdAt", 1763665000.123456},
                             {"selectedPaths", PropertyList::Array{"/a", "/b c"}},
                             {"none", PropertyList::Array{}},
                             {"flag", true},
                             {"one", std::int64_t{1}},
                             {"least", std::numeric_limits<std::int64_t>::min()},
                             {"nested", PropertyList::Dictionary{{"z", false}, {"a", ""}}}};

}  // namespace

TEST(JSONSerialization, WritesEveryValueAsItIs) {
    const auto data = quorva::platform::jsonDataPrettyPrintedWithSortedKeys(record);
    ASSERT_TRUE(data);
    const nlohmann::json expected = {{"title", "没有\n\"引号\" / \\ \U0001F600"},
                                     {"createdAt", 1763665000.123456},
                                     {"selectedPaths", {"/a", "/b c"}},
                                     {"none", nlohmann::json::array()},
                                     {"flag", true},
                                     {"one", 1},
                                     {"least", std::numeric_limits<std::int64_t>::min()},
                                     {"nested", {{"z", false}, {"a", ""}}}};
    EXPECT_EQ(nlohmann::json::parse(text(*data)), expected);
}

TEST(JSONSerialization, WritesTextsAndKeysWithANULWhole) {
    const std::string text = std::string("a") + '\0' + "b";
    const auto data = quorva::platform::jsonDataPrettyPrintedWithSortedKeys(
        PropertyList::Dictionary{{text, text}});
    ASSERT_TRUE(data);
    const nlohmann::json expected = {{text, text}};
    EXPECT_EQ(nlohmann::json::parse(::text(*data)), expected);
}

TEST(JSONSerialization, SortsTheKeysAndWritesAMemberALine) {
    const auto data = quorva::platform::jsonDataPrettyPrintedWithSortedKeys(record);
    ASSERT_TRUE(data);
    std::size_t last = 0;
    for (const char* key :
         {"createdAt", "flag", "least", "nested", "none", "one", "selectedPaths", "title"}) {
        const std::size_t position = text(*data).find("\n  \"" + std::string(key) + "\"");
        ASSERT_NE(position, std::string::npos) << key;
        EXPECT_GE(position, last);
        last = position;
    }
}

TEST(JSONSerialization, FailsForWhatJSONHasNoFormFor) {
    for (const PropertyList& value :
         {PropertyList(std::numeric_limits<double>::infinity()),
          PropertyList(std::numeric_limits<double>::quiet_NaN()),
          PropertyList(PropertyList::Date{0}), PropertyList(quorva::Data{})}) {
        const auto data = quorva::platform::jsonDataPrettyPrintedWithSortedKeys(
            PropertyList::Dictionary{{"list", PropertyList::Array{value}}});
        ASSERT_FALSE(data);
        EXPECT_NE(data.error().localizedDescription, "");
    }
}

TEST(JSONSerialization, FailsForATextThatIsNoObject) {
    EXPECT_FALSE(quorva::platform::jsonDataPrettyPrintedWithSortedKeys("text"));
}
