"""Entries that show the same title: the tags that they get, and what a click on each does."""

import unittest

import samples
from menu_model import PRESET_TAG_BASE, UNUSABLE, MenuBuilder, Request, actionable_items
from quorva_process import SETTINGS_FILES, EndToEndTestCase

AT_MENU = Request(["/Volumes/Work/a.txt"], "/Volumes/Work")
AT_CLICK = Request(["/Volumes/Other/c.txt"], "/Volumes/Other")
NOTHING = Request()

HOME = "HOME"


def destinations(**kinds):
    """A file of destinations, each given as its name and its path."""
    return {"custom_destinations": {kind: [
        {"id": f"{kind}-{number}", "name": name, "path": path}
        for number, (name, path) in enumerate(entries)] for kind, entries in kinds.items()}}


def actions(*names):
    """A file of custom actions, which are a shortcut and a script by turns."""
    return {"custom_shortcut_actions": [
        {"id": str(number), "name": name, "kind": ["shortcut", "script"][number % 2],
         "shortcutName": "S", "scriptPath": "/s"} for number, name in enumerate(names)]}


def presets(*ids_and_names):
    return {"finder_view_presets": [
        {"id": preset, "name": name, "viewMode": "list", "sortMode": "name"}
        for preset, name in ids_and_names]}


def copy(path):
    return "copyFilesToFolder", path


def move(path):
    return "moveFilesToFolder", path


def place(path):
    return "quickOpenPath", path


def application(path):
    return "openWithApplicationPath", path


def other(action_id):
    return action_id, ""


FIRST_ACTION, SECOND_ACTION = other("runShortcut__0"), other("runScript__1")
ZIP = other("compressToZIP")
P, Q = other("finderViewPreset__p"), other("finderViewPreset__q")

