"""The two files of the diagnostic log, in good order and in bad."""

import contextlib
import datetime
import os
import re
import tempfile
import unittest

from quorva_process import TEMPORARY_LOG, EndToEndTestCase, log_messages

ITEM = {"title": "nothing is called this"}

MESSAGES = [
    "clicked sender=nothing is called this",
    "missing context for sender=nothing is called this",
]


def temporary_log_size():
    return TEMPORARY_LOG.stat().st_size if TEMPORARY_LOG.is_file() else 0


def temporary_log_is_ours():
    """Whether this account may write the log that every account of the machine shares."""
    return not TEMPORARY_LOG.exists() or TEMPORARY_LOG.stat().st_uid == os.geteuid()


@contextlib.contextmanager
def temporary_log_replaced(put):
    """Lets `put` lay something else at the temporary log's path, where this account may."""
    if not temporary_log_is_ours():
        yield
        return
    aside = tempfile.mktemp(dir=TEMPORARY_LOG.parent, prefix=TEMPORARY_LOG.name + ".")
    existed = TEMPORARY_LOG.exists()
    if existed:
        TEMPORARY_LOG.rename(aside)
    put(TEMPORARY_LOG)
    try:
        yield
    finally:
        if TEMPORARY_LOG.is_dir():
            TEMPORARY_LOG.rmdir()
        elif TEMPORARY_LOG.exists():
            TEMPORARY_LOG.unlink()
        if existed:
            os.rename(aside, TEMPORARY_LOG)


