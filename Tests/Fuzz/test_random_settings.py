"""Random settings, menus of random selections, and clicks by random routes.

Each case has a seed of its own. QUORVA_FUZZ_CASES says how many cases there are, and
QUORVA_FUZZ_SEED with which one they begin, so that a case that failed can be run alone.
"""

import datetime
import os
import plistlib
import random
import unittest

from catalogue import COMMANDS, TITLES
from menu_model import (
    DESTINATION_KINDS, OPEN_WITH_PREFIX, PRESET_PREFIX, PRESET_TAG_BASE, SCRIPT_PREFIX,
    SHORTCUT_PREFIX, UNUSABLE, ClickModel, MenuBuilder, Request, actionable_items, identity)
from quorva_process import BINARY, SETTINGS_FILES, XML, EndToEndTestCase

CASES = int(os.environ.get("QUORVA_FUZZ_CASES", "1000"))
FIRST_SEED = int(os.environ.get("QUORVA_FUZZ_SEED", "1"))

FEATURE_IDS = list(TITLES)
COMMAND_IDS = [command[0] for commands in COMMANDS.values() for command in commands]
COMMAND_TITLES = [command[1] for commands in COMMANDS.values() for command in commands]

KINDS = ("copy", "move", "quickOpen", "openApplication")
PREFIXES = (OPEN_WITH_PREFIX, SHORTCUT_PREFIX, SCRIPT_PREFIX, PRESET_PREFIX, "__", "")

IDS = ["a", "b", "c", "1", "", "vscode", "cursor", "preview", "pages", "list-modified", "x__y",
       "runScript__a", "é", "e\u0301", "a\nb", "📁"]
NAMES = ["A", "B", "C", "", "项目", "桌面", "Pages", "Zed", "列表 · 最近修改", "图标 · 按名称 2",
         "a · b · c 12", "列表 2", " · b 3", "a\n · b 1", "新建文件夹", "压缩为 ZIP", "复制到桌面",
         "复制到A", "é", "e\u0301", 'say "x"', "two\nlines", "👩‍👩‍👧‍👦", " ", "\ufeff", "%@%s%n",
         "用户目录", "移动到A"]
PATHS = ["/a", "/b/c", "", "relative", "/Applications/Pages.app", "/Applications/Cursor.app",
         "/Applications/Visual Studio Code.app", "/System/Applications/Preview.app",
         "/Users/ada/Desktop", "/Users/ada/Desktop/", "/Users/ada/Downloads", "/Users/ada/Music",
         "/Users/ada/Documents", "/é/e\u0301", "/two\nlines", "/📁", "//x//"]
# What Finder selects is an absolute path in its plain form.
SELECTABLE = ["/a", "/b/c.txt", "/é", "/e\u0301", "/two\nlines", '/say "x"', "/📁", "/a b/c", "/"]

WRONG_VALUES = [0, 1, -1, 2**63 - 1, 1.5, True, False, b"", b"\xff", [], {}, "", "text", [[]],
                [{}], {"a": []}, datetime.datetime(2024, 2, 29)]


