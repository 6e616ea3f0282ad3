"""An extension that is killed in the middle of a click.

QUORVA_KILLS says how many are killed.
"""

import json
import os
import random
import time
import unittest

from menu_model import Request
from quorva_process import EndToEndTestCase, Extension, queue_record

KILLS = int(os.environ.get("QUORVA_KILLS", "100"))

# Started this far ahead, so that a killed process is replaced by one that is ready.
STARTED_AHEAD = 4

CLICKED = Request([f"/Volumes/Work/{number}.jpeg" for number in range(200)], "/Volumes/Work")

CLICK = json.dumps({
    "id": 1, "request": "send", "item": {"title": "压缩为 ZIP"},
    "selectedPaths": CLICKED.selected, "targetedPath": CLICKED.targeted})


class SuddenDeathTest(EndToEndTestCase):

    def test_a_kill_at_any_moment_of_a_click_leaves_no_record_or_a_whole_one(self):
        generator = random.Random(20240229)
        started = [self.start() for _ in range(STARTED_AHEAD)]
        self.addCleanup(lambda: [extension.kill() for extension in started])
        outcomes = {0: 0, 1: 0}
        longest = 0.01
        for _ in range(KILLS):
            started.append(self.start())
            extension = started[0]
            self.assertEqual(extension.read_response()["name"], "Quorva")
            extension.send_line(CLICK)
            time.sleep(generator.uniform(0, longest))
            started.pop(0).kill()
            records = self.check_records()
            self.assertLessEqual(self.queued_in_log(), records, "logged as queued, but not there")
            outcomes[records] += 1
            # About as many are to die before their record as after it, on any machine.
            longest *= 0.9 if records else 1.1
        print(f"{KILLS} processes were killed: {outcomes[1]} left their record, {outcomes[0]} none")
        self.assertGreater(min(outcomes.values()), KILLS // 10, "the moments were no test")

    def start(self):
        """A process that responds to a first request as soon as it is ready."""
        # Not held until the end of the test, as each has descriptors of its own.
        extension = Extension(self.home)
        extension.send_line(b'{"id":0,"request":"toolbar"}')
        return extension

    def queued_in_log(self):
        """How often the log, which is then removed, says that an action was queued."""
        if not self.home.log_file.exists():
            return 0
        content = self.home.log_file.read_bytes()
        self.home.log_file.unlink()
        return content.count(b"] queued action: compressToZIP\n")

    def check_records(self):
        """Checks and removes what a kill left, and returns how many records that was."""
        files = self.home.record_files()
        self.assertLessEqual(len(files), 1)
        for file in files:
            record = queue_record(file.read_bytes())
            self.assertEqual(record["selectedPaths"], CLICKED.selected)
            file.unlink()
        return len(files)


if __name__ == "__main__":
    unittest.main()
