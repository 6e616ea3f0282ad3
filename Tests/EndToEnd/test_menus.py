"""The menu for every rule of the settings files that a menu shows."""

import unittest

import samples
from catalogue import COMMANDS, DEFAULT_ENABLED_COMMANDS
from menu_model import MenuBuilder, Request, actionable_items
from quorva_process import (
    BINARY, CUSTOM_DESTINATIONS, CUSTOM_SHORTCUT_ACTIONS, FINDER_VIEW_PRESETS,
    XML, EndToEndTestCase, titles)

NOTHING = Request()
TARGET = Request([], "/Volumes/Work")
SELECTION = Request(["/Volumes/Work/a.txt", "/Volumes/Work/b c.png"])
BOTH = Request(["/Volumes/Work/a.txt"], "/Volumes/Work")

CATALOGUE_IDS = [command[0] for commands in COMMANDS.values() for command in commands]
OFF_BY_DEFAULT = [command for command in CATALOGUE_IDS if command not in DEFAULT_ENABLED_COMMANDS]

# Per case: what "FeatureSettings.plist" holds.
FEATURE_SETTINGS_CASES = {
    "nothing": {},
    "grouping alone": {"groupsFeaturesUnderQuorva": True},
    "grouping off": {"groupsFeaturesUnderQuorva": False},
    "grouping as a number": {"groupsFeaturesUnderQuorva": 1},
    "grouping as a string": {"groupsFeaturesUnderQuorva": "true"},
    "grouping as an array": {"groupsFeaturesUnderQuorva": [True]},
    "the layout expanded": {"menuLayout": "expanded"},
    "the layout collapsed": {"menuLayout": "collapsed"},
    "the layout in capitals": {"menuLayout": "Expanded"},
    "the layout with a blank": {"menuLayout": "expanded "},
    "the layout as a boolean": {"menuLayout": True},
    "the layout as an array": {"menuLayout": ["expanded"]},
    "no feature": {"enabledFeatureIDs": []},
    "no feature, grouped": {"enabledFeatureIDs": [], "groupsFeaturesUnderQuorva": True},
    "no feature, expanded": {"enabledFeatureIDs": [], "menuLayout": "expanded"},
    "only unknown features": {"enabledFeatureIDs": ["PdfTools", "", "pdfTools "]},
    "one feature without an order": {"enabledFeatureIDs": ["pdfTools"]},
    "one feature with an order that lists all": {
        "enabledFeatureIDs": ["pdfTools"], "featureOrder": samples.ALL_FEATURES},
    "an order that does not know the newer features": {
        "enabledFeatureIDs": ["pdfTools"], "featureOrder": ["pdfTools", "quickOpen"]},
    "an order with a feature twice and an unknown one": {
        "enabledFeatureIDs": samples.ALL_FEATURES,
        "featureOrder": ["pdfTools", "nothing", "pdfTools", "developerTools", "quickOpen"]},
    "an order without enabled features": {"featureOrder": ["developerTools", "pdfTools"]},
    "an order reversed": {
        "enabledFeatureIDs": samples.ALL_FEATURES,
        "featureOrder": samples.ALL_FEATURES[::-1]},
    "an order that is a string": {"enabledFeatureIDs": ["pdfTools"], "featureOrder": "pdfTools"},
    "an order with a number in it": {
        "enabledFeatureIDs": ["pdfTools", "imageTools"], "featureOrder": ["pdfTools", 1]},
    "enabled features that are a dictionary": {
        "enabledFeatureIDs": {"pdfTools": True}, "featureOrder": ["pdfTools"]},
    "enabled features with a boolean in them": {"enabledFeatureIDs": ["pdfTools", True]},
    "the tools for developers": {"enabledFeatureIDs": ["developerTools"]},
    "the custom actions alone": {"enabledFeatureIDs": ["customActions"]},
    "the custom actions alone, expanded": {
        "enabledFeatureIDs": ["customActions"], "menuLayout": "expanded"},
    "no enabled command": {"enabledChildIDs": []},
    "no enabled command, all known": {
        "enabledChildIDs": [], "childOrderByFeatureID": {"createFile": CATALOGUE_IDS}},
    "no enabled command, all known, expanded": {
        "enabledFeatureIDs": samples.ALL_FEATURES, "menuLayout": "expanded",
        "enabledChildIDs": [], "childOrderByFeatureID": {"createFile": CATALOGUE_IDS}},
    "one command switched off": {
        "enabledChildIDs": ["mergePDFs", "splitPDFs"],
        "childOrderByFeatureID": {"pdfTools": ["splitPDFs", "mergePDFs", "compressPDF"]}},
    "the commands that are off by default": {
        "enabledFeatureIDs": samples.ALL_FEATURES, "enabledChildIDs": OFF_BY_DEFAULT,
        "childOrderByFeatureID": {"createFile": CATALOGUE_IDS}},
    "commands without a catalogue entry": {
        "enabledChildIDs": ["copyFilesToFolder", "moveFilesToFolder", "copyFilesToPath", ""]},
    "enabled commands that are a string": {"enabledChildIDs": "mergePDFs"},
    "enabled commands with a number in them": {"enabledChildIDs": ["mergePDFs", 1]},
    "a command saved twice": {
        "childOrderByFeatureID": {"pdfTools": ["imagesToPDF", "imagesToPDF", "mergePDFs"]}},
    "a command of another feature in an order": {
        "childOrderByFeatureID": {"pdfTools": ["compressToZIP", "splitPDFs"]}},
    "an order for an unknown feature": {
        "childOrderByFeatureID": {"nothing": ["mergePDFs"], "pdfTools": ["splitPDFs"]}},
    "an empty order": {"childOrderByFeatureID": {"pdfTools": []}},
    "orders of which one holds a number": {
        "childOrderByFeatureID": {"pdfTools": ["splitPDFs"], "copyPath": ["copyFileName", 1]}},
    "orders of which one is a string": {
        "childOrderByFeatureID": {"pdfTools": ["splitPDFs"], "copyPath": "copyFileName"}},
    "orders that are an array": {"childOrderByFeatureID": [["splitPDFs"]]},
    "deletion saved without the hour": {"childOrderByFeatureID": {"scheduledDeletion": [
        "scheduleDelete90Days", "scheduleDelete7Days", "scheduleDelete30Days"]}},
    "deletion saved in the old order": {"childOrderByFeatureID": {"scheduledDeletion": [
        "scheduleDelete7Days", "scheduleDelete30Days", "scheduleDelete90Days",
        "scheduleDelete1Hour"]}},
    "deletion saved in an order of the user's": {"childOrderByFeatureID": {"scheduledDeletion": [
        "scheduleDelete30Days", "scheduleDelete1Hour"]}},
    "deletion saved in the old order with one more": {
        "childOrderByFeatureID": {"scheduledDeletion": [
            "scheduleDelete7Days", "scheduleDelete30Days", "scheduleDelete90Days",
            "scheduleDelete1Hour", "scheduleDelete7Days"]}},
    "deletion saved as nothing": {"childOrderByFeatureID": {"scheduledDeletion": []}},
    "quick-open's special entries in the user's order": {
        "childOrderByFeatureID": {"quickOpen": [
            "quickOpenTypedPath", "quickOpenHome", "quickOpenClipboardPath"]}},
    "quick-open without its special entries": {
        "enabledChildIDs": ["quickOpenDesktop"],
        "childOrderByFeatureID": {"quickOpen": ["quickOpenTypedPath", "quickOpenClipboardPath"]}},
    "an unknown key": {"version": 3, "enabledFeatureIDs": ["pdfTools"]},
}

