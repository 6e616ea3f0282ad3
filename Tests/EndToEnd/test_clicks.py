"""Every way in which a click comes back: the record it queues, what it logs, and what follows."""

import json
import re
import time
import unittest
from uuid import UUID

import samples
from menu_model import ClickModel, MenuBuilder, Request, UNUSABLE, actionable_items
from quorva_process import (
    CUSTOM_SHORTCUT_ACTIONS, FINDER_VIEW_PRESETS, EndToEndTestCase, item_at)

NOTHING = Request()
AT_MENU = Request(["/Volumes/Work/a.txt", "/Volumes/Work/b.txt"], "/Volumes/Work")
AT_CLICK = Request(["/Volumes/Other/c.txt"], "/Volumes/Other")


def context(action_id, title="Title", action="requiresSelection", selected=(), targeted=None,
            destination="", preset=""):
    return {"type": "FinderActionContext", "actionID": action_id, "title": title, "action": action,
            "selectedPaths": list(selected), "targetedPath": targeted,
            "destinationPath": destination, "presetID": preset}


def dictionary(**entries):
    return {"type": "dictionary", **entries}


OTHER = {"type": "other", "value": "a string"}

# How an item arrives, the lines between "clicked sender=" and "action=", and what is queued as
# (actionID, title, destinationPath, presetID); None when the item means nothing.
ROUTES = {
    "a context": (
        {"title": "T", "representedObject": context("compressToZIP", "Zip", destination="/d",
                                                    preset="p")},
        [], ("compressToZIP", "Zip", "/d", "p")),
    "a context, whatever else the item says": (
        {"title": "Zed", "identifier": "openWithApplicationPath__zed", "tag": 700000,
         "representedObject": context("mine", "Mine", "createFile(json)")},
        [], ("mine", "Mine", "", "")),
    "a context with an unknown action": (
        {"title": "T", "representedObject": context("", "")}, [], ("", "", "", "")),
    "a dictionary": (
        {"title": "T", "representedObject": dictionary(
            actionID="finderViewPreset__list-size", title="列表 · 大小", selectedPaths=[],
            targetedPath="", destinationPath="", presetID="")},
        [], ("finderViewPreset__list-size", "列表 · 大小", "", "")),
    "a dictionary with everything": (
        {"title": "T", "representedObject": dictionary(
            actionID="a", title="b", destinationPath="/c", presetID="d")},
        [], ("a", "b", "/c", "d")),
    "a dictionary with the identifier alone": (
        {"title": "新建文件夹", "representedObject": dictionary(actionID="a")},
        [], ("a", "新建文件夹", "", "")),
    "a dictionary with values of other types": (
        {"title": "T", "representedObject": dictionary(
            actionID="a", title=1, selectedPaths="/x", targetedPath=2, destinationPath=["/c"],
            presetID={"d": 1})},
        [], ("a", "T", "", "")),
    "an empty dictionary": (
        {"title": "Zed", "identifier": "openWithApplicationPath__zed", "tag": 700000,
         "representedObject": dictionary()}, [], None),
    "a dictionary without an identifier": (
        {"title": "Zed", "identifier": "openWithApplicationPath__zed", "tag": 700000,
         "representedObject": dictionary(title="Zed", destinationPath="/d")}, [], None),
    "a dictionary whose identifier is a number": (
        {"title": "Zed", "identifier": "openWithApplicationPath__zed", "tag": 700000,
         "representedObject": dictionary(actionID=1, title="Zed")}, [], None),
    "an application's identifier": (
        {"title": "T", "identifier": "openWithApplicationPath__my__editor"},
        ["resolved open-with app from identifier=openWithApplicationPath__my__editor"
         " destination=/Volumes/Work/Editor.app"],
        ("openWithApplicationPath", "我的编辑器", "/Volumes/Work/Editor.app", "")),
    "an unknown application's identifier": (
        {"title": "T", "identifier": "openWithApplicationPath__none"}, [], None),
    "an unknown application's identifier with a tag that counts": (
        {"title": "T", "identifier": "openWithApplicationPath__none", "tag": 700001},
        ["resolved view preset from tag=700001 actionID=finderViewPreset__icon-kind"],
        ("finderViewPreset__icon-kind", "图标 · 种类", "", "icon-kind")),
    "an unknown application's identifier with a title that counts": (
        {"title": "Deploy", "identifier": "openWithApplicationPath__none"},
        ["resolved custom action from title=Deploy actionID=runScript__deploy"],
        ("runScript__deploy", "Deploy", "", "")),
    "an application's identifier in capitals": (
        {"title": "T", "identifier": "openWithApplicationPath__ZED"}, [], None),
    "a shortcut's identifier": (
        {"title": "T", "identifier": "runShortcut__resize"},
        ["resolved custom action from identifier=runShortcut__resize"],
        ("runShortcut__resize", "缩小图片", "", "")),
    "a script's identifier": (
        {"title": "T", "identifier": "runScript__deploy"},
        ["resolved custom action from identifier=runScript__deploy"],
        ("runScript__deploy", "Deploy", "", "")),
    "a shortcut's identifier with the prefix of scripts": (
        {"title": "T", "identifier": "runScript__resize"},
        ["resolved custom action from identifier=runScript__resize"],
        ("runScript__resize", "缩小图片", "", "")),
    "a script's identifier with the prefix of shortcuts": (
        {"title": "T", "identifier": "runShortcut__deploy"},
        ["resolved custom action from identifier=runShortcut__deploy"],
        ("runShortcut__deploy", "Deploy", "", "")),
    "an unknown action's identifier": ({"title": "T", "identifier": "runShortcut__x"}, [], None),
    "the prefix of actions alone": ({"title": "T", "identifier": "runShortcut__"}, [], None),
    "a preset's identifier": (
        {"title": "T", "identifier": "finderViewPreset__list-size"},
        ["resolved view preset from identifier=finderViewPreset__list-size"],
        ("finderViewPreset__list-size", "列表 · 大小", "", "list-size")),
    "an unknown preset's identifier": (
        {"title": "T", "identifier": "finderViewPreset__list"}, [], None),
    "the identifier before the tag and the title": (
        {"title": "Zed", "identifier": "finderViewPreset__list-size", "tag": 700001},
        ["resolved view preset from identifier=finderViewPreset__list-size"],
        ("finderViewPreset__list-size", "列表 · 大小", "", "list-size")),
    "an identifier without a prefix": ({"title": "T", "identifier": "compressToZIP"}, [], None),
    "an empty identifier": ({"title": "T", "identifier": ""}, [], None),
    "the first tag": (
        {"title": "T", "tag": 700000},
        ["resolved view preset from tag=700000 actionID=finderViewPreset__list-size"],
        ("finderViewPreset__list-size", "列表 · 大小", "", "list-size")),
    "the last tag": (
        {"title": "T", "tag": 700001},
        ["resolved view preset from tag=700001 actionID=finderViewPreset__icon-kind"],
        ("finderViewPreset__icon-kind", "图标 · 种类", "", "icon-kind")),
    "the tag before the title": (
        {"title": "Zed", "tag": 700000},
        ["resolved view preset from tag=700000 actionID=finderViewPreset__list-size"],
        ("finderViewPreset__list-size", "列表 · 大小", "", "list-size")),
    "the tag below the first": ({"title": "T", "tag": 699999}, [], None),
    "the tag beyond the last": ({"title": "T", "tag": 700002}, [], None),
    "the tag beyond the last with a title that counts": (
        {"title": "新建文件夹", "tag": 700002}, [], ("createFolder", "新建文件夹", "", "")),
    "a negative tag": ({"title": "T", "tag": -1}, [], None),
    "the largest tag": ({"title": "T", "tag": 2**63 - 1}, [], None),
    "the smallest tag whose difference does not overflow": (
        {"title": "T", "tag": -2**63 + 700000}, [], None),
    "a custom action's title": (
        {"title": "缩小图片"},
        ["resolved custom action from title=缩小图片 actionID=runShortcut__resize"],
        ("runShortcut__resize", "缩小图片", "", "")),
    "an application's title": (
        {"title": "Zed"},
        ["resolved open-with app from title=Zed destination=/Applications/Zed.app"],
        ("openWithApplicationPath", "Zed", "/Applications/Zed.app", "")),
    "a preset's title": (
        {"title": "图标 · 种类"},
        ["resolved view preset from title=图标 · 种类 actionID=finderViewPreset__icon-kind"],
        ("finderViewPreset__icon-kind", "图标 · 种类", "", "icon-kind")),
    "a preset's name as it is written in the file": ({"title": "图标 · 种类 2"}, [], None),
    "a command's title": (
        {"title": "调整图片大小..."}, [], ("resizeImages", "调整图片大小...", "", "")),
    "a command that is switched off": (
        {"title": "复制 MD5"}, [], ("copyMD5", "复制 MD5", "", "")),
    "a title with a blank behind it": ({"title": "Zed "}, [], None),
    "a title in capitals": ({"title": "ZED"}, [], None),
    "a feature's title": ({"title": "新建"}, [], None),
    "a destination's title": ({"title": "复制到项目"}, [], None),
    "a quick-open location's title": ({"title": "源代码"}, [], None),
    "an empty title": ({"title": ""}, [], None),
    "an object of another class with an identifier": (
        {"title": "T", "identifier": "runScript__deploy", "representedObject": OTHER},
        ["resolved custom action from identifier=runScript__deploy"],
        ("runScript__deploy", "Deploy", "", "")),
    "an object of another class with a title": (
        {"title": "新建文件夹", "representedObject": OTHER}, [],
        ("createFolder", "新建文件夹", "", "")),
    "an object of another class alone": ({"title": "T", "representedObject": OTHER}, [], None),
}


