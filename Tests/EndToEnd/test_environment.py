"""The environment of the programs: what is not UTF-8 in it does no harm."""

import os
import signal
import subprocess
import unittest

from quorva_process import (
    EXTENSION_EXECUTABLE, TIME_LIMIT, EndToEndTestCase, application_bundle, build_folder,
    program_environment, until)

NO_TEXT = os.fsdecode(b"caf\xe9")


class EnvironmentTest(EndToEndTestCase):

    def programs(self):
        """The extension and the containing application."""
        bundle = application_bundle()
        return bundle / EXTENSION_EXECUTABLE, bundle / "Contents" / "MacOS" / "Quorva"

    def run_program(self, *command, **variables):
        return subprocess.run(
            command, stdin=subprocess.DEVNULL, capture_output=True, timeout=TIME_LIMIT,
            env=program_environment(self.home) | variables)

    def test_the_extension_leaves_out_a_variable_that_is_no_text(self):
        extension = self.start_extension(environment={"FOO": NO_TEXT, "BAR": NO_TEXT})
        self.assertEqual(extension.menu()["title"], "Quorva")
        for name in ("FOO", "BAR"):
            self.assertIn(f"QuorvaFinderExtension: the environment variable {name} is not UTF-8",
                          extension.standard_error())

    def test_the_containing_application_leaves_out_a_variable_that_is_no_text(self):
        self.home.queue.mkdir(parents=True)
        (self.home.queue / "a.json").write_text('{"actionID": "a", "createdAt": 1}')
        environment = program_environment(self.home, display=False) | {"FOO": NO_TEXT}
        application = subprocess.Popen(
            [self.programs()[1]], stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env=environment)
        self.addCleanup(application.wait)
        self.addCleanup(application.kill)
        until(self.home.performed, "the record was performed")
        application.send_signal(signal.SIGTERM)
        self.assertEqual(application.wait(TIME_LIMIT), 0)

    def test_what_is_text_in_any_language_stays(self):
        extension = self.start_extension(environment={
            "FOO": NO_TEXT, "SIMULATOR_ACCOUNT_HOME": "/Users/没有\U0001f600"})
        self.assertIn("/Users/没有\U0001f600/Desktop",
                      extension.request("directories")["directories"])

    def test_a_home_that_is_no_text_ends_both_with_one_line(self):
        for program in self.programs():
            with self.subTest(program=program.name):
                result = self.run_program(program, HOME="/tmp/" + NO_TEXT)
                self.assertEqual((result.returncode, result.stdout), (1, b""))
                self.assertEqual(result.stderr.decode(), (
                    f"{program.name}: the home folder that HOME names is not UTF-8\n"))

    def test_finder_sim_goes_on_or_says_so_in_one_line(self):
        finder_sim = build_folder() / "finder-sim"
        result = self.run_program(finder_sim, "menu", FOO=NO_TEXT)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        result = self.run_program(finder_sim, "menu", HOME="/tmp/" + NO_TEXT)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (
            1, b"", b"finder-sim: the home folder's path is not UTF-8\n"))


if __name__ == "__main__":
    unittest.main()
