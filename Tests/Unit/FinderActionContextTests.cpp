#include "QuorvaFinderExtension/FinderActionContext.hpp"

#include "QuorvaFinderExtension/Menu.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"
#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using Action = FinderFeatureAction;

TEST(FinderSelectionTest, NoSelectionIsEmpty) {
    EXPECT_TRUE(FinderSelection().empty());
    EXPECT_TRUE(FinderSelection().urls().empty());
    EXPECT_EQ(FinderSelection(), FinderSelection(std::vector<FileURL>{}));
}

TEST(FinderSelectionTest, SelectionKeepsFindersOrderAndDuplicates) {
    const std::vector<FileURL> urls = {FileURL::file("/b"), FileURL::file("/a"),
                                       FileURL::file("/b")};
    const FinderSelection selection = urls;
    EXPECT_FALSE(selection.empty());
    EXPECT_EQ(selection.urls(), urls);
}

TEST(FinderSelectionTest, CopiesShareTheSelection) {
    const FinderSelection selection = std::vector<FileURL>{FileURL::file("/a")};
    const FinderSelection copy = selection;
    EXPECT_EQ(&copy.urls(), &selection.urls());
}

TEST(FinderActionContextTest, ContextHoldsWhatItWasMadeFrom) {
    const FinderActionContext context(
        "id", "title", FinderFeatureAction::copyPath(FinderPathCopyFormat::shellPath),
        std::vector<FileURL>{FileURL::file("/a")}, FileURL::directory("/t"), "/destination",
        "preset");
    EXPECT_EQ(context.actionID(), "id");
    EXPECT_EQ(context.title(), "title");
    EXPECT_EQ(context.action(), FinderFeatureAction::copyPath(FinderPathCopyFormat::shellPath));
    EXPECT_EQ(context.selectedURLs().urls(), std::vector<FileURL>{FileURL::file("/a")});
    EXPECT_EQ(context.targetedURL(), FileURL::directory("/t"));
    EXPECT_EQ(context.destinationPath(), "/destination");
    EXPECT_EQ(context.presetID(), "preset");
}

TEST(FinderActionContextTest, ContextsAreComparedByEveryField) {
    const auto action = Action::openFolder();
    const std::vector<FileURL> selection = {FileURL::file("/a")};
    const std::optional<FileURL> target = FileURL::directory("/t");
    expectEveryFieldCounts<FinderActionContext>(
        {"i", "t", action, selection, target, "d", "p"},
        {{"x", "t", action, selection, target, "d", "p"},
         {"i", "x", action, selection, target, "d", "p"},
         {"i", "t", Action::createFolder(), selection, target, "d", "p"},
         {"i", "t", action, {}, target, "d", "p"},
         {"i", "t", action, selection, std::nullopt, "d", "p"},
         {"i", "t", action, selection, target, "x", "p"},
         {"i", "t", action, selection, target, "d", "x"}});
}

TEST(MenuTest, ItemsAreComparedByEveryField) {
    const MenuItem reference = {
        .title = "t", .action = {}, .identifier = "i", .representedObject = {}, .submenu = Menu{}};
    std::vector<MenuItem> others(8, reference);
    others.at(0).title = "x";
    others.at(1).action = MenuItem::Action::performFeatureChild;
    others.at(2).enabled = false;
    others.at(3).identifier.reset();
    others.at(4).tag = 1;
    others.at(5).representedObject = ForeignObject{};
    others.at(6).submenu.reset();
    others.at(7).isSeparator = true;
    expectEveryFieldCounts(reference, {others.at(0), others.at(1), others.at(2), others.at(3),
                                       others.at(4), others.at(5), others.at(6), others.at(7)});
    EXPECT_EQ(others.at(5), others.at(5));
}

TEST(MenuTest, SeparatorHasNoTitleAndNoAction) {
    const MenuItem separator = MenuItem::separator();
    EXPECT_TRUE(separator.isSeparator);
    EXPECT_EQ(separator.title, "");
    EXPECT_EQ(separator.action, MenuItem::Action::none);
    EXPECT_FALSE(separator.submenu.has_value());
}

TEST(MenuTest, ItemThatOpensASubmenuHasItsTitleAndNoAction) {
    Menu submenu = {.title = "新建", .items = {MenuItem::separator()}};
    const MenuItem item = MenuItem::opening(submenu);
    EXPECT_EQ(item.title, "新建");
    EXPECT_EQ(item.action, MenuItem::Action::none);
    EXPECT_TRUE(item.enabled);
    EXPECT_FALSE(item.isSeparator);
    EXPECT_EQ(item.submenu, submenu);
}

TEST(MenuTest, MenusAreComparedByTitleAndItems) {
    const Menu menu = {.title = "a", .items = {MenuItem::separator()}};
    EXPECT_EQ(menu, (Menu{.title = "a", .items = {MenuItem::separator()}}));
    EXPECT_FALSE(menu == (Menu{.title = "b", .items = {MenuItem::separator()}}));
    EXPECT_FALSE(menu == (Menu{.title = "a", .items = {}}));
}

TEST(MenuItemIdentityTest, PrefixesAndTagBaseAreTheAgreedOnes) {
    EXPECT_EQ(openWithApplicationIdentifierPrefix, "openWithApplicationPath__");
    EXPECT_EQ(runShortcutIdentifierPrefix, "runShortcut__");
    EXPECT_EQ(runScriptIdentifierPrefix, "runScript__");
    EXPECT_EQ(viewPresetIdentifierPrefix, "finderViewPreset__");
    EXPECT_EQ(openWithApplicationIdentifierPrefix.size(), 25U);
    EXPECT_EQ(runShortcutIdentifierPrefix.size(), 13U);
    EXPECT_EQ(runScriptIdentifierPrefix.size(), 11U);
    EXPECT_EQ(viewPresetIdentifierPrefix.size(), 18U);
    EXPECT_EQ(viewPresetTagBase, 700000);
}

TEST(MenuItemIdentityTest, IdentifierIsThePrefixAndTheIDAsItIs) {
    EXPECT_EQ(openWithApplicationIdentifier({.id = "a__b", .name = "n", .path = "p"}),
              "openWithApplicationPath__a__b");
    EXPECT_EQ(viewPresetIdentifier({.id = "", .name = "n", .viewMode = "", .sortMode = ""}),
              "finderViewPreset__");
    FinderCustomShortcutAction action = {.id = "x",
                                         .name = "n",
                                         .kind = FinderCustomShortcutAction::Kind::script,
                                         .shortcutName = "",
                                         .scriptPath = "/s"};
    EXPECT_EQ(customActionIdentifier(action), "runScript__x");
    action.kind = FinderCustomShortcutAction::Kind::shortcut;
    EXPECT_EQ(customActionIdentifier(action), "runShortcut__x");
}

}  // namespace
}  // namespace quorva
