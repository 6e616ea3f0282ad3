#!/usr/bin/python3
"""Runs a command as if it had the machine to itself:

    run_alone.py COMMAND ARGUMENT...

The command shares no process, no network and no file of "/tmp" and "/Users" with anything else on
the machine: it finds both folders empty, and what it leaves in them or in the background goes with
it. "/Volumes/Small" is an empty disk of 256 KiB. Root lacks what lets it ignore permissions, so
that they mean the same for every user. QUORVA_ALONE in the environment says all this.

Where the system allows no namespaces the command runs in the open, after a line that says why.
"""

import ctypes
import os
import subprocess
import sys
from pathlib import Path

NAMESPACES = [
    "unshare", "--mount", "--pid", "--net", "--ipc", "--fork", "--kill-child", "--mount-proc"]
if os.geteuid() != 0:
    NAMESPACES += ["--user", "--map-current-user", "--keep-caps"]
INSIDE = "--inside"

# Where the new root folder is put together: no test needs what lies there.
NEW_ROOT = "/sys"

LIBC = ctypes.CDLL(None, use_errno=True)
MS_BIND, MS_REC = 0x1000, 0x4000
MNT_DETACH = 2
PR_CAPBSET_DROP, PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL = 24, 47, 4
CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH = 1, 2


def mount(source, target, kind=None, flags=0, options=None):
    arguments = [value and os.fsencode(value) for value in (source, target, kind, options)]
    if LIBC.mount(*arguments[:3], ctypes.c_ulong(flags), arguments[3]) != 0:
        raise OSError(ctypes.get_errno(), "mount: " + os.strerror(ctypes.get_errno()), target)


def shown_folders():
    """What the command needs to see even if it lies in a folder that is hidden from it."""
    folders = [Path(__file__).resolve().parents[1], os.environ.get("QUORVA_BUILD_FOLDER", "/")]
    return [os.path.realpath(folder) for folder in folders]


def enter_new_root():
    """Changes the root folder to one with the same entries, but with "/tmp" and "/Users" empty."""
    working_folder = os.getcwd()
    mount("tmpfs", NEW_ROOT, "tmpfs", options="mode=755")
    for entry in os.scandir("/"):
        copy = NEW_ROOT + entry.path
        if entry.is_symlink():
            os.symlink(os.readlink(entry.path), copy)
        elif entry.is_dir() and entry.path not in ("/tmp", "/Users", NEW_ROOT):
            os.mkdir(copy)
            mount(entry.path, copy, flags=MS_BIND | MS_REC)
    for name in ("/tmp", "/Users"):
        os.mkdir(NEW_ROOT + name)
        os.chmod(NEW_ROOT + name, 0o1777)
    small_disk = NEW_ROOT + "/Volumes/Small"
    os.makedirs(small_disk, exist_ok=True)
    mount("tmpfs", small_disk, "tmpfs", options="size=256k,mode=1777")
    for folder in shown_folders():
        if not os.path.exists(NEW_ROOT + folder):
            os.makedirs(NEW_ROOT + folder)
            mount(folder, NEW_ROOT + folder, flags=MS_BIND | MS_REC)
    # Not chroot, behind which an ordinary user may make no namespace, as finder-sim --sandbox does.
    os.chdir(NEW_ROOT)
    subprocess.run(["/sbin/pivot_root", ".", "."], check=True)
    if LIBC.umount2(b".", MNT_DETACH) != 0:
        raise OSError(ctypes.get_errno(), "umount: " + os.strerror(ctypes.get_errno()))
    os.chdir(working_folder)
    for name in ("TMPDIR", "TEMP", "TMP"):
        os.environ.pop(name, None)
    os.environ["QUORVA_ALONE"] = "1"


def run(command):
    """Runs the command and returns its status. Ends all orphans properly: this is process 1."""
    child = subprocess.Popen(command)
    while True:
        process, status = os.wait()
        if process == child.pid:
            return abs(os.waitstatus_to_exitcode(status))


def main(arguments):
    for capability in (CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH):
        LIBC.prctl(PR_CAPBSET_DROP, capability, 0, 0, 0)
    if arguments[0] == INSIDE:
        enter_new_root()
        # An ordinary user needed some for that.
        LIBC.prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL, 0, 0, 0)
        return run(arguments[1:])
    this = [sys.executable, __file__, INSIDE]
    attempt = subprocess.run([*NAMESPACES, *this, "true"], stdout=subprocess.DEVNULL,
                             stderr=subprocess.PIPE, encoding="utf-8")
    if attempt.returncode == 0:
        os.execvp(NAMESPACES[0], [*NAMESPACES, *this, *arguments])
    reason = attempt.stderr.strip().splitlines()[-1:] or ["unknown reason"]
    print("run_alone.py: in the open, because there are no namespaces: " + reason[0],
          file=sys.stderr)
    os.execvp(arguments[0], arguments)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
