"""The stand-in of the containing application: it empties the queue and loses nothing."""

import json
import signal
import subprocess
import tempfile
import unittest

from menu_model import Request
from quorva_process import (
    TIME_LIMIT, EndToEndTestCase, Run, application_bundle, post_notification, program_environment,
    until)

ACTION_QUEUED = "app.ferrolin.Quorva.ActionQueued"


def record(action_id, created_at=1.5, **others):
    return {"actionID": action_id, "createdAt": created_at, "destinationPath": "", "presetID": "",
            "selectedPaths": [], "targetedPath": "", "title": "T", **others}


UNREADABLE = {
    "an empty file": b"",
    "half a record": b'{"actionID": "a", "createdAt": 1',
    "bytes": b"\xff\xfe\x00",
    "an array": b"[]",
    "a string": b'"a"',
    "null": b"null",
    "no action": b'{"createdAt": 1}',
    "an action that is a number": b'{"actionID": 1, "createdAt": 1}',
    "no time": b'{"actionID": "a"}',
    "a string that is not UTF-8": b'{"actionID": "\xff", "createdAt": 1}',
    "100,000 arrays": b"[" * 100_000,
}


class ContainingApplicationTest(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.home.queue.mkdir(parents=True)
        self.errors = tempfile.TemporaryFile(dir=Run.folder())

    def queue(self, name, content):
        (self.home.queue / name).write_bytes(
            content if isinstance(content, bytes) else json.dumps(content).encode())

    def start(self):
        environment = program_environment(self.home, display=False)
        process = subprocess.Popen(
            [application_bundle() / "Contents" / "MacOS" / "Quorva"], stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=self.errors, env=environment)

        def end():
            process.kill()
            process.wait()
            process.stdout.close()

        self.addCleanup(end)
        return process

    def standard_error(self):
        self.errors.seek(0)
        return self.errors.read().decode("utf-8", "replace")

    def wait_until_drained(self):
        until(lambda: not self.home.record_files(), "the queue was empty")

    def action_ids(self):
        return [performed["actionID"] for performed in self.home.performed()]

    def test_what_waits_in_the_queue_is_performed_at_the_start(self):
        expected = record("one", selectedPaths=["/a\nb", "/📁"], title="一 \"二\"")
        self.queue("1.json", expected)
        self.start()
        self.wait_until_drained()
        self.assertEqual(self.home.performed(), [expected])

    def test_records_are_performed_in_the_order_of_their_time(self):
        for name, created_at in (("A", 3.5), ("B", 1.25), ("C", 2), ("D", 1.5)):
            self.queue(name + ".json", record(name, created_at))
        self.start()
        self.wait_until_drained()
        self.assertEqual(self.action_ids(), ["B", "D", "C", "A"])

    def test_a_notification_is_heard_and_the_queue_emptied_again(self):
        self.queue("1.json", record("one"))
        self.start()
        self.wait_until_drained()
        for action_id in ("two", "three"):
            self.queue("2.json", record(action_id))
            until(lambda: self.notify_until_drained(), "the queue was empty")
        self.assertEqual(self.action_ids(), ["one", "two", "three"])

    def notify_until_drained(self):
        # It drains at its start before it listens, so the first word may come too early.
        post_notification(self.home, ACTION_QUEUED)
        return not self.home.record_files()

    def test_what_can_t_be_read_stays_and_is_told(self):
        names = {}
        for number, (case, content) in enumerate(UNREADABLE.items()):
            names[f"bad-{number}.json"] = case
            self.queue(f"bad-{number}.json", content)
        self.queue("good-1.json", record("first", 1))
        self.queue("good-2.json", record("second", 2))
        self.start()
        until(lambda: len(self.home.record_files()) == len(UNREADABLE), "the rest was performed")
        self.assertEqual(self.action_ids(), ["first", "second"])
        for number, (case, content) in enumerate(UNREADABLE.items()):
            with self.subTest(record=case):
                name = f"bad-{number}.json"
                self.assertEqual((self.home.queue / name).read_bytes(), content)
                self.assertIn(name, self.standard_error())

    def test_a_record_that_may_not_be_read_stays_and_is_told(self):
        self.queue("1.json", record("one"))
        (self.home.queue / "2.json").mkdir()
        self.start()
        until(lambda: self.home.performed(), "the record was performed")
        self.assertTrue((self.home.queue / "2.json").is_dir())
        until(lambda: "2.json" in self.standard_error(), "the folder was told")

    def test_files_that_are_no_records_are_left_alone(self):
        self.queue("notes.txt", b"mine")
        self.queue("1.json", record("one"))
        self.start()
        self.wait_until_drained()
        self.assertEqual((self.home.queue / "notes.txt").read_bytes(), b"mine")

    def test_a_record_stays_until_its_line_is_on_disk(self):
        self.queue("1.json", record("one"))
        (self.home.quorva / "Performed.jsonl").mkdir()
        process = self.start()
        until(lambda: self.standard_error(), "the failure was told")
        self.assertEqual(len(self.home.record_files()), 1)
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(TIME_LIMIT), 0)
        self.assertEqual(len(self.home.record_files()), 1)

    def test_lines_are_appended_behind_those_of_earlier_runs(self):
        (self.home.quorva / "Performed.jsonl").write_text('{"actionID": "earlier"}\n')
        self.queue("1.json", record("one"))
        self.start()
        self.wait_until_drained()
        self.assertEqual(self.action_ids(), ["earlier", "one"])

    def test_a_line_that_was_torn_is_closed_before_the_next(self):
        file = self.home.quorva / "Performed.jsonl"
        file.write_text('{"actionID": "to')
        self.queue("1.json", record("one"))
        self.start()
        self.wait_until_drained()
        torn, line = file.read_text().splitlines()
        self.assertEqual((torn, json.loads(line)["actionID"]), ('{"actionID": "to', "one"))

    def test_a_name_that_a_terminal_would_act_on_is_told_as_text(self):
        self.queue("\x1b[2J\r.json", b"")
        self.start()
        until(lambda: self.standard_error().endswith("\n"), "the file was told")
        self.assertIn(r"\u001b[2J\u000d.json", self.standard_error())
        self.assertNotIn("\x1b", self.standard_error())

    def test_the_queue_may_come_into_being_later(self):
        self.home.queue.rmdir()
        self.start()
        self.home.queue.mkdir()
        self.queue("1.json", record("one"))
        until(lambda: self.notify_until_drained(), "the queue was empty")
        self.assertEqual(self.action_ids(), ["one"])

    def test_the_request_to_end_ends_it_with_status_0(self):
        self.queue("1.json", record("one"))
        process = self.start()
        self.wait_until_drained()
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(TIME_LIMIT), 0)

    def test_nothing_is_written_to_standard_output(self):
        self.queue("1.json", record("one"))
        self.queue("2.json", b"nonsense")
        process = self.start()
        until(lambda: self.home.performed(), "the record was performed")
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.communicate(timeout=TIME_LIMIT)[0], b"")

    def test_two_at_once_perform_each_record_once(self):
        for number in range(100):
            self.queue(f"{number}.json", record(str(number), float(number)))
        self.start()
        self.start()
        self.wait_until_drained()
        self.assertEqual(sorted(self.action_ids(), key=int),
                         [str(number) for number in range(100)])

    def test_a_click_of_the_extension_reaches_it(self):
        self.start()
        extension = self.start_extension()
        extension.send({"title": "压缩为 ZIP"}, Request(["/a"], "/b"))

        def performed():
            if self.home.record_files():
                post_notification(self.home, ACTION_QUEUED)
            return self.home.performed()

        [line] = until(performed, "the click was performed")
        self.assertEqual((line["actionID"], line["selectedPaths"], line["targetedPath"]),
                         ("compressToZIP", ["/a"], "/b"))


if __name__ == "__main__":
    unittest.main()