class ClickTestCase(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.settings = self.home.settings(
            feature_settings=samples.feature_settings(), **samples.user_data())
        self.home.write_settings(self.settings)

    def start(self):
        self.extension = self.start_extension()
        self.extension.request("toolbar")
        self.home.new_log_messages()
        return self.extension

    def check_queued(self, answer, expected, log):
        """One record, its lines and its events, and nothing else."""
        [record] = self.home.take_records()
        self.assert_record(record, expected)
        self.assertEqual(self.home.new_log_messages(), log)
        self.assert_handed_over(answer["events"])
        self.assertEqual(answer["unifiedLog"], [])

    def check_nothing(self, answer, log):
        self.assertEqual(self.home.take_records(), [])
        self.assertEqual(self.home.new_log_messages(), log)
        self.assertEqual((answer["events"], answer["unifiedLog"]), ([], []))


class RouteTest(ClickTestCase):

    def test_an_item_is_resolved_by_its_object_its_identifier_its_tag_and_its_title(self):
        extension = self.start()
        for name, (item, resolved, queued) in ROUTES.items():
            with self.subTest(item=name):
                answer = extension.send(item, AT_CLICK)
                clicked = "clicked sender=" + item["title"]
                if queued is None:
                    self.check_nothing(
                        answer, [clicked, "missing context for sender=" + item["title"]])
                    continue
                action_id, title, destination, preset = queued
                self.check_queued(answer, {
                    "actionID": action_id, "title": title, "destinationPath": destination,
                    "presetID": preset, "selectedPaths": ["/Volumes/Other/c.txt"],
                    "targetedPath": "/Volumes/Other",
                }, [clicked, *resolved,
                    f"action={action_id} title={title} selected=[\"/Volumes/Other/c.txt\"]"
                    f" target=/Volumes/Other destination={destination or 'nil'}",
                    "queued action: " + action_id])

    def test_the_model_of_the_generated_tests_resolves_the_same_items_alike(self):
        for name, (item, resolved, queued) in ROUTES.items():
            with self.subTest(item=name):
                click = ClickModel(self.settings).click(item, AT_CLICK)
                self.assertEqual(click.log[1:1 + len(resolved)], resolved)
                self.assertEqual(queued, click.record and tuple(
                    click.record[key] for key in ("actionID", "title", "destinationPath",
                                                  "presetID")))

    def test_a_title_that_several_lists_share_means_the_custom_action_first(self):
        title = "新建文件夹"
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [
            {"id": "1", "name": title, "shortcutName": "S"},
            {"id": "2", "name": title, "kind": "script", "scriptPath": "/s"}])
        self.home.write("CustomDestinations.plist", {"openApplication": [
            {"id": "3", "name": title, "path": "/3"}, {"id": "4", "name": title, "path": "/4"}]})
        self.home.write(FINDER_VIEW_PRESETS, [
            {"id": "5", "name": title, "viewMode": "", "sortMode": ""},
            {"id": "6", "name": title, "viewMode": "", "sortMode": ""}])
        extension = self.start()
        expected = ["runShortcut__1", "openWithApplicationPath", "finderViewPreset__5",
                    "createFolder"]
        for file in (CUSTOM_SHORTCUT_ACTIONS, "CustomDestinations.plist", FINDER_VIEW_PRESETS,
                     None):
            extension.send({"title": title}, AT_CLICK)
            [record] = self.home.take_records()
            self.assertEqual(record["actionID"], expected.pop(0))
            if file:
                self.home.write(file, UNUSABLE)

    def test_the_first_of_several_entries_with_one_id_is_meant(self):
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [
            {"id": "1", "name": "First", "shortcutName": "S"},
            {"id": "1", "name": "Second", "kind": "script", "scriptPath": "/s"}])
        extension = self.start()
        extension.send({"title": "T", "identifier": "runScript__1"}, AT_CLICK)
        [record] = self.home.take_records()
        self.assertEqual((record["actionID"], record["title"]), ("runScript__1", "First"))

    def test_an_item_means_what_the_settings_say_at_the_click(self):
        extension = self.start()
        menu = extension.menu(AT_MENU)
        path = item_at(menu, "自定义动作", "Deploy")
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [
            {"id": "new", "name": "Deploy", "shortcutName": "S"}])
        extension.click(path, AT_CLICK, delivery="finder")
        extension.click(path, AT_CLICK, delivery="intact")
        self.assertEqual([record["actionID"] for record in self.home.take_records()],
                         ["runShortcut__new", "runScript__deploy"])

    def test_the_tag_whose_difference_overflows_ends_the_process(self):
        for tag in (-2**63, -2**63 + 699999):
            with self.subTest(tag=tag):
                extension = self.start_mortal_extension()
                extension.send_line(json.dumps({
                    "id": 1, "request": "send", "item": {"title": "T", "tag": tag},
                    "selectedPaths": [], "targetedPath": None}))
                self.assertIsNone(extension.read_line())
                self.assertLess(extension.process.wait(), 0)
        self.assertEqual(self.home.records(), [])


