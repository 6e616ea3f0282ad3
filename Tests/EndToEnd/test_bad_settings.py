"""Settings files that can't be used, and the defaults that stand in for them."""

import plistlib
import random
import unittest

import property_lists
import samples
from menu_model import MenuBuilder, Request, UNUSABLE, actionable_items
from quorva_process import (
    BINARY, CUSTOM_DESTINATIONS, CUSTOM_SHORTCUT_ACTIONS, FEATURE_SETTINGS, FINDER_VIEW_PRESETS,
    SETTINGS_FILES, XML, EndToEndTestCase)

REQUEST = Request(["/Volumes/Work/a.txt"], "/Volumes/Work")

# Short, so that a cut is likely to be in the middle of something.
SHORT = {
    "feature_settings": {"enabledFeatureIDs": ["openWith", "copyFile", "viewOptions",
                                               "customActions"], "menuLayout": "expanded"},
    "custom_destinations": {"copy": [{"id": "c", "name": "C", "path": "/c"}],
                            "openApplication": [{"id": "o", "name": "O", "path": "/o"}]},
    "custom_shortcut_actions": [{"id": "a", "name": "A", "shortcutName": "S"}],
    "finder_view_presets": [{"id": "p", "name": "P", "viewMode": "l", "sortMode": "s"}],
}

FIELDS = dict(zip(SETTINGS_FILES, SHORT))