class DiagnosticLogTest(EndToEndTestCase):

    def start(self):
        extension = self.start_extension()
        extension.request("toolbar")
        return extension

    def log_lines(self):
        return self.home.log_file.read_bytes().splitlines(keepends=True)

    def test_the_first_line_makes_the_file_and_the_others_are_appended(self):
        extension = self.start()
        before = self.home.log_file.read_bytes()
        self.assertTrue(before.startswith(b"["))
        extension.send(ITEM)
        after = self.home.log_file.read_bytes()
        self.assertTrue(after.startswith(before))
        self.assertEqual(log_messages(after[len(before):]), MESSAGES)

    def test_a_line_is_a_date_in_utc_a_message_and_a_line_feed(self):
        before = datetime.datetime.now(datetime.timezone.utc).replace(microsecond=0)
        self.start().send(ITEM)
        after = datetime.datetime.now(datetime.timezone.utc)
        for line in self.log_lines():
            match = re.fullmatch(rb"\[(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d) \+0000\] [^\n]+\n", line)
            self.assertIsNotNone(match, line)
            date = datetime.datetime.strptime(match[1].decode(), "%Y-%m-%d %H:%M:%S")
            self.assertTrue(before <= date.replace(tzinfo=datetime.timezone.utc) <= after, line)

    def test_the_date_is_in_utc_whatever_the_time_zone(self):
        extension = self.start_extension(environment={"TZ": "Asia/Shanghai"})
        before = datetime.datetime.now(datetime.timezone.utc).replace(microsecond=0)
        extension.send(ITEM)
        date = datetime.datetime.strptime(self.log_lines()[-1][1:20].decode(), "%Y-%m-%d %H:%M:%S")
        self.assertGreaterEqual(date.replace(tzinfo=datetime.timezone.utc), before)
        self.assertLess(date.replace(tzinfo=datetime.timezone.utc) - before,
                        datetime.timedelta(hours=1))

    def test_the_temporary_log_has_the_same_lines_in_the_same_order(self):
        if not temporary_log_is_ours():
            content = TEMPORARY_LOG.stat().st_size
            self.start().send(ITEM)
            self.assertEqual(TEMPORARY_LOG.stat().st_size, content)
            return
        position = temporary_log_size()
        extension = self.start()
        extension.menu()
        extension.send(ITEM)
        with TEMPORARY_LOG.open("rb") as log:
            log.seek(position)
            others = iter(log.read().splitlines(keepends=True))
        # Other processes of the machine may have written in between.
        for line in self.log_lines():
            self.assertIn(line, others)

    def test_the_console_has_every_message(self):
        extension = self.start()
        extension.menu()
        extension.send(ITEM)
        console = extension.standard_error()
        for message in self.home.new_log_messages():
            self.assertIn("QuorvaFinderExtension: " + message + "\n", console)

    def test_a_title_with_line_breaks_is_logged_as_it_is(self):
        extension = self.start()
        self.home.new_log_messages()
        title = "one\ntwo\r\nthree \u2028 \"four\" \\ 📁 e\u0301"
        extension.send({"title": title})
        self.assertEqual(self.home.new_log_messages(), [
            "clicked sender=" + title, "missing context for sender=" + title])

    def test_an_empty_title_is_logged_as_nothing(self):
        extension = self.start()
        self.home.new_log_messages()
        extension.send({"title": ""})
        self.assertEqual(self.home.new_log_messages(),
                         ["clicked sender=", "missing context for sender="])

    def test_a_log_that_exists_is_appended_to_on_a_line_of_its_own(self):
        self.home.quorva.mkdir(parents=True)
        self.home.log_file.write_bytes(b"\xff\xfe no line end")
        self.start()
        self.assertTrue(
            self.home.log_file.read_bytes().startswith(b"\xff\xfe no line end\n["))

    def test_a_log_that_is_removed_is_made_anew(self):
        extension = self.start()
        self.home.log_file.unlink()
        extension.send(ITEM)
        self.assertEqual(log_messages(self.home.log_file.read_bytes()), MESSAGES)

    def test_a_log_that_may_not_be_written_is_replaced_by_the_new_line_alone(self):
        extension = self.start()
        extension.send(ITEM)
        self.home.log_file.chmod(0o444)
        extension.send(ITEM)
        # The first line replaced the file, the second found a file that it may write.
        self.assertEqual(log_messages(self.home.log_file.read_bytes()), MESSAGES)

    def test_a_log_that_is_a_folder_stays_one_and_the_click_goes_on(self):
        self.home.log_file.mkdir(parents=True)
        extension = self.start()
        extension.menu()
        extension.send({"title": "新建文件夹"})
        self.assertTrue(self.home.log_file.is_dir())
        self.assertEqual(list(self.home.log_file.iterdir()), [])
        self.assertEqual([record["actionID"] for record in self.home.records()], ["createFolder"])
        self.assertEqual(sorted(path.name for path in self.home.quorva.iterdir()),
                         ["ActionQueue", "FinderExtension.log"])

    def test_a_log_in_a_folder_that_may_not_be_written_is_left_out_and_the_menu_comes(self):
        self.home.quorva.mkdir(parents=True)
        self.home.quorva.chmod(0o500)
        extension = self.start()
        self.assertEqual(extension.menu()["title"], "Quorva")
        self.assertEqual(list(self.home.quorva.iterdir()), [])

    def test_a_log_that_is_a_link_to_nowhere_is_replaced(self):
        self.home.quorva.mkdir(parents=True)
        self.home.log_file.symlink_to(self.home.path / "none" / "log")
        self.start().send(ITEM)
        self.assertFalse(self.home.log_file.is_symlink())
        self.assertEqual(log_messages(self.home.log_file.read_bytes())[-2:], MESSAGES)

    def test_a_temporary_log_that_is_a_folder_keeps_no_line_from_the_other(self):
        with temporary_log_replaced(lambda path: path.mkdir()):
            self.start().send(ITEM)
        self.assertEqual(self.home.new_log_messages()[-2:], MESSAGES)

    def test_a_temporary_log_that_may_not_be_written_is_replaced(self):
        def put(path):
            path.write_text("old")
            path.chmod(0o444)

        with temporary_log_replaced(put):
            self.start().send(ITEM)
            if temporary_log_is_ours():
                content = TEMPORARY_LOG.read_bytes()
                self.assertFalse(content.startswith(b"old"))
                self.assertIn(self.log_lines()[-1], content)
        self.assertEqual(self.home.new_log_messages()[-2:], MESSAGES)

    def test_without_application_support_the_temporary_log_and_the_console_go_on(self):
        (self.home.path / "Library").write_text("not a folder")
        position = temporary_log_size()
        extension = self.start_extension()
        title = f"only here {self.home.path}"
        extension.send({"title": title})
        self.assertIn("QuorvaFinderExtension: clicked sender=" + title,
                      extension.standard_error())
        if temporary_log_is_ours():
            with TEMPORARY_LOG.open("rb") as log:
                log.seek(position)
                self.assertIn(b"] clicked sender=" + os.fsencode(title) + b"\n", log.read())
        self.assertEqual((self.home.path / "Library").read_text(), "not a folder")


if __name__ == "__main__":
    unittest.main()
