"""The JSON Schemas of the record and of the settings files: they take what the extension takes."""

import copy
import datetime
import functools
import json
import operator
import plistlib
import unittest
from pathlib import Path

import samples
import schemas
import test_embedding_guide
import test_menus
from catalogue import COMMANDS, TITLES
from menu_model import (
    MenuBuilder, Request, Settings, actionable_items, string_dictionaries, strings)
from quorva_process import SETTINGS_FILES

SAMPLES = (Path(__file__).resolve().parents[2]
           / "Simulator/Samples/Home/Library/Application Support/Quorva")

NAMES = [file.removesuffix(".plist") for file in SETTINGS_FILES]
FIELDS = dict(zip(NAMES, (
    "feature_settings", "custom_destinations", "custom_shortcut_actions", "finder_view_presets")))

CASES = dict(zip(NAMES, (
    test_menus.FEATURE_SETTINGS_CASES, test_menus.CUSTOM_DESTINATIONS_CASES,
    test_menus.CUSTOM_SHORTCUT_ACTIONS_CASES, test_menus.FINDER_VIEW_PRESETS_CASES)))

# With a value for every key that is looked at.
COMPLETE = dict(zip(NAMES, (
    samples.feature_settings(
        "expanded", True, featureOrder=["copyPath", "unknown"], enabledChildIDs=["copyFileName"],
        childOrderByFeatureID={"copyPath": ["copyFileName"], "unknown": ["copyFullPath"]}),
    samples.CUSTOM_DESTINATIONS | {"unknown": [{"key": "value"}]},
    samples.CUSTOM_SHORTCUT_ACTIONS, samples.FINDER_VIEW_PRESETS)))

WRONG_TYPES = [0, 1, 1.5, True, "a", b"a", datetime.datetime(2024, 2, 29), plistlib.UID(1),
               ["a"], [1], {"a": "b"}, {"a": 1}]

RECORD = {
    "actionID": "createFolder", "createdAt": 1790000000.125, "destinationPath": "", "presetID": "",
    "selectedPaths": ["/a"], "targetedPath": "", "title": "T"}


def settings(name, value):
    return Settings("/Users/ada", "/Users/ada", **{FIELDS[name]: value})


def is_used_whole(name, value):
    """Whether the model discards nothing of what a file holds but unknown keys and identifiers."""
    if name == "FeatureSettings":
        return isinstance(value, dict) and all(map(is_used, value.items()))
    if name == "CustomDestinations":
        return isinstance(value, dict) and all(
            string_dictionaries(entries) is not None for entries in value.values()) and all(
            {"id", "name", "path"} <= entry.keys()
            for kind in samples.CUSTOM_DESTINATIONS for entry in value.get(kind, []))
    shown = getattr(settings(name, value), {
        "CustomShortcutActions": "actions", "FinderViewPresets": "presets"}[name])()
    return string_dictionaries(value) is not None and len(shown) == len(value)


def is_used(member):
    key, value = member
    if key in ("enabledFeatureIDs", "featureOrder", "enabledChildIDs"):
        return strings(value) is not None
    if key == "childOrderByFeatureID":
        return isinstance(value, dict) and all(strings(ids) is not None for ids in value.values())
    if key == "groupsFeaturesUnderQuorva":
        return isinstance(value, bool)
    return key != "menuLayout" or value in ("collapsed", "expanded")


def places(value, way=()):
    """The way to each value within, and to the whole."""
    yield way
    if isinstance(value, (dict, list)):
        for key in value if isinstance(value, dict) else range(len(value)):
            yield from places(value[key], (*way, key))


def changed(value, way, change):
    """A copy in which `change` was called with what holds the end of the way, and its key."""
    result = copy.deepcopy(value)
    *outer, last = way
    change(functools.reduce(operator.getitem, outer, result), last)
    return result


def definitions(value):
    """Every part of a schema that is one itself."""
    if isinstance(value, dict):
        if {"type", "enum", "anyOf", "$ref"} & value.keys():
            yield value
        for key, part in value.items():
            if key not in ("examples", "enum"):
                yield from definitions(part)
    elif isinstance(value, list):
        for part in value:
            yield from definitions(part)


