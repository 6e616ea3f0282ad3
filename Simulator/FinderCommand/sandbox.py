"""The sandbox that an extension has on a Mac, as far as Linux's namespaces hold it."""

import contextlib
import ctypes
import os
import struct

# The extension's home, below that of the account.
CONTAINER = "Library/Containers/app.ferrolin.Quorva.FinderExtension/Data"

FOLDERS = ("Documents", "Library/Application Support/Quorva", "tmp")
LINKS = ("Desktop", "Downloads", "Movies", "Music", "Pictures")

# What the extension's entitlements open of the account's home.
ENTITLED = ("Desktop", "Documents", "Library/Mobile Documents/com~apple~CloudDocs/Desktop",
            "Library/Mobile Documents/com~apple~CloudDocs/Documents")

CLONE_NEWNS, CLONE_NEWUSER = 0x20000, 0x10000000
MS_BIND, MS_REC, MS_PRIVATE = 0x1000, 0x4000, 0x40000
AT_FDCWD, AT_RECURSIVE, MOUNT_ATTR_RDONLY = -100, 0x8000, 1
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
    """Shuts this process and what it starts in: "/tmp" and what is mounted below it is read only,
    and of the account's home there is nothing but the container, what the entitlements open, and
    the application. What lies there can be reached, the folders around it not be listed or changed.
    Raises OSError, with everything as it was, where the system does not allow that."""
    # There is no way back, so another process goes first.
    reader, writer = os.pipe()
    rehearsal = os.fork()
    if rehearsal == 0:
        status = 1
        try:
            _enter(container, account_home, application)
            status = 0
        except OSError as error:
            os.write(writer, error.strerror.encode())
        finally:
            os._exit(status)
    os.close(writer)
    with open(reader, encoding="utf-8") as reasons:
        reason = reasons.read()
    if os.waitpid(rehearsal, 0)[1] != 0:
        raise OSError(0, reason or "a process that tried it ended")
    _enter(container, account_home, application)


def _enter(container, account_home, application):
    libc = ctypes.CDLL(None, use_errno=True)

    def call(function, *arguments):
        if getattr(libc, function)(*arguments) != 0:
            raise OSError(ctypes.get_errno(), f"{function}: {os.strerror(ctypes.get_errno())}")

    def mount(source, target, kind=None, flags=0, data=None):
        arguments = [value and os.fsencode(value) for value in (source, target, kind, data)]
        call("mount", *arguments[:3], ctypes.c_ulong(flags), arguments[3])

    def make_read_only(target, flags=0):
        attributes = struct.pack("QQQQ", MOUNT_ATTR_RDONLY, 0, 0, 0)
        call("mount_setattr", AT_FDCWD, os.fsencode(target), flags, attributes,
             ctypes.c_size_t(len(attributes)))

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
    make_read_only("/tmp", AT_RECURSIVE)
    if os.path.isdir(account_home):
        mount("tmpfs", account_home, "tmpfs", data="mode=0311")
    # The folders on the way can be passed through and not listed, like the new home.
    umask = os.umask(0o466)
    for path, descriptor in shown.items():
        os.makedirs(path, exist_ok=True)
        mount(f"/proc/self/fd/{descriptor}", path, flags=MS_BIND | MS_REC)
        os.close(descriptor)
    os.umask(umask)
    if os.path.isdir(account_home):
        make_read_only(account_home)
    os.chdir(container)
    # Root has them still; what it starts has not. Another user's program has none anyway.
    for capability in (CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_SYS_ADMIN):
        call("prctl", PR_CAPBSET_DROP, capability, 0, 0, 0)