ENTRY = {"id": "a", "name": "A", "path": "/a"}

CUSTOM_DESTINATIONS_CASES = {
    "nothing": {},
    "one kind": {"copy": [ENTRY]},
    "every kind empty": {"copy": [], "move": [], "quickOpen": [], "openApplication": []},
    "an unknown kind": {"paste": [ENTRY], "move": [ENTRY]},
    "an unknown kind with a number": {"paste": [{"id": 1}], "move": [ENTRY]},
    "an entry without an id": {"copy": [{"name": "B", "path": "/b"}, ENTRY]},
    "an entry without a name": {"move": [{"id": "b", "path": "/b"}, ENTRY]},
    "an entry without a path": {"quickOpen": [ENTRY, {"id": "b", "name": "B"}]},
    "an empty entry": {"openApplication": [{}, ENTRY]},
    "a key too many": {"copy": [{**ENTRY, "icon": "folder"}]},
    "empty strings": {
        kind: [{"id": "", "name": "", "path": ""}]
        for kind in ("copy", "move", "quickOpen", "openApplication")},
    "the same entry twice": {
        kind: [ENTRY, ENTRY] for kind in ("copy", "move", "quickOpen", "openApplication")},
    "a number deep inside": {
        "copy": [ENTRY], "openApplication": [ENTRY, {"id": "b", "name": "B", "path": 1}]},
    "a boolean deep inside": {"move": [{**ENTRY, "hidden": True}], "copy": [ENTRY]},
    "a nested array": {"copy": [[ENTRY]], "quickOpen": []},
    "a nested dictionary": {"copy": ENTRY, "quickOpen": []},
    "a string for a list": {"copy": "/a", "quickOpen": []},
    "the built-in folders": {
        kind: [{"id": str(index), "name": path, "path": path} for index, path in enumerate([
            "/Users/ada/Desktop", "/Users/ada/Desktop/", "/Users/ada/desktop",
            "/Users/ada/Downloads", "/Users/ada/Documents", "/Users/ada/Movies"])]
        for kind in ("copy", "move", "quickOpen")},
    "only built-in folders": {
        kind: [{"id": "d", "name": "D", "path": "/Users/ada/Desktop"}]
        for kind in ("copy", "move", "quickOpen")},
    "the applications of the catalogue": {"openApplication": [
        {"id": "vscode", "name": "One", "path": "/one"},
        {"id": "cursor", "name": "Two", "path": "/two"},
        {"id": "three", "name": "Three", "path": "/Applications/Visual Studio Code.app"},
        {"id": "four", "name": "Four", "path": "/Applications/Cursor.app"},
        {"id": "Cursor", "name": "Five", "path": "/Applications/cursor.app"}]},
    "the default applications": {"openApplication": [
        {"id": "preview", "name": "One", "path": "/one"},
        {"id": "two", "name": "Two", "path": "/System/Applications/Preview.app"},
        {"id": "pages", "name": "Three", "path": "/three"},
        {"id": "four", "name": "Four", "path": "/Applications/Keynote.app"}]},
    "names with line breaks and emoji": {
        kind: [{"id": "a\nb", "name": "one\ntwo\n\n📁 e\u0301 \"'\\", "path": "/p\nq/📁"}]
        for kind in ("copy", "move", "quickOpen", "openApplication")},
    "ids with prefixes": {"openApplication": [
        {"id": "__", "name": "One", "path": "/one"},
        {"id": "openWithApplicationPath__x", "name": "Two", "path": "/two"},
        {"id": "runScript__x", "name": "Three", "path": "/three"}]},
    "an array for the root": [ENTRY],
    "a string for the root": "copy",
}

