"""The settings doctor."""

import json
import os
import plistlib
import pty
import pwd
import re
import socket
import subprocess
import sys
import unittest
from pathlib import Path

import property_lists
import samples
from menu_model import Request
from quorva_process import (
    BINARY, CUSTOM_DESTINATIONS, CUSTOM_SHORTCUT_ACTIONS, FEATURE_SETTINGS, FINDER_VIEW_PRESETS,
    SETTINGS_FILES, TEMPORARY_LOG, TIME_LIMIT, XML, EndToEndTestCase, alone, build_folder,
    program_environment)

ROOT = Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "Tests/Fuzz"))
from test_random_settings import Generator  # noqa: E402

CONTAINER = "Library/Containers/app.ferrolin.Quorva.FinderExtension/Data"

# What a terminal could act on.
UNFIT_TO_SHOW = re.compile(
    "[\0-\x09\x0b-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]")

DESTINATION = {"id": "a", "name": "A", "path": "/a"}
ACTION = {"id": "a", "name": "A", "kind": "shortcut", "shortcutName": "S"}
PRESET = {"id": "p", "name": "P", "viewMode": "l", "sortMode": "s"}

XML_CUT = plistlib.dumps([PRESET])[:-40]
BINARY_CUT = plistlib.dumps([PRESET], fmt=BINARY)[:-4]


def without(entry, key):
    return {name: value for name, value in entry.items() if name != key}


def features(**others):
    """Settings that name every feature, so that nothing else is to say of them."""
    return {"enabledFeatureIDs": samples.ALL_FEATURES, "featureOrder": samples.ALL_FEATURES,
            **others}


