"""Each property of the application and of the tests is broken, and the check says which."""

import plistlib
import shutil
import tempfile
import unittest
from pathlib import Path

from check import FOLDER, ROOT, compiled

import check_tests
import inspect_application
import inspect_bundle

MINIMUM = "12.0"
APPLICATION = FOLDER / "product" / "Quorva.app"
VERSION = inspect_bundle.read_property_list(APPLICATION / "Contents" / "Info.plist")[0][
    "CFBundleVersion"]
BOTH = ("-arch", "arm64", "-arch", "x86_64")


class ApplicationTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.application = Path(folder.name) / "Quorva.app"
        shutil.copytree(APPLICATION, self.application)
        self.executable = self.application / "Contents" / "MacOS" / "Quorva"

    def deviations(self):
        return list(
            inspect_application.application_deviations(self.application, VERSION, MINIMUM))

    def build(self, source, *options, **rest):
        result = compiled(source, *options, "-Wl,-undefined,dynamic_lookup", "-o",
                          str(self.executable), **rest)
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_the_application_as_it_must_be_has_no_deviation(self):
        self.assertEqual(self.deviations(), [])

    def test_each_key_of_the_information_is_inspected(self):
        path = self.application / "Contents" / "Info.plist"
        original = plistlib.loads(path.read_bytes())
        for key in original:
            with self.subTest(key):
                changed = {other: value for other, value in original.items() if other != key}
                path.write_bytes(plistlib.dumps(changed))
                self.assertEqual(self.deviations(), [f"Info.plist: {key} is missing"])
        path.unlink()
        self.assertEqual(self.deviations(), ["Info.plist: there is none"])

    def test_a_missing_executable_and_a_missing_slice_are_named(self):
        self.build("int main() {}", "-arch", "arm64")
        self.assertEqual(self.deviations(), ["slices: x86_64 is missing"])
        self.executable.unlink()
        self.assertEqual(
            self.deviations(), ["executable: there is none, or it is not a Mach-O file"])

    def test_another_minimum_version_is_named(self):
        self.build("int main() {}", *BOTH, minimum="13.0")
        self.assertEqual(self.deviations(), [
            f"{architecture}: minimum version: ['13.0'], not 12.0"
            for architecture in ("arm64", "x86_64")])

    def test_a_symbol_that_no_library_has_is_named(self):
        self.build(
            "#include <regex>\nextern int missing; namespace simulator { int absent(); }\n"
            'int main() { return missing + simulator::absent() + '
            'std::regex_match("a", std::regex("a")); }', *BOTH)
        self.assertEqual(self.deviations(), [
            f"{architecture}: undefined symbols: {symbol} comes from nowhere"
            for architecture in ("arm64", "x86_64")
            for symbol in ("__ZN9simulator6absentEv", "_missing")])


class TestsTest(unittest.TestCase):
    def setUp(self):
        self.commands = (FOLDER / "test_commands.txt").read_text().splitlines()

    def failures_of(self, source, content):
        """Of checking one of the tests whose content is another."""
        with tempfile.NamedTemporaryFile(suffix=".mm", mode="w") as file:
            file.write(content)
            file.flush()
            commands = [command.replace(source, file.name) for command in self.commands
                        if "QuorvaCocoaTests.dir/cmake_pch" in command and "-emit-pch" in command
                        or command.endswith(source)]
            return list(check_tests.failures("\n".join(commands), FOLDER / "build"))

    def test_a_test_that_compiles_for_arm64_alone_is_named(self):
        (line,) = self.failures_of(
            str(ROOT / "Tests" / "Cocoa" / "ObjectHolderTests.mm"),
            "#import <Foundation/Foundation.h>\nstatic_assert(__is_same(BOOL, bool));\n")
        self.assertIn("static assertion failed", line)

    def test_commands_without_a_test_are_not_a_success(self):
        self.assertEqual(list(check_tests.failures("", FOLDER)), ["there is nothing to check\n"])


if __name__ == "__main__":
    unittest.main()
