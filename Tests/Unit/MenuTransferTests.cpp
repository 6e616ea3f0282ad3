#include "QuorvaFinderExtension/MenuTransfer.hpp"

#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "QuorvaFinderExtension/MenuItemIdentity.hpp"
#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;

using Dictionary = PropertyList::Dictionary;

/// What a bare sender with the title and the tag of an entry has to arrive as, and the tag.
struct Entry {
    std::string title;
    std::int64_t tag;
    std::string actionID;
    std::string destinationPath;

    friend bool operator==(const Entry&, const Entry&) = default;
};

MenuItem bareSender(const std::string& title, std::int64_t tag) {
    MenuItem sender;
    sender.title = title;
    sender.tag = tag;
    sender.action = MenuItem::Action::performFeatureChild;
    return sender;
}

void collect(const Menu& menu, std::vector<const MenuItem*>& items) {
    for (const MenuItem& item : menu.items) {
        if (item.action == MenuItem::Action::performFeatureChild) {
            items.push_back(&item);
        }
        if (item.submenu) {
            collect(*item.submenu, items);
        }
    }
}

class MenuTransferTest : public UnitTest {
 protected:
    /// Shows `features`, each with everything that it has.
    static void show(std::initializer_list<const char*> features) {
        platform().putPropertyList(
            featureSettingsPath,
            Dictionary{{"enabledFeatureIDs", strings(features)}, {"menuLayout", "expanded"}});
    }

    static void putDestinations(Dictionary lists) {
        platform().putPropertyList(customDestinationsPath, std::move(lists));
    }

    static void putActions(std::initializer_list<PropertyList> actions) {
        platform().putPropertyList(customShortcutActionsPath, list(actions));
    }

    static void putPresets(std::initializer_list<PropertyList> presets) {
        platform().putPropertyList(viewPresetsPath, list(presets));
    }

    static void expectNoTagIsGiven() {
        const MenuRequest request = quorva::request();
        const Menu built = assembledMenu(request);
        Menu handedOut = built;
        tagAmbiguousItems(handedOut, request.settings);
        EXPECT_TRUE(handedOut == built);
    }

    static Menu handedOutMenu() {
        const MenuRequest request = quorva::request();
        Menu menu = assembledMenu(request);
        tagAmbiguousItems(menu, request.settings);
        return menu;
    }

    static FinderActionContextPointer click(const MenuItem& sender, const Menu& menu) {
        return contextOfSender(sender, menu, SettingsReading());
    }

    /// The entries of `menu` titled `title`, and what a click on each arrives as when Finder gives
    /// back no more than title and tag.
    static std::vector<Entry> arrivals(const Menu& menu, const std::string& title) {
        std::vector<const MenuItem*> items;
        collect(menu, items);
        std::vector<Entry> result;
        for (const MenuItem* const item : items) {
            if (item->title == title) {
                const auto context = click(bareSender(title, item->tag), menu);
                result.push_back(context == nullptr ? Entry{title, item->tag, "nothing", ""}
                                                    : Entry{title, item->tag, context->actionID(),
                                                            context->destinationPath()});
            }
        }
        return result;
    }
};

std::ostream& operator<<(std::ostream& stream, const Entry& entry) {
    return stream << entry.title << " #" << entry.tag << " -> " << entry.actionID << ' '
                  << entry.destinationPath;
}

// Menus without equal titles.

TEST_F(MenuTransferTest, MenuWhoseTitlesLeadBackIsUnchanged) {
    putDestinations({{"copy", list({destination("c", "项目", "/c")})},
                     {"move", list({destination("m", "项目", "/m")})},
                     {"quickOpen", list({destination("q", "资料", "/q")})},
                     {"openApplication", list({destination("a", "应用", "/a.app")})}});
    putActions({script("p", "脚本", "/p.sh")});
    expectNoTagIsGiven();
}

TEST_F(MenuTransferTest, DefaultMenuIsUnchanged) {
    expectNoTagIsGiven();
    platform().enterSandbox();
    expectNoTagIsGiven();
}

// Equal titles.

TEST_F(MenuTransferTest, TwoDestinationsOfOneNameAreToldApart) {
    show({"copyFile"});
    putDestinations(
        {{"copy", list({destination("1", "项目", "/1"), destination("2", "项目", "/2")})}});
    EXPECT_THAT(arrivals(handedOutMenu(), "复制到项目"),
                ElementsAre(Entry{"复制到项目", 1, "copyFilesToFolder", "/1"},
                            Entry{"复制到项目", 2, "copyFilesToFolder", "/2"}));
}