class SettingsSchemaTest(unittest.TestCase):

    def check(self, name, value):
        error = schemas.error(name, value)
        self.assertEqual(error is None, is_used_whole(name, value), error or value)
        return error is None

    def test_a_schema_takes_what_is_used_whole_and_nothing_else(self):
        for name, cases in CASES.items():
            taken = set()
            for case, value in cases.items():
                with self.subTest(file=name, case=case):
                    taken.add(self.check(name, value))
            self.assertEqual(taken, {True, False})

    def test_a_wrong_value_at_any_place_is_refused_where_the_model_discards_it(self):
        for name, value in COMPLETE.items():
            self.assertTrue(self.check(name, value))
            for way in places(value):
                for wrong in WRONG_TYPES:
                    with self.subTest(file=name, way=way, wrong=wrong):
                        self.check(name, wrong if not way else changed(
                            value, way, lambda parent, key: operator.setitem(parent, key, wrong)))

    def test_an_entry_without_one_of_its_keys_is_refused_where_the_model_leaves_it_out(self):
        for name, value in COMPLETE.items():
            for way in places(value):
                if way and isinstance(way[-1], str):
                    with self.subTest(file=name, way=way):
                        self.check(name, changed(value, way, operator.delitem))

    def test_the_sample_files_are_used_whole(self):
        for name in NAMES:
            with self.subTest(file=name):
                value = plistlib.loads((SAMPLES / f"{name}.plist").read_bytes())
                # As a JSON file, too.
                self.assertIsNone(schemas.error(name, json.loads(json.dumps(value))))

    def test_the_guide_s_files_are_used_whole(self):
        for file, example in test_embedding_guide.examples("xml").items():
            with self.subTest(file=file):
                self.assertIsNone(schemas.error(
                    file.removesuffix(".plist"), plistlib.loads(example.encode())))


class RecordSchemaTest(unittest.TestCase):

    def test_the_guide_s_record_is_taken(self):
        [example] = test_embedding_guide.examples("json").values()
        self.assertIsNone(schemas.error("ActionRecord", json.loads(example)))

    def test_a_record_with_another_member_or_without_one_is_refused(self):
        self.assertIsNone(schemas.error("ActionRecord", RECORD))
        self.assertIsNotNone(schemas.error("ActionRecord", RECORD | {"more": ""}))
        for key in RECORD:
            record = {name: value for name, value in RECORD.items() if name != key}
            self.assertIn(repr(key), schemas.error("ActionRecord", record))

    def test_a_member_of_another_type_is_refused(self):
        for key in RECORD:
            for wrong in (None, True, [1], {}, "1" if key in ("createdAt", "selectedPaths") else 1):
                with self.subTest(member=key, wrong=wrong):
                    self.assertIn(f"$.{key}", schemas.error("ActionRecord", RECORD | {key: wrong}))

    def test_the_actions_of_all_entries_are_among_those_that_are_listed(self):
        listed = schemas.validator("ActionRecord").evolve(
            schema=schemas.schema("ActionRecord")["$defs"]["actionID"])
        everything = Settings(
            "/Users/ada", "/Users/ada", feature_settings=samples.feature_settings(
                enabledChildIDs=[command[0] for commands in COMMANDS.values()
                                 for command in commands]), **samples.user_data())
        menu = MenuBuilder(everything, Request(["/a"], "/")).menu()
        actions = [item["representedObject"]["actionID"] for _, item in actionable_items(menu)]
        self.assertGreater(len(actions), 70)
        for action in actions:
            self.assertTrue(listed.is_valid(action), action)
        self.assertFalse(listed.is_valid("unknown"))


class EverySchemaTest(unittest.TestCase):

    def test_there_is_one_of_each_file_and_one_of_the_record(self):
        self.assertEqual(sorted(file.name for file in schemas.FOLDER.iterdir()),
                         sorted(f"{name}.schema.json" for name in (*NAMES, "ActionRecord")))

    def test_the_identifiers_are_those_of_the_catalogue(self):
        commands = {command[0] for commands in COMMANDS.values() for command in commands}
        for name in ("FeatureSettings", "ActionRecord"):
            self.assertEqual(set(schemas.schema(name)["$defs"]["commandID"]["enum"]), commands)
        self.assertEqual(set(schemas.schema("FeatureSettings")["$defs"]["featureID"]["enum"]),
                         set(TITLES))

    def test_each_property_is_described_and_each_example_is_one(self):
        for name in (*NAMES, "ActionRecord"):
            schema = schemas.schema(name)
            for part in definitions(schema):
                for key, member in part.get("properties", {}).items():
                    # What is said of a single key in a condition was described before.
                    self.assertTrue("description" in member or "const" in member
                                    or "minLength" in member, (name, key))
                for example in part.get("examples", []):
                    with self.subTest(schema=name, example=example):
                        validator = schemas.validator(name).evolve(schema=part)
                        self.assertEqual(list(validator.iter_errors(example)), [])


if __name__ == "__main__":
    unittest.main()