ACTION = {"id": "a", "name": "A", "kind": "shortcut", "shortcutName": "S"}
SCRIPT = {"id": "s", "name": "Script", "kind": "script", "scriptPath": "/s.sh"}

CUSTOM_SHORTCUT_ACTIONS_CASES = {
    "nothing": [],
    "one of each kind": [ACTION, SCRIPT],
    "no kind": [{"id": "a", "name": "A", "shortcutName": "S"}],
    "a kind in capitals": [{**SCRIPT, "kind": "Script", "shortcutName": "S"}],
    "a kind in capitals without a shortcut": [{**SCRIPT, "kind": "Script"}, ACTION],
    "an empty kind": [{**ACTION, "kind": ""}],
    "a script without a path": [{"id": "s", "name": "S", "kind": "script", "shortcutName": "S"},
                                ACTION],
    "a script with an empty path": [{**SCRIPT, "scriptPath": ""}, ACTION],
    "a shortcut with an empty name": [{**ACTION, "shortcutName": ""}, SCRIPT],
    "a shortcut named by blanks": [{**ACTION, "shortcutName": "  "}],
    "no id": [{"name": "A", "shortcutName": "S"}, SCRIPT],
    "no name": [{"id": "a", "shortcutName": "S"}, SCRIPT],
    "an empty name and an empty id": [{"id": "", "name": "", "shortcutName": "S"}],
    "the same entry twice": [ACTION, ACTION],
    "the same id for both kinds": [ACTION, {**SCRIPT, "id": "a"}],
    "ids with prefixes": [{**ACTION, "id": "runScript__a"}, {**SCRIPT, "id": "__"},
                          {**ACTION, "id": "finderViewPreset__x"}],
    "names with line breaks and emoji": [{**ACTION, "name": "one\ntwo 🛠 e\u0301"},
                                         {**ACTION, "name": "\ufeffone"}],
    "a key too many": [{**ACTION, "icon": "star"}],
    "a number deep inside": [SCRIPT, {**ACTION, "timesRun": 3}],
    "a boolean deep inside": [SCRIPT, {**ACTION, "hidden": False}],
    "an array among the entries": [ACTION, [SCRIPT]],
    "a string among the entries": [ACTION, "script"],
    "a dictionary for the root": {"actions": [ACTION]},
    "a number for the root": 1,
}

