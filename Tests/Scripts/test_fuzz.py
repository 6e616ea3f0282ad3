"""What scripts/fuzz leaves running."""

import os
import select
import signal
import subprocess
import unittest

from script_test import ScriptTestCase

# Says that it runs, and keeps its end of the pipe open until it ends.
FUZZER = """
import time
pipe = os.open(os.environ["RUNNING"], os.O_WRONLY)
os.write(pipe, f"{os.getpid()}\\n".encode())
time.sleep(600)
"""


class FuzzTest(ScriptTestCase):

    def test_an_interrupt_ends_the_fuzzer_too(self):
        script = self.copied_script("fuzz")
        project = script.parents[1]
        programs = project / "build" / "asan" / "Tests" / "Fuzz"
        for folder in (project / "Tests" / "Fuzz", programs):
            folder.mkdir(parents=True)
        (project / "Tests" / "Fuzz" / "OneFuzzer.cpp").touch()
        (project / "scripts" / "build").write_text("#!/bin/sh\n")
        self.add_program("OneFuzzer", FUZZER)
        (self.programs / "OneFuzzer").rename(programs / "OneFuzzer")
        running = self.folder / "running"
        os.mkfifo(running)
        process = subprocess.Popen(
            [script, "500"], env={**os.environ, "LOG": str(self.log), "RUNNING": str(running)},
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        with running.open(encoding="ascii") as pipe:
            fuzzer = int(pipe.readline())
            process.send_signal(signal.SIGINT)
            process.wait()
            has_ended = bool(select.select([pipe], [], [], 60)[0])
        if not has_ended:
            os.kill(fuzzer, signal.SIGKILL)
        self.assertTrue(has_ended)


if __name__ == "__main__":
    unittest.main()