# Per case the settings, a title, what an item means that has only this title, and all entries of
# the menu with the title: the tag, and the action and the path of the record.
CASES = {
    "two places to copy to": (
        destinations(copy=[("同名", "/1"), ("同名", "/2")]),
        "复制到同名", None, [(1, copy("/1")), (2, copy("/2"))]),
    "two places to move to": (
        destinations(move=[("同名", "/1"), ("同名", "/2")]),
        "移动到同名", None, [(1, move("/1")), (2, move("/2"))]),
    "two places to open": (
        destinations(quickOpen=[("同名", "/1"), ("同名", "/2")]),
        "同名", None, [(1, place("/1")), (2, place("/2"))]),
    "three places, of which two are one": (
        destinations(copy=[("同名", "/1"), ("同名", "/2"), ("同名", "/1")]),
        "复制到同名", None, [(1, copy("/1")), (2, copy("/2")), (3, copy("/1"))]),
    "two places without a name": (
        destinations(quickOpen=[("", "/1"), ("", "/2")]),
        "", None, [(1, place("/1")), (2, place("/2"))]),
    "a place to copy to like a command": (
        destinations(copy=[("桌面", "/Volumes/Desk")]),
        "复制到桌面", other("copyFilesToDesktop"),
        [(0, other("copyFilesToDesktop")), (1, copy("/Volumes/Desk"))]),
    "a place to move to like a command": (
        destinations(move=[("桌面", "/Volumes/Desk")]),
        "移动到桌面", other("moveFilesToDesktop"),
        [(0, other("moveFilesToDesktop")), (1, move("/Volumes/Desk"))]),
    "a place to open like a command": (
        destinations(quickOpen=[("压缩为 ZIP", "/zip")]),
        "压缩为 ZIP", ZIP, [(1, place("/zip")), (0, ZIP)]),
    "a place to open like another command of its menu": (
        destinations(quickOpen=[("打开剪贴板路径", "/clip")]),
        "打开剪贴板路径", other("quickOpenClipboardPath"),
        [(1, place("/clip")), (0, other("quickOpenClipboardPath"))]),
    "a place of the user's like a built-in one": (
        destinations(quickOpen=[("桌面", "/Volumes/Desk")]),
        "桌面", other("quickOpenDesktop"), [(1, place("/Volumes/Desk"))]),
    "a place of the user's that is a built-in one": (
        destinations(quickOpen=[("用户目录", HOME)]),
        "用户目录", other("quickOpenHome"), [(1, place(HOME))]),
    "a place to open like a place to copy to": (
        destinations(quickOpen=[("复制到同名", "/1")], copy=[("同名", "/2")]),
        "复制到同名", None, [(1, place("/1")), (2, copy("/2"))]),
    "a custom action like an application": (
        {**actions("Zed"), **destinations(openApplication=[("Zed", "/Zed.app")])},
        "Zed", FIRST_ACTION, [(1, application("/Zed.app")), (0, FIRST_ACTION)]),
    "a custom action like a command": (
        actions("压缩为 ZIP"), "压缩为 ZIP", FIRST_ACTION, [(1, ZIP), (0, FIRST_ACTION)]),
    "a custom action like a place to open": (
        {**actions("源代码"), **destinations(quickOpen=[("源代码", "/src")])},
        "源代码", FIRST_ACTION, [(1, place("/src")), (0, FIRST_ACTION)]),
    "a custom action like a place to copy to": (
        {**actions("复制到同名"), **destinations(copy=[("同名", "/1")])},
        "复制到同名", FIRST_ACTION, [(1, copy("/1")), (0, FIRST_ACTION)]),
    "a custom action like a preset": (
        {**actions("P"), **presets(("p", "P"))},
        "P", FIRST_ACTION, [(700000, P), (0, FIRST_ACTION)]),
    "two custom actions": (
        actions("同名", "同名"), "同名", FIRST_ACTION, [(0, FIRST_ACTION), (1, SECOND_ACTION)]),
    "two applications": (
        destinations(openApplication=[("同名", "/1.app"), ("同名", "/2.app")]),
        "同名", application("/1.app"), [(0, application("/1.app")), (1, application("/2.app"))]),
    "one application twice": (
        destinations(openApplication=[("同名", "/1.app"), ("同名", "/1.app")]),
        "同名", application("/1.app"), [(0, application("/1.app")), (0, application("/1.app"))]),
    "an application like a command": (
        destinations(openApplication=[("压缩为 ZIP", "/1.app")]),
        "压缩为 ZIP", application("/1.app"), [(1, ZIP), (0, application("/1.app"))]),
    "an application like a place to open": (
        destinations(quickOpen=[("同名", "/1")], openApplication=[("同名", "/1.app")]),
        "同名", application("/1.app"), [(1, place("/1")), (0, application("/1.app"))]),
    "an application like a preset": (
        {**destinations(openApplication=[("P", "/P.app")]), **presets(("p", "P"))},
        "P", application("/P.app"), [(0, application("/P.app")), (700000, P)]),
    "two presets": (
        presets(("p", "P"), ("q", "P")), "P", P, [(700000, P), (700001, Q)]),
    "two presets but for the numbers behind their names": (
        presets(("p", "列表 · P 1"), ("q", "列表 · P 2")),
        "列表 · P", P, [(700000, P), (700001, Q)]),
    "a preset like a command": (
        presets(("p", "压缩为 ZIP")), "压缩为 ZIP", P, [(1, ZIP), (700000, P)]),
    "a preset like a place to open": (
        {**presets(("p", "P")), **destinations(quickOpen=[("P", "/P")])},
        "P", P, [(1, place("/P")), (700000, P)]),
    "one of each kind": (
        {**actions("压缩为 ZIP"), **presets(("p", "压缩为 ZIP")), **destinations(
            quickOpen=[("压缩为 ZIP", "/zip")], openApplication=[("压缩为 ZIP", "/Zip.app")])},
        "压缩为 ZIP", FIRST_ACTION,
        [(1, place("/zip")), (2, ZIP), (3, application("/Zip.app")), (700000, P),
         (0, FIRST_ACTION)]),
    "a custom action that the menu does not show": (
        {"feature_settings": {"enabledFeatureIDs": ["archiveTools"],
                              "featureOrder": samples.ALL_FEATURES, "menuLayout": "expanded"},
         **actions("压缩为 ZIP")},
        "压缩为 ZIP", FIRST_ACTION, [(1, ZIP)]),
    "a custom action like a built-in place": (
        actions("桌面"), "桌面", FIRST_ACTION, [(1, place(HOME + "/Desktop")), (0, FIRST_ACTION)]),
    "a custom action like a built-in place to copy to": (
        actions("复制到桌面"), "复制到桌面", FIRST_ACTION,
        [(1, other("copyFilesToDesktop")), (2, copy(HOME + "/Desktop")), (0, FIRST_ACTION)]),
    "a place to open like a place to copy to that is built in": (
        destinations(quickOpen=[("复制到桌面", "/1")]), "复制到桌面", other("copyFilesToDesktop"),
        [(1, place("/1")), (0, other("copyFilesToDesktop")), (0, copy(HOME + "/Desktop"))]),
    "a built-in place to copy to": (
        {}, "复制到桌面", other("copyFilesToDesktop"),
        [(0, other("copyFilesToDesktop")), (0, copy(HOME + "/Desktop"))]),
    "a built-in place to move to, where only those to copy to are the user's": (
        destinations(copy=[]), "移动到下载", other("moveFilesToDownloads"),
        [(0, other("moveFilesToDownloads")), (0, move(HOME + "/Downloads"))]),
    "a built-in place to open, where the file is unusable": (
        {"custom_destinations": {"quickOpen": 1}}, "用户目录", other("quickOpenHome"),
        [(0, place(HOME))]),
    "a built-in place to open without a command": (
        {}, "图片", place(HOME + "/Pictures"), [(0, place(HOME + "/Pictures"))]),
    "a place to open that is alone": (
        destinations(quickOpen=[("源代码", "/src")]), "源代码", place("/src"), [(0, place("/src"))]),
}