class BadSettingsTestCase(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.extension = self.start_extension()
        self.home.quorva.mkdir(parents=True, exist_ok=True)

    def check(self, expected):
        self.assertEqual(self.extension.menu(REQUEST), expected)

    def expected(self, **files):
        return MenuBuilder(self.home.settings(**files), REQUEST).menu()

    def check_without(self, name):
        """The menu with this one file unusable and the others in place."""
        files = {**SHORT, FIELDS[name]: UNUSABLE}
        self.check(self.expected(**files))

    def write_others(self, name):
        for other, field in FIELDS.items():
            if other != name:
                self.home.write(other, SHORT[field])

    def each_file(self):
        for name in SETTINGS_FILES:
            self.write_others(name)
            yield name


class UnusableFileTest(BadSettingsTestCase):

    def test_a_file_that_is_missing_leaves_its_defaults(self):
        for name in self.each_file():
            with self.subTest(file=name):
                (self.home.quorva / name).unlink(missing_ok=True)
                self.check_without(name)

    def test_a_file_that_is_empty_leaves_its_defaults(self):
        for name in self.each_file():
            with self.subTest(file=name):
                self.home.write_bytes(name, b"")
                self.check_without(name)

    def test_a_file_that_may_not_be_read_leaves_its_defaults(self):
        for name in self.each_file():
            with self.subTest(file=name):
                self.home.write(name, SHORT[FIELDS[name]])
                (self.home.quorva / name).chmod(0)
                self.check_without(name)
                (self.home.quorva / name).chmod(0o600)

    def test_a_file_that_is_a_folder_leaves_its_defaults(self):
        for name in self.each_file():
            with self.subTest(file=name):
                (self.home.quorva / name).unlink(missing_ok=True)
                (self.home.quorva / name).mkdir()
                self.check_without(name)
                (self.home.quorva / name).rmdir()

    def test_a_file_that_is_a_link_to_nowhere_leaves_its_defaults(self):
        for name in self.each_file():
            with self.subTest(file=name):
                (self.home.quorva / name).unlink(missing_ok=True)
                (self.home.quorva / name).symlink_to("nowhere")
                self.check_without(name)
                (self.home.quorva / name).unlink()

    def test_a_folder_that_may_not_be_entered_leaves_all_defaults(self):
        for name, field in FIELDS.items():
            self.home.write(name, SHORT[field])
        self.home.quorva.chmod(0)
        self.check(self.expected())
        self.home.quorva.chmod(0o700)

    def test_the_files_are_never_written(self):
        for name in SETTINGS_FILES:
            self.home.write_bytes(name, b"nonsense")
        self.extension.menu(REQUEST)
        self.extension.send({"title": "新建文件夹"}, REQUEST)
        for name in SETTINGS_FILES:
            self.assertEqual((self.home.quorva / name).read_bytes(), b"nonsense")

    def test_nothing_is_logged_about_a_file_that_can_t_be_used(self):
        self.extension.menu(REQUEST)
        before = self.home.new_log_messages()[1:]
        for name in SETTINGS_FILES:
            self.home.write_bytes(name, b"nonsense")
        self.extension.menu(REQUEST)
        self.assertEqual(self.home.new_log_messages(), before)


class TruncatedFileTest(BadSettingsTestCase):

    def test_files_that_are_cut_leave_their_defaults(self):
        defaults = self.expected()
        for encoding, name in ((XML, "XML"), (BINARY, "binary")):
            contents = {file: plistlib.dumps(SHORT[field], fmt=encoding)
                        for file, field in FIELDS.items()}
            for cuts in range(20):
                with self.subTest(encoding=name, cuts=cuts):
                    for file, content in contents.items():
                        self.home.write_bytes(file, content[:len(content) * cuts // 20])
                    self.check(defaults)

    def test_a_file_with_something_behind_its_end_does_no_harm(self):
        for name in self.each_file():
            for encoding in (XML, BINARY):
                content = plistlib.dumps(SHORT[FIELDS[name]], fmt=encoding)
                for rest in (b"\0", b"x", b"\n\n\n", content):
                    self.home.write_bytes(name, content + rest)
                    self.extension.menu(REQUEST)


class DamagedFileTest(BadSettingsTestCase):

    def test_random_bytes_leave_the_defaults(self):
        generator = random.Random(1)
        defaults = self.expected()
        for number in range(20):
            with self.subTest(number=number):
                for name in SETTINGS_FILES:
                    # The high bit keeps them from being text, which is a property list too.
                    content = b"\xff" + generator.randbytes(generator.randrange(400))
                    self.home.write_bytes(name, content)
                self.check(defaults)

    def test_random_bytes_behind_the_mark_of_an_encoding_leave_the_defaults(self):
        generator = random.Random(2)
        defaults = self.expected()
        for number in range(20):
            with self.subTest(number=number):
                for name in SETTINGS_FILES:
                    mark = generator.choice([b"bplist00", b"bplist0", property_lists.XML_HEAD])
                    self.home.write_bytes(
                        name, mark + generator.randbytes(generator.randrange(33, 400)))
                self.check(defaults)


class HostilePropertyListTest(BadSettingsTestCase):

    def test_a_hostile_property_list_leaves_the_defaults(self):
        for name in self.each_file():
            for case, content in property_lists.HOSTILE.items():
                with self.subTest(file=name, case=case):
                    self.home.write_bytes(name, content)
                    self.check_without(name)

    def test_a_value_that_is_nested_too_deeply_is_of_a_wrong_type(self):
        for name in self.each_file():
            for case, content in property_lists.TOO_DEEP.items():
                with self.subTest(file=name, case=case):
                    self.home.write_bytes(name, content)
                    self.check(self.expected(
                        **SHORT | {FIELDS[name]: {"copy": "of a wrong type"}}))

    def test_a_value_of_a_class_without_a_type_costs_no_more_than_its_key(self):
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["pdfTools"], "menuLayout": plistlib.UID(1),
            "unknown": plistlib.UID(2)}, BINARY)
        self.assertEqual([item["title"] for item in self.extension.menu(REQUEST)["items"]],
                         ["处理 PDF"])

    def test_a_path_of_16_mebibytes_and_a_title_of_one_are_shown_and_recorded(self):
        title, path = "n" * (1 << 20), "/" + "p" * (1 << 24)
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["quickOpen"], "groupsFeaturesUnderQuorva": False})
        self.home.write(CUSTOM_DESTINATIONS, {
            "quickOpen": [{"id": "a", "name": title, "path": path}]}, BINARY)
        menu = self.extension.menu(REQUEST)
        [index_path] = [found for found, item in actionable_items(menu)
                        if item["title"] == title]
        self.extension.click(index_path, REQUEST)
        [record] = self.home.take_records()
        self.assertEqual((record["destinationPath"], record["title"]), (path, title))

    def test_a_hostile_property_list_does_not_keep_a_click_from_the_queue(self):
        for case, content in property_lists.HOSTILE.items():
            with self.subTest(case=case):
                for name in SETTINGS_FILES:
                    self.home.write_bytes(name, content)
                self.extension.send({"title": "新建文件夹"}, REQUEST)
                self.assertEqual([record["actionID"] for record in self.home.take_records()],
                                 ["createFolder"])

    def test_an_entry_that_a_list_shares_is_read_each_time(self):
        self.home.write(FEATURE_SETTINGS, {"enabledFeatureIDs": ["viewOptions"]})
        self.home.write_bytes(FINDER_VIEW_PRESETS, property_lists.shared_entries(1000))
        menu = self.extension.menu(REQUEST)
        self.assertEqual([item["title"] for item in menu["items"][0]["submenu"]["items"]],
                         ["Shared"] * 1000)

    def test_an_entry_with_half_a_surrogate_pair_does_no_harm(self):
        content = property_lists.binary([
            property_lists.array([1]),
            property_lists.dictionary([2, 3, 4, 5], [6, 7, 6, 6]),
            *map(property_lists.text, ("id", "name", "viewMode", "sortMode", "x")),
            property_lists.utf16(b"\xd8\x00\x00a")])
        self.home.write_bytes(FINDER_VIEW_PRESETS, content)
        self.assertEqual(self.extension.menu(REQUEST)["title"], "Quorva")
        self.assertEqual(self.extension.send({"title": "T", "tag": 700000}, REQUEST)["id"], 2)

    def preset_named(self, name):
        """The title that a preset of this name shows, and that its record has."""
        self.home.write(FINDER_VIEW_PRESETS, [
            {"id": "a", "name": name, "viewMode": "", "sortMode": ""}], BINARY)
        shown = {item["title"] for _, item in actionable_items(self.extension.menu(REQUEST))}
        self.extension.send({"title": "T", "tag": 700000}, REQUEST)
        [record] = self.home.take_records()
        self.assertIn(record["title"], shown)
        return record["title"]

    def test_a_name_with_a_zero_byte_is_shown_and_recorded_whole(self):
        for name in ("一\0二", "one\0two"):
            self.assertEqual(self.preset_named(name), name)

    def test_zero_bytes_in_what_is_clicked_reach_the_record(self):
        self.extension.send({"title": "T", "representedObject": {
            "type": "dictionary", "actionID": "runScript__a\0b", "title": "one\0two"}}, REQUEST)
        [record] = self.home.take_records()
        self.assertEqual((record["actionID"], record["title"]), ("runScript__a\0b", "one\0two"))

    def test_lists_down_to_the_depth_of_a_settings_file_are_read(self):
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["pdfTools"], "unknown": [[[[[["deep"]]]]]]}, BINARY)
        self.assertEqual([item["title"] for item in self.extension.menu(REQUEST)["items"]],
                         ["处理 PDF"])