PRESET = {"id": "p", "name": "P", "viewMode": "list", "sortMode": "name"}

FINDER_VIEW_PRESETS_CASES = {
    "nothing": [],
    "one": [PRESET],
    "the same twice": [PRESET, PRESET],
    "only entries that lack a key": [
        {key: value for key, value in PRESET.items() if key != missing} for missing in PRESET],
    "an entry that lacks a key between others": [
        {**PRESET, "id": "1"}, {"id": "2", "name": "N", "viewMode": "list"}, {**PRESET, "id": "3"}],
    "unknown modes": [{**PRESET, "viewMode": "", "sortMode": "colour"}],
    "a key too many": [{**PRESET, "icon": "list"}],
    "an empty id and an empty name": [{**PRESET, "id": "", "name": ""}],
    "ids with prefixes": [{**PRESET, "id": "finderViewPreset__p"}, {**PRESET, "id": "a__b"}],
    "numbers behind the names": [{**PRESET, "name": name} for name in (
        "列表 · 最近修改 2", "列表 2", "列表 · 最近修改 2a", "a · b · c 12", " · 3", " · b 3", "a ·  3",
        "a · b 3 4", "a · b  5", "a · b 5 ", "a · b5", "a·b 5", "a · b ５", "x · y 0123456789",
        "a\n · b 3", "a · b\u2028c 3", "a · b\n3", " ·  · x 1")],
    "names with line breaks and emoji": [{**PRESET, "name": "one\ntwo 🪟 e\u0301"}],
    "a number deep inside": [PRESET, {**PRESET, "columns": 3}],
    "bytes deep inside": [PRESET, {**PRESET, "sortMode": b"name"}],
    "an array among the entries": [PRESET, [PRESET]],
    "a dictionary for the root": {"presets": [PRESET]},
    "a string for the root": "list",
}


