#import "Cocoa/MenuRendering.h"

#include <gtest/gtest.h>
#import <objc/runtime.h>

#import "Cocoa/FinderActionContextObject.h"
#import "Cocoa/FinderSync.h"
#import "Cocoa/StringConversion.h"

using quorva::Menu;
using quorva::MenuItem;
using quorva::PropertyList;

namespace {

using Context = quorva::FinderActionContextPointer;

Context someContext() {
    return std::make_shared<const quorva::FinderActionContext>(
        "copyFullPath", "复制路径",
        quorva::FinderFeatureAction::copyPath(quorva::FinderPathCopyFormat::fullPath),
        std::vector{quorva::FileURL::file("/a")}, std::nullopt, "", "");
}

MenuItem actionItem(std::string title, quorva::RepresentedObject object = {}) {
    MenuItem item;
    item.title = std::move(title);
    item.action = MenuItem::Action::performFeatureChild;
    item.representedObject = std::move(object);
    return item;
}

NSMenuItem* renderedItem(const MenuItem& item, id target = nil) {
    return [quorva::renderedMenu(Menu{"", {item}}, target) itemAtIndex:0];
}

}  // namespace

TEST(MenuRendering, GivesAnActionableItemTargetActionAndNoKeyEquivalent) {
    NSObject* target = [[[NSObject alloc] init] autorelease];
    NSMenuItem* item = renderedItem(actionItem("复制 \U0001F600"), target);
    EXPECT_EQ(quorva::utf8String(item.title), "复制 \U0001F600");
    EXPECT_EQ(item.target, target);
    EXPECT_TRUE(sel_isEqual(item.action, @selector(performFeatureChild:)));
    EXPECT_EQ(item.keyEquivalent.length, 0u);
    EXPECT_EQ(item.identifier, nil);
    EXPECT_EQ(item.tag, 0);
    EXPECT_EQ(item.representedObject, nil);
    EXPECT_EQ(item.submenu, nil);
}

TEST(MenuRendering, GivesAnItemWithoutActionNeitherTargetNorAction) {
    MenuItem heading;
    heading.title = "heading";
    NSMenuItem* item = renderedItem(heading, [[[NSObject alloc] init] autorelease]);
    EXPECT_EQ(item.target, nil);
    EXPECT_TRUE(item.action == nullptr);
}

TEST(MenuRendering, KeepsTheEnabledStateOnEveryLevel) {
    MenuItem enabled = actionItem("enabled");
    MenuItem disabled = actionItem("disabled");
    disabled.enabled = false;
    const Menu menu{"Quorva",
                    {enabled, disabled, MenuItem::opening(Menu{"sub", {enabled, disabled}})}};
    NSMenu* rendered = quorva::renderedMenu(menu, nil);
    for (NSMenu* level : {rendered, [rendered itemAtIndex:2].submenu}) {
        [level update];
        EXPECT_FALSE(level.autoenablesItems);
        EXPECT_TRUE([[level itemAtIndex:0] isEnabled]);
        EXPECT_FALSE([[level itemAtIndex:1] isEnabled]);
    }
}

TEST(MenuRendering, KeepsOrderSeparatorsAndSubmenus) {
    const Menu menu{"Quorva",
                    {actionItem("first"), MenuItem::separator(),
                     MenuItem::opening(Menu{"sub", {actionItem("inner")}}),
                     MenuItem::opening(Menu{"empty", {}})}};
    NSMenu* rendered = quorva::renderedMenu(menu, nil);
    EXPECT_EQ(quorva::utf8String(rendered.title), "Quorva");
    ASSERT_EQ(rendered.numberOfItems, 4);
    EXPECT_TRUE([[rendered itemAtIndex:1] isSeparatorItem]);
    NSMenuItem* opening = [rendered itemAtIndex:2];
    EXPECT_EQ(quorva::utf8String(opening.title), "sub");
    EXPECT_EQ(quorva::utf8String(opening.submenu.title), "sub");
    EXPECT_EQ(quorva::utf8String([opening.submenu itemAtIndex:0].title), "inner");
    EXPECT_EQ([rendered itemAtIndex:3].submenu.numberOfItems, 0);
    EXPECT_NE([rendered itemAtIndex:3].submenu, nil);
}