class SelectionTest(ClickTestCase):

    # What Finder reports at the click, and what the record says after a menu for AT_MENU.
    CASES = [
        (Request(["/c"], "/d"), ["/c"], "/d"),
        (Request([], "/d"), AT_MENU.selected, "/d"),
        (Request(["/c"], None), ["/c"], AT_MENU.targeted),
        (Request([], None), AT_MENU.selected, AT_MENU.targeted),
    ]

    def test_what_finder_says_at_the_click_counts_and_else_what_it_said_at_the_menu(self):
        extension = self.start()
        menu = extension.menu(AT_MENU)
        for titles in (("压缩与解压缩", "压缩为 ZIP"), ("调整显示方式", "列表 · 大小"),
                       ("复制到", "复制到文件夹", "复制到项目"), ("用应用打开", "Zed")):
            for request, selected, targeted in self.CASES:
                with self.subTest(item=titles, request=request):
                    extension.click(item_at(menu, *titles), request)
                    [record] = self.home.take_records()
                    self.assertEqual((record["selectedPaths"], record["targetedPath"]),
                                     (selected, targeted))

    def test_an_item_that_was_resolved_from_its_title_has_only_what_finder_says_at_the_click(self):
        extension = self.start()
        for request in (Request(["/c"], "/d"), Request([], "/d"), Request(["/c"], None), NOTHING):
            extension.send({"title": "压缩为 ZIP"}, request)
            [record] = self.home.take_records()
            self.assertEqual((record["selectedPaths"], record["targetedPath"]),
                             (request.selected, request.targeted or ""))

    def test_a_click_with_nothing_at_all_queues_an_empty_selection_and_an_empty_target(self):
        extension = self.start()
        self.home.new_log_messages()
        answer = extension.send({"title": "压缩为 ZIP"}, NOTHING)
        self.check_queued(answer, {
            "actionID": "compressToZIP", "destinationPath": "", "presetID": "", "selectedPaths": [],
            "targetedPath": "", "title": "压缩为 ZIP",
        }, ["clicked sender=压缩为 ZIP",
            "action=compressToZIP title=压缩为 ZIP selected=[] target=nil destination=nil",
            "queued action: compressToZIP"])

    def test_the_order_of_the_selection_is_kept(self):
        extension = self.start()
        selected = ["/z", "/a", "/m/n", "/a", "/Z"]
        extension.send({"title": "压缩为 ZIP"}, Request(selected))
        self.assertEqual(self.home.take_records()[0]["selectedPaths"], selected)

    def test_a_dictionary_s_paths_count_when_finder_says_nothing(self):
        extension = self.start()
        extension.send({"title": "T", "representedObject": dictionary(
            actionID="a", selectedPaths=["/x", "/y"], targetedPath="/t")}, NOTHING)
        [record] = self.home.take_records()
        self.assertEqual((record["selectedPaths"], record["targetedPath"]), (["/x", "/y"], "/t"))

    def test_what_finder_reports_ends_with_the_request(self):
        extension = self.start()
        extension.menu(AT_MENU)
        extension.send({"title": "压缩为 ZIP"}, AT_CLICK)
        self.home.take_records()
        extension.answer({"id": 1, "request": "send", "item": {"title": "压缩为 ZIP"}})
        [record] = self.home.take_records()
        self.assertEqual((record["selectedPaths"], record["targetedPath"]), ([], ""))