class MenuTestCase(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.extension = self.start_extension()
        self.extension.request("toolbar")

    def check(self, settings, request=BOTH, kind="items", encoding=XML):
        """Writes the settings and compares the menu, its logs and its events with the model."""
        self.home.write_settings(settings, encoding)
        self.home.new_log_messages()
        builder = MenuBuilder(settings, request)
        expected = builder.menu(kind)
        answer = self.extension.request("menu", kind=kind, selectedPaths=request.selected,
                                        targetedPath=request.targeted)
        self.assertEqual(answer["menu"], expected)
        self.assertEqual(answer["unifiedLog"], [builder.unified_log(kind)])
        self.assertEqual(answer["events"], [])
        self.assertEqual(self.home.new_log_messages(), builder.log)
        return answer["menu"]


class DefaultMenuTest(MenuTestCase):

    def test_without_a_file_the_menu_is_grouped_and_collapsed_with_the_default_features(self):
        menu = self.check(self.home.settings(), NOTHING)
        self.assertEqual(titles(menu), [("Quorva", [
            ("打开", ["用户目录", "桌面", "下载", "文稿", "图片", "应用程序", "打开剪贴板路径",
                      "打开指定路径..."]),
            ("新建", ["新建文件夹", "新建文本文件", "新建 RTF 文档", "新建 Markdown 文件",
                      "新建 Word 文档", "新建 Excel 表格", "新建 PowerPoint 演示", "新建 PDF",
                      "新建 CSV 表格", "新建 XML 文件", "新建 YAML 文件", "新建 PNG 图片",
                      "新建 JPG 图片", "新建 README"]),
            ("移动到", ["移动到桌面", "移动到下载", "移动到文稿", "把所选项目放入新文件夹",
                        ("移动到文件夹", ["移动到桌面", "移动到下载", "移动到文稿"])]),
            ("复制到", ["复制到桌面", "复制到下载", "复制到文稿", "在旁边创建副本",
                        ("复制到文件夹", ["复制到桌面", "复制到下载", "复制到文稿"])]),
            ("批量改名", ["在开头添加文字", "在结尾添加文字", "替换文件名中的文字",
                          "按序号重新命名"]),
            ("压缩与解压缩", ["压缩为 ZIP", "解压到当前文件夹", "解压到同名文件夹"]),
            ("定时清理", ["1 小时后移到废纸篓", "7 天后移到废纸篓", "30 天后移到废纸篓",
                          "90 天后移到废纸篓"]),
            ("处理图片", ["图片转为 JPEG", "图片转为 PNG", "调整图片大小...", "压缩 JPEG 图片"]),
            ("处理 PDF", ["合并 PDF", "拆分 PDF", "图片转 PDF", "压缩 PDF"]),
            ("复制名称与路径", ["复制完整路径", "复制文件名", "复制所在文件夹路径",
                                "复制终端可用路径", "复制 Markdown 链接", "复制文件名列表"]),
            ("用应用打开", ["在 Finder 中显示"]),
            ("调整显示方式", ["列表 · 最近修改", "图标 · 按名称", "分栏 · 按名称"]),
        ])])

    def test_the_default_files_lie_in_the_home_that_the_file_manager_reports(self):
        menu = self.check(self.home.settings(), NOTHING)
        paths = [item["representedObject"]["destinationPath"]
                 for item in menu["items"][0]["submenu"]["items"][0]["submenu"]["items"][:6]]
        home = str(self.home.path)
        self.assertEqual(paths, [home, home + "/Desktop", home + "/Downloads", home + "/Documents",
                                 home + "/Pictures", "/Applications"])

    def test_every_kind_of_menu_has_the_same_items(self):
        settings = self.home.settings(feature_settings=samples.feature_settings("expanded"),
                                      **samples.user_data())
        menus = [self.check(settings, BOTH, kind)
                 for kind in ("items", "container", "sidebar", "toolbar")]
        self.assertEqual(menus[1:], menus[:1] * 3)

    def test_a_change_of_the_settings_shows_in_the_next_menu(self):
        self.check(self.home.settings())
        self.check(self.home.settings(feature_settings={"menuLayout": "expanded"}))
        self.check(self.home.settings(custom_destinations={"copy": [ENTRY]}))
        self.check(self.home.settings())

    def test_nothing_is_written_into_the_settings_folder_but_the_log(self):
        self.check(self.home.settings(**samples.user_data()))
        self.assertEqual(sorted(path.name for path in self.home.quorva.iterdir()), [
            CUSTOM_DESTINATIONS, CUSTOM_SHORTCUT_ACTIONS, "FinderExtension.log",
            FINDER_VIEW_PRESETS])


class LayoutTest(MenuTestCase):

    def test_both_layouts_grouped_and_not_with_all_user_data_for_every_selection(self):
        for layout in ("collapsed", "expanded"):
            for grouped in (False, True):
                for request in (NOTHING, TARGET, SELECTION, BOTH):
                    for encoding in (XML, BINARY):
                        with self.subTest(layout=layout, grouped=grouped, request=request,
                                          encoding=encoding):
                            self.check(self.home.settings(
                                feature_settings=samples.feature_settings(layout, grouped),
                                **samples.user_data()), request, encoding=encoding)

    def test_both_layouts_grouped_and_not_without_user_data_for_every_selection(self):
        for layout in ("collapsed", "expanded"):
            for grouped in (False, True):
                for request in (NOTHING, TARGET, SELECTION, BOTH):
                    with self.subTest(layout=layout, grouped=grouped, request=request):
                        self.check(self.home.settings(
                            feature_settings=samples.feature_settings(layout, grouped)), request)

    def test_the_expanded_layout_separates_the_features_that_show_something(self):
        menu = self.check(self.home.settings(
            feature_settings={"enabledFeatureIDs": ["viewOptions", "customActions", "pdfTools"],
                              "featureOrder": ["customActions", "viewOptions", "pdfTools",
                                               *samples.ALL_FEATURES],
                              "menuLayout": "expanded"},
            finder_view_presets=[]))
        self.assertEqual(titles(menu), ["合并 PDF", "拆分 PDF", "图片转 PDF", "压缩 PDF"])

    def test_the_expanded_layout_puts_a_separator_between_two_features(self):
        menu = self.check(self.home.settings(
            feature_settings={"enabledFeatureIDs": ["viewOptions", "archiveTools"],
                              "menuLayout": "expanded"}))
        self.assertEqual(titles(menu), [
            "压缩为 ZIP", "解压到当前文件夹", "解压到同名文件夹", None, "列表 · 最近修改",
            "图标 · 按名称", "分栏 · 按名称"])

    def test_the_collapsed_layout_keeps_a_feature_without_entries(self):
        menu = self.check(self.home.settings(
            feature_settings={"enabledFeatureIDs": ["viewOptions", "customActions", "quickOpen"],
                              "enabledChildIDs": ["quickOpenHome"],
                              "childOrderByFeatureID": {"quickOpen": [
                                  "quickOpenClipboardPath", "quickOpenTypedPath"]}},
            custom_destinations={"quickOpen": []}, finder_view_presets=[]))
        self.assertEqual(titles(menu), [("打开", []), ("调整显示方式", [])])

    def test_a_grouped_menu_holds_its_one_item_even_when_that_is_empty(self):
        menu = self.check(self.home.settings(
            feature_settings={"enabledFeatureIDs": ["customActions"],
                              "groupsFeaturesUnderQuorva": True}))
        self.assertEqual(titles(menu), [("Quorva", [])])

    def test_without_a_feature_the_menu_says_so_and_is_not_grouped(self):
        menu = self.check(self.home.settings(
            feature_settings={"enabledFeatureIDs": [], "groupsFeaturesUnderQuorva": True}))
        self.assertEqual([(item["title"], item["enabled"], item["action"])
                          for item in menu["items"]], [("没有已启用功能", False, None)])


class EnabledStateTest(MenuTestCase):

    def states(self, request):
        menu = self.check(self.home.settings(feature_settings=samples.feature_settings(
            enabledChildIDs=CATALOGUE_IDS), **samples.user_data()), request)
        return {item["title"]: item["enabled"] for _, item in actionable_items(menu)}

    CASES = {
        # title: without anything, with a target, with a selection
        "新建文件夹": (True, True, True),
        "新建 JSON 文件": (True, True, True),
        "源代码": (True, True, True),
        "打开剪贴板路径": (True, True, True),
        "列表 · 大小": (True, True, True),
        "显示/隐藏隐藏文件": (True, True, True),
        "复制到项目": (True, True, True),
        "移动到收件箱": (True, True, True),
        "在旁边创建副本": (False, False, True),
        "复制到桌面": (False, False, True),
        "移动到桌面": (False, False, True),
        "在 Finder 中显示": (False, False, True),
        "把所选项目放入新文件夹": (False, False, True),
        "压缩为 ZIP": (False, False, True),
        "缩小图片": (False, False, True),
        "Deploy": (False, False, True),
        "复制完整路径": (False, True, True),
        "复制文件名列表": (False, True, True),
        "用终端打开": (False, True, True),
        "Zed": (False, True, True),
    }

    def test_an_entry_is_enabled_by_what_its_action_needs(self):
        shown = [self.states(request) for request in (NOTHING, TARGET, SELECTION, BOTH)]
        for title, (nothing, target, selection) in self.CASES.items():
            with self.subTest(title=title):
                self.assertEqual([states[title] for states in shown],
                                 [nothing, target, selection, selection])


class SettingsFileTest(MenuTestCase):
    """Each case of each file, in both encodings and both layouts."""

    def test_the_feature_settings(self):
        for name, value in FEATURE_SETTINGS_CASES.items():
            for encoding in (XML, BINARY):
                with self.subTest(case=name, encoding=encoding):
                    self.check(self.home.settings(feature_settings=value), encoding=encoding)

    def test_the_feature_settings_with_a_root_that_is_not_a_dictionary(self):
        for value in ([], ["pdfTools"], "expanded", 1, 2.5, True, b"bytes"):
            for encoding in (XML, BINARY):
                with self.subTest(root=value, encoding=encoding):
                    self.check(self.home.settings(feature_settings=value), encoding=encoding)

    def test_the_custom_destinations(self):
        self.check_all("custom_destinations", CUSTOM_DESTINATIONS_CASES)

    def test_the_custom_shortcut_actions(self):
        self.check_all("custom_shortcut_actions", CUSTOM_SHORTCUT_ACTIONS_CASES)

    def test_the_view_presets(self):
        self.check_all("finder_view_presets", FINDER_VIEW_PRESETS_CASES)

    def check_all(self, file, cases):
        for layout in ("collapsed", "expanded"):
            for name, value in cases.items():
                for encoding in (XML, BINARY):
                    with self.subTest(case=name, layout=layout, encoding=encoding):
                        self.check(self.home.settings(
                            feature_settings=samples.feature_settings(layout), **{file: value}),
                            encoding=encoding)


class IdentityTest(MenuTestCase):

    def test_the_view_presets_carry_identifiers_tags_and_dictionaries(self):
        menu = self.check(self.home.settings(
            feature_settings={"enabledFeatureIDs": ["viewOptions"]},
            finder_view_presets=samples.FINDER_VIEW_PRESETS), BOTH)
        items = menu["items"][0]["submenu"]["items"]
        self.assertEqual([(item["title"], item["identifier"], item["tag"]) for item in items], [
            ("列表 · 大小", "finderViewPreset__list-size", 700000),
            ("图标 · 种类", "finderViewPreset__icon-kind", 700001)])
        self.assertEqual(items[1]["representedObject"], {
            "type": "dictionary", "actionID": "finderViewPreset__icon-kind", "title": "图标 · 种类",
            "selectedPaths": ["/Volumes/Work/a.txt"], "targetedPath": "/Volumes/Work",
            "destinationPath": "", "presetID": ""})

    def test_the_custom_actions_carry_identifiers_by_their_kind(self):
        menu = self.check(self.home.settings(
            feature_settings={"enabledFeatureIDs": ["customActions"], "menuLayout": "expanded"},
            custom_shortcut_actions=samples.CUSTOM_SHORTCUT_ACTIONS))
        self.assertEqual(
            [(item["identifier"], item["representedObject"]["actionID"], item["tag"])
             for item in menu["items"]],
            [("runShortcut__resize", "runShortcut__resize", 0),
             ("runScript__deploy", "runScript__deploy", 0)])

    def test_the_applications_carry_identifiers_and_one_action(self):
        menu = self.check(self.home.settings(
            feature_settings={"enabledFeatureIDs": ["openWith"], "menuLayout": "expanded"},
            custom_destinations=samples.CUSTOM_DESTINATIONS))
        self.assertEqual(
            [(item["identifier"], item["representedObject"]["actionID"],
              item["representedObject"]["action"]) for item in menu["items"][-2:]],
            [("openWithApplicationPath__zed", "openWithApplicationPath", "openWithApplicationPath"),
             ("openWithApplicationPath__my__editor", "openWithApplicationPath",
              "openWithApplicationPath")])

    def test_no_other_entry_has_an_identifier_or_a_tag(self):
        menu = self.check(self.home.settings(
            feature_settings={"enabledFeatureIDs": [
                feature for feature in samples.ALL_FEATURES
                if feature not in ("viewOptions", "customActions", "openWith")]},
            **samples.user_data()))
        self.assertEqual({(item["identifier"], item["tag"]) for _, item in actionable_items(menu)},
                         {(None, 0)})


if __name__ == "__main__":
    unittest.main()