TEST_F(MenuTransferTest, DestinationNamedLikeTheTargetOfACommandIsToldFromTheCommand) {
    show({"copyFile", "organizeFile"});
    putDestinations({{"copy", list({destination("d", "桌面", "/Volumes/Other/Desktop")})},
                     {"move", list({destination("d", "文稿", "/Volumes/Other/Documents")})}});
    const Menu menu = handedOutMenu();
    EXPECT_THAT(arrivals(menu, "复制到桌面"),
                ElementsAre(Entry{"复制到桌面", 0, "copyFilesToDesktop", ""},
                            Entry{"复制到桌面", 2, "copyFilesToFolder", "/Volumes/Other/Desktop"}));
    EXPECT_THAT(
        arrivals(menu, "移动到文稿"),
        ElementsAre(Entry{"移动到文稿", 0, "moveFilesToDocuments", ""},
                    Entry{"移动到文稿", 1, "moveFilesToFolder", "/Volumes/Other/Documents"}));
}

TEST_F(MenuTransferTest, PlaceThatIsThereByDefaultIsLeftToTheCommandOfItsTitle) {
    show({"quickOpen"});
    const Menu menu = handedOutMenu();
    EXPECT_THAT(arrivals(menu, "用户目录"), ElementsAre(Entry{"用户目录", 0, "quickOpenHome", ""}));
    EXPECT_THAT(arrivals(menu, "图片"),
                ElementsAre(Entry{"图片", 0, "quickOpenPath", "/Users/ada/Pictures"}));
}

TEST_F(MenuTransferTest, DestinationThatIsThereByDefaultIsLeftToTheCommandOfItsTitle) {
    platform().enterSandbox();
    show({"copyFile"});
    EXPECT_THAT(arrivals(handedOutMenu(), "复制到桌面"),
                ElementsAre(Entry{"复制到桌面", 0, "copyFilesToDesktop", ""},
                            Entry{"复制到桌面", 0, "copyFilesToDesktop", ""}));
}

TEST_F(MenuTransferTest, DefaultsOfOneKindAreLeftToCommandsWhateverTheOtherKindsHave) {
    platform().enterSandbox();
    show({"copyFile", "organizeFile"});
    const PropertyList ofUser = list({destination("p", "项目", "/p")});
    putDestinations({{"copy", ofUser}, {"quickOpen", ofUser}});
    EXPECT_THAT(arrivals(handedOutMenu(), "移动到桌面"),
                ElementsAre(Entry{"移动到桌面", 0, "moveFilesToDesktop", ""},
                            Entry{"移动到桌面", 0, "moveFilesToDesktop", ""}));
    putDestinations({{"move", ofUser}, {"quickOpen", ofUser}});
    EXPECT_THAT(arrivals(handedOutMenu(), "复制到桌面"),
                ElementsAre(Entry{"复制到桌面", 0, "copyFilesToDesktop", ""},
                            Entry{"复制到桌面", 0, "copyFilesToDesktop", ""}));
}

TEST_F(MenuTransferTest, UsersOwnPlaceNamedLikeACommandIsToldFromIt) {
    show({"quickOpen"});
    putDestinations({{"quickOpen", list({destination("d", "桌面", "/mine")})}});
    EXPECT_THAT(arrivals(handedOutMenu(), "桌面"),
                ElementsAre(Entry{"桌面", 1, "quickOpenPath", "/mine"}));
}

TEST_F(MenuTransferTest, DefaultPlaceNamedLikeACustomActionIsToldFromIt) {
    show({"quickOpen", "customActions"});
    putActions({script("p", "桌面", "/p.sh")});
    EXPECT_THAT(arrivals(handedOutMenu(), "桌面"),
                ElementsAre(Entry{"桌面", 1, "quickOpenPath", "/Users/ada/Desktop"},
                            Entry{"桌面", 0, "runScript__p", ""}));
}

