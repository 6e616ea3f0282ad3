"""scripts/macos-run, with programs in place of the Mac's that record how they were called."""

import os
import shutil
import unittest

from script_test import ROOT, ScriptTestCase

IDENTIFIER = "app.ferrolin.Quorva.FinderExtension"
SAMPLES = ROOT / "Simulator" / "Samples" / "Home"
SUPPORT = "Library/Application Support/Quorva"

# These change the Mac as far as the script looks: the build lays out bundles, and the
# system lists what was added and enabled, and makes the container when it starts the extension.
PROGRAM = """
import re, signal
home = pathlib.Path(os.environ["HOME"])
state = home / "state"
container = home / "Library/Containers" / os.environ["IDENTIFIER"] / "Data"
process = home / "process"

def start_extension():
    container.mkdir(parents=True, exist_ok=True)
    process.write_text(state.read_text() + "/Contents/MacOS/QuorvaFinderExtension -argument")

if name == "uname":
    print("Darwin")
if name == "sw_vers":
    print(os.environ.get("VERSION", "15.4"))
if name == "cmake" and arguments[0] == "--list-presets=build":
    print('  "macos"')
if name == "cmake" and arguments[0] == "--preset":
    os.makedirs("build/" + arguments[1], exist_ok=True)
if name == "cmake" and arguments[0] == "--install":
    for bundle, program in (("QuorvaFinderExtension.appex", "QuorvaFinderExtension"),
                            ("Quorva.app", "Quorva")):
        executable = pathlib.Path(arguments[-1], bundle, "Contents/MacOS", program)
        executable.parent.mkdir(parents=True)
        executable.touch(0o755)
        (executable.parents[1] / "Info.plist").touch()
if name == "plutil":
    print("app.ferrolin.Quorva")
if name == "codesign" and arguments[0] == "--display":
    print("<key>com.apple.security.app-sandbox</key><true/>")
if name == "pluginkit":
    if arguments[0] == "-a":
        state.write_text(arguments[1])
    if arguments[0] == "-r" and pathlib.Path(arguments[1]).exists():
        state.unlink(missing_ok=True)
    if arguments[:2] == ["-e", "use"] and os.environ.get("FINDER") == "starts it":
        start_extension()
    if arguments[0] == "-m":
        if "OTHER" in os.environ:
            print("+    " + os.environ["IDENTIFIER"] + "(1.0)\\t" + os.environ["OTHER"])
        if state.exists():
            print(os.environ.get("SIGN", "+") + "    " + os.environ["IDENTIFIER"] + "(1.0)\\t"
                  + state.read_text())
        listed = state.exists() + ("OTHER" in os.environ)
        print(f" ({listed} plug-in)" if listed else "  (no matches)")
if name == "killall" and os.environ.get("FINDER") == "starts it when restarted":
    start_extension()
if name in ("pgrep", "pkill"):
    if not process.exists() or not re.search(arguments[1], process.read_text()):
        sys.exit(1)
    process.unlink() if name == "pkill" else print(4711)
if name == "tail":
    os.kill(os.getppid(), signal.SIGINT)
"""
# The system lets nothing touch a guarded folder.
GUARDED_PROGRAM = """
if any(argument.startswith(os.environ["GUARDED"]) for argument in arguments):
    sys.exit(f"{name}: {os.environ['GUARDED']}: Operation not permitted")
os.environ["PATH"] = os.environ["PATH"].partition(":")[2]
os.execvp(name, [name, *arguments])
"""
PROGRAMS = ("cmake", "codesign", "killall", "open", "pgrep", "pkill", "pluginkit", "plutil",
            "sw_vers", "tail", "uname")


