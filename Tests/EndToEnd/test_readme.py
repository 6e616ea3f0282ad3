"""What README.md and its translation show can be done, prints what they say."""

import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from quorva_process import build_folder

ROOT = Path(__file__).resolve().parents[2]
READMES = ("README.md", "README.zh-Hans.md")


def text(name):
    return (ROOT / name).read_text(encoding="utf-8")


def sections(name):
    return re.split(r"^## ", text(name), flags=re.MULTILINE)[1:]


def blocks(section):
    """Each block of commands, with the output that follows it or nothing."""
    return re.findall(r"^```sh\n(.*?)^```(?:\n\n```text\n(.*?)^```)?", section,
                      re.MULTILINE | re.DOTALL)


def pattern(output):
    """`output` as a regular expression, in which "…" is anything, also of several lines."""
    return ".*".join(re.escape(part) for part in re.split(r"^…\n|…", output, flags=re.MULTILINE))


class ReadmeTest(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = Path(folder.name)
        (self.home / "build").mkdir()
        (self.home / "build" / "dev").symlink_to(build_folder())

    def run_in_home(self, commands):
        return subprocess.run(
            ["sh", "-ec", commands], cwd=self.home, timeout=60,
            env={**os.environ, "HOME": str(self.home)},
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")

    def commands_of_make(self, command):
        """The last command that make would run."""
        run = subprocess.run(
            command.replace("make", "make -n", 1), shell=True, cwd=ROOT, check=True,
            stdout=subprocess.PIPE, encoding="utf-8")
        return run.stdout.splitlines()[-1]

    def assert_commands_work(self, commands, output):
        if commands.startswith("make"):
            commands = self.commands_of_make(commands)
            if not output:
                return
        run = self.run_in_home(commands)
        # The doctor has something to find.
        self.assertIn(run.returncode, (0, 1) if "quorva-doctor" in commands else (0,), run.stderr)
        if output:
            self.assertRegex(run.stdout, re.compile(f"^{pattern(output)}$", re.DOTALL))

    def test_commands_print_what_is_shown(self):
        for name in READMES:
            for section in sections(name):
                for commands, output in blocks(section):
                    if "scripts/embed" not in commands:
                        with self.subTest(name, commands=commands):
                            self.assert_commands_work(commands, output)

    def test_translation_has_the_same_commands(self):
        def outline(name):
            return [[re.findall(r"make [a-z-]+|scripts/\w+|build/dev/\S+ \S+", commands)
                     for commands, _ in blocks(section)] for section in sections(name)]
        self.assertEqual(outline(READMES[0]), outline(READMES[1]))
        self.assertIn(["make appex", "scripts/embed"], outline(READMES[0])[-2])

    def test_commands_in_passing_exist(self):
        for name in READMES:
            found = re.findall(r"`(make [a-z-]+|scripts/[a-z-]+|build/dev/[a-z-]+ [a-z]+)\b",
                               text(name))
            self.assertIn("build/dev/finder-sim watch", found)
            for command in found:
                with self.subTest(name, command=command):
                    if command.startswith("make"):
                        self.commands_of_make(command)
                    elif command.startswith("scripts"):
                        self.assertTrue(os.access(ROOT / command, os.X_OK))
                    else:
                        self.assertEqual(self.run_in_home(command + " --help").returncode, 0)

    def test_files_that_are_named_exist(self):
        for name in READMES:
            named = re.findall(r'\]\(([^):]+)\)|src="([^"]+)"|^\| `([^`]+)/`', text(name),
                               re.MULTILINE)
            self.assertGreater(len(named), 20)
            for path in filter(None, sum(named, ())):
                with self.subTest(name, path=path):
                    self.assertTrue((ROOT / path).exists())


if __name__ == "__main__":
    unittest.main()