# The files broken, each with the kind and the words of what is said of it first.
BROKEN = {
    FEATURE_SETTINGS: (
        (b"nonsense", "wrongType",
         "the root is a string, must be a dictionary; the whole file is ignored"),
        ([features()], "wrongType",
         "the root is an array, must be a dictionary; the whole file is ignored"),
        (XML_CUT, "malformedFile", "the file is not a property list, so the defaults apply: "),
        ({"enabledFeatureIds": ["pdfTools"], "featureOrder": ["pdfTools"]}, "misspelledKey",
         "enabledFeatureIds is a key that nothing reads: did you mean enabledFeatureIDs?"),
        (features(featureOrder="pdfTools"), "wrongType",
         "featureOrder is a string, must be an array; featureOrder is ignored"),
        (features(featureOrder=["pdfTools", 7]), "wrongType",
         "featureOrder[1] is an integer, must be a string; featureOrder is ignored"),
        ({"enabledFeatureIDs": ["copyFile", "PDFTools"], "featureOrder": ["pdfTools"]},
         "unknownFeature",
         "enabledFeatureIDs[1]: PDFTools is not a feature: did you mean pdfTools?"),
        ({"enabledFeatureIDs": ["pdfTools"], "featureOrder": ["pdf_tools"]},
         "unknownFeature", "featureOrder[0]: pdf_tools is not a feature: did you mean pdfTools?"),
        ({"enabledFeatureIDs": ["createFolder"]}, "unknownFeature",
         "enabledFeatureIDs[0]: createFolder is not a feature: it is a command of createFile"),
        (features(menuLayout="Expanded"), "unknownLayout",
         "menuLayout: Expanded is not a layout: did you mean expanded?"),
        (features(groupsFeaturesUnderQuorva=1), "wrongType",
         "groupsFeaturesUnderQuorva is an integer, must be a boolean; "
         "groupsFeaturesUnderQuorva is ignored"),
        (features(childOrderByFeatureID={"pdfTools": ["mergePDFs", "compressToZIP"]}),
         "unknownCommand",
         "childOrderByFeatureID.pdfTools[1]: compressToZIP is not a command of this feature: "
         "it is a command of archiveTools"),
        (features(childOrderByFeatureID={"pdfTool": []}), "unknownFeature",
         "childOrderByFeatureID.pdfTool: pdfTool is not a feature: did you mean pdfTools?"),
        (features(enabledChildIDs=["mergePDF"]), "unknownCommand",
         "enabledChildIDs[0]: mergePDF is not a command: did you mean mergePDFs?"),
        (features(featureOrder=["pdfTools", *samples.ALL_FEATURES]), "repeatedFeature",
         "featureOrder[9]: pdfTools is listed before; this time is ignored"),
        (features(childOrderByFeatureID={"scheduledDeletion": ["scheduleDelete7Days"]}),
         "replacedCommandOrder",
         "childOrderByFeatureID.scheduledDeletion lacks scheduleDelete1Hour or has it where it was "
         "first added, so the default order replaces it"),
        ({"featureOrder": ["pdfTools"]}, "ignoredFeatureOrder",
         "featureOrder is ignored, because it counts only beside a usable enabledFeatureIDs"),
        ({"enabledFeatureIDs": ["pdfTools"],
          "featureOrder": [id for id in samples.ALL_FEATURES if id != "copyFile"]}, "newFeature",
         "enabledFeatureIDs: copyFile is not listed, but shown, because featureOrder does not "
         "list it either"),
        ({"enabledFeatureIDs": ["archiveTools"], "enabledChildIDs": ["compressToZIP"],
          "childOrderByFeatureID": {"archiveTools": ["compressToZIP", "extractZIPHere"]}},
         "newCommand",
         "enabledChildIDs: extractZIPToFolder is not listed, but on, because "
         "childOrderByFeatureID does not list it either"),
        ({"enabledFeatureIDs": ["developerTools"], "enabledChildIDs": ["copyMD55"],
          "childOrderByFeatureID": {}}, "unknownCommand",
         "enabledChildIDs[0]: copyMD55 is not a command: did you mean copyMD5?"),
        ({"enabledFeatureIDs": ["developerTools"], "enabledChildIDs": []},
         "featureWithoutCommands",
         "enabledChildIDs: no command of developerTools is listed, so all of them are on"),
    ),
    CUSTOM_DESTINATIONS: (
        ([DESTINATION], "wrongType",
         "the root is an array, must be a dictionary; the whole file is ignored"),
        (BINARY_CUT, "malformedFile", "the file is not a property list, so the defaults apply: "),
        ({"Copy": [DESTINATION]}, "misspelledKey",
         "Copy is a key that nothing reads: did you mean copy?"),
        ({"copy": DESTINATION}, "wrongType",
         "copy is a dictionary, must be an array; the whole file is ignored"),
        ({"copy": [DESTINATION, "/b"]}, "wrongType",
         "copy[1] is a string, must be a dictionary; the whole file is ignored"),
        ({"copy": [DESTINATION, DESTINATION, {**DESTINATION, "path": 3}]}, "wrongType",
         "copy[2].path is an integer, must be a string; the whole file is ignored"),
        ({"copy": [DESTINATION], "more": 1.5}, "wrongType",
         "more is a real, must be an array; the whole file is ignored"),
        ({"move": [without(DESTINATION, "path")]}, "missingKey",
         "move[0].path is missing; the entry is dropped"),
        ({"quickOpen": [DESTINATION, {**without(DESTINATION, "path"), "Path": "/b"}]},
         "misspelledKey", "quickOpen[1].Path is a key that nothing reads: did you mean path?"),
        ({"quickOpen": [without(DESTINATION, "id")]}, "missingKey",
         "quickOpen[0].id is missing; the entry is dropped"),
        ({"openApplication": [{**DESTINATION, "id": "vscode"}]}, "catalogueApplication",
         "openApplication[0]: vscode is an editor that this list may not have; the entry is "
         "dropped"),
    ),
    CUSTOM_SHORTCUT_ACTIONS: (
        ({"actions": [ACTION]}, "wrongType",
         "the root is a dictionary, must be an array; the whole file is ignored"),
        (b"bplist00", "malformedFile", "the file is not a property list, so the defaults apply: "),
        ([ACTION, [ACTION]], "wrongType",
         "[1] is an array, must be a dictionary; the whole file is ignored"),
        ([{**ACTION, "name": True}], "wrongType",
         "[0].name is a boolean, must be a string; the whole file is ignored"),
        ([without(ACTION, "name")], "missingKey", "[0].name is missing; the entry is dropped"),
        ([without(ACTION, "id")], "missingKey", "[0].id is missing; the entry is dropped"),
        ([{**ACTION, "kind": "script"}], "missingKey",
         "[0].scriptPath is missing; the entry is dropped"),
        ([{**ACTION, "kind": "script", "scriptpath": "/s"}], "misspelledKey",
         "[0].scriptpath is a key that nothing reads: did you mean scriptPath?"),
        ([{**ACTION, "shortcutName": ""}], "emptyValue",
         "[0].shortcutName is empty; the entry is dropped"),
        ([{**ACTION, "kind": "Script"}], "unknownKind",
         "[0].kind: Script is not a kind, and taken for a shortcut: did you mean script?"),
        ([ACTION, {**ACTION, "name": "B"}], "sharedID",
         "[1]: [0] has the id a too, so both send the actionID runShortcut__a"),
    ),
    FINDER_VIEW_PRESETS: (
        ({"presets": [PRESET]}, "wrongType",
         "the root is a dictionary, must be an array; the whole file is ignored"),
        (XML_CUT, "malformedFile", "the file is not a property list, so the defaults apply: "),
        (["list"], "wrongType", "[0] is a string, must be a dictionary; the whole file is ignored"),
        ([{**PRESET, "sortMode": 2}], "wrongType",
         "[0].sortMode is an integer, must be a string; the whole file is ignored"),
        ([PRESET, {**PRESET, "more": b"x"}], "wrongType",
         "[1].more is data, must be a string; the whole file is ignored"),
        ([PRESET, without(PRESET, "viewMode")], "missingKey",
         "[1].viewMode is missing; the entry is dropped"),
        ([PRESET, without(PRESET, "name")], "missingKey",
         "[1].name is missing; the entry is dropped"),
        ([{**without(PRESET, "viewMode"), "view mode": "l"}], "misspelledKey",
         "[0].view mode is a key that nothing reads: did you mean viewMode?"),
        ([PRESET, {**PRESET, "name": "Q"}], "sharedID",
         "[1]: [0] has the id p too, so both send the actionID finderViewPreset__p"),
        ([], "emptySubmenu", "viewOptions is shown, but its submenu is empty"),
    ),
}


