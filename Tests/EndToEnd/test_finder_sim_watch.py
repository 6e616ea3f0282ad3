"""The command of finder-sim that shows the menu and the findings at every change."""

import os
import plistlib
import pty
import select
import shutil
import signal
import subprocess
import time
import unittest
from pathlib import Path

import samples
from quorva_process import (
    EXTENSION_EXECUTABLE, FEATURE_SETTINGS, SETTINGS_FILES, TIME_LIMIT, EndToEndTestCase, Home, Run,
    application_bundle, build_folder, program_environment, until)
from test_finder_sim import INTERRUPTS, FinderSimTestCase

from settings_watch import SettingsWatch

SEPARATOR = "=" * 72 + "\n"
CLEAR = "\x1b[H\x1b[2J"


class SettingsWatchTest(EndToEndTestCase):

    def watch(self):
        # A user has few of them.
        return SettingsWatch(str(self.home.quorva))

    def assert_seen(self, change):
        with self.watch() as watch:
            change()
            self.assertTrue(watch.has_changed(0), change)

    def test_every_kind_of_change_of_every_file_is_seen(self):
        self.home.quorva.mkdir(parents=True)
        other = self.home.path / "other"
        for name in SETTINGS_FILES:
            file = self.home.quorva / name
            for change in (
                    lambda: file.write_text("made"), lambda: file.write_text("rewritten"),
                    lambda: os.truncate(file, 2), lambda: file.chmod(0o600),
                    lambda: os.utime(file), lambda: file.rename(other),
                    lambda: other.rename(file), file.unlink, lambda: file.symlink_to(other),
                    lambda: shutil.copy(__file__, other) and other.replace(file)):
                self.assert_seen(change)

    def test_what_is_written_to_a_file_that_stays_open_is_seen(self):
        self.home.quorva.mkdir(parents=True)
        with (self.home.quorva / FEATURE_SETTINGS).open("wb", buffering=0) as file:
            for _ in range(2):
                self.assert_seen(lambda: file.write(b"<plist>"))

    def test_a_file_is_seen_through_the_links_that_lead_to_it(self):
        target, link = self.home.path / "target", self.home.path / "link"
        target.write_text("made")
        link.symlink_to(target)
        self.home.quorva.mkdir(parents=True)
        (self.home.quorva / FEATURE_SETTINGS).symlink_to(link)
        self.assert_seen(lambda: target.write_text("rewritten"))
        self.assert_seen(lambda: shutil.copy(__file__, link.with_name("new")).replace(target))
        self.assert_seen(target.unlink)

    def test_links_that_lead_nowhere_are_no_obstacle(self):
        self.home.quorva.mkdir(parents=True)
        file = self.home.quorva / FEATURE_SETTINGS
        for target in (file, "missing", "missing/file", "x" * 300, file.parent, "/dev/null"):
            file.symlink_to(target)
            self.assert_seen(file.unlink)

    def test_what_is_written_to_a_device_behind_a_link_is_no_change(self):
        self.home.quorva.mkdir(parents=True)
        (self.home.quorva / FEATURE_SETTINGS).symlink_to("/dev/null")
        with self.watch() as watch:
            Path("/dev/null").write_text("line")
            self.assertFalse(watch.has_changed(0))

    def test_folders_that_come_and_go_are_seen(self):
        support, library = self.home.application_support, self.home.path / "Library"
        for change in (library.mkdir, support.mkdir, self.home.quorva.mkdir, self.home.quorva.rmdir,
                       lambda: support.rename(library / "Former"),
                       lambda: shutil.rmtree(self.home.path), self.home.path.mkdir):
            self.assert_seen(change)

    def test_other_files_are_none_of_its_business(self):
        self.home.quorva.mkdir(parents=True)
        self.home.write(FEATURE_SETTINGS, {})
        with self.watch() as watch:
            self.home.queue.mkdir()
            (self.home.quorva / "FinderExtension.log").write_text("line")
            (self.home.path / FEATURE_SETTINGS).write_text("elsewhere")
            (self.home.quorva / FEATURE_SETTINGS).read_bytes()
            self.assertFalse(watch.has_changed(0))

    def test_many_changes_are_one(self):
        self.home.quorva.mkdir(parents=True)
        with self.watch() as watch:
            for number in range(200):
                self.home.write(FEATURE_SETTINGS, {"featureOrder": [str(number)]})
            watch.wait()
            self.assertFalse(watch.has_changed(0))


