"""What takes long says how far it is to whoever watches, and to nobody else."""

import os
import pty
import select
import subprocess
import sys
import unittest
from pathlib import Path

from script_test import ROOT, ScriptTestCase

FUZZER = "print('stat::number_of_executed_units: 7', file=sys.stderr)"


class ProgressTest(ScriptTestCase):

    def run_watched(self, *command, stream):
        """What the command writes to `stream`, a terminal. It may find something."""
        reader, terminal = pty.openpty()
        process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL,
            env={**os.environ, "LOG": str(self.log),
                 "PATH": f"{self.programs}:{os.environ['PATH']}"},
            **{"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, stream: terminal})
        os.close(terminal)
        text = b""
        try:
            while select.select([reader], [], [], 60)[0]:
                text += os.read(reader, 1 << 16)
        except OSError:  # the end of what wrote there
            pass
        os.close(reader)
        self.assertIn(process.wait(60), (0, 1))
        return text.decode()

    def add_built(self, path):
        """A program that was built already."""
        self.add_program("built", FUZZER)
        path.parent.mkdir(parents=True)
        (self.programs / "built").rename(path)

    def add_fuzzers(self):
        script = self.copied_script("fuzz")
        project = script.parents[1]
        (project / "Tests" / "Fuzz").mkdir(parents=True)
        built = project / "build" / "asan" / "Tests" / "Fuzz"
        self.add_built(built / "OneFuzzer")
        (built / "OtherFuzzer").symlink_to(built / "OneFuzzer")
        for name in ("One", "Other"):
            (project / "Tests" / "Fuzz" / f"{name}Fuzzer.cpp").touch()
        (project / "scripts" / "build").write_text("#!/bin/sh\n")
        return script

    def add_mutations(self):
        script = self.copied_script("mutate")
        project = script.parents[1]
        (project / "QuorvaFinderExtension").mkdir()
        (project / "QuorvaFinderExtension" / "Core.cpp").write_text("bool one = 1 == 2;\n")
        for name in ("Cocoa", "Platform", "Tests", "cmake"):
            (project / name).mkdir()
        (project / "CMakeLists.txt").touch()
        for name in ("cmake", "ninja"):
            self.add_program(name)
        self.add_built(project / "build/mutate/build/Tests/Unit/QuorvaUnitTests")
        return script

    def test_the_fuzz_run(self):
        script = self.add_fuzzers()
        watched = self.run_watched(script, "1", stream="stderr")
        for shown in ("One, 1 of 2: 0 of 1 seconds", "Other, 2 of 2: 0 of 1 seconds"):
            self.assertIn(shown, watched)
        result = self.run_script(script, "1")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(len(result.stdout.splitlines()), 3)

    def test_the_mutation_run(self):
        script = self.add_mutations()
        watched = self.run_watched(script, "2", stream="stderr")
        for shown in ("1 of 2, 0 survived: QuorvaFinderExtension/Core.cpp:1",
                      "2 of 2, 1 survived: QuorvaFinderExtension/Core.cpp:1"):
            self.assertIn(shown, watched)
        result = self.run_script(script, "2")
        self.assertEqual((result.returncode, result.stderr), (1, ""))
        self.assertNotIn("\x1b", result.stdout)

    def test_the_soak(self):
        [soak] = Path(os.environ["QUORVA_BUILD_FOLDER"], "Tests", "Soak").rglob("MacOS/QuorvaSoak")
        run_alone = ROOT / "Tests" / "run_alone.py"
        command = [sys.executable, run_alone, "xvfb-run", "-a", soak, "40", "40"]
        self.assertIn("menu requests: 40 of 49", self.run_watched(*command, stream="stdout"))
        result = subprocess.run(command, stdout=subprocess.PIPE, encoding="utf-8")
        self.assertTrue(result.stdout.startswith("menu requests: 49\n"), result.stdout)


if __name__ == "__main__":
    unittest.main()