class DoctorTestCase(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.home.quorva.mkdir(parents=True)

    def run_doctor(self, *arguments, environment=None, **options):
        return subprocess.run(
            [build_folder() / "quorva-doctor", *arguments], **{
                "stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE,
                "encoding": "utf-8", "timeout": TIME_LIMIT,
                "env": program_environment(self.home, display=False) | (environment or {})
            } | options)

    def doctor(self, *arguments, status=None, home=None):
        """Standard output of a call that must succeed, which is with either status."""
        result = self.run_doctor("--home", home or self.home.path, *arguments)
        self.assertEqual(result.stderr, "")
        self.assertIn(result.returncode, (0, 1) if status is None else (status,))
        return result.stdout

    def report(self, *arguments, **options):
        return json.loads(self.doctor("--json", *arguments, **options))

    def findings(self, name, severity="finding"):
        [file] = [file for file in self.report()["files"] if file["name"] == name]
        return [finding for finding in file["findings"] if finding["severity"] == severity]

    def put(self, name, value):
        if isinstance(value, bytes):
            self.home.write_bytes(name, value)
        else:
            self.home.write(name, value)

    def refused(self, *arguments, **options):
        """The one line on standard error of a call that can't run."""
        result = self.run_doctor(*arguments, **options)
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assertRegex(result.stderr, r"\Aquorva-doctor: .*\n\Z")
        self.assertNotRegex(result.stderr, UNFIT_TO_SHOW)
        return result.stderr


class FirstFindingTest(DoctorTestCase):

    def check(self, name):
        cases = BROKEN[name]
        self.assertGreaterEqual(len(cases), 10)
        for value, kind, message in cases:
            with self.subTest(file=name, message=message):
                self.put(name, value)
                first, *_ = self.findings(name)
                self.assertEqual((first["kind"], first["message"][:len(message)]), (kind, message))
                self.assertIn(f"\n  {name}: {message}", self.doctor(status=1))

    def test_of_broken_settings_of_features_it_names_the_cause(self):
        self.check(FEATURE_SETTINGS)

    def test_of_broken_destinations_it_names_the_cause(self):
        self.check(CUSTOM_DESTINATIONS)

    def test_of_broken_actions_it_names_the_cause(self):
        self.check(CUSTOM_SHORTCUT_ACTIONS)

    def test_of_broken_presets_it_names_the_cause(self):
        self.check(FINDER_VIEW_PRESETS)


class FilesTest(DoctorTestCase):

    def test_settings_without_fault_have_no_findings(self):
        self.home.write_settings(self.home.settings(
            feature_settings=features(), **samples.user_data()))
        report = self.report(status=0)
        self.assertEqual((report["findings"], len(report["files"])), (0, 4))
        output = self.doctor(status=0)
        self.assertIn("\nNothing to mend.\n", output)
        self.assertNotIn("Findings", output)

    def test_no_settings_are_no_fault(self):
        report = self.report(status=0)
        self.assertEqual([[finding["kind"] for finding in file["findings"]][:1] == ["missingFile"]
                          and not file["found"] and file["usable"] is False
                          for file in report["files"]], [True] * 4)

    def test_the_encoding_is_named(self):
        old_style = b'{ enabledFeatureIDs = ("pdfTools"); featureOrder = ("pdfTools"); }'
        for encoding, content in (
                ("XML", plistlib.dumps(features())), ("old-style", old_style),
                ("binary", plistlib.dumps(features(), fmt=BINARY)),
                ("XML", b"\xef\xbb\xbf\n" + plistlib.dumps(features())[39:])):
            with self.subTest(content=content[:20]):
                self.home.write_bytes(FEATURE_SETTINGS, content)
                file = self.report()["files"][0]
                self.assertEqual((file["encoding"], file["found"], file["usable"]),
                                 (encoding, True, True))

    def test_what_only_a_later_version_reads_is_a_note(self):
        self.home.write(FEATURE_SETTINGS, features(shortcuts=["a"]))
        self.assertEqual(self.findings(FEATURE_SETTINGS), [])
        [note] = self.findings(FEATURE_SETTINGS, "note")
        self.assertEqual((note["kind"], note["suggestion"]), ("unknownKey", None))

    def test_what_was_meant_is_told(self):
        written = {"PDFTools": "pdfTools", "pdf-tools": "pdfTools", "copyfile": "copyFile",
                   "openwtih": "openWith", "viewOption": "viewOptions", "quickOpenn": "quickOpen",
                   "copy": None, "": None, "pdf": None, "x" * 100_000: None}
        self.home.write(FEATURE_SETTINGS, features(enabledFeatureIDs=list(written)))
        self.assertEqual({finding["value"]: finding["suggestion"]
                          for finding in self.findings(FEATURE_SETTINGS)}, written)

    def test_a_command_of_a_hidden_feature_does_not_come_back(self):
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["archiveTools"], "enabledChildIDs": ["compressToZIP"],
            "childOrderByFeatureID": {
                "archiveTools": ["compressToZIP", "extractZIPHere", "extractZIPToFolder"]}})
        self.doctor(status=0)

    def test_in_the_order_of_a_feature_only_its_own_commands_are_meant(self):
        self.home.write(FEATURE_SETTINGS, features(
            childOrderByFeatureID={"pdfTools": ["compressToZIPP", "mergePDF"]}))
        self.assertEqual([finding["suggestion"] for finding in self.findings(FEATURE_SETTINGS)],
                         [None, "mergePDFs"])

    def test_of_what_the_menu_does_not_show_nothing_is_said(self):
        with_user_entries = ["copyFile", "openWith"]
        others = [id for id in samples.ALL_FEATURES
                  if id not in ("customActions", *with_user_entries)]
        self.home.write(CUSTOM_DESTINATIONS, {
            "copy": [{**DESTINATION, "path": "/Users/ada/Desktop"}],
            "openApplication": [DESTINATION]})
        for case, settings in {
            "a command that is off": {
                "enabledFeatureIDs": ["developerTools"], "enabledChildIDs": ["copyMD5"],
                "featureOrder": samples.ALL_FEATURES,
                "childOrderByFeatureID": {
                    "developerTools": ["copySHA256", "copySHA256", "copyMD5"]}},
            "the commands of a feature that is off": {
                "enabledFeatureIDs": ["archiveTools"], "featureOrder": samples.ALL_FEATURES,
                "childOrderByFeatureID": {"pdfTools": ["mergePDFs", "mergePDFs"],
                                          "scheduledDeletion": []}},
            "a feature that is off": {
                "enabledFeatureIDs": ["pdfTools"],
                "featureOrder": [id for id in samples.ALL_FEATURES if id != "developerTools"]},
            "a feature that has no entries": {
                "enabledFeatureIDs": others, "featureOrder": [*others, *with_user_entries]},
            "presets in place of the one command": {
                "enabledFeatureIDs": ["viewOptions"], "featureOrder": samples.ALL_FEATURES,
                "enabledChildIDs": [],
                "childOrderByFeatureID": {"viewOptions": ["finderViewPreset"]}},
        }.items():
            with self.subTest(case=case):
                self.home.write(FEATURE_SETTINGS, settings)
                about = [(finding["kind"], finding["value"])
                         for file in self.report("--account-home", "/Users/ada")["files"]
                         for finding in file["findings"]
                         if finding["kind"] not in ("missingFile", "missingApplication")]
                self.assertEqual(about, [])

    def test_of_a_destination_whose_command_is_off_that_is_said(self):
        self.home.write(CUSTOM_DESTINATIONS, {
            "move": [{**DESTINATION, "path": "/Users/ada/Desktop"}]})
        self.home.write(FEATURE_SETTINGS, features(
            enabledChildIDs=["moveFilesToDownloads"],
            childOrderByFeatureID={"organizeFile": ["moveFilesToDesktop"]}))
        [note] = [finding for finding in self.report("--account-home", "/Users/ada")["files"][1][
            "findings"] if finding["kind"] == "hiddenDestination"]
        self.assertEqual(note["message"], "move[0]: /Users/ada/Desktop is not in the submenu, "
                         "because it has a command of its own, which is off")

    def test_a_destination_that_has_a_command_is_a_note(self):
        self.home.write(CUSTOM_DESTINATIONS, {
            "copy": [DESTINATION, {**DESTINATION, "path": "/Users/ada/Desktop"}]})
        report = self.report("--account-home", "/Users/ada")
        [note] = [finding for finding in report["files"][1]["findings"]
                  if finding["kind"] == "hiddenDestination"]
        self.assertEqual((note["severity"], note["path"], note["value"]),
                         ("note", "copy[1]", "/Users/ada/Desktop"))

    def test_an_application_that_is_not_there_is_a_note(self):
        there = {"id": "there", "name": "There", "path": str(self.home.path)}
        self.home.write(CUSTOM_DESTINATIONS, {"openApplication": [there, DESTINATION]})
        self.assertEqual([(note["path"], note["value"])
                          for note in self.findings(CUSTOM_DESTINATIONS, "note")
                          if note["kind"] == "absentApplication"], [("openApplication[1]", "/a")])

    def test_a_path_that_is_not_absolute_is_a_note(self):
        self.home.write(CUSTOM_DESTINATIONS, {
            "move": [DESTINATION, {**DESTINATION, "path": "~/a"}],
            "openApplication": [{**DESTINATION, "path": ""}]})
        self.assertEqual([(finding["path"], finding["value"])
                          for finding in self.findings(CUSTOM_DESTINATIONS, "note")
                          if finding["kind"] == "relativePath"],
                         [("move[1]", "~/a"), ("openApplication[0]", "")])

    def test_a_file_that_is_nearly_named_like_one_that_is_missing_is_its_finding(self):
        self.home.write("featuresettings.plist", features())
        self.home.write("FinderViewPreset.plist", [PRESET])
        self.home.write("FinderViewPresets.plist", [PRESET])
        self.home.write("Something.plist", [PRESET])
        [finding] = self.findings(FEATURE_SETTINGS)
        self.assertEqual(
            (finding["kind"], finding["value"], finding["suggestion"], finding["message"]),
            ("misnamedFile", "featuresettings.plist", FEATURE_SETTINGS, "there is a featuresettings"
             ".plist, which nothing reads: did you mean FeatureSettings.plist?"))
        self.assertEqual(self.findings(FINDER_VIEW_PRESETS), [])

    def test_titles_that_entries_share_are_notes_at_their_places(self):
        self.home.write(CUSTOM_DESTINATIONS, {
            "copy": [without(DESTINATION, "name"), DESTINATION, {**DESTINATION, "path": "/b"}],
            "quickOpen": [DESTINATION]})
        self.assertEqual([(note["path"], note["value"])
                          for note in self.findings(CUSTOM_DESTINATIONS, "note")
                          if note["kind"] == "sharedTitle"],
                         [("copy[1]", "复制到A"), ("copy[2]", "复制到A")])

    def test_a_hundred_thousand_bad_entries_are_counted(self):
        self.home.write(CUSTOM_DESTINATIONS, {"copy": [without(DESTINATION, "path")] * 100_000},
                        BINARY)
        lines = self.doctor(status=1).splitlines()
        self.assertIn("  CustomDestinations.plist: copy[9].path is missing; the entry is dropped",
                      lines)
        self.assertIn("  CustomDestinations.plist: and 99990 more of the kind missingKey", lines)
        self.assertLess(len(lines), 300)
        report = self.report()
        self.assertEqual((report["findings"], report["files"][1]["omitted"]),
                         (100_000, {"missingKey": 99_990}))