class WatchTest(FinderSimTestCase):

    def setUp(self):
        super().setUp()
        self.programs_before = self.programs()
        self.use_build()

    def use_build(self):
        """Puts finder-sim into a folder of its own, with a doctor that says how it was called."""
        folder = Run.new_folder()
        self.finder_sim_program = folder / "finder-sim"
        shutil.copy(build_folder() / "finder-sim", folder)
        (folder / "Quorva.app").symlink_to(application_bundle())
        self.doctor = folder / "quorva-doctor"
        self.write_doctor(r'printf "called with %s\n\nMenu\n  of the doctor\n" "$*"')

    def write_doctor(self, line):
        self.doctor.write_text(f"#!/bin/sh\n{line}\n")
        self.doctor.chmod(0o700)

    def start_watch(self, *arguments, output=None):
        """Starts it, with `output` or else a pipe as its standard output."""
        reader, writer = output or os.pipe()
        self.process = subprocess.Popen(
            [self.finder_sim_program, "watch", "--language", "en", *arguments],
            stdin=subprocess.DEVNULL, stdout=writer, stderr=subprocess.PIPE, encoding="utf-8",
            env=program_environment(self.home),
            preexec_fn=lambda: [signal.signal(number, signal.SIG_DFL) for number in INTERRUPTS])
        os.close(writer)
        self.output, self.text = reader, ""
        self.addCleanup(os.close, reader)
        self.addCleanup(self.process.wait)
        self.addCleanup(self.process.kill)

    def read_until(self, *parts):
        """Reads as far as the last of these strings, which have to come one after the other;
        returns what was before that."""
        deadline, end, content = time.monotonic() + TIME_LIMIT, 0, self.text.encode()
        for part in parts:
            while part.encode() not in content[end:]:
                self.assertLess(time.monotonic(), deadline, content.decode(errors="replace"))
                if select.select([self.output], [], [], 1)[0]:
                    content += os.read(self.output, 1 << 16)
            end = content.index(part.encode(), end) + len(part.encode())
        self.text = content[end:].decode()
        return content[:end].decode()

    def end_watch(self):
        """Ends it as Ctrl-C does."""
        self.process.send_signal(signal.SIGINT)
        self.assertEqual(self.process.communicate()[1], "")
        self.assertEqual(self.process.returncode, 128 + signal.SIGINT)
        self.assert_nothing_is_left()

    def set_features(self, *names):
        self.home.write(FEATURE_SETTINGS, samples.feature_settings(enabledFeatureIDs=names))

    def test_the_menu_and_the_findings_are_shown_again_at_every_change(self):
        self.set_features("archiveTools")
        self.start_watch("--select", "/a", "--account-home", "/Users/grace")
        shown = self.read_until(
            f"called with --home {self.home.path} --account-home /Users/grace\n")
        self.assertTrue(shown.startswith("Menu\n"), shown)
        self.assertIn("Compress to ZIP", shown)
        self.assertNotIn("\x1b", shown)
        self.set_features("pdfTools")
        shown = self.read_until(SEPARATOR, "Merge PDFs", "called with")
        self.assertNotIn("Compress to ZIP", shown)
        self.assertNotIn("of the doctor", shown, "one menu is enough")
        (self.home.quorva / FEATURE_SETTINGS).unlink()
        self.read_until(SEPARATOR, "Compress to ZIP", "called with")
        self.end_watch()

    def test_a_file_that_is_replaced_is_shown(self):
        self.start_watch()
        self.read_until("called with")
        new = self.home.path / "new.plist"
        new.write_bytes(plistlib.dumps(
            {"quickOpen": [{"id": "1", "name": "A new place", "path": "/new"}]}))
        new.replace(self.home.quorva / "CustomDestinations.plist")
        self.read_until(SEPARATOR, "A new place", "called with")
        self.end_watch()

    def test_settings_are_found_when_their_folder_comes(self):
        self.home = Home()
        self.start_watch()
        self.read_until("Compress to ZIP", "called with")
        shutil.rmtree(self.home.path / "Library")
        self.read_until(SEPARATOR, "Compress to ZIP", "called with")
        self.set_features("pdfTools")
        self.read_until(SEPARATOR, "Menu\n  PDF", "called with")
        self.end_watch()

    def test_a_file_that_is_half_written_is_shown_like_any_other(self):
        content = plistlib.dumps({"enabledFeatureIDs": ["pdfTools"]})
        self.set_features("pdfTools")
        self.start_watch()
        self.read_until("Menu\n  PDF", "called with")
        with (self.home.quorva / FEATURE_SETTINGS).open("wb", buffering=0) as file:
            file.write(content[:100])
            self.read_until(SEPARATOR, "Compress to ZIP", "called with")
            file.write(content[100:])
            self.read_until(SEPARATOR, "Menu\n  PDF", "called with")
        self.end_watch()

    def test_an_extension_that_has_ended_is_started_again(self):
        self.start_watch()
        self.read_until("called with")
        [extension] = [process for process, name in self.programs().items()
                       if name == "QuorvaFinderExtension"]
        os.kill(extension, signal.SIGKILL)
        until(lambda: "QuorvaFinderExtension" not in self.programs().values(), "it ended")
        self.set_features("pdfTools")
        self.assertNotIn("ended", self.read_until(SEPARATOR, "Menu\n  PDF", "called with"))
        self.end_watch()

    def test_an_extension_that_ends_at_the_request_is_reported_each_time(self):
        bundle = self.finder_sim_program.parent / "Quorva.app"
        bundle.unlink()
        program = bundle / EXTENSION_EXECUTABLE
        program.parent.mkdir(parents=True)
        program.write_text("#!/bin/sh\nread request; exit 7\n")
        program.chmod(0o700)
        self.start_watch()
        self.read_until("the extension ended with status 7", "called with")
        self.set_features("pdfTools")
        self.read_until(SEPARATOR, "the extension ended with status 7", "called with")
        self.end_watch()

    def test_an_extension_that_can_t_be_started_is_reported(self):
        bundle = self.finder_sim_program.parent / "Quorva.app"
        program = bundle / EXTENSION_EXECUTABLE
        bundle.unlink()
        self.start_watch()
        self.read_until(f"{program}: No such file or directory\n", "called with")
        program.parent.mkdir(parents=True)
        shutil.copy("/bin/true", program)
        with program.open("ab"):
            self.set_features("pdfTools")
            self.read_until(SEPARATOR, f"{program}: Text file busy\n", "called with")
        shutil.rmtree(bundle)
        bundle.symlink_to(application_bundle())
        self.set_features("pdfTools")
        self.read_until(SEPARATOR, "Menu\n  PDF", "called with")
        self.end_watch()

    def test_a_doctor_that_has_findings_or_fails_does_not_end_it(self):
        self.write_doctor("printf 'found \\033[2J\\n'; exit 1")
        self.start_watch()
        self.read_until("found \\u001b[2J\n")
        self.write_doctor("kill -SEGV $$")
        self.set_features("pdfTools")
        self.read_until(SEPARATOR, "signal 11\n")
        self.doctor.unlink()
        self.set_features("archiveTools")
        self.read_until(SEPARATOR, "quorva-doctor could not be run: No such file or directory\n")
        self.end_watch()

    def test_the_doctor_finds_what_is_wrong(self):
        self.doctor.unlink()
        self.doctor.symlink_to(build_folder() / "quorva-doctor")
        self.home.write(FEATURE_SETTINGS, {"enabledFeatureIDs": ["PDFTools"]})
        self.start_watch()
        self.read_until("Menu\n", "did you mean pdfTools")
        self.home.write(FEATURE_SETTINGS, {"enabledFeatureIDs": ["pdfTools"]})
        shown = self.read_until(SEPARATOR, "Menu\n", "FinderViewPresets.plist")
        self.assertNotIn("did you mean", shown)
        self.set_features("archiveTools")
        self.assertNotIn("PDF", self.read_until(SEPARATOR), "one menu is enough")
        self.end_watch()

    def test_a_terminal_is_cleared_in_place_of_a_separator(self):
        self.start_watch(output=pty.openpty())
        shown = self.read_until("called with")
        self.set_features("pdfTools")
        shown += self.read_until("PDF", "called with")
        self.assertTrue(shown.startswith(CLEAR), shown[:20])
        self.assertGreater(shown.count(CLEAR), 1)
        self.assertNotIn(SEPARATOR, shown)
        self.end_watch()

    def test_a_terminal_is_not_cleared_before_there_is_something_to_show(self):
        started, resumed = (self.home.path / name for name in ("started", "resumed"))
        for fifo in (started, resumed):
            os.mkfifo(fifo)
        self.write_doctor(f"echo >{started}; read line <{resumed}; echo called with")
        self.start_watch(output=pty.openpty())
        started.read_text()
        self.assertEqual(select.select([self.output], [], [], 0)[0], [])
        resumed.write_text("\n")
        self.assertTrue(self.read_until("called with").startswith(CLEAR))
        self.end_watch()


if __name__ == "__main__":
    unittest.main()
