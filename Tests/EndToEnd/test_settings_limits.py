"""Settings files just below and just above each limit."""

import unittest

import property_lists
from menu_model import MenuBuilder, Request, UNUSABLE
from quorva_process import (
    BINARY, CUSTOM_DESTINATIONS, CUSTOM_SHORTCUT_ACTIONS, FEATURE_SETTINGS, FINDER_VIEW_PRESETS,
    EndToEndTestCase)

REQUEST = Request(["/Volumes/Work/a.txt"], "/Volumes/Work")

DEPTH_LIMIT = 512
VALUE_LIMIT = 1_000_000
BYTE_LIMIT = 64_000_000
FILE_LIMIT = 64 * 1024 * 1024

ONE_FEATURE = {"enabledFeatureIDs": ["pdfTools"]}

DESTINATION = {"id": "a", "name": "A", "path": "/a"}
ACTION = {"id": "a", "name": "A", "shortcutName": "S"}
PRESET = {"id": "p", "name": "P", "viewMode": "l", "sortMode": "s"}


def nested(depth):
    """Arrays in one another, the outermost counted."""
    value = []
    for _ in range(depth - 1):
        value = [value]
    return value


class SettingsLimitsTest(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.extension = self.start_extension()

    def check(self, **files):
        self.assertEqual(self.extension.menu(REQUEST),
                         MenuBuilder(self.home.settings(**files), REQUEST).menu())

    def check_feature_settings(self, usable):
        self.check(feature_settings=ONE_FEATURE if usable else UNUSABLE)

    def test_what_is_nested_too_deeply_costs_its_key_of_the_feature_settings(self):
        # The root is the outermost value.
        for depth in (DEPTH_LIMIT - 1, DEPTH_LIMIT, DEPTH_LIMIT + 10):
            with self.subTest(depth=depth):
                self.home.write(FEATURE_SETTINGS, {
                    **ONE_FEATURE, "featureOrder": nested(depth), "unknown": nested(depth),
                }, BINARY)
                self.check_feature_settings(True)

    def test_a_value_of_a_class_without_a_type_costs_its_key_of_the_feature_settings(self):
        values = {"null": b"\x00", "a set": b"\xc0", "an identifier": b"\x80\x01"}
        for case, value in values.items():
            for key in ("featureOrder", "unknown"):
                with self.subTest(value=case, key=key):
                    self.home.write_bytes(FEATURE_SETTINGS, property_lists.binary([
                        property_lists.dictionary([1, 2], [3, 5]),
                        property_lists.text("enabledFeatureIDs"), property_lists.text(key),
                        property_lists.array([4]), property_lists.text("pdfTools"), value]))
                    self.check_feature_settings(True)

    def test_one_value_too_deep_or_without_a_type_costs_any_other_file(self):
        for case, value in {"null": b"\x00", "too deep": None}.items():
            for file, field, entry in (
                    (CUSTOM_DESTINATIONS, "custom_destinations", DESTINATION),
                    (CUSTOM_SHORTCUT_ACTIONS, "custom_shortcut_actions", ACTION),
                    (FINDER_VIEW_PRESETS, "finder_view_presets", PRESET)):
                with self.subTest(value=case, file=file):
                    self.write_with_one_more(file, entry, value)
                    self.check(**{field: UNUSABLE})
                    self.home.write(file, UNUSABLE)

    def write_with_one_more(self, file, entry, value):
        """A file with a usable entry and one that has one more key, with this value."""
        if value is None:
            entries = [entry, {**entry, "more": nested(DEPTH_LIMIT + 10)}]
            self.home.write(
                file, {"copy": entries} if file == CUSTOM_DESTINATIONS else entries, BINARY)
            return
        keys = [*entry, "more"]
        texts = [property_lists.text(text) for text in (*keys, *entry.values())]
        first = 3 + len(texts)
        objects = [
            property_lists.array([1, 2]),
            property_lists.dictionary(range(3, 3 + len(entry)),
                                      range(3 + len(keys), first)),
            property_lists.dictionary(range(3, 3 + len(keys)),
                                      [*range(3 + len(keys), first), first]),
            *texts, value]
        if file == CUSTOM_DESTINATIONS:
            objects += [property_lists.text("copy"), property_lists.dictionary([first + 1], [0])]
        self.home.write_bytes(file, property_lists.binary(
            objects, top=first + 2 if file == CUSTOM_DESTINATIONS else 0))

    def test_a_file_of_as_many_values_as_there_may_be_is_read_and_one_of_more_is_not(self):
        # The root and the array are two of them.
        for count in (VALUE_LIMIT - 2, VALUE_LIMIT - 1):
            self.home.write(FEATURE_SETTINGS, {"enabledFeatureIDs": ["pdfTools"] * count}, BINARY)
            self.check_feature_settings(count == VALUE_LIMIT - 2)

    def test_a_file_of_as_much_text_as_there_may_be_is_read_and_one_of_more_is_not(self):
        room = BYTE_LIMIT - len("enabledFeatureIDs" + "pdfTools" + "more")
        for length in (room, room + 1):
            for value in ("x" * length, b"x" * length):
                with self.subTest(length=length, type=type(value)):
                    self.home.write(FEATURE_SETTINGS, {**ONE_FEATURE, "more": value}, BINARY)
                    self.check_feature_settings(length == room)

    def test_a_file_as_long_as_it_may_be_is_read_and_a_longer_one_is_not(self):
        content = property_lists.xml(
            b"<dict><key>enabledFeatureIDs</key><array><string>pdfTools</string></array></dict>")
        for length in (FILE_LIMIT, FILE_LIMIT + 1):
            self.home.write_bytes(FEATURE_SETTINGS,
                                  content + b"\n" * (length - len(content)))
            self.check_feature_settings(length == FILE_LIMIT)


if __name__ == "__main__":
    unittest.main()
