"""What every script does with its arguments, and where it works."""

import re
import unittest

from script_test import ROOT, ScriptTestCase

# But for what they share.
SCRIPTS = sorted(path for path in (ROOT / "scripts").iterdir()
                 if path.is_file() and not path.suffix)
PRESETS = "print('  \"dev\"', '  \"asan\"', sep='\\n')"
# What a script does not take besides options.
WRONG = {
    "actions": ("Actions.md",),
    "appex": ("one folder", "another"),
    "benchmark": ("--quick", "click"),
    "build": ("no such preset",),
    "coverage": ("dev",),
    "embed": ("One.app", "Another.app"),
    "format": ("--check", "file.cpp"),
    "fuzz": ("0",),
    "lint": ("--all", "file.cpp"),
    "macos-check": ("dev",),
    "macos-run": ("--yes", "now"),
    "macos-sdk": ("one folder", "another"),
    "mutate": ("many",),
    "pictures": ("dev",),
    "run": ("dev",),
    "setup": ("now",),
    "soak": ("many",),
    "test": ("dev", "no such preset"),
}


class ArgumentsTest(ScriptTestCase):
    def setUp(self):
        super().setUp()
        # None of these is to be called.
        for name in ("apt-get", "brew", "clang-format-19", "git", "make", "ninja", "npm", "sudo"):
            self.add_program(name, "sys.exit(1)")
        self.add_program("cmake", PRESETS)

    def assert_nothing_was_done(self):
        self.assertLessEqual(
            {line for line in self.log.read_text().splitlines() if '"--list-presets' not in line},
            set(),
        )

    def test_help_is_printed_and_nothing_is_done(self):
        for script in [*SCRIPTS, ROOT / ".ci" / "run"]:
            with self.subTest(script.name):
                result = self.run_script(script, "--help")
                self.assertEqual((result.returncode, result.stderr), (0, ""))
                self.assertRegex(result.stdout, r"\A[A-Zu][^#]+\n\Z")
                self.assert_nothing_was_done()

    def test_what_a_script_does_not_take_is_refused_with_one_line(self):
        for script in [*SCRIPTS, ROOT / ".ci" / "run"]:
            for arguments in (("--no-such-option",), WRONG[script.name]):
                with self.subTest(script.name, arguments=arguments):
                    result = self.run_script(script, *arguments)
                    self.assertEqual((result.returncode, result.stdout), (2, ""))
                    name = re.escape(script.name)
                    self.assertRegex(result.stderr, rf"\A{name}: [^\n]+; --help [^\n]+\n\Z")
                    self.assert_nothing_was_done()

    def test_what_runs_on_a_mac_is_written_for_every_shell_and_every_systems_tools(self):
        for name in ("appex", "build", "common.sh", "embed", "macos-run", "setup", "test"):
            with self.subTest(name):
                text = (ROOT / "scripts" / name).read_text()
                if name != "common.sh":
                    self.assertEqual(text.splitlines()[0], "#!/bin/sh")
                self.assertIsNone(re.search(
                    r"sed -i|readlink -f|\bstat -|grep -\w*P|-printf|realpath|\bcp -\w*[abdltu]",
                    text))


class FolderTest(ScriptTestCase):
    def setUp(self):
        super().setUp()
        self.project = self.copy_scripts()
        (self.project / "CMakePresets.json").touch()
        self.add_program("cmake", PRESETS + """
if arguments[0] == "--preset":
    os.makedirs("build/" + arguments[1])
""")
        self.add_program("uname", "print('Linux')")

    def assert_built_here(self, result):
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        folders = {folder for folder, _ in self.recorded("cmake")}
        self.assertEqual(folders, {self.project})

    def test_a_search_path_for_folders_does_not_lead_to_another_project(self):
        decoy = self.copy_scripts("decoy")
        result = self.run_script("scripts/build", cwd=self.project, CDPATH=str(decoy))
        self.assert_built_here(result)

    def test_a_search_path_for_folders_changes_no_script(self):
        decoy = self.folder / "decoy"
        (decoy / "scripts").mkdir(parents=True)
        for script in SCRIPTS:
            with self.subTest(script.name):
                result = self.run_script(
                    f"scripts/{script.name}", "--help", cwd=self.project, CDPATH=str(decoy))
                self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_the_project_is_built_from_any_folder(self):
        for folder, script in ((self.folder, "project/scripts/build"),
                               (self.project / "scripts", "./build"),
                               (self.programs, self.project / "scripts" / "build")):
            with self.subTest(script):
                self.assert_built_here(self.run_script(script, cwd=folder))

    def test_the_preset_is_that_of_the_system(self):
        for system, preset in (("Linux", "dev"), ("Darwin", "macos")):
            with self.subTest(system):
                self.add_program("cmake", "print('  \"dev\"', '  \"macos\"', sep='\\n')\n"
                                 "os.makedirs('build/' + arguments[-1], exist_ok=True)")
                self.add_program("uname", f"print('{system}')")
                self.log.write_text("")
                self.run_script(self.project / "scripts" / "build")
                self.assertIn(["--preset", preset], self.calls("cmake"))
                self.assertIn(["--build", "--preset", preset, "--", "--quiet"],
                              self.calls("cmake"))


class AppexTest(ScriptTestCase):
    def setUp(self):
        super().setUp()
        self.project = self.copy_scripts()
        (self.project / "CMakePresets.json").touch()
        self.add_program("cmake", """
print('  "macos-universal"')
if arguments[0] == "--preset":
    os.makedirs("build/" + arguments[1], exist_ok=True)
""")
        self.add_program("uname", "print('Darwin')")

    def installed(self, *arguments, cwd):
        result = self.run_script(self.project / "scripts" / "appex", *arguments, cwd=cwd)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        prefix = self.calls("cmake")[-1][-1]
        self.assertEqual(result.stdout.splitlines()[-1], f"{prefix}/QuorvaFinderExtension.appex")
        return prefix

    def test_the_folder_is_the_callers(self):
        self.assertEqual(self.installed("a product", cwd=self.folder),
                         str(self.folder / "a product"))
        self.assertEqual(self.installed(self.programs, cwd=self.project), str(self.programs))

    def test_without_a_folder_it_is_the_projects(self):
        self.assertEqual(self.installed(cwd=self.folder), str(self.project / "build" / "product"))

    def test_it_says_that_it_needs_a_mac(self):
        self.add_program("uname", "print('Linux')")
        result = self.run_script(self.project / "scripts" / "appex")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(
            result.stderr,
            "appex: this needs a Mac; on Linux, scripts/macos-check builds to inspect\n")
        self.assertEqual(self.calls("cmake"), [])


if __name__ == "__main__":
    unittest.main()