class LargeFileTest(BadSettingsTestCase):

    COUNT = 20_000

    def test_20_000_feature_ids_are_read(self):
        ids = [f"feature{number}" for number in range(self.COUNT)]
        for encoding in (XML, BINARY):
            self.home.write(FEATURE_SETTINGS, {
                "enabledFeatureIDs": ids + ["pdfTools"], "featureOrder": ids + samples.ALL_FEATURES,
                "enabledChildIDs": ids + ["mergePDFs", "splitPDFs"],
                "childOrderByFeatureID": {"pdfTools": ids + ["splitPDFs"] * 3, "other": ids},
            }, encoding)
            menu = self.extension.menu(REQUEST)
            self.assertEqual([item["title"] for item in menu["items"][0]["submenu"]["items"]],
                             ["拆分 PDF"] * 3 + ["合并 PDF", "图片转 PDF", "压缩 PDF"])

    def test_20_000_presets_resolve_by_the_last_tag(self):
        self.home.write(FINDER_VIEW_PRESETS, [
            {"id": str(number), "name": f"P{number}", "viewMode": "l", "sortMode": "s"}
            for number in range(self.COUNT)], BINARY)
        self.extension.send({"title": "T", "tag": 700000 + self.COUNT - 1}, REQUEST)
        self.extension.send({"title": "T", "tag": 700000 + self.COUNT}, REQUEST)
        self.assertEqual([record["presetID"] for record in self.home.records()],
                         [str(self.COUNT - 1)])

    def test_20_000_custom_actions_resolve_by_the_last_id(self):
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [
            {"id": str(number), "name": f"A{number}", "shortcutName": "S"}
            for number in range(self.COUNT)], BINARY)
        self.extension.send(
            {"title": "T", "identifier": f"runShortcut__{self.COUNT - 1}"}, REQUEST)
        self.assertEqual([record["title"] for record in self.home.records()],
                         [f"A{self.COUNT - 1}"])

    def test_20_000_destinations_are_read_and_one_wrong_value_among_them_discards_them(self):
        applications = [{"id": str(number), "name": f"D{number}", "path": f"/{number}"}
                        for number in range(self.COUNT)]
        last = {"title": "T", "identifier": f"openWithApplicationPath__{self.COUNT - 1}"}
        for encoding in (XML, BINARY):
            self.home.write(CUSTOM_DESTINATIONS, {"openApplication": applications}, encoding)
            self.extension.send(last, REQUEST)
            self.assertEqual(self.home.take_records()[0]["destinationPath"], f"/{self.COUNT - 1}")
            self.home.write(CUSTOM_DESTINATIONS, {
                "openApplication": [*applications, {"id": 1}]}, encoding)
            self.extension.send(last, REQUEST)
            self.assertEqual(self.home.take_records(), [])

    def test_a_thousand_entries_of_every_kind_are_shown(self):
        files = {
            "feature_settings": samples.feature_settings(),
            "custom_destinations": {kind: [
                {"id": str(number), "name": f"{kind} {number}", "path": f"/{kind}/{number}"}
                for number in range(1000)]
                for kind in ("copy", "move", "quickOpen", "openApplication")},
            "custom_shortcut_actions": [
                {"id": str(number), "name": f"A{number}", "shortcutName": "S"}
                for number in range(1000)],
            "finder_view_presets": [
                {"id": str(number), "name": f"P{number}", "viewMode": "l", "sortMode": "s"}
                for number in range(1000)],
        }
        for name, field in FIELDS.items():
            self.home.write(name, files[field], BINARY)
        self.check(self.expected(**files))

    def test_a_name_of_a_megabyte_loses_the_number_at_its_end(self):
        for name, shown in (("x" * 500_000 + " · " + "y" * 500_000 + " 2", -2),
                            ("x · " * 250_000 + "y 123", -4),
                            ("a · " + "b" * 500_000 + "1" * 500_000, None),
                            (" · " * 350_000 + "1", -2)):
            self.home.write(FINDER_VIEW_PRESETS, [
                {"id": "a", "name": name, "viewMode": "l", "sortMode": "s"}], BINARY)
            self.extension.send({"title": "T", "tag": 700000}, REQUEST)
            [record] = self.home.take_records()
            self.assertEqual(record["title"], name[:shown])


if __name__ == "__main__":
    unittest.main()
