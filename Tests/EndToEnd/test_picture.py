"""The menu as a picture."""

import base64
import contextlib
import functools
import json
import os
import struct
import subprocess
import unittest
import zlib
from pathlib import Path

from quorva_process import (
    CUSTOM_SHORTCUT_ACTIONS, FEATURE_SETTINGS, FINDER_VIEW_PRESETS, SMALL_DISK, Run, alone,
    build_folder, program_environment)
from test_finder_sim import SELECT, FinderSimTestCase

PICTURES = Path(__file__).resolve().parents[2] / "scripts" / "pictures"

# The signature and the header of a picture.
PNG = b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR" + bytes(17)


def entry(title, enabled=True, **members):
    """An item of a menu as a response has it."""
    return {"title": title, "enabled": enabled, "action": None} | members


def menu(*items):
    return {"title": "", "items": list(items)}


class Picture:
    """A PNG. Its pixels have four bytes each: red, green, blue and opacity."""

    def __init__(self, content):
        assert content.startswith(b"\x89PNG\r\n\x1a\n")
        self.chunks = {}
        position = 8
        while position < len(content):
            length, kind = struct.unpack_from(">I4s", content, position)
            data = content[position + 8:position + 8 + length]
            checksum, = struct.unpack_from(">I", content, position + 8 + length)
            assert checksum == zlib.crc32(kind + data), kind
            self.chunks[kind] = self.chunks.get(kind, b"") + data
            position += 12 + length
        assert kind == b"IEND"
        self.width, self.height, *form = struct.unpack(">IIBBBBB", self.chunks[b"IHDR"])
        assert form == [8, 6, 0, 0, 0]
        self.data = zlib.decompress(self.chunks[b"IDAT"])
        assert len(self.data) == self.height * (4 * self.width + 1)

    @functools.cached_property
    def rows(self):
        return list(self._decoded_rows())

    def _decoded_rows(self):
        stride = 4 * self.width
        row = bytearray(stride)
        for start in range(0, len(self.data), stride + 1):
            method, *values = self.data[start:start + 1 + stride]
            above, row = row, bytearray(values)
            for index in range(stride if method else 0):
                left = row[index - 4] if index >= 4 else 0
                corner = above[index - 4] if index >= 4 else 0
                row[index] = (row[index] + self._predicted(
                    method, left, above[index], corner)) & 255
            yield bytes(row)

    @staticmethod
    def _predicted(method, left, above, corner):
        if method == 4:
            estimate = left + above - corner
            return min((left, above, corner), key=lambda value: abs(estimate - value))
        return (0, left, above, (left + above) // 2)[method]

    def pixels(self):
        return [row[index:index + 4] for row in self.rows for index in range(0, len(row), 4)]

    def darkest(self):
        """The brightness of the darkest pixel, which is of a title."""
        return min(sum(pixel[:3]) // 3 for pixel in self.pixels() if pixel[3] == 255)

    def description(self):
        return self.chunks[b"iTXt"].removeprefix(b"Description\0\0\0\0\0").decode("utf-8")


class PictureTest(FinderSimTestCase):

    def setUp(self):
        super().setUp()
        self.out = Run.new_folder() / "the menu.png"

    def picture(self, *arguments, **options):
        self.finder_sim("picture", self.out, *arguments, **options)
        return Picture(self.out.read_bytes())

    @functools.cached_property
    def extension(self):
        return self.start_extension()

    def draw(self, *index_path, selected=("/a",), scale=1):
        """A picture of the menu without `finder-sim`, which would start an extension for each."""
        self.extension.request("menu", kind="items", selectedPaths=selected)
        response = self.extension.request("picture", indexPath=index_path, scale=scale)
        return Picture(base64.b64decode(response["png"]))

    def no_picture(self, *arguments):
        """What is said where no picture can be drawn."""
        reason = self.refused("picture", self.out, *arguments)
        self.assertEqual(reason.count("\n"), 1)
        self.assertFalse(self.out.exists())
        return reason

    def show_one_entry(self, title):
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["customActions"], "menuLayout": "expanded"})
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [
            {"id": "one", "name": title, "kind": "shortcut", "shortcutName": "One"}])

    def test_the_size_is_reported(self):
        output = self.finder_sim("picture", self.out, *SELECT)
        picture = Picture(self.out.read_bytes())
        self.assertIn(f"{picture.width} × {picture.height}", output)
        report = json.loads(self.finder_sim("picture", self.out, "--json", *SELECT))
        self.assertEqual(report, {"path": str(self.out), "width": picture.width,
                                  "height": picture.height, "description": picture.description()})

    def test_the_picture_says_in_words_what_it_shows(self):
        description = self.picture("--open", "移动到").description().splitlines()
        at = description.index("移动到 ▸")
        self.assertEqual(description[at + 1], "    移动到桌面  (disabled)")
        self.assertNotIn("    新建文件夹", description)
        shown = self.finder_sim("menu").splitlines()
        titles = [line[2:] for line in shown if line.startswith("  ") and line[2] != " "]
        self.assertEqual([line for line in description if not line.startswith(" ")], titles)

    def test_nothing_is_around_the_menu(self):
        rows = [row[3::4] for row in self.draw().rows]
        columns = list(zip(*rows))
        for edge in (columns[0], columns[-1], rows[0], rows[-1]):
            self.assertGreater(max(edge), 0)
            # But the corners are round.
            self.assertEqual((edge[0], edge[-1]), (0, 0))

    def test_the_scale_multiplies_the_size(self):
        once, twice = self.draw(), self.picture("--scale", "2", "--select", "/a")
        self.assertEqual((twice.width, twice.height), (2 * once.width, 2 * once.height))

    def test_text_is_drawn_anew_at_each_scale(self):
        self.show_one_entry("新建")
        once, twice = self.draw(), self.draw(scale=2)
        enlarged = [b"".join(2 * row[index:index + 4] for index in range(0, len(row), 4))
                    for row in once.rows for _ in range(2)]
        self.assertEqual(len(enlarged[0]), len(twice.rows[0]))
        self.assertTrue(enlarged != twice.rows)

    def test_a_disabled_title_is_lighter(self):
        self.show_one_entry("Resize")
        enabled, disabled = self.draw(), self.draw(selected=[])
        self.assertEqual((enabled.width, enabled.height), (disabled.width, disabled.height))
        self.assertGreater(disabled.darkest(), enabled.darkest() + 80)

    def test_characters_have_glyphs_of_their_own(self):
        for title, other in (("新", "建"), ("縮", "圖"), ("か", "ナ"), ("한", "글"), ("ж", "ф")):
            with self.subTest(title=title):
                self.show_one_entry(title)
                rows = self.draw().rows
                self.show_one_entry(other)
                self.assertTrue(self.draw().rows != rows)

    def test_a_submenu_is_shown_beside_its_entry(self):
        opened = self.picture("--open", "移动到")
        deeper = self.picture("--open", "移动到", "移动到文件夹")
        self.assertLess(self.draw().width, opened.width)
        self.assertLess(opened.width, deeper.width)
        same = self.picture("--open", "移动到", "--open", "移动到文件夹")
        self.assertTrue(deeper.chunks == same.chunks)

    def test_the_entry_of_an_open_submenu_is_highlighted(self):
        def blue(picture):
            return sum(pixel[2] > pixel[0] + 100 for pixel in picture.pixels())
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["viewOptions"], "menuLayout": "collapsed"})
        self.assertEqual(blue(self.draw()), 0)
        self.assertGreater(blue(self.draw(0)), 1000)

    def test_a_submenu_has_an_arrow(self):
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["viewOptions"], "menuLayout": "collapsed"})
        opening = self.draw()
        self.show_one_entry("调整显示方式")
        plain = self.draw()
        self.assertEqual(opening.height, plain.height)
        self.assertGreater(opening.width, plain.width)
        # Something is drawn to the right of the title, but for the panel's edge.
        edge = slice(4 * (plain.width - 8), 4 * (opening.width - 8))
        middle = opening.height // 2
        self.assertGreater(len({bytes(row[edge])
                           for row in opening.rows[middle - 5:middle + 5]}), 1)

    def test_separators_are_lines(self):
        def lines(picture):
            """How many rows between the edges are of one colour over most of the width, but not of
            the background."""
            rows = [{row[index:index + 4] for index in range(48, len(row) - 48, 4)}
                    for row in picture.rows[4:-4]]
            return len([colours for colours in rows if len(colours) == 1]) - len(
                [colours for colours in rows if colours == rows[0]])
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["archiveTools"], "menuLayout": "expanded"})
        self.assertEqual(lines(self.draw()), 0)
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["archiveTools", "viewOptions"], "menuLayout": "expanded"})
        self.assertGreater(lines(self.draw()), 0)

    def test_the_menu_has_the_layout_and_the_language_that_are_asked_for(self):
        for layout, line in (("collapsed", "New ▸"), ("expanded", "New Folder")):
            picture = self.picture("--language", "en", "--layout", layout)
            self.assertIn(line, picture.description().splitlines())

    def test_the_layout_can_be_another_than_that_of_the_settings(self):
        collapsed, expanded = (self.picture("--layout", layout).description()
                               for layout in ("collapsed", "expanded"))
        self.assertIn("\n新建 ▸\n", collapsed)
        self.assertNotIn("\n新建 ▸\n", expanded)
        self.assertIn("\n新建文件夹\n", expanded)

    def test_a_submenu_can_be_empty(self):
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["viewOptions"], "menuLayout": "collapsed"})
        self.home.write(FINDER_VIEW_PRESETS, [])
        self.assertGreater(self.draw(0).width, self.draw().width)

    def test_a_title_of_any_characters_is_drawn(self):
        for title in ("a\nb", "\t", "", " ", "\u202e", "😀", "ไทย", "e" + "\u0301" * 100, "\ufffd"):
            with self.subTest(title=title):
                self.show_one_entry(title)
                self.assertGreater(self.draw().height, 20)
        self.show_one_entry("a\nb\u202e")
        self.assertEqual(self.picture().description(), "a\\u000ab\\u202e  (disabled)\n")

    def test_what_can_t_be_opened_is_named(self):
        self.assertIn("移动到 ▸ Nothing", self.no_picture("--open", "移动到", "Nothing"))
        self.assertIn("opens no submenu", self.no_picture("--open", "新建", "新建文件夹"))
        self.assertIn("\\u001b[31m", self.no_picture("--open", "\x1b[31m"))

    def test_what_can_t_be_written_is_named(self):
        for path in (self.out.parent, self.out.parent / "missing" / "menu.png",
                     Path("/Volumes/Small/no such folder/menu.png")):
            with self.subTest(path=path):
                reason = self.refused("picture", path)
                self.assertEqual(reason.count("\n"), 1)
                self.assertIn(str(path), reason)

    def test_a_picture_that_can_t_be_written_wholly_is_a_failure(self):
        reason = self.refused("picture", "/dev/full")
        self.assertIn("No space left", reason)

    @alone
    def test_a_full_disk_keeps_the_picture_that_there_was(self):
        out, filler = SMALL_DISK / "menu.png", SMALL_DISK / "filler"
        for path in (out, filler):
            self.addCleanup(path.unlink)
        out.write_bytes(b"former")
        with contextlib.suppress(OSError), filler.open("wb", buffering=0) as file:
            while True:
                file.write(bytes(4096))
        os.truncate(filler, filler.stat().st_size - 4096)
        self.assertIn(f"{out}: No space left", self.refused("picture", out))
        self.assertEqual(out.read_bytes(), b"former")
        self.assertEqual(set(SMALL_DISK.iterdir()), {out, filler})

    def test_a_link_is_written_through(self):
        target = self.out.with_name("target.png")
        self.out.symlink_to(target)
        self.picture()
        self.assertTrue(self.out.is_symlink())
        self.assertTrue(target.is_file())

    @alone
    def test_a_file_that_may_not_be_changed_is_kept(self):
        self.out.write_bytes(b"former")
        self.out.chmod(0o400)
        self.assertIn("Permission denied", self.refused("picture", self.out))
        self.assertEqual(self.out.read_bytes(), b"former")

    def test_a_picture_is_written_where_the_sandbox_lets_nothing_be_written(self):
        self.require_namespaces()
        (self.home.path / "Pictures").mkdir()
        for folder in (self.out.parent, self.home.path, self.home.path / "Pictures"):
            with self.subTest(folder=folder):
                path = folder / "menu.png"
                output = self.finder_sim("picture", path, "--sandbox")
                self.assertTrue(output.startswith(f"{path}: "), output)
                self.assertGreater(Picture(path.read_bytes()).width, 0)
                self.assertEqual(len(list(folder.glob(".finder-sim*"))), 0)
        self.assertIn("/dev/full: No space left", self.refused("picture", "/dev/full", "--sandbox"))

    def test_of_entries_with_one_title_the_one_that_can_be_opened_is(self):
        items = [entry("A", submenu=menu(entry("disabled")), enabled=False), entry("A"),
                 entry("A", submenu=menu(entry("enabled")))]
        self.respond({"menu": menu(*items)}, {"png": base64.b64encode(PNG).decode()})
        self.finder_sim("picture", self.out, "--open", "A")
        self.assertIn(b"A \xe2\x96\xb8  (disabled)\nA\nA \xe2\x96\xb8\n    enabled\n",
                      self.out.read_bytes())

    def test_a_response_that_does_not_follow_the_protocol_is_a_failure(self):
        for responses in (
                [{"menu": menu("A")}], [{"menu": menu({"title": "A"})}], [{"menu": {"items": 1}}],
                [{"menu": menu(entry("A") | {"title": 1})}],
                [{"menu": menu(entry("A", submenu=None))}],
                [{"menu": menu(entry("A", submenu=[]))}],
                *([{"menu": menu(entry("A"))}, {"png": png}] for png in (
                    1, "", "A", "é", "====", base64.b64encode(b"GIF89a" + bytes(40)).decode(),
                    *(base64.b64encode(PNG[:length]).decode() for length in (8, 16, 32))))):
            with self.subTest(responses=responses):
                self.respond(*responses)
                self.assertIn("does not follow the protocol", self.no_picture())

    def respond(self, *responses):
        """Has an extension in place of the real one give these responses."""
        self.use_extension(
            "import json",
            f"for number, response in enumerate({responses!r}, start=1):",
            "    input()",
            "    print(json.dumps({'id': number} | response), flush=True)",
            "import sys; sys.stdin.read()")

    def test_wrong_arguments_are_refused(self):
        for arguments in ((), ("",), (self.out, "another.png"), (self.out, "--scale", "0"),
                          (self.out, "--scale", "5"), (self.out, "--scale", "1.5"),
                          (self.out, "--open")):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.refused("picture", *arguments).count("\n"), 1)
        self.assertFalse(self.out.exists())

    def test_an_empty_menu_is_not_drawn(self):
        self.home.write(FEATURE_SETTINGS, {"enabledFeatureIDs": ["customActions"]})
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [])
        self.no_picture()

    def test_a_menu_that_is_too_large_is_not_drawn(self):
        self.show_one_entry("永" * 10000)
        self.assertIn("10,000 pixels", self.no_picture())
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [
            {"id": str(number), "name": str(number), "kind": "shortcut", "shortcutName": "x"}
            for number in range(2000)])
        self.extension.request("menu", kind="items")
        self.assertIn("10,000 pixels", self.error_of({"indexPath": []}))
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [
            {"id": str(number), "name": "永" * 80, "kind": "shortcut", "shortcutName": "x"}
            for number in range(100)])
        self.extension.request("menu", kind="items")
        self.assertIn("25 million", self.error_of({"indexPath": [], "scale": 4}))
        self.assertIn("png", self.extension.request("picture", indexPath=[], scale=1))

    def test_the_extension_refuses_what_it_can_t_draw_and_goes_on(self):
        for members, reason in (
                ({"indexPath": []}, "there is no menu"),
                ({}, "indexPath"), ({"indexPath": {}}, "indexPath"),
                ({"indexPath": ["0"]}, "indexPath"), ({"indexPath": [-1]}, "indexPath"),
                ({"indexPath": [], "scale": 0}, "scale"), ({"indexPath": [], "scale": 5}, "scale"),
                ({"indexPath": [], "scale": 1.5}, "scale"),
                ({"indexPath": [], "scale": "2"}, "scale")):
            with self.subTest(members=members):
                self.assertIn(reason, self.error_of(members))
        self.extension.request("menu", kind="items")
        self.assertIn("no item", self.error_of({"indexPath": [1000]}))
        self.assertIn("png", self.extension.request("picture", indexPath=[]))

    def test_a_menu_that_was_drawn_is_clicked_as_before(self):
        self.draw(0)
        self.extension.request("click", indexPath=[1, 0])
        self.assertEqual(len(self.home.records()), 1)

    def error_of(self, members):
        self.extension.send_line(json.dumps({"id": 1, "request": "picture", **members}))
        return self.extension.read_response()["error"]


class ReadmePicturesTest(FinderSimTestCase):

    def run_script(self, *arguments):
        return subprocess.run(
            [PICTURES, *arguments], env=program_environment(self.home) | {
                "QUORVA_BUILD_FOLDER": str(build_folder())},
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")

    def test_the_pictures_of_the_readme_show_what_the_menu_is(self):
        result = self.run_script("--check")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        pictures = list((PICTURES.parents[1] / "Documentation" / "Pictures").iterdir())
        self.assertEqual(len(pictures), 2)
        for path in pictures:
            self.assertGreater(Picture(path.read_bytes()).width, 300)


if __name__ == "__main__":
    unittest.main()
