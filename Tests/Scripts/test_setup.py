"""scripts/setup on a Mac, with programs in place of the Mac's."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SETUP = Path(__file__).resolve().parents[2] / "scripts" / "setup"

ALL = ("clang++", "cmake", "ninja")
BOTH = ("googletest", "nlohmann-json")

# What there is: programs, formulae of Homebrew or no Homebrew, and what is said to be missing.
CASES = (
    (ALL, BOTH, None),
    (ALL, None, None),
    (("cmake", "ninja"), BOTH, "clang++ is missing: xcode-select --install"),
    (("clang++", "ninja"), BOTH, "something is missing: brew install cmake"),
    (("clang++",), None, "something is missing: brew install cmake ninja"),
    (ALL, ("nlohmann-json",), "something is missing: brew install googletest"),
    (("clang++", "cmake"), (), "something is missing: brew install ninja googletest nlohmann-json"),
)


class SetupTest(unittest.TestCase):
    def run_setup(self, programs, formulae):
        with tempfile.TemporaryDirectory(prefix="a folder with spaces ") as folder:
            scripts = dict.fromkeys(programs, "exit 0")
            scripts["uname"] = "echo Darwin"
            if formulae is not None:
                known = "|".join(formulae) or "-"
                scripts["brew"] = f'case "$2" in {known}) exit 0 ;; esac; exit 1'
            (Path(folder) / "dirname").symlink_to(shutil.which("dirname"))
            for name, script in scripts.items():
                program = Path(folder) / name
                program.write_text(f"#!/bin/sh\n{script}\n")
                program.chmod(0o755)
            return subprocess.run(
                [str(SETUP)],
                env={**os.environ, "PATH": folder},
                capture_output=True,
                text=True,
                check=False,
            )

    def test_a_mac_is_told_all_that_is_missing_in_one_line(self):
        for programs, formulae, missing in CASES:
            with self.subTest(programs=programs, formulae=formulae):
                result = self.run_setup(programs, formulae)
                expected = (0, "") if missing is None else (1, f"setup: {missing}\n")
                self.assertEqual((result.returncode, result.stderr), expected)


if __name__ == "__main__":
    unittest.main()
