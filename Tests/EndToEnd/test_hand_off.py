"""What follows a click: the queue's folder, the notification, the launch."""

import contextlib
import os
import shutil
import unittest

from menu_model import Request
from quorva_process import (
    EXTENSION_EXECUTABLE, FALLBACK_QUEUE, QUEUED, EndToEndTestCase, Home, Run, application_bundle,
    end_containing_application, until)

CLICKED = Request(["/Volumes/Work/a.txt"], "/Volumes/Work")
ITEM = {"title": "压缩为 ZIP"}


CLICK_LOG = [
    "clicked sender=压缩为 ZIP",
    'action=compressToZIP title=压缩为 ZIP selected=["/Volumes/Work/a.txt"] target=/Volumes/Work'
    " destination=nil",
]


def opened(path):
    return {"event": "openApplication", "path": str(path), "activates": False,
            "addsToRecentItems": False}


class HandOffTestCase(EndToEndTestCase):

    def start(self, **options):
        extension = self.start_extension(**options)
        extension.request("toolbar")
        self.home.new_log_messages()
        return extension

    def copy_of_the_bundle(self):
        """The application's bundle at another place, where a test may break it."""
        copy = Run.new_folder() / "Quorva.app"
        shutil.copytree(application_bundle(), copy, symlinks=True)
        self.addCleanup(shutil.rmtree, copy.parent, ignore_errors=True)
        return copy


class QueueFolderTest(HandOffTestCase):

    def test_the_queue_is_made_with_the_first_record(self):
        extension = self.start()
        self.assertFalse(self.home.queue.exists())
        extension.send(ITEM, CLICKED)
        self.assertEqual(len(self.home.records()), 1)

    def test_a_click_queues_notifies_and_launches_in_this_order(self):
        answer = self.start().send(ITEM, CLICKED)
        self.assertEqual(answer["events"], [QUEUED, opened(application_bundle())])
        self.assertEqual(self.home.new_log_messages(),
                         [*CLICK_LOG, "queued action: compressToZIP"])

    def test_where_the_queue_s_folder_is_a_file_the_failure_is_logged_and_nothing_follows(self):
        self.home.quorva.mkdir(parents=True)
        self.home.queue.write_text("not a folder")
        self.check_failure()
        self.assertEqual(self.home.queue.read_text(), "not a folder")

    def test_where_the_queue_s_folder_may_not_be_written_nothing_is_lost_but_the_click(self):
        self.home.queue.mkdir(parents=True)
        self.home.queue.chmod(0o500)
        if os.access(self.home.queue, os.W_OK):
            self.skipTest("root, with all that it may do, is not kept from writing there")
        self.check_failure()
        self.assertEqual(list(self.home.queue.iterdir()), [])

    def test_once_the_queue_can_be_written_again_clicks_are_queued(self):
        self.home.quorva.mkdir(parents=True)
        self.home.queue.write_text("not a folder")
        extension = self.start()
        extension.send(ITEM, CLICKED)
        self.home.queue.unlink()
        extension.send(ITEM, CLICKED)
        self.assertEqual(len(self.home.records()), 1)

    def check_failure(self):
        extension = self.start()
        answer = extension.send(ITEM, CLICKED)
        self.assertEqual((answer["events"], answer["unifiedLog"]), ([], []))
        *clicked, failed, suppressed = self.home.new_log_messages()
        self.assertEqual(clicked, CLICK_LOG)
        prefix = "queue failed: compressToZIP error="
        self.assertTrue(failed.startswith(prefix), failed)
        reason = failed.removeprefix(prefix)
        self.assertNotEqual(reason, "")
        self.assertEqual(suppressed, "suppressed queue error alert: " + reason)
        self.assertEqual(extension.request("toolbar")["name"], "Quorva")

    def test_without_application_support_the_record_goes_to_the_temporary_folder(self):
        (self.home.path / "Library").write_text("not a folder")
        selected = [str(self.home.path) + "/unlike any other"]

        def own_records():
            return [file for file in FALLBACK_QUEUE.glob("*.json")
                    if selected[0] in file.read_text(encoding="utf-8")]

        def remove_own_records():
            for file in own_records():
                file.unlink()
            with contextlib.suppress(OSError):
                FALLBACK_QUEUE.rmdir()

        self.addCleanup(remove_own_records)
        if FALLBACK_QUEUE.exists() and FALLBACK_QUEUE.stat().st_uid != os.geteuid():
            self.skipTest(f"{FALLBACK_QUEUE} belongs to another user of this machine")
        extension = self.start_extension()
        extension.request("toolbar")
        answer = extension.send(ITEM, Request(selected))
        self.assertEqual(answer["events"], [QUEUED, opened(application_bundle())])
        self.assertEqual(len(own_records()), 1)
        self.assertEqual((self.home.path / "Library").read_text(), "not a folder")


