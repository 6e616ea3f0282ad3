"""An interrupt at any moment leaves nothing behind: whoever works is watched over."""

import contextlib
import ctypes
import os
import shutil
import signal
import time

INTERRUPTS = (signal.SIGHUP, signal.SIGINT, signal.SIGQUIT, signal.SIGTERM)

PR_SET_PDEATHSIG, PR_SET_CHILD_SUBREAPER = 1, 36

# How many seconds a process may take to end when it is asked to.
GRACE = 3


def supervise(work, folder, keeps_application):
    """Carries out `work` in a process of its own, while this one only waits: for the end of the
    work, or for a signal that asks to end. Then it ends whatever the work has started, but for the
    containing application when `keeps_application` and nothing has interrupted the work, and
    removes `folder`, which the work may have made.

    Returns the status that `work` returns, or 128 and the number of the signal.
    """
    prctl = ctypes.CDLL(None).prctl
    # Whoever started this may have it ignore some.
    ignored = {number for number in INTERRUPTS if signal.getsignal(number) == signal.SIG_IGN}
    signal.signal(signal.SIGCHLD, signal.SIG_DFL)
    awaited = {signal.SIGCHLD, *INTERRUPTS} - ignored
    signal.pthread_sigmask(signal.SIG_SETMASK, awaited)
    prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)

    supervisor = os.getpid()
    worker = os.fork()
    if worker == 0:
        prctl(PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)
        for number in set(INTERRUPTS) - ignored:
            signal.signal(number, signal.SIG_DFL)
        signal.pthread_sigmask(signal.SIG_SETMASK, ())
        os._exit(work() if os.getppid() == supervisor else 1)
    interruption = 0
    while True:
        ended, status = os.waitpid(worker, 0 if interruption else os.WNOHANG)
        if ended:
            break
        number = signal.sigwait(awaited)
        if number != signal.SIGCHLD:
            interruption = number
            os.kill(worker, signal.SIGKILL)
    interruption = interruption or (os.WIFSIGNALED(status) and os.WTERMSIG(status))
    _end_children("Quorva" if keeps_application and not interruption else None)
    shutil.rmtree(folder, ignore_errors=True)
    return 128 + interruption if interruption else os.WEXITSTATUS(status)


def _end_children(spared):
    """Ends the children of this process, to which every process falls whose parent has ended, until
    there are none but those that run `spared`."""
    deadlines = {}
    children = f"/proc/self/task/{os.getpid()}/children"
    while True:
        try:
            while os.waitpid(-1, os.WNOHANG)[0]:
                pass
        except ChildProcessError:
            return
        with open(children, encoding="ascii") as file:
            remaining = [int(child) for child in file.read().split()
                         if not spared or _program(child) != spared]
        if spared and not remaining:
            return
        for child in remaining:
            if child not in deadlines:
                deadlines[child] = time.monotonic() + GRACE
                os.kill(child, signal.SIGTERM)
                os.kill(child, signal.SIGCONT)
            elif time.monotonic() > deadlines[child]:
                os.kill(child, signal.SIGKILL)
        time.sleep(0.01)


def _program(process):
    with contextlib.suppress(OSError):
        return os.path.basename(os.readlink(f"/proc/{process}/exe"))
    return None
