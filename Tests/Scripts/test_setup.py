"""scripts/setup on a Mac, with programs in place of the Mac's."""

import shutil
import unittest

from script_test import ScriptTestCase

ALL = ("cli11", "googletest", "nlohmann-json")
TOOLS = "the command line tools are missing: xcode-select --install"
OLD = "and 3.25 is the oldest that builds this: brew upgrade cmake"

# Whether the command line tools are there, CMake's version and other programs, formulae of Homebrew
# or no Homebrew, and what is said to be missing.
CASES = (
    (True, "3.31.2", ("ninja",), ALL, None),
    (True, "3.25.0", ("ninja",), None, None),
    (True, "4.0.1", ("ninja",), ALL, None),
    (True, "10.2", ("ninja",), ALL, None),
    (True, "3.24.4", ("ninja",), ALL, f"CMake is 3.24.4, {OLD}"),
    (True, "3.9.6", ("ninja",), ALL, f"CMake is 3.9.6, {OLD}"),
    (True, "2.8.12", ("ninja",), ALL, f"CMake is 2.8.12, {OLD}"),
    (False, "3.31.2", ("ninja",), ALL, TOOLS),
    (True, None, ("ninja",), ALL, "something is missing: brew install cmake"),
    (True, None, (), None, "something is missing: brew install cmake ninja"),
    (True, "3.31.2", ("ninja",), ("cli11", "nlohmann-json"),
     "something is missing: brew install googletest"),
    (True, "3.31.2", (), (),
     "something is missing: brew install ninja cli11 googletest nlohmann-json"),
)


class SetupTest(ScriptTestCase):
    def add_programs(self, tools, cmake, others, formulae):
        shutil.rmtree(self.programs)
        self.programs.mkdir()
        for name in ("dirname", "sed"):
            (self.programs / name).symlink_to(shutil.which(name))
        self.add_program("uname", "print('Darwin')")
        # A Mac has this program also without the tools.
        self.add_program("clang++", "sys.exit(1)")
        self.add_program("xcode-select", f"sys.exit({0 if tools else 2})")
        if cmake:
            self.add_program("cmake", f"print('cmake version {cmake}\\n\\nCMake suite')")
        for name in others:
            self.add_program(name)
        if formulae is not None:
            self.add_program("brew", f"sys.exit(arguments[1] not in {formulae!r})")

    def test_a_mac_is_told_all_that_is_missing_in_one_line(self):
        for *there, missing in CASES:
            with self.subTest(there):
                self.add_programs(*there)
                result = self.run_script(
                    self.copied_script("setup"), PATH=str(self.programs))
                expected = (0, "") if missing is None else (1, f"setup: {missing}\n")
                self.assertEqual((result.returncode, result.stderr), expected)


if __name__ == "__main__":
    unittest.main()
