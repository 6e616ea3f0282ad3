"""Each property of the commands of the build is broken, and the inspection says which."""

import unittest

from check import FOLDER, compiled

import inspect_commands

APPLE_CLANG_16 = """
#if __clang_major__ != 16 || __apple_build_version__ / 1000000 != 16
#error not Apple Clang 16
#endif
"""


class CompilerTest(unittest.TestCase):
    def test_the_compiler_names_itself_as_apples(self):
        result = compiled(APPLE_CLANG_16, "-fsyntax-only")
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_cmake_takes_the_compiler_for_apples(self):
        for language in ("CXX", "OBJCXX"):
            with self.subTest(language):
                (found,) = FOLDER.glob(f"build/CMakeFiles/*/CMake{language}Compiler.cmake")
                self.assertIn(f'set(CMAKE_{language}_COMPILER_ID "AppleClang")', found.read_text())


class CommandsTest(unittest.TestCase):
    def setUp(self):
        self.commands = (FOLDER / "commands.txt").read_text()

    def test_the_commands_of_the_build_have_no_deviation(self):
        self.assertEqual(list(inspect_commands.command_deviations(self.commands)), [])

    def test_each_command_without_the_flag_of_app_extensions_is_named(self):
        lines = list(
            inspect_commands.command_deviations(
                self.commands.replace(" -fapplication-extension", ""))
        )
        self.assertIn(
            "application extension: the executable was linked without -fapplication-extension",
            lines,
        )
        for source in ("Cocoa/FinderSync.mm", "QuorvaFinderExtension/FinderExtension.cpp"):
            self.assertTrue(any(f"{source} was compiled without" in line for line in lines), source)

    def test_each_file_that_is_compiled_in_an_older_language_is_named(self):
        lines = list(
            inspect_commands.command_deviations(
                self.commands.replace(" -std=c++2b", " -std=c++17")))
        for source in ("Cocoa/FinderSync.mm", "QuorvaFinderExtension/FinderExtension.cpp"):
            line = f"{source} is compiled without an option for C++23"
            self.assertTrue(any(found.endswith(line) for found in lines), source)

    def test_a_link_without_the_entry_is_named(self):
        self.assertEqual(
            list(
                inspect_commands.command_deviations(
                    self.commands.replace("_NSExtensionMain", "_main")
                )
            ),
            ["entry: the executable was linked without -e _NSExtensionMain"],
        )


if __name__ == "__main__":
    unittest.main()