class EqualTitlesTestCase(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.extension = self.start_extension()

    def placed(self, files):
        """The files with this home in place of HOME."""
        if isinstance(files, dict):
            return {key: self.placed(value) for key, value in files.items()}
        if isinstance(files, (list, tuple)):
            return type(files)(self.placed(value) for value in files)
        if isinstance(files, str) and files.startswith(HOME):
            return str(self.home.path) + files.removeprefix(HOME)
        return files

    def write(self, **files):
        files.setdefault("feature_settings", samples.feature_settings("expanded"))
        settings = self.home.settings(**self.placed(files))
        self.home.write_settings(settings)
        return settings

    def menu(self, request=AT_MENU, **files):
        """Writes the settings and returns all entries of the menu, with their index paths."""
        self.write(**files)
        return list(actionable_items(self.extension.menu(request)))

    def queued(self):
        """The action and the path of what the last click queued."""
        records = [(record["actionID"], record["destinationPath"])
                   for record in self.home.take_records()]
        self.assertLessEqual(len(records), 1)
        return records[0] if records else None

    def sent(self, **item):
        self.extension.send(item, AT_CLICK)
        return self.queued()

    def clicked(self, path, delivery):
        self.extension.click(path, AT_CLICK, delivery)
        return self.queued()


class EqualTitlesTest(EqualTitlesTestCase):

    def test_each_entry_is_what_a_click_acts_on_by_each_route(self):
        for case, (files, title, by_title, expected) in CASES.items():
            with self.subTest(case=case):
                expected = [(tag, self.placed(entry)) for tag, entry in expected]
                entries = self.menu(**files)
                shown = [(path, item) for path, item in entries if item["title"] == title]
                self.assertEqual([item["tag"] for _, item in shown], [tag for tag, _ in expected])
                self.assertEqual(self.sent(title=title), self.placed(by_title), "by its title")
                for (path, item), (tag, entry) in zip(shown, expected):
                    self.check_routes(path, item, tag, entry, self.placed(by_title))

    def check_routes(self, path, item, tag, entry, by_title):
        self.assertEqual(self.clicked(path, "intact"), entry, "intact")
        # Without a tag the title decides, which is the entry or the better one of the catalogue.
        delivered = entry if tag else by_title
        self.assertEqual(self.clicked(path, "finder"), delivered, f"by Finder, {tag=}")
        self.assertEqual(self.sent(title=item["title"], tag=tag), delivered, f"sent, {tag=}")
        if item["identifier"]:
            self.assertEqual(self.sent(title="?", identifier=item["identifier"]), entry,
                             item["identifier"])

    def test_no_other_entry_of_the_menu_has_a_tag(self):
        for case, (files, title, _, _) in CASES.items():
            with self.subTest(case=case):
                tagged = {item["title"] for _, item in self.menu(**files)
                          if 0 < item["tag"] < PRESET_TAG_BASE}
                self.assertLessEqual(tagged, {title})

    def test_a_tag_depends_neither_on_the_selection_nor_on_the_layout(self):
        for case, (files, _, _, _) in CASES.items():
            with self.subTest(case=case):
                tags = [item["tag"] for _, item in self.menu(**files)]
                self.assertEqual([item["tag"] for _, item in self.menu(NOTHING, **files)], tags)
                if "feature_settings" not in files:
                    collapsed = samples.feature_settings("collapsed", grouped=True)
                    self.assertEqual([item["tag"] for _, item in self.menu(
                        feature_settings=collapsed, **files)], tags)

    def test_the_tags_of_one_menu_run_through_all_its_titles(self):
        entries = self.menu(**actions("Zed", "压缩为 ZIP"), **destinations(
            copy=[("同名", "/1"), ("同名", "/2")], quickOpen=[("桌面", "/Desk")],
            openApplication=[("Zed", "/Zed.app")]))
        self.assertEqual([(item["tag"], item["title"]) for _, item in entries
                          if 0 < item["tag"] < PRESET_TAG_BASE], [
            (1, "桌面"), (2, "复制到同名"), (3, "复制到同名"), (4, "压缩为 ZIP"), (5, "Zed")])

    def test_the_rest_of_the_menu_is_as_ever(self):
        for case, (files, _, _, _) in CASES.items():
            with self.subTest(case=case):
                settings = self.write(**files)
                self.assertEqual(self.extension.menu(AT_MENU),
                                 MenuBuilder(settings, AT_MENU).menu())

    def test_a_tagged_entry_has_the_selection_of_its_menu_where_finder_gives_none(self):
        self.menu(**actions("Zed"), **destinations(openApplication=[("Zed", "/Zed.app")]))
        self.extension.send({"title": "Zed", "tag": 1}, NOTHING)
        [record] = self.home.take_records()
        self.assertEqual((record["selectedPaths"], record["targetedPath"]),
                         (AT_MENU.selected, AT_MENU.targeted))

    def test_a_tagged_entry_is_logged_like_one_that_kept_its_object(self):
        self.menu(**destinations(copy=[("同名", "/1"), ("同名", "/2")]))
        self.home.new_log_messages()
        self.sent(title="复制到同名", tag=2)
        self.assertEqual(self.home.new_log_messages(), [
            "clicked sender=复制到同名",
            'action=copyFilesToFolder title=复制到同名 selected=["/Volumes/Other/c.txt"]'
            " target=/Volumes/Other destination=/2",
            "queued action: copyFilesToFolder"])


TWINS = destinations(copy=[("同名", "/1"), ("同名", "/2")])
PRESETS = presets(("p", "P"), ("q", "Q"))
TURNED_PRESETS = presets(("q", "Q"), ("p", "P"))

# Per case: the settings of the first menu, those that follow, whether a menu was given for them
# too, the item that is then delivered, and the action and the path of the record.
CHANGES = {
    "nothing but the item": (TWINS, TWINS, False, {"title": "复制到同名", "tag": 2}, copy("/2")),
    "the destinations have gone": (TWINS, {}, False, {"title": "复制到同名", "tag": 2}, copy("/2")),
    "the destinations have gone from the menu too": (
        TWINS, {}, True, {"title": "复制到同名", "tag": 2}, None),
    "the destinations are turned around in another menu": (
        TWINS, destinations(copy=[("同名", "/2"), ("同名", "/1")]), True,
        {"title": "复制到同名", "tag": 2}, copy("/1")),
    "one destination is left in another menu": (
        TWINS, destinations(copy=[("同名", "/2")]), True,
        {"title": "复制到同名", "tag": 1}, copy("/2")),
    "a tag of another title": (TWINS, TWINS, False, {"title": "压缩为 ZIP", "tag": 1}, ZIP),
    "a tag that no entry has": (TWINS, TWINS, False, {"title": "复制到同名", "tag": 3}, None),
    "a negative tag": (TWINS, TWINS, False, {"title": "复制到同名", "tag": -1}, None),
    "a tag and an identifier": (
        TWINS, TWINS, False, {"title": "复制到同名", "tag": 1, "identifier": "x"}, None),
    "a tag and another object": (
        TWINS, TWINS, False, {"title": "复制到同名", "tag": 1, "representedObject": {
            "type": "dictionary", "actionID": "runScript__1"}}, SECOND_ACTION),
    "a title alone and an identifier": (
        destinations(copy=[("同名", "/1")]), {}, False,
        {"title": "复制到同名", "identifier": "x"}, None),
    "a destination has gone": (
        destinations(quickOpen=[("源代码", "/src")]), {}, False, {"title": "源代码"}, place("/src")),
    "a destination has moved": (
        destinations(quickOpen=[("源代码", "/src")]), destinations(quickOpen=[("源代码", "/new")]),
        False, {"title": "源代码"}, place("/src")),
    "a destination has moved in another menu": (
        destinations(quickOpen=[("源代码", "/src")]), destinations(quickOpen=[("源代码", "/new")]),
        True, {"title": "源代码"}, place("/new")),
    "a custom action has taken a destination's name": (
        destinations(quickOpen=[("源代码", "/src")]), actions("源代码"), False,
        {"title": "源代码"}, FIRST_ACTION),
    "a custom action has taken a command's name": (
        {}, actions("压缩为 ZIP"), False, {"title": "压缩为 ZIP", "tag": 0}, FIRST_ACTION),
    "a custom action has given a command its name back": (
        actions("压缩为 ZIP"), {}, False, {"title": "压缩为 ZIP", "tag": 1}, ZIP),
    "a custom action with a command's name has gone": (
        actions("压缩为 ZIP"), {}, False, {"title": "压缩为 ZIP", "tag": 0}, ZIP),
    "an application has gone": (
        destinations(openApplication=[("Zed", "/Zed.app")]), {}, False, {"title": "Zed"}, None),
    "presets are turned around": (
        PRESETS, TURNED_PRESETS, False, {"title": "P", "tag": 700000}, P),
    "presets are turned around in another menu": (
        PRESETS, TURNED_PRESETS, True, {"title": "P", "tag": 700000}, Q),
    "presets are turned around, and the item has an identifier": (
        PRESETS, TURNED_PRESETS, False, {"title": "P", "tag": 700000, "identifier": "x"}, Q),
    "a preset is renamed": (
        PRESETS, presets(("p", "R"), ("q", "Q")), False, {"title": "P", "tag": 700000}, P),
    "a preset's place is taken by a new one": (
        PRESETS, presets(("r", "R"), ("q", "Q")), False, {"title": "P", "tag": 700000},
        other("finderViewPreset__r")),
    "a preset has moved up from beyond the last": (
        PRESETS, presets(("q", "Q")), False, {"title": "Q", "tag": 700001}, Q),
}


class ChangedSettingsTest(EqualTitlesTestCase):

    def test_what_a_click_acts_on_when_the_settings_change_before_it(self):
        for case, (before, after, again, item, expected) in CHANGES.items():
            with self.subTest(case=case):
                self.menu(**before)
                if again:
                    self.menu(**after)
                else:
                    self.write(**after)
                self.assertEqual(self.sent(**item), expected)

    def test_without_a_menu_a_tag_means_nothing_and_a_preset_s_tag_comes_before_its_title(self):
        self.write(**PRESETS, **TWINS)
        self.assertEqual(self.sent(title="复制到同名", tag=1), None)
        self.assertEqual(self.sent(title="P", tag=700001), Q)

    def test_a_preset_of_the_menu_is_recorded_with_its_dictionary_and_one_of_now_with_its_id(self):
        self.menu(**PRESETS)
        for files, preset_id in ((TURNED_PRESETS, ""), (PRESETS, "p")):
            self.write(**files)
            self.extension.send({"title": "P", "tag": 700000}, NOTHING)
            [record] = self.home.take_records()
            self.assertEqual((record["actionID"], record["title"], record["presetID"]),
                             ("finderViewPreset__p", "P", preset_id))
            self.assertEqual(record["selectedPaths"], [] if preset_id else AT_MENU.selected)

    def test_a_change_of_each_file_leaves_tagged_entries_as_they_were(self):
        self.menu(**TWINS)
        for name in SETTINGS_FILES:
            self.home.write(name, UNUSABLE)
            self.assertEqual(self.sent(title="复制到同名", tag=1), copy("/1"))


if __name__ == "__main__":
    unittest.main()
