"""The folders that Finder is asked to watch: at the start, and when the settings change."""

import contextlib
import os
import shutil
import signal
import unittest
from pathlib import Path

from menu_model import listed
from quorva_process import EndToEndTestCase, Home, Run, alone, post_notification, until

SETTINGS_CHANGED = "app.ferrolin.Quorva.SettingsChanged"

STANDARD_FOLDERS = ("Desktop", "Documents", "Downloads", "Movies", "Music", "Pictures")

CLOUD = "Library/Mobile Documents/com~apple~CloudDocs"


def expected_folders(home, real_home):
    """The paths to watch. The real home need not exist."""
    paths = {"/Applications", "/Volumes", home, real_home}
    paths |= {f"{real_home}/{folder}" for folder in (
        "Desktop", "Documents", CLOUD, CLOUD + "/Desktop", CLOUD + "/Documents")}
    paths |= {f"{home}/{folder}" for folder in STANDARD_FOLDERS}
    with contextlib.suppress(FileNotFoundError):
        paths |= {entry.path for entry in os.scandir(real_home)
                  if entry.is_dir(follow_symlinks=False) and not entry.name.startswith(".")}
    return sorted(paths | {os.path.realpath(path) for path in paths}, key=os.fsencode)


class MonitoredFoldersTest(EndToEndTestCase):

    def test_the_folders_are_those_of_the_home_the_real_home_and_the_whole_machine(self):
        answer = self.start_extension().request("directories")
        self.assertEqual(answer["directories"],
                         expected_folders(str(self.home.path), "/Users/ada"))

    def test_the_standard_folders_are_watched_whether_they_exist_or_not(self):
        for folder in STANDARD_FOLDERS[:3]:
            (self.home.path / folder).mkdir()
        answer = self.start_extension().request("directories")
        self.assertEqual(answer["directories"],
                         expected_folders(str(self.home.path), "/Users/ada"))

    def test_the_start_is_logged_with_the_folders_in_order(self):
        extension = self.start_extension()
        answer = extension.request("directories")
        folders = answer["directories"]
        self.assertEqual(self.home.new_log_messages(), ["started monitored=" + listed(folders)])
        self.assertEqual(answer["unifiedLog"], [{
            "subsystem": "app.ferrolin.Quorva.FinderExtension", "category": "FinderSync",
            "level": "info",
            "message": "FinderSync refreshed directories. reason=started,"
                       f" count={len(folders)}"}])

    def test_a_home_behind_a_symbolic_link_is_watched_under_both_paths(self):
        link = Run.new_folder() / "home"
        link.symlink_to(self.home.path)
        linked = Home(link)
        folders = self.start_extension(linked).request("directories")["directories"]
        self.assertEqual(folders, expected_folders(str(link), "/Users/ada"))
        for path in (link, self.home.path):
            self.assertIn(str(path), folders)
            self.assertIn(str(path / "Desktop"), folders)

    def test_a_standard_folder_behind_a_symbolic_link_is_watched_under_both_paths(self):
        elsewhere = Run.new_folder()
        (self.home.path / "Documents").symlink_to(elsewhere)
        folders = self.start_extension().request("directories")["directories"]
        self.assertIn(str(self.home.path / "Documents"), folders)
        self.assertIn(str(elsewhere), folders)

    def test_the_account_names_the_real_home_where_its_home_is_none_or_a_container(self):
        for account_home in ("/Users/grace/Library/Containers/app.ferrolin.Quorva/Data",
                             "/Users/other/Library/Containers/app.ferrolin.Quorva/Data",
                             "/Users/other/Library/Containers/x", "/home/grace", "/Usersgrace"):
            with self.subTest(account_home=account_home):
                home = Home(account_name="grace", account_home=account_home)
                folders = self.start_extension(home).request("directories")["directories"]
                self.assertEqual(folders, expected_folders(str(home.path), "/Users/grace"))

    def test_the_account_s_home_below_users_is_the_real_home(self):
        home = Home(account_name="grace", account_home="/Users/somebody-else")
        folders = self.start_extension(home).request("directories")["directories"]
        self.assertIn("/Users/somebody-else/" + CLOUD, folders)
        self.assertNotIn("/Users/grace", folders)

    @alone
    def test_the_visible_folders_of_the_real_home_are_watched_and_the_hidden_ones_are_not(self):
        real_home = Path("/Users/grace")
        self.addCleanup(shutil.rmtree, real_home)
        for folder in ("Projects", "Müll", ".hidden", "Desktop"):
            (real_home / folder).mkdir(parents=True)
        (real_home / "file.txt").touch()
        (real_home / "link").symlink_to("Projects")
        home = Home(account_home=real_home)
        folders = self.start_extension(home).request("directories")["directories"]
        self.assertEqual(folders, expected_folders(str(home.path), str(real_home)))
        self.assertLessEqual({f"{real_home}/Projects", f"{real_home}/Müll"}, set(folders))

    def test_names_that_are_hard_to_write_are_watched_and_logged_as_they_are(self):
        path = Run.new_folder() / 'a "b"\nc 📁 e\u0301'
        path.mkdir()
        home = Home(path)
        folders = self.start_extension(home).request("directories")["directories"]
        self.assertEqual(folders, expected_folders(str(path), "/Users/ada"))
        self.assertEqual(home.new_log_messages(), ["started monitored=" + listed(folders)])