class Generator:
    """Random settings, requests and items."""

    def __init__(self, seed):
        self._random = random.Random(seed)
        # From a few names come menus with many equal titles.
        self._names = self._random.sample(NAMES, self.choice([2, 4, len(NAMES)]))

    def chance(self, probability):
        return self._random.random() < probability

    def choice(self, values):
        return self._random.choice(values)

    def number(self, last):
        return self._random.randrange(last + 1)

    def sample(self, values, longest):
        """Some of the values, some of them twice."""
        return [self._random.choice(values) for _ in range(self.number(longest))]

    def feature_settings(self):
        if self.chance(0.05):
            return self.choice(WRONG_VALUES)
        root = {}
        if self.chance(0.7):
            root["enabledFeatureIDs"] = (
                FEATURE_IDS if self.chance(0.4) else self.sample(FEATURE_IDS + ["unknown"], 14))
        if self.chance(0.6):
            root["featureOrder"] = self.sample(FEATURE_IDS + ["unknown", ""], 16)
        if self.chance(0.6):
            root["childOrderByFeatureID"] = {
                feature: self._command_ids(feature)
                for feature in self.sample(FEATURE_IDS + ["unknown"], 10)}
        if self.chance(0.6):
            root["enabledChildIDs"] = self.sample(
                COMMAND_IDS + ["copyFilesToFolder", "unknown"], self.choice([3, 40]))
        if self.chance(0.7):
            root["groupsFeaturesUnderQuorva"] = self.chance(0.5)
        if self.chance(0.8):
            root["menuLayout"] = self.choice(["collapsed", "expanded", "expanded", "Expanded", ""])
        return self._damaged(root)

    def _command_ids(self, feature):
        own = [command[0] for command in COMMANDS.get(feature, [])]
        ids = self.sample((own or COMMAND_IDS) * 4 + COMMAND_IDS[:3] + ["unknown"], 8)
        if feature == "scheduledDeletion" and self.chance(0.3):
            ids = ["scheduleDelete7Days", "scheduleDelete30Days", "scheduleDelete90Days",
                   "scheduleDelete1Hour"]
        return ids

    def custom_destinations(self):
        if self.chance(0.05):
            return self.choice(WRONG_VALUES)
        return self._damaged({kind: self._entries(("id", "name", "path")) for kind in self.sample(
            KINDS * 3 + ("unknown",), 8)})

    def custom_shortcut_actions(self):
        if self.chance(0.05):
            return self.choice(WRONG_VALUES)
        return self._damaged(self._entries(("id", "name", "kind", "shortcutName", "scriptPath")))

    def finder_view_presets(self):
        if self.chance(0.05):
            return self.choice(WRONG_VALUES)
        return self._damaged(self._entries(("id", "name", "viewMode", "sortMode")))

    def _entries(self, keys):
        return [self._entry(keys) for _ in range(self.number(5))]

    def _entry(self, keys):
        values = {
            "id": IDS, "name": self._names, "path": PATHS,
            "kind": ["shortcut", "script", "Script", ""],
            "shortcutName": ["S", "S", ""], "scriptPath": ["/s", "/s", ""],
            "viewMode": ["list", ""], "sortMode": ["name", ""]}
        entry = {key: self.choice(values[key]) for key in keys if not self.chance(0.04)}
        if self.chance(0.1):
            entry[self.choice(["icon", "ID", ""])] = "more"
        return entry

    def _damaged(self, value):
        """The value, now and then with a wrong value somewhere inside."""
        if not self.chance(0.15):
            return value
        container = value
        while True:
            keys = list(container) if isinstance(container, dict) else range(len(container))
            if not keys:
                return value
            key = self.choice(list(keys))
            if not isinstance(container[key], (dict, list)) or self.chance(0.3):
                # FEATURE_IDS may stand in there, so the way down is copied.
                container[key] = self.choice(WRONG_VALUES)
                return value
            container[key] = container[key].copy()
            container = container[key]

    def request(self):
        return Request(self.sample(SELECTABLE, self.choice([0, 1, 4])),
                       self.choice([None, *SELECTABLE]))

    def unusable_bytes(self, content):
        """Bytes that are not a property list."""
        if self.chance(0.3):
            return b""
        if self.chance(0.5):
            return b"\xff" + self._random.randbytes(self.number(300))
        end = len(content.rstrip(b"\n"))
        return content[:self._random.randrange(end)]

    def item(self, menu):
        """An item to deliver, made of what belongs together or does not."""
        items = [item for _, item in actionable_items(menu)]
        titles = COMMAND_TITLES + NAMES + [item["title"] for item in items] * 2
        item = {"title": self.choice(titles)}
        if self.chance(0.5):
            identifiers = [item["identifier"] for item in items if item["identifier"]]
            item["identifier"] = self.choice(
                [self.choice(PREFIXES) + self.choice(IDS), *identifiers])
        if self.chance(0.4):
            item["tag"] = self.choice([
                PRESET_TAG_BASE + self.number(6), PRESET_TAG_BASE - 1, self.number(6), -1,
                2**63 - 1, PRESET_TAG_BASE - 2**63])
        if self.chance(0.4):
            item["representedObject"] = self._represented_object(items)
        return item

    def _represented_object(self, items):
        if items and self.chance(0.5):
            return self.choice(items)["representedObject"]
        if self.chance(0.3):
            return {"type": "other", "value": "a string"}
        entries = {
            "actionID": self.choice(COMMAND_IDS + ["x"]), "title": self.choice(NAMES),
            "selectedPaths": self.sample(SELECTABLE, 3), "targetedPath": self.choice(["", "/t"]),
            "destinationPath": self.choice(PATHS), "presetID": self.choice(IDS)}
        wrong = [1, None, ["a", 1], {}, True]
        return {"type": "dictionary", **{
            key: self.choice(wrong) if self.chance(0.15) else value
            for key, value in entries.items() if not self.chance(0.15)}}