class EveryEntryTest(ClickTestCase):
    """Every enabled entry of menus with all kinds of user data, delivered both ways."""

    def test_an_intact_click_queues_what_the_entry_carries(self):
        extension = self.start()
        for settings in self.layouts():
            menu = extension.menu(AT_MENU)
            for path, item in actionable_items(menu):
                with self.subTest(title=item["title"]):
                    self.home.new_log_messages()
                    click = ClickModel(settings).click(item, AT_CLICK)
                    self.check_queued(extension.click(path, AT_CLICK), click.record, click.log)

    def test_a_click_as_finder_delivers_it_queues_the_same_but_for_a_preset_s_id(self):
        extension = self.start()
        for _ in self.layouts():
            menu = extension.menu(AT_MENU)
            presets = {item["title"]: item["identifier"].removeprefix("finderViewPreset__")
                       for _, item in actionable_items(menu) if item["tag"] >= 700000}
            for path, item in actionable_items(menu):
                with self.subTest(title=item["title"]):
                    extension.click(path, AT_CLICK, delivery="intact")
                    [intact] = self.home.take_records()
                    extension.click(path, AT_CLICK, delivery="finder")
                    [delivered] = self.home.take_records()
                    self.assertEqual(intact["presetID"], "")
                    self.assertEqual(delivered["presetID"], presets.get(item["title"], ""))
                    for record in (intact, delivered):
                        del record["createdAt"], record["presetID"]
                    self.assertEqual(delivered, intact)

    def test_a_click_as_finder_delivers_it_logs_how_it_was_resolved(self):
        extension = self.start()
        for settings in self.layouts():
            menu = extension.menu(AT_MENU)
            self.home.new_log_messages()
            for path, item in actionable_items(menu):
                with self.subTest(title=item["title"]):
                    click = ClickModel(settings, menu).click(
                        {"title": item["title"], "tag": item["tag"]}, AT_CLICK)
                    self.check_queued(extension.click(path, AT_CLICK, delivery="finder"),
                                      click.record, click.log)

    def test_without_a_selection_at_the_click_only_what_kept_its_context_has_the_menu_s(self):
        extension = self.start()
        menu = extension.menu(AT_MENU)
        for titles, selected in {
                ("复制到", "复制到文件夹", "复制到项目"): AT_MENU.selected,
                ("移动到", "移动到文件夹", "移动到收件箱"): AT_MENU.selected,
                ("打开", "源代码"): AT_MENU.selected,
                ("用应用打开", "Zed"): [],
                ("自定义动作", "Deploy"): [],
                ("压缩与解压缩", "压缩为 ZIP"): [],
                ("调整显示方式", "列表 · 大小"): []}.items():
            with self.subTest(item=titles):
                extension.click(item_at(menu, *titles), NOTHING, delivery="finder")
                [record] = self.home.take_records()
                self.assertEqual(record["selectedPaths"], selected)

    def test_a_disabled_entry_can_t_be_clicked(self):
        extension = self.start()
        menu = extension.menu(NOTHING)
        path = item_at(menu, "压缩与解压缩", "压缩为 ZIP")
        for delivery in ("intact", "finder"):
            answer = extension.answer({"id": 1, "request": "click", "indexPath": path,
                                       "delivery": delivery, "selectedPaths": ["/a"],
                                       "targetedPath": None})
            self.assertIn("error", answer)
        self.assertEqual(self.home.records(), [])

    def layouts(self):
        for layout in ("collapsed", "expanded"):
            for grouped in (False, True):
                settings = self.home.settings(
                    feature_settings=samples.feature_settings(layout, grouped),
                    **samples.user_data())
                self.home.write_settings(settings)
                yield settings