class HostileFilesTest(DoctorTestCase):

    def check_unusable(self, report=None):
        """Each file is told to be unusable, and the menu is the default one."""
        report = report or self.report(status=1)
        for file in report["files"]:
            self.assertEqual((file["usable"], file["findings"][0]["severity"]),
                             (False, "finding"), file["name"])
        self.assertEqual(report["menu"], self.default_menu)
        return report

    def setUp(self):
        super().setUp()
        self.default_menu = self.report()["menu"]

    def test_a_hostile_property_list_is_told(self):
        for case, content in property_lists.HOSTILE.items():
            with self.subTest(case=case):
                for name in SETTINGS_FILES:
                    self.home.write_bytes(name, content)
                self.check_unusable()

    def test_a_value_that_is_nested_too_deeply_is_told(self):
        for case, content in property_lists.TOO_DEEP.items():
            with self.subTest(case=case):
                self.home.write_bytes(CUSTOM_DESTINATIONS, content)
                [finding] = self.findings(CUSTOM_DESTINATIONS)
                self.assertEqual((finding["kind"], finding["path"]), ("wrongType", "copy"))

    def test_a_value_of_a_class_without_a_type_is_told(self):
        self.home.write(FEATURE_SETTINGS, features(menuLayout=plistlib.UID(1)), BINARY)
        self.assertEqual(
            self.findings(FEATURE_SETTINGS)[0]["message"],
            "menuLayout is a value of another type, must be a string; menuLayout is ignored")

    def test_what_is_not_a_regular_file_is_told(self):
        server = socket.socket(socket.AF_UNIX)
        self.addCleanup(server.close)
        for case, put in {
            "a pipe": os.mkfifo, "a folder": os.mkdir,
            "a device": lambda path: path.symlink_to("/dev/zero"),
            "a link to nothing": lambda path: path.symlink_to("nowhere"),
            "no permission": lambda path: (path.touch(), path.chmod(0)),
            "a gigabyte": lambda path: (path.touch(), os.truncate(path, 1 << 30)),
        }.items():
            with self.subTest(case=case):
                for name in SETTINGS_FILES:
                    put(self.home.quorva / name)
                report = self.check_unusable()
                for file in report["files"]:
                    self.assertEqual((file["found"], file["findings"][0]["kind"]),
                                     (True, "unreadableFile"))
                for name in SETTINGS_FILES:
                    path = self.home.quorva / name
                    path.rmdir() if case == "a folder" else path.unlink()

    def test_a_folder_of_settings_that_can_t_be_entered_is_told(self):
        self.home.write(FEATURE_SETTINGS, features())
        self.home.quorva.chmod(0)
        self.addCleanup(self.home.quorva.chmod, 0o700)
        report = self.check_unusable()
        self.assertEqual([file["findings"][0]["kind"] for file in report["files"]],
                         ["unreadableFile"] * 4)

    def test_nothing_that_a_terminal_acts_on_is_shown_as_it_is(self):
        hostile = "".join(
            map(chr, [*range(32), *range(0x7F, 0xA0), 0x200E, 0x202E, 0x2029, 0x2066]))
        self.home.write(FEATURE_SETTINGS, features(**{hostile: [], "menuLayout": hostile}), BINARY)
        self.home.write(CUSTOM_DESTINATIONS, {
            "copy": [{"id": hostile, "name": hostile, "path": hostile}],
            "openApplication": [{"id": hostile, "name": hostile, "path": hostile}]}, BINARY)
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [
            {"id": hostile, "name": hostile, "shortcutName": "S"}] * 2, BINARY)
        self.home.write(FINDER_VIEW_PRESETS, [{**PRESET, "id": hostile, hostile: ""}], BINARY)
        for arguments in ((), ("--json",), ("--explain", hostile[1:]),
                          ("--explain", hostile[1:], "--json")):
            with self.subTest(arguments=arguments):
                output = self.doctor(*arguments)
                self.assertNotRegex(output, UNFIT_TO_SHOW)
                self.assertIn("\\u001b", output)
                self.assertIn("\\u202e", output)
        action = next(item for item in self.items(self.report()["menu"])
                      if (item.get("id") or "").startswith("runShortcut__"))
        self.assertEqual(action["id"], "runShortcut__" + hostile)

    def items(self, menu):
        for item in menu:
            yield item
            yield from self.items(item.get("submenu", []))