TEST(MenuRendering, RendersAnEmptyMenu) {
    EXPECT_EQ(quorva::renderedMenu(Menu(), nil).numberOfItems, 0);
}

TEST(MenuRendering, TakesAnEmptyIdentifierForNone) {
    MenuItem item = actionItem("plain");
    item.identifier = "";
    EXPECT_EQ(quorva::menuItem(renderedItem(item)).identifier, std::nullopt);
}

TEST(MenuRendering, BringsEveryFieldBack) {
    MenuItem plain = actionItem("plain");
    MenuItem full = actionItem(
        "preset", PropertyList::Dictionary{{"actionID", "finderViewPreset__1"},
                                           {"selectedPaths", PropertyList::Array{"/a", "/没有"}},
                                           {"targetedPath", ""}});
    full.identifier = "finderViewPreset__1";
    full.tag = 700000;
    full.enabled = false;
    MenuItem extreme = actionItem("", PropertyList::Dictionary{});
    extreme.tag = INT64_MIN;
    MenuItem withContext = actionItem("context", someContext());
    MenuItem heading;
    heading.title = "heading";
    for (const MenuItem& item : {plain, full, extreme, withContext, heading}) {
        EXPECT_EQ(quorva::menuItem(renderedItem(item)), item);
    }
    EXPECT_TRUE(quorva::menuItem(renderedItem(MenuItem::separator())).isSeparator);
}

TEST(MenuRendering, BringsTheVeryContextBack) {
    const Context context = someContext();
    const MenuItem item = quorva::menuItem(renderedItem(actionItem("title", context)));
    EXPECT_EQ(std::get<Context>(item.representedObject), context);
}

TEST(MenuRendering, LetsGoOfTheContextWithTheMenu) {
    const Context context = someContext();
    @autoreleasepool {
        (void)renderedItem(actionItem("title", context));
        EXPECT_GT(context.use_count(), 1);
    }
    EXPECT_EQ(context.use_count(), 1);
}

TEST(MenuRendering, ReadsAnItemThatCarriesSomethingForeign) {
    NSMenuItem* item = [[[NSMenuItem alloc] initWithTitle:@"t" action:nullptr
                                            keyEquivalent:@""] autorelease];
    NSDictionary* mixed = [NSDictionary
        dictionaryWithObjectsAndKeys:@"a", @"b", @"c", [NSNumber numberWithInt:1], nil];
    for (id object : {static_cast<id>(@"text"), static_cast<id>([NSNull null]),
                      static_cast<id>([NSArray array]), static_cast<id>(mixed)}) {
        item.representedObject = object;
        EXPECT_EQ(quorva::menuItem(item).representedObject,
                  quorva::RepresentedObject(quorva::ForeignObject{}));
    }
    item.representedObject = [NSDictionary
        dictionaryWithObjectsAndKeys:@"id", @"actionID", [NSNull null], @"title", nil];
    EXPECT_EQ(quorva::menuItem(item).representedObject,
              quorva::RepresentedObject(PropertyList::Dictionary{
                  {"actionID", "id"}, {"title", PropertyList::Unsupported()}}));
}

TEST(MenuRendering, ReadsATitleThatIsNoUnicode) {
    const unichar units[] = {'a', 0xD83D, 'b'};
    NSString* title = [NSString stringWithCharacters:units length:3];
    NSMenuItem* item = [[[NSMenuItem alloc] initWithTitle:title == nil ? @"" : title
                                                   action:nullptr
                                            keyEquivalent:@""] autorelease];
    const std::string read = quorva::menuItem(item).title;
    // GNUstep makes no such string in the first place.
    EXPECT_TRUE(read == "a\uFFFD"
                        "b" ||
                read.empty())
        << read;
}

TEST(MenuRendering, SharesAnArrayThatManyItemsCarry) {
    const PropertyList paths = PropertyList::Array(10'000, PropertyList("/a"));
    Menu menu;
    for (int count = 0; count < 3; ++count) {
        menu.items.push_back(
            actionItem("preset", PropertyList::Dictionary{{"selectedPaths", paths}}));
    }
    NSMenu* rendered = quorva::renderedMenu(menu, nil);
    id first = [[rendered itemAtIndex:0].representedObject objectForKey:@"selectedPaths"];
    id last = [[rendered itemAtIndex:2].representedObject objectForKey:@"selectedPaths"];
    EXPECT_EQ(first, last);
}
