"""The examples of Documentation/Embedding.md do what it says of them."""

import json
import plistlib
import re
import unittest
from pathlib import Path

from menu_model import Request
from quorva_process import SETTINGS_FILES, EndToEndTestCase, titles

GUIDE = Path(__file__).resolve().parents[2] / "Documentation" / "Embedding.md"

CLICKED = Request(["/Users/ada/Desktop/notes.txt"], "/Users/ada/Desktop")


def examples(language):
    """The code blocks in that language, by the heading above."""
    found = {}
    for section in re.split(r"^##+ ", GUIDE.read_text(encoding="utf-8"), flags=re.MULTILINE):
        for block in re.findall(rf"^```{language}\n(.*?)^```", section, re.MULTILINE | re.DOTALL):
            found[section.splitlines()[0]] = block
    return found


class ExamplesTest(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        for name, example in examples("xml").items():
            self.home.write_bytes(name, example.encode())

    def menu(self, feature):
        """The titles of the feature's submenu, with only that feature switched on unless None."""
        if feature:
            self.home.write("FeatureSettings.plist", {"enabledFeatureIDs": [feature]})
        return titles(self.start_extension(language="en").menu(CLICKED))

    def test_there_is_one_of_each_file(self):
        self.assertEqual(list(examples("xml")), list(SETTINGS_FILES))
        for example in examples("xml").values():
            plistlib.loads(example.encode())

    def test_feature_settings_show_the_two_submenus(self):
        self.assertEqual(self.menu(None), [
            ("Copy Name and Path", ["Copy File Name", "Copy Full Path"]),
            ("More Tools", ["Copy SHA-256"])])

    def test_destinations_are_copied_to(self):
        [(_, entries)] = self.menu("copyFile")
        self.assertIn(("Copy to Folder", ["Copy to Projects"]), entries)

    def test_custom_actions_are_shown(self):
        self.assertEqual(self.menu("customActions"), [("Custom Actions", ["Resize for the web"])])

    def test_presets_are_shown(self):
        self.assertEqual(self.menu("viewOptions"), [("Change View", ["Gallery · Size"])])

    def test_the_record_is_one_that_the_extension_writes(self):
        [example] = examples("json").values()
        record = json.loads(example)
        extension = self.start_extension(language="en")
        extension.send({"title": "T", "representedObject": {
            "type": "dictionary", **{key: record[key] for key in (
                "actionID", "title", "destinationPath")}}}, CLICKED)
        [written] = self.home.take_records()
        self.assert_record(written, {key: value for key, value in record.items()
                                     if key != "createdAt"})


if __name__ == "__main__":
    unittest.main()