class HomeTest(DoctorTestCase):

    def test_a_home_that_can_t_be_is_refused(self):
        (self.home.path / "file").touch()
        (self.home.path / "shut").mkdir(mode=0)
        for path, reason in (("nowhere", "No such file or directory"), ("file", "Not a directory"),
                             ("shut", "Permission denied"), ("file/below", "Not a directory"),
                             ("a\x1bb\u202e", "No such file or directory")):
            with self.subTest(home=path):
                self.assertIn(reason, self.refused("--home", self.home.path / path))

    def test_options_that_it_does_not_take_are_refused(self):
        home = ("--home", self.home.path)
        for arguments in (("--hom",), ("menu",), ("--home",), (*home, *home), (*home, "--explain"),
                          ("--json=maybe",), ("--\x1b[31m",)):
            with self.subTest(arguments=arguments):
                self.assertIn("--help", self.refused(*arguments))

    def test_without_a_home_that_of_the_account_is_looked_at(self):
        self.home.write(FEATURE_SETTINGS, features())
        report = json.loads(self.run_doctor("--json").stdout)
        self.assertEqual((report["home"], report["files"][0]["found"]),
                         (str(self.home.path), True))

    def test_without_a_home_a_container_in_that_of_the_account_is_looked_at(self):
        container = self.home.path / CONTAINER
        container.mkdir(parents=True)
        report = json.loads(self.run_doctor("--json").stdout)
        self.assertEqual(report["home"], str(container))
        report = json.loads(self.run_doctor("--json", "--account-home", self.home.path,
                                            environment={"HOME": "/nowhere"}).stdout)
        self.assertEqual((report["home"], report["accountHome"]),
                         (str(container), str(self.home.path)))

    def test_a_container_that_can_t_be_looked_at_is_not_passed_over(self):
        container = self.home.path / CONTAINER
        container.mkdir(parents=True)
        container.parent.chmod(0)
        self.addCleanup(container.parent.chmod, 0o700)
        self.assertIn(f"{container}: Permission denied", self.refused())

    def test_the_home_of_the_account_is_that_around_a_container(self):
        container = self.home.path / CONTAINER
        container.mkdir(parents=True)
        self.assertEqual(self.report(home=container)["accountHome"], str(self.home.path))
        self.assertEqual(self.report()["accountHome"], str(self.home.path))

    def test_the_home_whose_folders_have_commands_is_named(self):
        own_home = "/Users/" + pwd.getpwuid(os.geteuid()).pw_name
        for account, real in (("/Users/ada", "/Users/ada"), ("/home/ada", own_home)):
            with self.subTest(account=account):
                self.assertEqual(self.report("--account-home", account)["realHome"], real)
                self.assertIn(f"\nreal home     {real}\n", self.doctor("--account-home", account))

    def test_a_relative_home_is_one_below_the_working_folder(self):
        result = self.run_doctor("--home", "./x/../", "--json", cwd=self.home.path)
        self.assertEqual(json.loads(result.stdout)["home"], str(self.home.path))

    def test_without_an_environment_it_runs(self):
        result = self.run_doctor("--home", self.home.path, env={})
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_it_says_its_version_and_how_it_is_used(self):
        self.assertRegex(self.run_doctor("--version").stdout, r"\Aquorva-doctor \d+\.\d+\.\d+\n\Z")
        result = self.run_doctor("--help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        document = (ROOT / "Documentation/Doctor.md").read_text(encoding="utf-8")
        for option in re.findall(r"^\| `(--[a-z-]+)", document, re.MULTILINE):
            self.assertIn(option, result.stdout)

    def test_output_that_can_t_be_written_is_an_error(self):
        with open("/dev/full", "wb") as full:
            result = self.run_doctor("--home", self.home.path, stdout=full)
        self.assertEqual(result.returncode, 2)
        self.assertIn("No space left on device", result.stderr)


class NoChangeTest(DoctorTestCase):

    def snapshot(self):
        return {path: (path.lstat().st_mtime_ns, path.lstat().st_mode)
                for path in (self.home.path, *self.home.path.rglob("*"))}

    def test_it_changes_nothing_in_the_home(self):
        self.home.write_settings(self.home.settings(
            feature_settings=samples.feature_settings(), **samples.user_data()))
        before = self.snapshot()
        for arguments in ((), ("--json",), ("--explain", "pdfTools")):
            self.doctor(*arguments)
        self.assertEqual(self.snapshot(), before)

    def test_a_home_that_can_t_be_written_does(self):
        self.home.write(FEATURE_SETTINGS, features())
        for folder in (self.home.quorva, self.home.path):
            folder.chmod(0o500)
            self.addCleanup(folder.chmod, 0o700)
        self.assertEqual(self.report(status=0)["findings"], 0)

    @alone
    def test_it_writes_no_log(self):
        TEMPORARY_LOG.unlink(missing_ok=True)
        self.doctor()
        self.assertFalse(TEMPORARY_LOG.exists())


class ColourTest(DoctorTestCase):

    def on_terminal(self, **environment):
        terminal, output = pty.openpty()
        with open(output, "wb") as end:
            self.run_doctor("--home", self.home.path, stdout=end, environment=environment)
            return os.read(terminal, 1 << 16).decode("utf-8")

    def test_there_is_colour_on_a_terminal_only(self):
        self.home.write(FEATURE_SETTINGS, {"menuLayout": "x"})
        self.assertIn("\x1b[31mFeatureSettings.plist\x1b[0m: ", self.on_terminal())
        self.assertNotIn("\x1b", self.doctor())

    def test_there_is_none_where_it_is_not_wanted(self):
        self.assertNotIn("\x1b", self.on_terminal(NO_COLOR="1"))
        self.assertIn("\x1b", self.on_terminal(NO_COLOR=""))


class MenuTest(DoctorTestCase):

    def shown(self, menu):
        """A menu of the extension in the form that the doctor reports."""
        result = []
        for item in menu["items"]:
            if item.get("separator"):
                result.append("separator")
            elif "submenu" in item:
                result.append((item["title"], self.shown(item["submenu"])))
            else:
                entry = item["representedObject"] or {}
                result.append((item["title"], item["identifier"] or entry.get("actionID"),
                               entry.get("destinationPath", "")))
        return result

    def reported(self, items):
        return ["separator" if item.get("separator")
                else (item["title"], self.reported(item["submenu"])) if "submenu" in item
                else (item["title"], item["id"], item["destinationPath"]) for item in items]

    def check(self, extension):
        report = self.report("--account-home", self.home.real_home)
        self.assertEqual(self.reported(report["menu"]), self.shown(extension.menu()))
        for request, enabled in (
                (Request(), ("always",)),
                (Request([], "/t"), ("always", "withSelectionOrTarget")),
                (Request(["/a"]), ("always", "withSelectionOrTarget", "withSelection"))):
            self.assertEqual(self.enabled_titles(report["menu"], enabled),
                             self.clickable_titles(extension.menu(request)))
        return report

    def enabled_titles(self, items, enabled):
        return [title for item in items for title in (
            self.enabled_titles(item["submenu"], enabled) if "submenu" in item
            else [item["title"]] if item.get("enabled") in enabled else [])]

    def clickable_titles(self, menu):
        return [title for item in menu["items"] if not item.get("separator") for title in (
            self.clickable_titles(item["submenu"]) if "submenu" in item
            else [item["title"]] if item["enabled"] else [])]

    def test_it_is_that_of_the_extension(self):
        extension = self.start_extension()
        self.check(extension)
        for layout in ("collapsed", "expanded"):
            for grouped in (False, True):
                with self.subTest(layout=layout, grouped=grouped):
                    self.home.write_settings(self.home.settings(
                        feature_settings=samples.feature_settings(layout, grouped),
                        **samples.user_data()))
                    self.check(extension)
        self.home.write(FEATURE_SETTINGS, {"enabledFeatureIDs": []})
        self.check(extension)

    def test_it_is_that_of_the_extension_for_random_settings(self):
        extension = self.start_extension()
        for seed in range(1, 31):
            with self.subTest(seed=seed):
                generator = Generator(seed)
                for name, field in zip(SETTINGS_FILES, (
                        "feature_settings", "custom_destinations", "custom_shortcut_actions",
                        "finder_view_presets")):
                    self.home.write(name, getattr(generator, field)(),
                                    generator.choice([XML, BINARY]))
                self.check_sources(self.check(extension)["menu"])

    def check_sources(self, items):
        """What an entry is said to show is there, and has its name."""
        for item in items:
            self.check_sources(item.get("submenu", []))
            if item.get("source"):
                value = plistlib.loads((self.home.quorva / item["source"]["file"]).read_bytes())
                for key, index in re.findall(r"(\w+)?\[(\d+)\]", item["source"]["path"]):
                    value = (value[key] if key else value)[int(index)]
                self.assertTrue(
                    item["title"].endswith(
                        value["name"]) or value["name"].startswith(item["title"]),
                    (item, value))
                self.assertEqual(item["destinationPath"], value.get("path", ""))


class ExplanationTest(DoctorTestCase):

    def explain(self, name, status):
        return self.report("--explain", name, status=status)["matches"]

    def test_a_feature_a_command_and_a_title_that_are_shown(self):
        [feature] = self.explain("pdfTools", 0)
        self.assertEqual((feature["what"], feature["shown"], feature["locations"]),
                         ("feature", True, [["Quorva", "处理 PDF"]]))
        expected = {
            "what": "command", "id": "mergePDFs", "title": "合并 PDF", "place": None,
            "shown": True, "locations": [["Quorva", "处理 PDF", "合并 PDF"]],
            "enabled": "withSelection", "reasons": [], "remarks": []}
        self.assertEqual(self.explain("mergePDFs", 0), [expected])
        self.assertEqual(self.explain("合并 PDF", 0), [expected])
        self.assertIn("greyed while nothing is selected", self.doctor("--explain", "mergePDFs"))

    def test_what_is_not_shown_and_why(self):
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["pdfTools", "quickOpen", "PDFTools"],
            "childOrderByFeatureID": {"pdfTools": ["mergePDFs", "splitPDFs"]},
            "enabledChildIDs": ["splitPDFs"]})
        self.home.write(CUSTOM_DESTINATIONS, {
            "copy": [DESTINATION], "quickOpen": [{"id": "b", "name": "B"}]})
        for name, reason in (
                ("developerTools", "enabledFeatureIDs does not list it"),
                ("mergePDFs", "enabledChildIDs does not list it"),
                ("copyMD5", "its feature developerTools is not shown"),
                ("quickOpenHome", "quickOpen shows the entries of its list in place of it"),
                ("b", "quickOpen[0].path is missing; the entry is dropped"),
                ("a", "the feature that lists it is not shown")):
            with self.subTest(name=name):
                [explanation, *_] = self.explain(name, 1)
                self.assertFalse(explanation["shown"])
                self.assertIn(reason, explanation["reasons"][0])
                self.assertIn(reason, self.doctor("--explain", name, status=1))

    def test_a_feature_that_is_off_by_default(self):
        [explanation] = self.explain("developerTools", 1)
        self.assertEqual(explanation["reasons"], ["it is off by default"])

    def test_what_is_no_cause_is_not_given_as_one(self):
        self.home.write(FEATURE_SETTINGS, {
            "enabledFeatureIDs": ["pdfTools"], "featureOrder": [
                *[id for id in samples.ALL_FEATURES if id != "developerTools"], "copyFile"],
            "childOrderByFeatureID": {"pdfTools": ["compressToZIP"]}})
        for name, reasons, remarks in (
                ("developerTools", ["enabledFeatureIDs does not list it"], []),
                ("copyFile", ["enabledFeatureIDs does not list it"],
                 ["FeatureSettings.plist: featureOrder[13]: copyFile is listed before; this time "
                  "is ignored"]),
                ("compressToZIP", ["its feature archiveTools is not shown"],
                 ["FeatureSettings.plist: childOrderByFeatureID.pdfTools[0]: compressToZIP is not "
                  "a command of this feature: it is a command of archiveTools"])):
            with self.subTest(name=name):
                [explanation] = self.explain(name, 1)
                self.assertEqual((explanation["reasons"], explanation["remarks"]),
                                 (reasons, remarks))
                self.assertEqual(self.doctor("--explain", name).count("because:"), 1)

    def test_of_an_entry_that_is_shown_the_findings_are_told(self):
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [
                        ACTION, {**ACTION, "kind": "Script", "name": "B"}])
        [explanation] = self.explain("B", 0)
        self.assertEqual((explanation["reasons"], explanation["remarks"]), ([], [
            "[1].kind: Script is not a kind, and taken for a shortcut: did you mean script?",
            "[1]: [0] has the id a too, so both send the actionID runShortcut__a"]))

    def test_a_destination_that_has_a_command_is_explained(self):
        self.home.write(CUSTOM_DESTINATIONS, {
            "copy": [{**DESTINATION, "path": "/Users/ada/Desktop"}]})
        [explanation] = self.report("--account-home", "/Users/ada", "--explain", "a",
                                    status=1)["matches"]
        self.assertEqual((explanation["reasons"], explanation["remarks"]),
                         (["its folder has a command of its own, copyFilesToDesktop"], []))

    def test_a_feature_without_entries_is_not_shown(self):
        self.home.write(CUSTOM_SHORTCUT_ACTIONS, [])
        self.home.write(FINDER_VIEW_PRESETS, [])
        self.home.write(FEATURE_SETTINGS, features(menuLayout="expanded"))
        for name in ("customActions", "viewOptions"):
            with self.subTest(name=name):
                [explanation] = self.explain(name, 1)
                self.assertEqual(explanation["reasons"], ["it has no entries"])
        [explanation] = self.explain("pdfTools", 0)
        self.assertEqual(explanation["remarks"],
                         ["in the expanded layout its entries stand in the menu itself"])

    def test_what_the_menu_always_replaces_is_not_said_to_be_off(self):
        self.home.write(FEATURE_SETTINGS, features(
            enabledChildIDs=["quickOpenTypedPath"], childOrderByFeatureID={
                "quickOpen": ["quickOpenHome"], "viewOptions": ["finderViewPreset"]}))
        for name, feature in (("quickOpenHome", "quickOpen"), ("finderViewPreset", "viewOptions")):
            with self.subTest(name=name):
                [explanation] = self.explain(name, 1)
                self.assertEqual(explanation["reasons"], [
                    f"{feature} shows the entries of its list in place of it, which are the "
                    "user's or else the default ones"])

    def test_a_default_application_that_is_not_installed_is_explained(self):
        for name in ("Keynote", "keynote", "/Applications/Keynote.app"):
            with self.subTest(name=name):
                [explanation] = self.explain(name, 1)
                self.assertEqual((explanation["what"], explanation["title"],
                                  explanation["reasons"]), ("default entry", "Keynote", [
                                      "there is no /Applications/Keynote.app, so this default "
                                      "application is not shown"]))

    def test_matches_beyond_the_limit_are_counted(self):
        unread = without(DESTINATION, "path")
        self.home.write(CUSTOM_DESTINATIONS, {"copy": [unread] * 50_000 + [DESTINATION] * 50_000},
                        BINARY)
        report = self.report("--explain", "a", status=0)
        self.assertEqual((len(report["matches"]), report["omitted"]), (10, 99_990))
        self.assertIn("\nand 99990 more\n", self.doctor("--explain", "a", status=0))

    def test_an_entry_is_found_by_its_id_its_name_and_its_title(self):
        self.home.write(CUSTOM_DESTINATIONS, {"copy": [{"id": "i", "name": "N", "path": "/p"}]})
        for name in ("i", "N", "复制到N"):
            with self.subTest(name=name):
                [explanation] = self.explain(name, 0)
                self.assertEqual((explanation["place"], explanation["enabled"]),
                                 ("CustomDestinations.plist: copy[0]", "always"))

    def test_a_default_entry_is_found(self):
        for name, title in (("list-modified", "列表 · 最近修改"), ("home", "用户目录")):
            with self.subTest(name=name):
                [explanation] = self.explain(name, 0)
                self.assertEqual((explanation["what"], explanation["title"]),
                                 ("default entry", title))

    def test_of_what_is_unknown_the_nearest_is_named(self):
        explanation = self.report("--explain", "PDFTools", status=1)
        self.assertEqual((explanation["matches"], explanation["suggestion"]), ([], "pdfTools"))
        self.assertIn("did you mean pdfTools?", self.doctor("--explain", "PDFTools", status=1))


