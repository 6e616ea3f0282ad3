"""The sandbox that an extension has on a Mac, as far as Linux's namespaces hold it."""

import contextlib
import ctypes
import os

# The extension's home, below that of the account.
CONTAINER = "Library/Containers/app.ferrolin.Quorva.FinderExtension/Data"

FOLDERS = ("Documents", "Library/Application Support/Quorva", "tmp")
LINKS = ("Desktop", "Downloads", "Movies", "Music", "Pictures")

# What the extension's entitlements open of the account's home.
ENTITLED = ("Desktop", "Documents", "Library/Mobile Documents/com~apple~CloudDocs/Desktop",
            "Library/Mobile Documents/com~apple~CloudDocs/Documents")

CLONE_NEWNS, CLONE_NEWUSER = 0x20000, 0x10000000
MS_RDONLY, MS_REMOUNT, MS_BIND, MS_REC, MS_PRIVATE = 1, 0x20, 0x1000, 0x4000, 0x40000
# Those of a mount that a user must not take from it: nosuid, nodev, noexec, noatime, nodiratime.
LOCKED_FLAGS = 2 | 4 | 8 | 0x400 | 0x800
PR_CAPBSET_DROP = 24
CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_SYS_ADMIN = 1, 2, 21


def lay_out_container(home, account_home):
    """Makes what is missing of the extension's container below `home`; returns its home in it."""
    container = os.path.join(home, CONTAINER)
    for name in FOLDERS:
        os.makedirs(os.path.join(container, name), exist_ok=True)
    for name in LINKS:
        with contextlib.suppress(FileExistsError):
            os.symlink(os.path.join(account_home, name), os.path.join(container, name))
    return container


def enter_sandbox(container, account_home, application):
    """Shuts this process and what it starts in: "/tmp" is read only, and of the account's home
    there is nothing but the container, what the entitlements open, and the application. What lies
    there can be reached, the folders around it not be listed or changed. Raises OSError where the
    system allows no namespaces."""
    libc = ctypes.CDLL(None, use_errno=True)

    def call(function, *arguments):
        if getattr(libc, function)(*arguments) != 0:
            raise OSError(ctypes.get_errno(), f"{function}: {os.strerror(ctypes.get_errno())}")

    def mount(source, target, kind=None, flags=0, data=None):
        arguments = [value and os.fsencode(value) for value in (source, target, kind, data)]
        call("mount", *arguments[:3], ctypes.c_ulong(flags), arguments[3])

    if os.path.realpath(account_home) == "/":
        raise OSError(0, "the account's home is the root folder")
    user, group = os.geteuid(), os.getegid()
    call("unshare", CLONE_NEWNS | (CLONE_NEWUSER if user else 0))
    if user:
        for name, content in (("setgroups", "deny"), ("uid_map", f"{user} {user} 1"),
                              ("gid_map", f"{group} {group} 1")):
            with open(f"/proc/self/{name}", "w", encoding="ascii") as file:
                file.write(content)
    mount(None, "/", flags=MS_REC | MS_PRIVATE)

    entitled = (os.path.join(account_home, name) for name in ENTITLED)
    shown = {path: os.open(path, os.O_PATH)
             for path in (container, application, *entitled) if os.path.isdir(path)}
    mount("/tmp", "/tmp", flags=MS_BIND | MS_REC)
    mount(None, "/tmp", flags=MS_REMOUNT | MS_BIND | MS_RDONLY
          | os.statvfs("/tmp").f_flag & LOCKED_FLAGS)
    if os.path.isdir(account_home):
        mount("tmpfs", account_home, "tmpfs", data="mode=0311")
    umask = os.umask(0o466)
    for path, descriptor in shown.items():
        os.makedirs(path, exist_ok=True)
        mount(f"/proc/self/fd/{descriptor}", path, flags=MS_BIND | MS_REC)
        os.close(descriptor)
    os.umask(umask)
    if os.path.isdir(account_home):
        mount(None, account_home, flags=MS_REMOUNT | MS_BIND | MS_RDONLY)
    os.chdir(container)
    # Root has them still; what it starts has not. Another user's program has none anyway.
    for capability in (CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_SYS_ADMIN):
        libc.prctl(PR_CAPBSET_DROP, capability, 0, 0, 0)
