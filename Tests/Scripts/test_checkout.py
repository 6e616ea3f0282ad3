"""A build folder that was copied or moved along with its checkout, and programs that are older than
their sources: with a project that is built in no time."""

import json
import os
import shutil
import subprocess
import unittest

from script_test import ROOT, ScriptTestCase

PRESETS = {
    "version": 6,
    "configurePresets": [
        {"name": "dev", "generator": "Ninja", "binaryDir": "${sourceDir}/build/dev"}],
    "buildPresets": [{"name": "dev", "configurePreset": "dev"}],
}
# The program is a copy of its source.
PROJECT = """cmake_minimum_required(VERSION 3.25)
project(Example NONE)
enable_testing()
configure_file(CTestCustom.cmake.in "${PROJECT_BINARY_DIR}/CTestCustom.cmake" @ONLY)
set(source "${PROJECT_SOURCE_DIR}/source")
add_custom_command(
  OUTPUT program
  COMMAND "${CMAKE_COMMAND}" -E copy "${source}" program
  DEPENDS "${source}"
  VERBATIM)
add_custom_target(everything ALL DEPENDS program)
add_test(NAME everything COMMAND "${CMAKE_COMMAND}" -E compare_files program "${source}")
"""


class CheckoutTest(ScriptTestCase):
    def setUp(self):
        super().setUp()
        self.project = self.copy_scripts()
        (self.project / "CMakePresets.json").write_text(json.dumps(PRESETS))
        (self.project / "CMakeLists.txt").write_text(PROJECT)
        shutil.copy(ROOT / "cmake" / "CTestCustom.cmake.in", self.project)
        (self.project / "source").write_text("first")
        self.build(self.project)

    def build(self, project):
        result = self.run_script(project / "scripts" / "build")
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        return result.stdout + result.stderr

    def program(self, project):
        return (project / "build" / "dev" / "program").read_text()

    def change(self, project):
        # Ninja compares times, and a file system may keep them in coarse steps.
        built = (project / "build" / "dev" / "program").stat().st_mtime
        (project / "source").write_text("second")
        os.utime(project / "source", (built + 1, built + 1))

    def ctest(self, project):
        return subprocess.run(["ctest"], cwd=project / "build" / "dev", capture_output=True,
                              text=True, check=False)

    def assert_built_anew(self, project):
        self.change(project)
        self.assertEqual(
            self.build(project),
            f"build: build/dev was configured for {self.project}, so it is made anew\n")
        self.assertEqual(self.program(project), "second")
        self.assertEqual(self.build(project), "")

    def test_a_copied_checkout_builds_itself(self):
        copied = self.folder / "copied"
        shutil.copytree(self.project, copied)
        self.assert_built_anew(copied)
        self.assertEqual(self.program(self.project), "first")

    def test_a_moved_checkout_builds_itself(self):
        self.assert_built_anew(self.project.rename(self.folder / "moved"))

    def test_a_checkout_that_is_reached_through_a_link_is_not_built_anew(self):
        link = self.folder / "link"
        link.symlink_to(self.project)
        self.assertEqual(self.build(link), "")

    def test_a_changed_preset_is_configured(self):
        presets = self.project / "CMakePresets.json"
        presets.write_text(
            json.dumps(PRESETS).replace('"Ninja"', '"Ninja", "cacheVariables": {"CHANGED": "yes"}'))
        configured = (self.project / "build" / "dev" / "configured").stat().st_mtime
        os.utime(presets, (configured + 1, configured + 1))
        self.build(self.project)
        cache = (self.project / "build" / "dev" / "CMakeCache.txt").read_text()
        self.assertIn("CHANGED:UNINITIALIZED=yes\n", cache)

    def test_programs_are_brought_up_to_date_before_they_are_tested(self):
        self.change(self.project)
        result = self.ctest(self.project)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertEqual(self.program(self.project), "second")

    def test_programs_that_cannot_be_built_are_not_tested(self):
        (self.project / "source").unlink()
        result = self.ctest(self.project)
        self.assertNotEqual(result.returncode, 0)
        self.assertNotIn("everything", result.stdout)

    def test_the_tests_of_a_copied_checkout_refuse_to_run_on_the_former(self):
        copied = self.folder / "copied"
        shutil.copytree(self.project, copied)
        result = self.ctest(copied)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn(f"this folder was configured as {self.project}/build/dev", result.stderr)


if __name__ == "__main__":
    unittest.main()
