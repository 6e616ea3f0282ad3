"""Pipes, sockets, devices, folders and huge files in the place of a settings file or a log."""

import os
import plistlib
import socket
import unittest

import samples
from menu_model import MenuBuilder, Request
from quorva_process import (
    SETTINGS_FILES, TEMPORARY_LOG, EndToEndTestCase, Home, alone, log_messages)

REQUEST = Request(["/Volumes/Work/a.txt"], "/Volumes/Work")
ITEM = {"title": "压缩为 ZIP"}

# What the presets of a file that is read would add to the menu.
PROPERTY_LIST = plistlib.dumps([{"id": "p", "name": "P", "viewMode": "l", "sortMode": "s"}])


class SpecialFilesTestCase(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.use_new_home()

    def use_new_home(self):
        self.home = Home()
        self.home.quorva.mkdir(parents=True)

    def put_pipe(self, path):
        os.mkfifo(path)

    def put_pipe_with_content(self, path):
        """A pipe that is open at its other end and holds what could be read."""
        os.mkfifo(path)
        pipe = os.open(path, os.O_RDWR | os.O_NONBLOCK)
        self.addCleanup(os.close, pipe)
        os.write(pipe, PROPERTY_LIST)

    def put_link_to_pipe(self, path):
        if not (path.parent / "pipe").exists():
            os.mkfifo(path.parent / "pipe")
        path.symlink_to("pipe")

    def put_socket(self, path):
        server = socket.socket(socket.AF_UNIX)
        self.addCleanup(server.close)
        server.bind(str(path))
        server.listen()

    def put_folder(self, path):
        path.mkdir()

    def put_endless_device(self, path):
        path.symlink_to("/dev/zero")

    def put_full_device(self, path):
        path.symlink_to("/dev/full")

    def put_gigabyte(self, path):
        with path.open("wb") as file:
            file.write(PROPERTY_LIST)
            file.truncate(1 << 30)


class SpecialSettingsFileTest(SpecialFilesTestCase):

    def check(self, put):
        for name in SETTINGS_FILES:
            put(self.home.quorva / name)
        # If it hangs, it does not end by itself either.
        extension = self.start_mortal_extension()
        self.assertEqual(extension.menu(REQUEST),
                         MenuBuilder(self.home.settings(), REQUEST).menu())
        extension.send(ITEM, REQUEST)
        self.assertEqual([record["actionID"] for record in self.home.records()], ["compressToZIP"])

    def test_a_pipe_leaves_the_defaults(self):
        self.check(self.put_pipe)

    def test_a_pipe_that_holds_settings_leaves_the_defaults(self):
        self.check(self.put_pipe_with_content)

    def test_a_link_to_a_pipe_leaves_the_defaults(self):
        self.check(self.put_link_to_pipe)

    def test_a_socket_leaves_the_defaults(self):
        self.check(self.put_socket)

    def test_a_folder_leaves_the_defaults(self):
        self.check(self.put_folder)

    def test_an_endless_device_leaves_the_defaults(self):
        self.check(self.put_endless_device)

    def test_a_gigabyte_leaves_the_defaults(self):
        self.check(self.put_gigabyte)

    def test_a_link_to_a_regular_file_is_read(self):
        settings = self.home.settings(feature_settings=samples.feature_settings(),
                                      **samples.user_data())
        self.home.write_settings(settings)
        for name in SETTINGS_FILES:
            (self.home.quorva / name).rename(self.home.path / name)
            (self.home.quorva / name).symlink_to(self.home.path / name)
        self.assertEqual(self.start_extension().menu(REQUEST),
                         MenuBuilder(settings, REQUEST).menu())


class SpecialLogFileTest(SpecialFilesTestCase):

    def check(self, log, put):
        """Both the menu and the click come, and their lines are in a file in place of the other."""
        put(log)
        extension = self.start_mortal_extension()
        self.assertEqual(extension.menu(REQUEST)["title"], "Quorva")
        extension.send(ITEM, REQUEST)
        self.assertEqual([record["actionID"] for record in self.home.records()], ["compressToZIP"])
        if not log.is_dir():
            self.assertTrue(log.is_file() and not log.is_symlink())
            self.assertEqual(log_messages(log.read_bytes())[-1], "queued action: compressToZIP")

    def test_anything_but_a_folder_in_place_of_the_log_is_replaced(self):
        for put in (self.put_pipe, self.put_pipe_with_content, self.put_link_to_pipe,
                    self.put_socket, self.put_folder, self.put_full_device):
            with self.subTest(log=put.__name__):
                self.use_new_home()
                self.check(self.home.log_file, put)

    @alone
    def test_anything_but_a_folder_in_place_of_the_temporary_log_is_replaced(self):
        for put in (self.put_pipe, self.put_pipe_with_content, self.put_link_to_pipe,
                    self.put_socket, self.put_full_device, self.put_folder):
            with self.subTest(log=put.__name__):
                self.use_new_home()
                TEMPORARY_LOG.unlink(missing_ok=True)
                self.check(TEMPORARY_LOG, put)
        TEMPORARY_LOG.rmdir()


if __name__ == "__main__":
    unittest.main()