TEST_F(MenuTransferTest, CustomActionNamedLikeACommandTakesTheTitleAndTheCommandGetsATag) {
    show({"pdfTools", "customActions"});
    putActions({shortcut("s", "合并 PDF", "S")});
    EXPECT_THAT(arrivals(handedOutMenu(), "合并 PDF"),
                ElementsAre(Entry{"合并 PDF", 1, "mergePDFs", ""},
                            Entry{"合并 PDF", 0, "runShortcut__s", ""}));
}

TEST_F(MenuTransferTest, CommandNamedLikeACustomActionThatIsNotShownIsToldFromIt) {
    show({"pdfTools"});
    putActions({shortcut("s", "合并 PDF", "S")});
    EXPECT_THAT(arrivals(handedOutMenu(), "合并 PDF"),
                ElementsAre(Entry{"合并 PDF", 1, "mergePDFs", ""}));
}

TEST_F(MenuTransferTest, CommandsThatATranslationGivesOneTitleAreToldApart) {
    show({"pdfTools"});
    platform().translations = {{"合并 PDF", "PDF"}, {"拆分 PDF", "PDF"}};
    EXPECT_THAT(arrivals(handedOutMenu(), "PDF"),
                ElementsAre(Entry{"PDF", 0, "mergePDFs", ""}, Entry{"PDF", 1, "splitPDFs", ""}));
}

TEST_F(MenuTransferTest, CustomActionApplicationAndPlaceOfOneNameAreToldApart) {
    show({"quickOpen", "openWith", "customActions"});
    putDestinations({{"quickOpen", list({destination("q", "编辑", "/q")})},
                     {"openApplication", list({destination("1", "编辑", "/1.app"),
                                               destination("2", "编辑", "/2.app")})}});
    putActions({script("p", "编辑", "/p.sh"), script("r", "编辑", "/r.sh")});
    EXPECT_THAT(
        arrivals(handedOutMenu(), "编辑"),
        ElementsAre(Entry{"编辑", 1, "quickOpenPath", "/q"},
                    Entry{"编辑", 2, "openWithApplicationPath", "/1.app"},
                    Entry{"编辑", 3, "openWithApplicationPath", "/2.app"},
                    Entry{"编辑", 0, "runScript__p", ""}, Entry{"编辑", 4, "runScript__r", ""}));
}

TEST_F(MenuTransferTest, TwoApplicationsOfOneNameAreToldApart) {
    show({"openWith"});
    putDestinations({{"openApplication", list({destination("1", "编辑", "/1.app"),
                                               destination("2", "编辑", "/2.app")})}});
    EXPECT_THAT(arrivals(handedOutMenu(), "编辑"),
                ElementsAre(Entry{"编辑", 0, "openWithApplicationPath", "/1.app"},
                            Entry{"编辑", 1, "openWithApplicationPath", "/2.app"}));
}

TEST_F(MenuTransferTest, ViewPresetKeepsItsTagAndEntriesNamedLikeItAreToldFromIt) {
    show({"viewOptions", "quickOpen"});
    putPresets({preset("v", "图标")});
    putDestinations({{"quickOpen", list({destination("q", "图标", "/q")})}});
    EXPECT_THAT(arrivals(handedOutMenu(), "图标"),
                ElementsAre(Entry{"图标", 1, "quickOpenPath", "/q"},
                            Entry{"图标", 700000, "finderViewPreset__v", ""}));
}

TEST_F(MenuTransferTest, EntriesThatDoTheSameNeedNoTag) {
    show({"openWith"});
    putDestinations({{"openApplication", list({destination("1", "编辑", "/same.app"),
                                               destination("2", "编辑", "/same.app")})}});
    expectNoTagIsGiven();
}

TEST_F(MenuTransferTest, EntriesWithoutATitleAreToldApartToo) {
    show({"quickOpen"});
    putDestinations(
        {{"quickOpen", list({destination("1", "", "/1"), destination("2", "", "/2")})}});
    EXPECT_THAT(arrivals(handedOutMenu(), ""), ElementsAre(Entry{"", 1, "quickOpenPath", "/1"},
                                                           Entry{"", 2, "quickOpenPath", "/2"}));
}