class LaunchTest(HandOffTestCase):

    def test_the_application_around_the_extension_is_opened_quietly(self):
        bundle = self.copy_of_the_bundle()
        answer = self.start(executable=bundle / EXTENSION_EXECUTABLE).send(ITEM, CLICKED)
        self.assertEqual(answer["events"], [QUEUED, opened(bundle)])

    def test_a_bundle_that_has_gone_is_logged_and_the_record_stays(self):
        bundle = self.copy_of_the_bundle()
        extension = self.start(executable=bundle / EXTENSION_EXECUTABLE)
        bundle.rename(bundle.with_name("Elsewhere.app"))
        self.check_failed_launch(extension, bundle)

    def test_a_bundle_without_an_executable_is_logged_and_the_record_stays(self):
        bundle = self.copy_of_the_bundle()
        (bundle / "Contents/MacOS/Quorva").unlink()
        self.check_failed_launch(self.start(executable=bundle / EXTENSION_EXECUTABLE), bundle)

    def test_a_bundle_that_names_no_executable_is_logged_and_the_record_stays(self):
        bundle = self.copy_of_the_bundle()
        (bundle / "Contents/Info.plist").write_text("nonsense")
        self.check_failed_launch(self.start(executable=bundle / EXTENSION_EXECUTABLE), bundle)

    def test_a_launch_that_fails_is_logged(self):
        bundle = self.copy_of_the_bundle()
        (bundle / "Contents/MacOS/Quorva").unlink()
        extension = self.start(executable=bundle / EXTENSION_EXECUTABLE, launch=True)
        self.check_failed_launch(extension, bundle)

    def check_failed_launch(self, extension, bundle):
        answer = extension.send(ITEM, CLICKED)
        self.assertEqual(answer["events"], [QUEUED, opened(bundle)])
        *queued, failed = self.home.new_log_messages()
        self.assertEqual(queued, [*CLICK_LOG, "queued action: compressToZIP"])
        self.assertRegex(failed, r"\Afailed to open app: .+\Z")
        self.assertEqual(len(self.home.records()), 1)
        self.assertEqual(extension.request("toolbar")["name"], "Quorva")

    def test_a_launch_carries_out_the_record(self):
        extension = self.start(launch=True)
        self.addCleanup(end_containing_application, application_bundle())
        answer = extension.send(ITEM, CLICKED)
        self.assertEqual(answer["events"], [QUEUED, opened(application_bundle())])
        until(lambda: self.home.performed() and not self.home.records(), "the record was performed")
        [record] = self.home.performed()
        self.assertEqual((record["actionID"], record["selectedPaths"], record["targetedPath"]),
                         ("compressToZIP", CLICKED.selected, CLICKED.targeted))

    def test_an_application_that_runs_is_only_notified(self):
        extension = self.start(launch=True)
        self.addCleanup(end_containing_application, application_bundle())
        extension.send(ITEM, CLICKED)
        until(lambda: len(self.home.performed()) == 1 and not self.home.records(),
              "the first record was performed")
        answer = extension.send(ITEM, CLICKED)
        self.assertEqual(answer["events"], [QUEUED])
        until(lambda: len(self.home.performed()) == 2 and not self.home.records(),
              "the second record was performed")

    def test_an_application_that_has_ended_is_opened_again(self):
        extension = self.start(launch=True)
        self.addCleanup(end_containing_application, application_bundle())
        extension.send(ITEM, CLICKED)
        until(lambda: len(self.home.performed()) == 1, "the first record was performed")
        end_containing_application(application_bundle())
        answer = extension.send(ITEM, CLICKED)
        self.assertEqual(answer["events"], [QUEUED, opened(application_bundle())])
        until(lambda: len(self.home.performed()) == 2, "the second record was performed")

    def launch(self, bundle, home=None):
        """Has an extension launch the application, which runs until the test ends."""
        home = home or self.home
        self.addCleanup(end_containing_application, bundle)
        extension = self.start_extension(
            home=home, executable=bundle / EXTENSION_EXECUTABLE, launch=True)
        answer = extension.send(ITEM, CLICKED)
        self.assertEqual(answer["events"], [QUEUED, opened(bundle)])
        until(lambda: home.performed() and not home.records(), "the record was performed")

    def test_an_application_of_another_home_is_not_the_one_to_notify(self):
        self.launch(application_bundle(), Home())
        self.launch(application_bundle())

    def test_an_application_of_another_build_is_not_the_one_to_notify(self):
        self.launch(self.copy_of_the_bundle())
        answer = self.start().send(ITEM, CLICKED)
        self.assertEqual(answer["events"], [QUEUED, opened(application_bundle())])

    def test_a_program_of_the_same_name_is_not_the_application(self):
        other = Run.new_folder() / "Quorva"
        shutil.copy("/bin/sleep", other)
        process = self.start_program([other, "600"])
        answer = self.start().send(ITEM, CLICKED)
        self.assertEqual(answer["events"], [QUEUED, opened(application_bundle())])
        self.assertIsNone(process.poll())


if __name__ == "__main__":
    unittest.main()
