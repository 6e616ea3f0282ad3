#include "QuorvaFinderExtension/FinderActionContext.hpp"

#include "QuorvaFinderExtension/Menu.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"
#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

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

TEST(FinderActionContextTest, ContextsThatDifferInOneFieldAreDifferent) {
    const auto context = [](const char* id, const char* itemTitle, FinderFeatureAction action,
                            const char* destinationPath, const char* presetID) {
        return FinderActionContext(id, itemTitle, action, {}, std::nullopt, destinationPath,
                                   presetID);
    };
    const auto action = FinderFeatureAction::openFolder();
    const FinderActionContext reference = context("i", "t", action, "d", "p");
    EXPECT_EQ(reference, context("i", "t", action, "d", "p"));
    EXPECT_FALSE(reference == context("x", "t", action, "d", "p"));
    EXPECT_FALSE(reference == context("i", "x", action, "d", "p"));
    EXPECT_FALSE(reference == context("i", "t", FinderFeatureAction::createFolder(), "d", "p"));
    EXPECT_FALSE(reference == context("i", "t", action, "x", "p"));
    EXPECT_FALSE(reference == context("i", "t", action, "d", "x"));
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
