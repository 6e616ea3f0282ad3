"""What the Makefile hands on."""

import subprocess
import unittest

from script_test import ROOT


class RunTest(unittest.TestCase):

    def demonstration(self, *arguments, **environment):
        """The last command of make run."""
        result = subprocess.run(["make", "--dry-run", "run", *arguments], cwd=ROOT, check=True,
                                stdout=subprocess.PIPE, encoding="utf-8",
                                env={"PATH": "/usr/bin:/bin"} | environment)
        return result.stdout.splitlines()[-1].split()

    def test_the_demonstration_takes_a_language_and_a_layout(self):
        self.assertEqual(
            self.demonstration("LANGUAGE=en", "LAYOUT=expanded"),
            ["build/dev/finder-sim", "demo", "--language", "'en'", "--layout", "'expanded'"])

    def test_the_system_s_own_language_is_none_of_them(self):
        self.assertEqual(self.demonstration(LANGUAGE="de_DE:en"), ["build/dev/finder-sim", "demo"])


if __name__ == "__main__":
    unittest.main()