class SettingsChangedTest(EndToEndTestCase):

    # The user info, and the reason that is understood.
    CASES = [
        (None, "unknown"),
        ({}, "unknown"),
        ({"reason": "menu-order"}, "menu-order"),
        ({"reason": ""}, ""),
        ({"reason": "两个 词 \"x\" 📁"}, "两个 词 \"x\" 📁"),
        ({"reason": 12}, "unknown"),
        ({"reason": True}, "unknown"),
        ({"reason": ["menu-order"]}, "unknown"),
        ({"reason": {"text": "menu-order"}}, "unknown"),
        ({"Reason": "menu-order"}, "unknown"),
        ({12: "menu-order"}, "unknown"),
        ({12: 12, "reason": "kept", True: False}, "kept"),
        ({"reason": "kept", "more": [1, {"a": 2}]}, "kept"),
    ]

    def setUp(self):
        super().setUp()
        self.extension = self.start_extension()
        self.extension.request("toolbar")
        self.home.new_log_messages()

    def post(self, user_info=None, sender=""):
        """Posts from another process and gives the extension the time to hear it."""
        post_notification(self.home, SETTINGS_CHANGED, user_info, sender)
        received = []

        def heard():
            answer = self.extension.request("wait", seconds=0.1)
            self.assertEqual(answer["events"], [])
            received.extend(answer["unifiedLog"])
            return received

        until(heard, "the notification arrived")
        return received

    def test_a_notification_from_another_process_refreshes_the_folders_with_its_reason(self):
        folders = self.extension.request("directories")["directories"]
        for user_info, reason in self.CASES:
            with self.subTest(user_info=user_info):
                self.assertEqual(self.post(user_info), [{
                    "subsystem": "app.ferrolin.Quorva.FinderExtension", "category": "FinderSync",
                    "level": "info",
                    "message": "FinderSync refreshed directories."
                               f" reason=settings-changed:{reason}, count={len(folders)}"}])
                self.assertEqual(self.home.new_log_messages(), [
                    "settings changed notification reason=" + reason,
                    f"settings-changed:{reason} monitored={listed(folders)}"])

    def test_the_refresh_finds_what_has_changed(self):
        elsewhere = Run.new_folder()
        before = self.extension.request("directories")["directories"]
        self.assertNotIn(str(elsewhere), before)
        (self.home.path / "Music").symlink_to(elsewhere)
        self.post()
        after = self.extension.request("directories")["directories"]
        self.assertEqual(after, expected_folders(str(self.home.path), "/Users/ada"))
        self.assertIn(str(elsewhere), after)

    def test_every_extension_of_the_account_hears_it(self):
        other_home = Home()
        other = self.start_extension(other_home)
        other.request("toolbar")
        self.post({"reason": "both"})
        until(lambda: "settings changed notification reason=both" in self.heard_by(
            other, other_home), "the other extension heard it")

    def test_an_extension_that_is_stopped_holds_nobody_up(self):
        stopped = self.start_extension(Home())
        stopped.request("toolbar")
        stopped.process.send_signal(signal.SIGSTOP)
        try:
            # More than the stopped one's connection takes without being read.
            self.post({"reason": "r" * 120_000}, "s" * 120_000)
        finally:
            stopped.process.send_signal(signal.SIGCONT)
        self.assertEqual(self.home.new_log_messages()[0],
                         "settings changed notification reason=" + "r" * 120_000)

    def heard_by(self, extension, home):
        extension.request("wait", seconds=0.1)
        return home.new_log_messages()

    def test_a_notification_of_another_name_changes_nothing(self):
        post_notification(self.home, SETTINGS_CHANGED + "d", {"reason": "x"})
        post_notification(self.home, "app.ferrolin.Quorva.ActionQueued")
        self.post({"reason": "last"})
        self.assertEqual(self.home.new_log_messages()[0],
                         "settings changed notification reason=last")

    def test_a_notification_of_any_sender_is_heard(self):
        for sender in ("", "app.ferrolin.Quorva", "someone else", "一"):
            with self.subTest(sender=sender):
                self.post({"reason": sender}, sender)
                self.assertEqual(self.home.new_log_messages()[0],
                                 "settings changed notification reason=" + sender)


if __name__ == "__main__":
    unittest.main()