TEST_F(MenuTransferTest, TagsCountThroughSubmenusInMenuOrder) {
    platform().putPropertyList(featureSettingsPath,
                               Dictionary{{"enabledFeatureIDs", strings({"copyFile", "quickOpen"})},
                                          {"featureOrder", strings({"copyFile", "quickOpen"})}});
    putDestinations(
        {{"copy", list({destination("1", "项目", "/1"), destination("2", "项目", "/2")})},
         {"quickOpen", list({destination("3", "资料", "/3"), destination("4", "资料", "/4")})}});
    const Menu menu = handedOutMenu();
    std::vector<const MenuItem*> items;
    collect(menu, items);
    std::vector<std::int64_t> tags;
    for (const MenuItem* const item : items) {
        if (item->tag != 0 && item->tag < viewPresetTagBase) {
            tags.push_back(item->tag);
        }
    }
    EXPECT_THAT(tags, ElementsAre(1, 2, 3, 4));
}

TEST_F(MenuTransferTest, TagsSkipTheRangeOfTheViewPresets) {
    putPresets({preset("v", "图标"), preset("w", "列表")});
    Menu menu = {"", std::vector<MenuItem>(700'001, bareSender("同名", 0))};
    const auto context = std::make_shared<const FinderActionContext>(
        "quickOpenPath", "同名", FinderFeatureAction::openFolder(), FinderSelection(), std::nullopt,
        "/q", "");
    for (MenuItem& item : menu.items) {
        item.representedObject = context;
    }
    tagAmbiguousItems(menu, SettingsReading());
    EXPECT_EQ(menu.items[699'998].tag, 699'999);
    EXPECT_EQ(menu.items[699'999].tag, 700'002);
    EXPECT_EQ(menu.items[700'000].tag, 700'003);
}

// The way back.

class MenuTransferBackTest : public MenuTransferTest {
 protected:
    MenuTransferBackTest() {
        show({"quickOpen", "copyFile", "customActions"});
        putDestinations({{"quickOpen",
                          list({destination("1", "项目", "/1"), destination("2", "项目", "/2"),
                                destination("3", "资料", "/3"), destination("4", "脚本", "/4")})}});
        putActions({script("p", "脚本", "/p.sh")});
        menu_ = handedOutMenu();
    }

    /// "nothing", or the action and the destination that `sender` arrives as.
    std::string arrival(const MenuItem& sender) const {
        const FinderActionContextPointer context = click(sender, menu_);
        return context == nullptr ? "nothing"
                                  : context->actionID() + " " + context->destinationPath();
    }

    Menu menu_;
};

TEST_F(MenuTransferBackTest, IntactItemIsItself) {
    std::vector<const MenuItem*> items;
    collect(menu_, items);
    for (const MenuItem* const item : items) {
        EXPECT_EQ(click(*item, menu_).get(), attachedContext(*item)) << item->title;
    }
}

TEST_F(MenuTransferBackTest, TagAndTitleOfAnEntryAreThatEntry) {
    EXPECT_EQ(arrival(bareSender("项目", 2)), "quickOpenPath /2");
    EXPECT_EQ(arrival(bareSender("脚本", 3)), "quickOpenPath /4");
}

TEST_F(MenuTransferBackTest, TagWithAnotherTitleIsResolvedByTheTitle) {
    EXPECT_EQ(arrival(bareSender("脚本", 2)), "runScript__p ");
    EXPECT_EQ(arrival(bareSender("资料", 2)), "quickOpenPath /3");
}

TEST_F(MenuTransferBackTest, TitleThatOneDestinationHasIsThatDestination) {
    EXPECT_EQ(arrival(bareSender("资料", 0)), "quickOpenPath /3");
}

TEST_F(MenuTransferBackTest, TitleThatTwoDestinationsHaveIsNothingWithoutTheTag) {
    EXPECT_EQ(arrival(bareSender("项目", 0)), "nothing");
    EXPECT_EQ(arrival(bareSender("项目", 9)), "nothing");
}

TEST_F(MenuTransferBackTest, TitleThatIsInNoMenuIsNothing) {
    EXPECT_EQ(arrival(bareSender("旧项目", 0)), "nothing");
    EXPECT_EQ(arrival(bareSender("旧项目", 1)), "nothing");
}

TEST_F(MenuTransferBackTest, SenderWithAnIdentifierIsResolvedByWhatItCarries) {
    MenuItem sender = bareSender("资料", 0);
    sender.identifier = "unknown";
    EXPECT_EQ(arrival(sender), "nothing");
    sender = bareSender("项目", 2);
    sender.identifier = "runScript__p";
    EXPECT_EQ(arrival(sender), "runScript__p ");
}

TEST_F(MenuTransferBackTest, SenderWithAnyAttachedObjectIsResolvedByWhatItCarries) {
    for (const RepresentedObject& object :
         {RepresentedObject(ForeignObject{}), RepresentedObject(Dictionary{})}) {
        MenuItem sender = bareSender("项目", 2);
        sender.representedObject = object;
        EXPECT_EQ(arrival(sender), "nothing");
    }
}

TEST_F(MenuTransferBackTest, EntryOfTheMenuIsItEvenWhenTheSettingsNoLongerHaveIt) {
    putDestinations({{"quickOpen", PropertyList::Array()}});
    putActions({});
    EXPECT_EQ(arrival(bareSender("项目", 2)), "quickOpenPath /2");
    EXPECT_EQ(arrival(bareSender("资料", 0)), "quickOpenPath /3");
}

TEST_F(MenuTransferBackTest, ResolutionOfTheTitleGoesBeforeADestinationWithoutATag) {
    putActions({script("n", "资料", "/n.sh")});
    EXPECT_EQ(arrival(bareSender("资料", 0)), "runScript__n ");
}

TEST_F(MenuTransferBackTest, OnlyADestinationIsFoundByATitleThatTheSettingsNoLongerKnow) {
    putActions({script("p", "脚本", "/p.sh"), script("q", "备份", "/q.sh")});
    menu_ = handedOutMenu();
    putActions({});
    EXPECT_EQ(arrival(bareSender("脚本", 0)), "quickOpenPath /4");
    EXPECT_EQ(arrival(bareSender("备份", 0)), "nothing");
}

TEST_F(MenuTransferBackTest, ItemsWithoutAnActionAreNotEntries) {
    menu_ = {"", {MenuItem::opening({"资料", {}})}};
    EXPECT_EQ(arrival(bareSender("资料", 0)), "nothing");
}

// View presets that were reordered between the menu and the click.

class MenuTransferPresetTest : public MenuTransferTest {
 protected:
    MenuTransferPresetTest() {
        show({"viewOptions"});
        putPresets({preset("v", "图标"), preset("w", "列表"), preset("x", "分栏")});
        menu_ = handedOutMenu();
    }

    Menu menu_;
};

TEST_F(MenuTransferPresetTest, UnchangedPresetIsResolvedByItsTag) {
    const auto context = click(bareSender("列表", 700001), menu_);
    ASSERT_THAT(context, NotNull());
    EXPECT_EQ(context->actionID(), "finderViewPreset__w");
    EXPECT_EQ(context->presetID(), "w");
}

TEST_F(MenuTransferPresetTest, ReorderedPresetIsTheEntryThatWasClicked) {
    putPresets({preset("w", "列表"), preset("v", "图标"), preset("x", "分栏")});
    const auto context = click(bareSender("列表", 700001), menu_);
    ASSERT_THAT(context, NotNull());
    EXPECT_EQ(context->actionID(), "finderViewPreset__w");
    // As an intact item: its dictionary leaves the preset to the identifier of the action.
    EXPECT_EQ(context->presetID(), "");
}

TEST_F(MenuTransferPresetTest, WithoutThatMenuTheTagDecides) {
    putPresets({preset("w", "列表"), preset("v", "图标"), preset("x", "分栏")});
    EXPECT_EQ(click(bareSender("列表", 700001), Menu{})->actionID(), "finderViewPreset__v");
    EXPECT_EQ(click(bareSender("图标", 700002), menu_)->actionID(), "finderViewPreset__x");
}

TEST_F(MenuTransferPresetTest, RenamedPresetIsResolvedByItsTag) {
    putPresets({preset("v", "图标"), preset("w", "新名"), preset("x", "分栏")});
    EXPECT_EQ(click(bareSender("列表", 700001), menu_)->presetID(), "w");
}

TEST_F(MenuTransferPresetTest, TagBeyondThePresetsOfNowIsResolvedByTheTitle) {
    putPresets({preset("x", "分栏")});
    EXPECT_EQ(click(bareSender("分栏", 700002), menu_)->presetID(), "x");
    putPresets({preset("new", "分栏"), preset("v", "图标")});
    EXPECT_EQ(click(bareSender("分栏", 700002), menu_)->presetID(), "new");
    putPresets({});
    EXPECT_THAT(click(bareSender("分栏", 700002), menu_), IsNull());
}

}  // namespace
}  // namespace quorva
