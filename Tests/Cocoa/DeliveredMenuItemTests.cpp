#include "Cocoa/DeliveredMenuItem.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quorva {
namespace {

using Context = std::shared_ptr<const FinderActionContext>;

Context context(const std::string& actionID) {
    return std::make_shared<const FinderActionContext>(
        actionID, "title", FinderFeatureAction::copyToFolder(), FinderSelection(), std::nullopt,
        "/destination", "");
}

MenuItem actionItem(const std::string& title, RepresentedObject object, std::int64_t tag = 0) {
    MenuItem item;
    item.title = title;
    item.action = MenuItem::Action::performFeatureChild;
    item.tag = tag;
    item.representedObject = std::move(object);
    return item;
}

/// What Finder gives back of an item.
MenuItem rebuilt(const std::string& title, std::int64_t tag = 0) {
    return actionItem(title, {}, tag);
}

const Context* attachedContext(const MenuItem& item) {
    return std::get_if<Context>(&item.representedObject);
}

class RestoredActionID : public testing::TestWithParam<const char*> {};

TEST_P(RestoredActionID, GetsItsVeryContextBack) {
    const Context expected = context(GetParam());
    const Menu menu{"", {actionItem("Other", context("copyPath")), actionItem("Folder", expected)}};
    const MenuItem item = deliveredMenuItem(rebuilt("Folder"), menu);
    ASSERT_NE(attachedContext(item), nullptr);
    EXPECT_EQ(*attachedContext(item), expected);
}

INSTANTIATE_TEST_SUITE_P(, RestoredActionID,
                         testing::Values("copyFilesToFolder", "moveFilesToFolder",
                                         "quickOpenPath"));

TEST(DeliveredMenuItem, IsFoundInSubmenusAtAnyDepth) {
    const Context expected = context("quickOpenPath");
    Menu menu{"inner", {actionItem("Folder", expected)}};
    for (int depth = 0; depth < 4; ++depth) {
        menu = Menu{"outer", {MenuItem::separator(), MenuItem::opening(menu)}};
    }
    EXPECT_EQ(*attachedContext(deliveredMenuItem(rebuilt("Folder"), menu)), expected);
}

TEST(DeliveredMenuItem, StaysAsItCameWhenItCarriesAnObject) {
    const Menu menu{"", {actionItem("Folder", context("quickOpenPath"))}};
    for (const RepresentedObject& object :
         {RepresentedObject(context("copyPath")), RepresentedObject(PropertyList::Dictionary{}),
          RepresentedObject(ForeignObject{})}) {
        const MenuItem sender = actionItem("Folder", object);
        EXPECT_EQ(deliveredMenuItem(sender, menu), sender);
    }
}

TEST(DeliveredMenuItem, StaysAsItCameWhenTitleOrTagDiffer) {
    const Menu menu{"", {actionItem("Folder", context("quickOpenPath"), 5)}};
    for (const MenuItem& sender :
         {rebuilt("folder", 5), rebuilt("Folder ", 5), rebuilt("Folder"), rebuilt("Folder", -5)}) {
        EXPECT_EQ(deliveredMenuItem(sender, menu), sender);
    }
}

TEST(DeliveredMenuItem, StaysAsItCameWhenSeveralActionableItemsShowTheSame) {
    const Menu folders{"",
                       {actionItem("Folder", context("copyFilesToFolder")),
                        actionItem("Folder", context("moveFilesToFolder"))}};
    EXPECT_EQ(deliveredMenuItem(rebuilt("Folder"), folders), rebuilt("Folder"));
    const Menu withCatalogueEntry{"",
                                  {actionItem("Folder", context("copyFilesToFolder")),
                                   actionItem("Folder", context("copyPath"))}};
    EXPECT_EQ(deliveredMenuItem(rebuilt("Folder"), withCatalogueEntry), rebuilt("Folder"));
}

TEST(DeliveredMenuItem, IsNotConfusedByItemsWithoutAction) {
    const Context expected = context("copyFilesToFolder");
    const Menu menu{"",
                    {MenuItem::opening(Menu{"Folder", {actionItem("Folder", expected)}}),
                     MenuItem::separator()}};
    EXPECT_EQ(*attachedContext(deliveredMenuItem(rebuilt("Folder"), menu)), expected);
    EXPECT_EQ(deliveredMenuItem(rebuilt(""), menu), rebuilt(""));
}

TEST(DeliveredMenuItem, StaysAsItCameForEveryOtherEntry) {
    for (const RepresentedObject& object :
         {RepresentedObject(context("copyFilesToPath")),
          RepresentedObject(context("openWithApplicationPath")),
          RepresentedObject(context("runShortcut__quickOpenPath")),
          RepresentedObject(PropertyList::Dictionary{{"actionID", "quickOpenPath"}}),
          RepresentedObject(ForeignObject{}), RepresentedObject(Context()),
          RepresentedObject(std::monostate())}) {
        const Menu menu{"", {actionItem("Entry", object)}};
        EXPECT_EQ(deliveredMenuItem(rebuilt("Entry"), menu), rebuilt("Entry"));
    }
}

TEST(DeliveredMenuItem, StaysAsItCameWhenNoMenuWasHandedOut) {
    EXPECT_EQ(deliveredMenuItem(rebuilt("Folder"), Menu()), rebuilt("Folder"));
}

}  // namespace
}  // namespace quorva