class RecordTest(ClickTestCase):

    def test_a_record_has_seven_members_in_the_order_of_their_names(self):
        extension = self.start()
        extension.send({"title": "压缩为 ZIP"}, AT_CLICK)
        [file] = self.home.record_files()
        text = file.read_bytes().decode("utf-8")
        names = [name for name, _ in json.loads(text, object_pairs_hook=list)]
        self.assertEqual(names, [
            "actionID", "createdAt", "destinationPath", "presetID", "selectedPaths",
            "targetedPath", "title"])
        self.assertGreaterEqual(text.count("\n"), 8)

    def test_a_record_is_named_by_a_random_uuid_in_capitals(self):
        extension = self.start()
        for _ in range(3):
            extension.send({"title": "压缩为 ZIP"}, AT_CLICK)
        names = [file.name for file in self.home.record_files()]
        self.assertEqual(len(set(names)), 3)
        for name in names:
            self.assertRegex(name, r"\A[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\.json\Z")
            self.assertEqual(UUID(name.removesuffix(".json")).version, 4)

    def test_a_record_knows_when_it_was_made(self):
        extension = self.start()
        before = time.time()
        extension.send({"title": "压缩为 ZIP"}, AT_CLICK)
        after = time.time()
        [record] = self.home.records()
        self.assertTrue(before - 0.001 <= record["createdAt"] <= after + 0.001,
                        (before, record["createdAt"], after))
        self.assertNotEqual(record["createdAt"], int(record["createdAt"]))

    def test_every_click_leaves_a_record_of_its_own_and_nothing_else_in_the_queue(self):
        extension = self.start()
        for _ in range(20):
            extension.send({"title": "压缩为 ZIP"}, AT_CLICK)
        names = sorted(path.name for path in self.home.queue.iterdir())
        self.assertEqual(len(names), 20)
        self.assertTrue(all(re.fullmatch(r"[0-9A-F-]{36}\.json", name) for name in names), names)

    def test_the_same_click_twice_queues_two_records(self):
        extension = self.start()
        menu = extension.menu(AT_MENU)
        path = item_at(menu, "压缩与解压缩", "压缩为 ZIP")
        extension.click(path, AT_CLICK)
        extension.click(path, AT_CLICK)
        first, second = self.home.take_records()
        self.assertLessEqual(first.pop("createdAt"), second.pop("createdAt"))
        self.assertEqual(first, second)

    def test_a_click_leaves_other_files_of_the_queue_alone(self):
        self.home.queue.mkdir(parents=True)
        (self.home.queue / "other.json").write_text("{")
        extension = self.start()
        extension.send({"title": "压缩为 ZIP"}, AT_CLICK)
        self.assertEqual((self.home.queue / "other.json").read_text(), "{")
        self.assertEqual(len(self.home.record_files()), 2)


