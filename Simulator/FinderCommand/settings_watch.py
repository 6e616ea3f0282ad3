"""Waits for changes of the settings files, as the system tells of them (inotify)."""

import ctypes
import os
import select
import struct
import time
from errno import EACCES, ELOOP, ENAMETOOLONG, ENOENT, ENOTDIR

from settings import FILES

IN_MODIFY, IN_ATTRIB, IN_CLOSE_WRITE, IN_MOVED_FROM, IN_MOVED_TO = 2, 4, 8, 0x40, 0x80
IN_CREATE, IN_DELETE, IN_DELETE_SELF, IN_MOVE_SELF, IN_ONLYDIR = 0x100, 0x200, 0x400, 0x800, 1 << 24
CHANGES = (IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_MOVED_FROM | IN_MOVED_TO | IN_CREATE
           | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF)

# The watch, the kind of change, what connects two of them, and the length of the name that follows.
EVENT = struct.Struct("iIII")

# What comes at most so many seconds after a change belongs to it, and this long at the most.
PAUSE, BURST = 0.05, 0.5


class SettingsWatch:
    """Learns of every change of the files `names` in `folder` from now on, also while `folder` or
    one that it lies in is missing, or replaced by another. Where a file is a symbolic link, the
    regular file that it leads to is watched as well.

    Unseen stay a file that comes to where a link led nowhere, a change of another link or folder on
    the way that a link leads, and what the system does not report: writes through mapped memory and
    by other machines."""

    def __init__(self, folder, names=FILES):
        libc = ctypes.CDLL(None, use_errno=True)
        self._inotify = libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        if self._inotify < 0:
            raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()), "inotify")
        self._names = {}

        def add(path, changes, below):
            watch = libc.inotify_add_watch(self._inotify, os.fsencode(path), changes)
            if watch >= 0:
                self._names.setdefault(watch, set()).update(map(os.fsencode, below))
            elif ctypes.get_errno() not in (EACCES, ELOOP, ENAMETOOLONG, ENOENT, ENOTDIR):
                raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()), path)

        path = "/"
        for below in (*([part] for part in folder.split("/") if part), names):
            add(path, CHANGES | IN_ONLYDIR, below)
            path = os.path.join(path, below[0])
        for name in names:
            path = os.path.join(folder, name)
            # All the world writes to a device, and settings are read of regular files alone.
            if os.path.isfile(path):
                add(path, CHANGES, ())

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.close(self._inotify)

    def wait(self):
        """Returns when something has changed and, for a moment, nothing else has."""
        while not self.has_changed(None):
            pass
        end = time.monotonic() + BURST
        while time.monotonic() < end and self.has_changed(PAUSE):
            pass

    def has_changed(self, seconds):
        """Whether there is a change within `seconds`."""
        if not select.select([self._inotify], [], [], seconds)[0]:
            return False
        events = os.read(self._inotify, 1 << 16)
        position, result = 0, False
        while position < len(events):
            watch, _, _, length = EVENT.unpack_from(events, position)
            position += EVENT.size + length
            name = events[position - length:position].rstrip(b"\0")
            # What has no name has happened to a folder, or to the watch itself.
            result |= not name or name in self._names.get(watch, ())
        return result
