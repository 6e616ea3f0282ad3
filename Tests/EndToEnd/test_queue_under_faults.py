"""The queue when its disk is full, when its folder is replaced, and while it is emptied.

QUORVA_CLICKS says how many clicks each process makes.
"""

import collections
import errno
import itertools
import os
import threading
import unittest

from menu_model import Request
from quorva_process import (
    QUEUED, SMALL_DISK, EndToEndTestCase, Home, alone, application_bundle,
    end_containing_application, queue_record, until)

CLICKS = int(os.environ.get("QUORVA_CLICKS", "100"))
PROCESSES = 8

CLICKED = Request([f"/Volumes/Work/{number}.jpeg" for number in range(300)], "/Volumes/Work")


def item(title):
    return {"title": title, "representedObject": {
        "type": "dictionary", "actionID": "a", "title": title}}


class QueueTestCase(EndToEndTestCase):

    def titles_in(self, *queues):
        """The titles of the records, each of which must be whole."""
        return sorted(queue_record(file.read_bytes())["title"]
                      for queue in queues for file in queue.glob("*.json"))

    def count_in_log(self, message):
        """How many lines say so, whether or not every other line is whole."""
        return self.home.log_file.read_bytes().count(b"] " + message.encode() + b"\n")


@alone
class FullDiskTest(QueueTestCase):

    def setUp(self):
        super().setUp()
        self.home = Home(SMALL_DISK / self.id().rsplit(".", 1)[-1])
        self.home.queue.mkdir(parents=True)
        self.filler = SMALL_DISK / "filler"
        self.addCleanup(self.filler.unlink, missing_ok=True)

    def leave_free(self, size):
        with self.filler.open("wb", buffering=0) as filler:
            try:
                while True:
                    filler.write(bytes(4096))
            except OSError as error:
                self.assertEqual(error.errno, errno.ENOSPC)
            filler.truncate(max(0, filler.tell() - size))

    def test_a_click_leaves_a_whole_record_or_none_however_little_space_there_is(self):
        extension = self.start_extension()
        extension.request("toolbar")
        outcomes = collections.Counter()
        for pages in range(12):
            with self.subTest(pages=pages):
                self.leave_free(4096 * pages)
                answer = extension.send(item(f"full {pages}"), CLICKED)
                queued = QUEUED in answer["events"]
                outcomes[queued] += 1
                self.assertEqual(self.titles_in(self.home.queue), [f"full {pages}"] * queued)
                self.home.take_records()
                self.filler.unlink()
                self.assertIn(QUEUED, extension.send(item("free"), CLICKED)["events"])
                self.assertEqual(self.titles_in(self.home.queue), ["free"])
                self.home.take_records()
        self.assertGreater(min(outcomes[True], outcomes[False]), 0, "the disk was never too full")
        self.assertEqual([file.name for file in self.home.queue.iterdir()], [])


class ReplacedQueueTest(QueueTestCase):

    def test_a_click_that_was_queued_has_its_record_wherever_the_folder_was_moved_meanwhile(self):
        extension = self.start_extension()
        extension.request("toolbar")
        ended = threading.Event()
        moved = []

        def move_away():
            for number in itertools.count():
                place = self.home.quorva / f"Moved {number}"
                try:
                    self.home.queue.rename(place)
                    moved.append(place)
                except FileNotFoundError:
                    pass
                if ended.wait(0.002):
                    return

        mover = threading.Thread(target=move_away)
        mover.start()
        queued = []
        try:
            for number in range(3 * CLICKS):
                if QUEUED in extension.send(item(f"T{number}"), CLICKED)["events"]:
                    queued.append(f"T{number}")
        finally:
            ended.set()
            mover.join()
        self.assertGreater(len(moved), 1)
        self.assertEqual(self.titles_in(self.home.queue, *moved), sorted(queued))
        self.assertEqual(self.count_in_log("queued action: a"), len(queued))

    def test_a_record_follows_a_link_that_took_the_folder_s_place(self):
        extension = self.start_extension()
        extension.send(item("before"), CLICKED)
        elsewhere = self.home.quorva / "Elsewhere"
        self.home.queue.rename(elsewhere)
        self.home.queue.symlink_to(elsewhere)
        extension.send(item("after"), CLICKED)
        self.assertEqual(self.titles_in(elsewhere), ["after", "before"])


class SharedQueueTest(QueueTestCase):

    def test_what_several_processes_queue_is_performed_exactly_once_while_they_click(self):
        extensions = [self.start_extension() for _ in range(PROCESSES)]
        self.addCleanup(end_containing_application, application_bundle())
        launching = self.start_extension(launch=True)
        launching.send(item("first"), CLICKED)

        def click(process, extension):
            for number in range(CLICKS):
                extension.send(item(f"{process}-{number}"), CLICKED)

        threads = [threading.Thread(target=click, args=arguments)
                   for arguments in enumerate(extensions)]
        for thread in threads:
            thread.start()
        while any(thread.is_alive() for thread in threads):
            self.check_whole_files()
        for thread in threads:
            thread.join()
        until(lambda: not self.home.record_files(), "the queue was empty")
        performed = collections.Counter(record["title"] for record in self.home.performed())
        expected = ["first", *(f"{process}-{number}" for process in range(PROCESSES)
                               for number in range(CLICKS))]
        self.assertEqual(performed, collections.Counter(expected))
        self.assertEqual(self.count_in_log("queued action: a"), len(expected))

    def check_whole_files(self):
        """No file has its name before it is whole. The application may take it at any time."""
        for file in self.home.record_files():
            try:
                content = file.read_bytes()
            except FileNotFoundError:
                continue
            queue_record(content)


if __name__ == "__main__":
    unittest.main()
