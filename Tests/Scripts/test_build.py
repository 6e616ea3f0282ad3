"""What scripts/build shows of a build."""

import os
import select
import subprocess
import unittest

from script_test import DASH, ScriptTestCase

# Shows the first half of the output, and the second when it is told to.
CMAKE = """
if "--list-presets=build" in arguments:
    print('  "dev"')
elif "--build" in arguments:
    print("a warning", flush=True)
    pathlib.Path(os.environ["RESUMED"]).read_text()
    print("another\\nninja: no work to do.")
    sys.exit(3)
"""


class BuildTest(ScriptTestCase):

    def test_output_is_shown_as_it_comes_and_the_status_is_that_of_the_build(self):
        self.add_program("cmake", CMAKE)
        script = self.copied_script("build")
        (script.parents[1] / "CMakePresets.json").touch()
        (script.parents[1] / "build" / "dev").mkdir(parents=True)
        resumed = self.folder / "resumed"
        os.mkfifo(resumed)
        process = subprocess.Popen(
            [DASH, script, "dev"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, bufsize=0,
            env={**os.environ, "LOG": str(self.log), "RESUMED": str(resumed),
                 "PATH": f"{self.programs}:{os.environ['PATH']}"})
        self.addCleanup(process.wait)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.kill)
        is_shown = bool(select.select([process.stdout], [], [], 60)[0])
        # The build waits for a reader's end of its own, so that it ends in any case.
        resumed.write_text("")
        self.assertTrue(is_shown, "nothing was shown before the end")
        self.assertEqual(process.communicate()[0], b"a warning\nanother\n")
        self.assertEqual(process.returncode, 3)


if __name__ == "__main__":
    unittest.main()