class DocumentTest(DoctorTestCase):

    def setUp(self):
        super().setUp()
        self.document = (ROOT / "Documentation/Doctor.md").read_text(encoding="utf-8")

    def members(self, introduction):
        """The first column of the table behind these words."""
        table = self.document.split(introduction, 1)[1].split("|---", 1)[1].split("\n\n")[0]
        return re.findall(r"^\| `(\w+)` \|", table, re.MULTILINE)

    def test_the_kinds_are_those_of_the_code(self):
        sources = "".join(path.read_text(encoding="utf-8")
                          for path in sorted((ROOT / "Doctor").glob("Finding.?pp")))
        of_code = re.findall(r'\{"(\w+)", (?:Severity::)?(finding|note)\b', sources)
        documented = re.findall(r"^\| `(\w+)` \| (finding|note) \|", self.document, re.MULTILINE)
        self.assertEqual(sorted(documented), sorted(of_code))

    def test_every_kind_that_a_reader_tells_is_among_them(self):
        header = (ROOT / "QuorvaFinderExtension/SettingsFinding.hpp").read_text(encoding="utf-8")
        kinds = re.findall(r"^        (\w+),$", header, re.MULTILINE)
        self.assertGreater(len(kinds), 20)
        for kind in kinds:
            self.assertIn(f"| `{kind}` |", self.document)

    def test_the_members_of_the_report_are_documented(self):
        self.home.write_settings(self.home.settings(
            feature_settings=samples.feature_settings("expanded", True, unknown=[]),
            **samples.user_data()))
        report = self.report()
        self.assertEqual(list(report), self.members("## The JSON of the report"))
        file = report["files"][0]
        self.assertEqual(list(file), self.members("A file of `files`"))
        self.assertEqual(list(file["findings"][0]), self.members("A finding of a file"))
        opening, items = report["menu"][0], report["menu"][0]["submenu"]
        self.assertIn({"separator": True}, items)
        self.assertEqual(sorted({*opening, *items[0]}), sorted(self.members("An item of the menu")))
        self.assertEqual(sorted(next(item for item in items if item.get("source"))["source"]),
                         ["file", "path"])

    def test_the_members_of_an_explanation_are_documented(self):
        explanation = self.report("--explain", "pdfTools")
        self.assertEqual(list(explanation), self.members("## The JSON of an explanation"))
        self.assertEqual(list(explanation["matches"][0]), self.members("A match of `matches`"))


if __name__ == "__main__":
    unittest.main()
