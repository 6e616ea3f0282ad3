"""What the tests of the scripts share: a folder with spaces in its name, and programs in place of
the system's that record how they were called."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

DASH = shutil.which("dash")
ROOT = Path(__file__).resolve().parents[2]

# Without what takes long in starting Python.
RECORD = f"#!{sys.executable} -IS" + """
import json, os, pathlib, sys
name, arguments = pathlib.Path(sys.argv[0]).name, sys.argv[1:]
with open(os.environ["LOG"], "a") as log:
    log.write(json.dumps([name, os.getcwd(), *arguments]) + "\\n")
"""


class ScriptTestCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="a folder with spaces ")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name).resolve()
        self.log = self.folder / "log"
        self.log.touch()
        self.programs = self.folder / "bin"
        self.programs.mkdir()

    def add_program(self, name, source=""):
        """Puts a program in place of the system's; `source` is Python that each call runs."""
        program = self.programs / name
        program.write_text(RECORD + source)
        program.chmod(0o755)

    def copy_scripts(self, name="project"):
        """A project with the scripts and nothing else."""
        project = self.folder / name
        shutil.copytree(ROOT / "scripts", project / "scripts")
        return project

    def copied_script(self, name):
        """A script in a project of its own, which is made when there is none yet."""
        project = self.folder / "project"
        return (project if project.exists() else self.copy_scripts()) / "scripts" / name

    def run_script(self, script, *arguments, cwd=None, answer="", **environment):
        """Runs a script with `answer` to its questions. What is written for every shell runs in one
        that has nothing beyond what each has."""
        path = f"{self.programs}:{os.environ['PATH']}"
        with open(Path(cwd or ".") / script, encoding="utf-8") as file:
            shell = [DASH] if file.readline() == "#!/bin/sh\n" else []
        return subprocess.run(
            [*shell, str(script), *map(str, arguments)],
            cwd=cwd,
            env={**os.environ, "LOG": str(self.log), "PATH": path} | environment,
            input=answer,
            capture_output=True,
            text=True,
            check=False,
        )

    def recorded(self, name):
        """The folder and the arguments of every call of a program."""
        calls = [json.loads(line) for line in self.log.read_text().splitlines()]
        return [(Path(call[1]), call[2:]) for call in calls if call[0] == name]

    def calls(self, name):
        return [arguments for _, arguments in self.recorded(name)]