class RandomSettingsTest(EndToEndTestCase):

    def test_menus_and_clicks_are_what_the_settings_say(self):
        self.extension = self.start_extension()
        self.extension.request("toolbar")
        self.home.new_log_messages()
        for seed in range(FIRST_SEED, FIRST_SEED + CASES):
            with self.subTest(seed=seed):
                self.check(Generator(seed))
            # What a failed case has left is none of the next one's business.
            self.home.take_records()
            self.home.new_log_messages()

    def check(self, generator):
        settings = self.write_settings(generator)
        request = generator.request()
        kind = generator.choice(["items", "container", "sidebar", "toolbar"])
        menu = self.check_menu(settings, request, kind)
        changed = False
        for _ in range(generator.number(3)):
            if generator.chance(0.15):
                settings = self.write_settings(generator)
                changed = True
            self.check_click(generator, settings, menu, changed)

    def write_settings(self, generator):
        """Writes random files and returns their model."""
        files = {}
        for name, field in zip(SETTINGS_FILES, (
                "feature_settings", "custom_destinations", "custom_shortcut_actions",
                "finder_view_presets")):
            value = getattr(generator, field)()
            encoding = generator.choice([XML, BINARY])
            if generator.chance(0.1):
                self.home.write(name, UNUSABLE)
                value = UNUSABLE
            elif generator.chance(0.05):
                self.home.write_bytes(name, generator.unusable_bytes(
                    plistlib.dumps(value, fmt=encoding)))
                value = UNUSABLE
            else:
                self.home.write(name, value, encoding)
            files[field] = value
        return self.home.settings(**files)

    def check_menu(self, settings, request, kind):
        builder = MenuBuilder(settings, request)
        expected = builder.menu(kind)
        answer = self.extension.request("menu", kind=kind, selectedPaths=request.selected,
                                        targetedPath=request.targeted)
        menu = answer["menu"]
        self.assertEqual(menu, expected)
        self.check_invariants(menu, settings, request)
        self.assertEqual(answer["unifiedLog"], [builder.unified_log(kind)])
        self.assertEqual(answer["events"], [])
        self.assertEqual(self.home.new_log_messages(), builder.log)
        return menu

    def check_invariants(self, menu, settings, request):
        """What holds whatever the settings are."""
        self.check_separators(menu)
        self.check_titles(menu, settings)
        items = [item for _, item in actionable_items(menu)]
        tags = [item["tag"] for item in items if item["tag"] != 0]
        own = [tag for tag in tags if tag < PRESET_TAG_BASE]
        self.assertEqual(own, list(range(1, 1 + len(own))))
        of_presets = [tag for tag in tags if tag >= PRESET_TAG_BASE]
        self.assertEqual(of_presets, list(range(PRESET_TAG_BASE,
                                                PRESET_TAG_BASE + len(of_presets))))
        for prefix, ids in (
                (OPEN_WITH_PREFIX, [entry["id"]
                                    for entry in settings.destinations("openApplication")]),
                (PRESET_PREFIX, [preset["id"] for preset in settings.presets()])):
            identifiers = [item["identifier"] for item in items
                           if (item["identifier"] or "").startswith(prefix)]
            if len(set(ids)) == len(ids):
                self.assertEqual(len(set(identifiers)), len(identifiers))
        for item in items:
            represented = item["representedObject"]
            self.assertEqual(represented["title"], item["title"])
            self.assertEqual(represented["selectedPaths"], request.selected)
            if represented["type"] == "FinderActionContext":
                always = represented["actionID"] in ("copyFilesToFolder", "moveFilesToFolder")
                self.assertEqual(item["enabled"], always or request.enables(represented["action"]))
            else:
                self.assertTrue(item["enabled"])

    def check_separators(self, menu):
        kinds = [item.get("separator", False) for item in menu["items"]]
        self.assertFalse(kinds[:1] == [True] or kinds[-1:] == [True], "a separator at an end")
        self.assertNotIn((True, True), list(zip(kinds, kinds[1:])), "two separators in a row")
        for item in menu["items"]:
            if "submenu" in item:
                self.assertEqual(item["submenu"]["title"], item["title"])
                self.check_separators(item["submenu"])

    def check_titles(self, menu, settings):
        """Each title is one of the catalogue or of the user's names."""
        names = [entry["name"] for kind in KINDS for entry in settings.destinations(kind)]
        allowed = {"Quorva", "没有已启用功能", "复制到文件夹", "移动到文件夹", *TITLES.values(),
                   *COMMAND_TITLES, *names, *("复制到" + name for name in names),
                   *("移动到" + name for name in names),
                   *(name for _, _, name in settings.actions()),
                   *(preset["name"] for preset in settings.presets())}
        shown = []

        def collect(shown_menu):
            for item in shown_menu["items"]:
                shown.append(item.get("title", "Quorva"))
                if "submenu" in item:
                    collect(item["submenu"])

        collect(menu)
        self.assertEqual(set(shown) - allowed, set())

    def check_click(self, generator, settings, menu, changed):
        entry = None
        request = generator.request()
        enabled = [(path, item) for path, item in actionable_items(menu) if item["enabled"]]
        if enabled and generator.chance(0.7):
            path, item = generator.choice(enabled)
            delivery = generator.choice(["intact", "finder", "finder"])
            if delivery == "finder":
                entry = None if changed else item["representedObject"]
                item = {"title": item["title"], "tag": item["tag"]}
            answer = self.extension.click(path, request, delivery)
        else:
            item = generator.item(menu)
            answer = self.extension.send(item, request)
        click = ClickModel(settings, menu).click(item, request)
        records = self.home.take_records()
        log = self.home.new_log_messages()
        missing = "missing context for sender=" + item["title"]
        self.assertEqual((len(records), log.count(missing)),
                         (0, 1) if click.record is None else (1, 0))
        self.assertEqual(log, click.log)
        if click.record is None:
            self.assertEqual(answer["events"], [])
        else:
            self.assert_record(records[0], click.record)
            self.assert_handed_over(answer["events"])
        self.assertEqual(answer["unifiedLog"], [])
        if entry:
            self.check_entry(entry, records, settings)

    def check_entry(self, entry, records, settings):
        """What Finder's copy of an entry does is what the entry says, or what its command says."""
        [record] = records
        kind = DESTINATION_KINDS.get(entry["actionID"])
        if not (record["actionID"] in COMMAND_IDS and kind
                and settings.has_default_destinations(kind)):
            self.assertEqual(identity(record), identity(entry))


if __name__ == "__main__":
    unittest.main()