class MacOSRunTest(ScriptTestCase):
    def setUp(self):
        super().setUp()
        for name in PROGRAMS:
            self.add_program(name, PROGRAM)
        (self.programs / "sleep").symlink_to(shutil.which("true"))
        self.project = self.copy_scripts("a project (of mine)")
        (self.project / "CMakePresets.json").touch()
        for path in ("Bundle/QuorvaFinderExtension.entitlements", "Simulator/Samples"):
            copy = shutil.copytree if (ROOT / path).is_dir() else shutil.copy
            (self.project / path).parent.mkdir(parents=True, exist_ok=True)
            copy(ROOT / path, self.project / path)
        self.home = self.folder / "home of ada"
        self.home.mkdir()
        self.app = self.project / "build" / "run" / "Quorva.app"
        self.extension = self.app / "Contents" / "PlugIns" / "QuorvaFinderExtension.appex"
        self.container = self.home / "Library" / "Containers" / IDENTIFIER
        self.settings = self.container / "Data" / SUPPORT
        self.samples = self.home / "Quorva Samples"

    def run_it(self, *arguments, finder="starts it", **options):
        return self.run_script(
            self.project / "scripts" / "macos-run", *arguments, HOME=str(self.home),
            IDENTIFIER=IDENTIFIER, FINDER=finder, **options)

    def assert_fails(self, result, line):
        self.assertEqual(result.returncode, 1)
        self.assertIn(f"macos-run: {line}", result.stderr)

    def assert_runs(self, *arguments, **options):
        result = self.run_it(*arguments, **options)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout

    def files_below(self, folder):
        return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file())

    def test_it_says_what_it_will_do_and_does_nothing_without_consent(self):
        for answer in ("", "\n", "n\n", "yesterday\n"):
            with self.subTest(answer):
                result = self.run_it(answer=answer)
                self.assert_fails(result, "nothing was done\n")
                for what in (self.app, self.settings, self.samples, "restart Finder", "make clean"):
                    self.assertIn(str(what), result.stdout)
                self.assertEqual(os.listdir(self.home), [])
                self.assertEqual(self.calls("cmake") + self.calls("pluginkit"), [])

    def test_it_says_what_building_and_running_need(self):
        help_text = " ".join(self.assert_runs("--help").split())
        self.assertIn("Building needs macOS 14.5 or later", help_text)
        self.assertIn("the extension runs on macOS 12 and later", help_text)

    def test_it_asks_once_and_goes_on_with_consent(self):
        for answer in ("y\n", "Yes\n"):
            with self.subTest(answer):
                self.assertEqual(self.assert_runs(answer=answer).count("[y/N]"), 1)
        self.assertNotIn("[y/N]", self.assert_runs("--yes"))

    def test_the_extension_is_embedded_signed_made_known_and_enabled(self):
        self.assert_runs("--yes")
        self.assertIn(["--build", "--preset", "macos", "--target", "QuorvaFinderExtension",
                       "Quorva", "--", "--quiet"], self.calls("cmake"))
        signings = [call for call in self.calls("codesign") if "--sign" in call]
        self.assertEqual([call[-1] for call in signings], [str(self.extension), str(self.app)])
        self.assertTrue(all(call[call.index("--sign") + 1] == "-" for call in signings))
        self.assertEqual(
            [call for call in self.calls("pluginkit") if call[0] != "-m"],
            [["-a", str(self.extension)], ["-e", "use", "-i", IDENTIFIER]])
        self.assertEqual(os.listdir(self.project / "build" / "run"), ["Quorva.app"])
        self.assertEqual(self.calls("killall"), [])

    def test_the_identity_of_the_environment_signs(self):
        self.assert_runs("--yes", QUORVA_CODE_SIGN_IDENTITY="Apple Development: Ada")
        for call in self.calls("codesign"):
            if "--sign" in call:
                self.assertEqual(call[call.index("--sign") + 1], "Apple Development: Ada")

    def test_settings_are_written_where_the_extension_reads_them_and_none_is_replaced(self):
        self.settings.mkdir(parents=True)
        (self.settings / "FeatureSettings.plist").write_text("mine")
        self.assert_runs("--yes")
        self.assertEqual(self.files_below(self.settings), self.files_below(SAMPLES / SUPPORT))
        self.assertEqual((self.settings / "FeatureSettings.plist").read_text(), "mine")
        self.assertEqual((self.settings / "FinderViewPresets.plist").read_bytes(),
                         (SAMPLES / SUPPORT / "FinderViewPresets.plist").read_bytes())

    def test_the_sample_folder_is_shown(self):
        self.assert_runs("--yes")
        self.assertEqual(self.files_below(self.samples), self.files_below(SAMPLES / "Documents"))
        self.assertEqual(self.calls("open"), [[str(self.samples)]])

    def test_records_are_shown_until_interrupted(self):
        output = self.assert_runs("--yes")
        performed = self.home / SUPPORT / "Performed.jsonl"
        self.assertEqual(self.calls("tail"), [["-n", "0", "-f", str(performed)]])
        self.assertTrue(performed.exists())
        self.assertTrue(
            output.endswith("\nThe extension stays enabled: make clean takes it out.\n"), output)

    def test_finder_is_restarted_only_when_it_does_not_start_the_extension(self):
        self.assert_runs("--yes", finder="starts it when restarted")
        self.assertEqual(self.calls("killall"), [["Finder"]])

    def test_an_extension_that_never_starts_is_said_and_no_container_is_made(self):
        self.assert_fails(
            self.run_it("--yes", finder="does not"),
            "Finder does not start the extension: see Documentation/FirstDayOnAMac.md\n")
        self.assertFalse(self.container.exists())

    def test_a_former_build_that_ran_is_not_taken_for_this_one(self):
        self.assert_runs("--yes")
        self.assert_fails(self.run_it("--yes", finder="does not"),
                          "Finder does not start the extension")

    def test_an_extension_that_is_not_enabled_is_said(self):
        self.assert_fails(
            self.run_it("--yes", SIGN="-"),
            "the system does not list the extension as enabled: "
            "see Documentation/FirstDayOnAMac.md\n")

    def test_another_copy_of_the_extension_is_refused(self):
        result = self.run_it("--yes", OTHER="/Applications/Quorva.app")
        self.assert_fails(result, "another copy of the extension is known here")
        self.assertIn("/Applications/Quorva.app", result.stderr)
        self.assertEqual(self.calls("codesign"), [])

    def test_it_runs_again_when_the_extension_is_known(self):
        self.assert_runs("--yes")
        self.assert_runs("--yes")

    def test_settings_that_cannot_be_written_are_said(self):
        self.settings.parent.mkdir(parents=True)
        self.settings.touch()
        result = self.run_it("--yes")
        self.assert_fails(result, "the sample settings could not be written")
        self.assertIn("let your terminal access data of other applications", result.stderr)

    def test_the_place_of_the_switch_is_that_of_the_system(self):
        for version, place in (
                ("14.5", "System Settings, Privacy & Security, Extensions"),
                ("15.1.1", f"pluginkit -e ignore -i {IDENTIFIER}"),
                ("15.2", "System Settings, General, Login Items & Extensions"),
                ("26.0", "System Settings, General, Login Items & Extensions")):
            with self.subTest(version):
                self.assertIn(place, self.assert_runs("--yes", VERSION=version))

    def test_a_checkout_that_is_reached_through_a_link_is_used_by_its_own_path(self):
        link = self.folder / "link"
        link.symlink_to(self.project)
        self.project = link
        self.assert_runs("--yes")
        self.assertIn(["-a", str(self.extension)], self.calls("pluginkit"))

    def test_undoing_takes_everything_out_but_what_is_not_its_own(self):
        self.assert_runs("--yes")
        (self.settings / "FeatureSettings.plist").write_text("changed")
        (self.samples / "mine.txt").touch()
        output = self.assert_runs("--undo")
        self.assertIn(["-r", str(self.extension)], self.calls("pluginkit"))
        pattern = self.calls("pkill")[-1][-1]
        self.assertRegex(f"{self.app}/Contents/MacOS/Quorva", pattern)
        self.assertFalse((self.home / "process").exists())
        self.assertEqual(self.files_below(self.settings), ["FeatureSettings.plist"])
        self.assertEqual(self.files_below(self.samples), ["mine.txt"])
        self.assertFalse((self.home / SUPPORT).exists())
        self.assertEqual(output, f"The extension's container stays: {self.container}\n")

    def test_undoing_without_the_build_folder_takes_out_what_there_is(self):
        self.assert_runs("--yes")
        shutil.rmtree(self.project / "build")
        result = self.run_it("--undo")
        self.assertIn(["-r", str(self.extension)], self.calls("pluginkit"))
        self.assertEqual(self.files_below(self.settings), [])
        self.assertFalse(self.samples.exists())
        self.assertFalse((self.home / SUPPORT).exists())
        self.assertEqual(result.returncode, 0)
        self.assertEqual(
            result.stderr,
            f"macos-run: left in the system's list, until the system or pluginkit -r drops it: "
            f"{self.extension}\n")

    def test_undoing_goes_on_past_what_the_system_guards_and_names_it(self):
        performed = self.home / SUPPORT / "Performed.jsonl"
        for guarded, programs in ((self.settings, ("cmp", "find", "ls", "rm")),
                                  (self.samples, ("find", "rm")),
                                  (performed, ("rm",))):
            with self.subTest(guarded):
                self.assert_runs("--yes")
                for name in programs:
                    self.add_program(name, GUARDED_PROGRAM)
                result = self.run_it("--undo", GUARDED=str(guarded))
                for name in programs:
                    (self.programs / name).unlink()
                self.assertEqual(
                    (result.returncode, result.stderr),
                    (0, f"macos-run: left for you to remove in Finder: {guarded}\n"))
                for path in (self.settings, self.samples, performed.parent):
                    self.assertEqual(
                        bool(self.files_below(path)), path in (guarded, guarded.parent), path)

    def test_undoing_what_was_never_done_does_nothing(self):
        self.assertEqual(self.assert_runs("--undo"), "")
        self.assertEqual([call for call in self.calls("pluginkit") if call[0] != "-m"], [])
        self.assertEqual(os.listdir(self.home), [])

    def test_it_says_that_it_needs_a_mac(self):
        self.add_program("uname", "print('Linux')")
        self.assert_fails(
            self.run_it("--yes"),
            "this needs a Mac; on Linux, make run shows the extension in a simulated Finder\n")


if __name__ == "__main__":
    unittest.main()