class EveryRouteOfEveryEntryTest(ClickTestCase):
    """Each kind of entry by each route that can carry it."""

    def test_each_kind_of_entry_by_each_route(self):
        extension = self.start()
        builder = MenuBuilder(self.settings, AT_MENU)
        menu = builder.menu()
        self.assertEqual(extension.menu(AT_MENU), menu)
        self.home.new_log_messages()
        for _, item in actionable_items(menu):
            represented = item["representedObject"]
            by_identifier = {"title": "T", "identifier": item["identifier"]}
            routes = {
                "the object": {"title": "T", "representedObject": represented},
                "the dictionary": {"title": "T", "representedObject": {
                    **represented, "type": "dictionary",
                    "targetedPath": represented["targetedPath"] or ""}},
                "the identifier": {key: value for key, value in by_identifier.items() if value},
                "the tag": {"title": "T", "tag": item["tag"]},
                "the title": {"title": item["title"]},
            }
            for name, route in routes.items():
                with self.subTest(entry=item["title"], route=name):
                    click = ClickModel(self.settings, menu).click(route, AT_CLICK)
                    answer = extension.send(route, AT_CLICK)
                    if click.record:
                        self.check_queued(answer, click.record, click.log)
                    else:
                        self.check_nothing(answer, click.log)


if __name__ == "__main__":
    unittest.main()
