"""An extension that is killed in the middle of a click."""

import json
import random
import statistics
import time
import unittest

from menu_model import Request
from quorva_process import RECORD_KEYS, EndToEndTestCase, ExtensionProcess

KILLS = 300

# Started this far ahead, so that a killed process is replaced by one that is ready.
STARTED_AHEAD = 4

CLICKED = Request([f"/Volumes/Work/{number}.jpeg" for number in range(200)], "/Volumes/Work")


class SuddenDeathTest(EndToEndTestCase):

    def test_a_kill_at_any_moment_of_a_click_leaves_no_record_or_a_whole_one(self):
        generator = random.Random(20240229)
        click = json.dumps({
            "id": 1, "request": "send", "item": {"title": "压缩为 ZIP"},
            "selectedPaths": CLICKED.selected, "targetedPath": CLICKED.targeted}).encode() + b"\n"
        self.started = [self.start() for _ in range(STARTED_AHEAD)]
        durations = [self.duration_of(click) for _ in range(9)]
        for _ in range(KILLS):
            extension = self.next_extension()
            extension.send_bytes(click)
            time.sleep(generator.uniform(0, statistics.median(durations)))
            extension.kill()
            self.check_queue()
        for extension in self.started:
            extension.kill()
        # Some died before their record and some after it: else the moments were no test.
        self.assertGreater(self.whole, 0)
        self.assertLess(self.whole, KILLS)

    def setUp(self):
        super().setUp()
        self.whole = 0

    def start(self):
        """A process that answers a first request as soon as it is ready."""
        extension = ExtensionProcess(self.home)
        self.addCleanup(extension.kill)
        extension.send_line(b'{"id":0,"request":"toolbar"}')
        return extension

    def next_extension(self):
        """A process that waits for the click."""
        self.started.append(self.start())
        extension = self.started.pop(0)
        self.assertEqual(extension.read_answer()["name"], "Quorva")
        return extension

    def duration_of(self, click):
        """How long a click takes from one end to the other, for the moments within it."""
        extension = self.next_extension()
        begin = time.monotonic()
        extension.send_bytes(click)
        extension.read_answer()
        duration = time.monotonic() - begin
        extension.kill()
        self.home.take_records()
        return duration

    def check_queue(self):
        """Checks and removes what a kill left."""
        files = self.home.record_files()
        self.assertLessEqual(len(files), 1)
        for file in files:
            record = json.loads(file.read_bytes().decode("utf-8"))
            self.assertEqual(list(record), RECORD_KEYS)
            self.assertEqual(record["selectedPaths"], CLICKED.selected)
            file.unlink()
            self.whole += 1


if __name__ == "__main__":
    unittest.main()
