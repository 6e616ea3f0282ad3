"""Selections that are hard to write down, and many of them."""

import os
import unittest

import samples
from menu_model import ClickModel, MenuBuilder, Request, actionable_items
from quorva_process import EndToEndTestCase, Run, item_at

PATHS = {
    "double quotes": '/a "b" c',
    "single quotes": "/a 'b' c",
    "backslashes": "/a\\b\\n",
    "brackets and commas": '/["a", "b"]',
    "a line feed": "/a\nb",
    "a carriage return and a line feed": "/a\r\nb",
    "a tab": "/a\tb",
    "control characters": "/a\x01\x1b\x7fb",
    "line terminators of Unicode": "/a\u0085\u2028\u2029b",
    "emoji": "/📁👩‍👩‍👧‍👦🇨🇳",
    "a composed accent": "/\u00e9",
    "a decomposed accent": "/e\u0301",
    "both accents": "/\u00e9e\u0301",
    "Hangul apart": "/\u1112\u1161\u11ab",
    "right to left": "/\u0645\u0644\u0641",
    "a byte order mark": "/\ufeffa",
    "characters that stand for nothing": "/\ufffd\uffff",
    "percent signs": "/100%/%20/%s%n%@",
    "a question mark and a hash": "/a?b#c",
    "blanks at the ends": "/ a ",
    "dots": "/.a/..b/c.",
    "a tilde": "/~/a",
    "a colon": "/a:b",
    "a name of 255 bytes": "/" + "x" * 255,
    "a path of 4,000 bytes": "/x" * 2000,
    "the root": "/",
    "what looks like an address": "/file:///a",
}


class HardSelectionTest(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.settings = self.home.settings(
            feature_settings=samples.feature_settings(), **samples.user_data())
        self.home.write_settings(self.settings)
        self.extension = self.start_extension()
        self.extension.request("toolbar")
        self.home.new_log_messages()

    def check(self, request):
        """The menu, a click on it, and both logs, as the model has them."""
        builder = MenuBuilder(self.settings, request)
        expected = builder.menu()
        menu = self.extension.menu(request)
        self.assertEqual(menu, expected)
        self.assertEqual(self.home.new_log_messages(), builder.log)
        item = next(item for _, item in actionable_items(menu) if item["title"] == "压缩为 ZIP")
        click = ClickModel(self.settings).click(item, request)
        self.extension.click(item_at(menu, "压缩与解压缩", "压缩为 ZIP"), request)
        [record] = self.home.take_records()
        self.assert_record(record, click.record)
        self.assertEqual(self.home.new_log_messages(), click.log)

    def test_a_path_is_kept_byte_for_byte(self):
        for name, path in PATHS.items():
            with self.subTest(path=name):
                self.check(Request([path, "/plain", path], path))

    def test_all_paths_at_once_are_kept_in_their_order(self):
        self.check(Request(list(PATHS.values()), "/Volumes"))

    def test_a_title_is_kept_byte_for_byte(self):
        for name, title in PATHS.items():
            with self.subTest(title=name):
                context = {"type": "FinderActionContext", "actionID": title, "title": title,
                           "action": "openFolder", "selectedPaths": [], "targetedPath": None,
                           "destinationPath": title, "presetID": title}
                item = {"title": title, "representedObject": context}
                click = ClickModel(self.settings).click(item, Request())
                self.extension.send(item)
                [record] = self.home.take_records()
                self.assert_record(record, click.record)
                self.assertEqual(self.home.new_log_messages(), click.log)

    def test_10_000_items_are_kept(self):
        self.check(Request(
            [f"/Volumes/Work/Ordner mit Umlauten/Bild {number} 📷.jpeg" for number in range(10_000)],
            "/Volumes/Work"))

    def test_an_item_that_exists_and_is_a_folder_has_no_slash_at_its_end(self):
        folder = Run.new_folder()
        (folder / "inner").mkdir()
        self.check(Request([str(folder), str(folder / "inner")], str(folder)))

    def test_names_on_disk_that_are_not_utf_8_do_no_harm(self):
        folder = os.fsencode(Run.new_folder())
        for name in (b"caf\xe9.txt", b"\xff\xfe", b"ok.txt", b"\xed\xa0\x80"):
            with open(folder + b"/" + name, "wb"):
                pass
        for name in (b"Desktop-\xe9", b"\xff"):
            os.mkdir(os.fsencode(self.home.path) + b"/" + name)
        request = Request(
            [os.fsdecode(folder + b"/" + name).encode("utf-8", "replace").decode("utf-8")
             for name in os.listdir(folder)], os.fsdecode(folder))
        self.check(request)

    def test_a_line_whose_paths_are_not_utf_8_is_refused_and_the_next_is_answered(self):
        self.extension.send_line(
            b'{"id":1,"request":"menu","kind":"items","selectedPaths":["/caf\xe9"],'
            b'"targetedPath":null}')
        self.assertIn("error", self.extension.read_response())
        self.check(Request(["/café"], None))

    def test_a_home_whose_path_is_hard_to_write_is_used_as_it_is(self):
        for name in ('a "b"', "a\nb", "e\u0301", "\u00e9", "📁", "%20%s", "a'b\\c", "a?b#c"):
            with self.subTest(name=name):
                path = Run.new_folder() / name
                path.mkdir()
                home = type(self.home)(path)
                settings = home.settings(**samples.user_data())
                home.write_settings(settings)
                extension = self.start_extension(home)
                self.assertEqual(extension.menu(Request(["/a"])),
                                 MenuBuilder(settings, Request(["/a"])).menu())
                extension.send({"title": "压缩为 ZIP"}, Request(["/a"]))
                self.assertEqual(len(home.records()), 1)
                self.assertEqual(sorted(os.listdir(path)), ["Library"])


if __name__ == "__main__":
    unittest.main()
