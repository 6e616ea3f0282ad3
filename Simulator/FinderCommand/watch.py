"""The menu and what the doctor finds, shown again at every change of the settings."""

import contextlib
import os
import subprocess

from click import request_menu
from extension_process import Failure
from menu import menu_tree
from settings import FOLDER
from settings_watch import SettingsWatch
from terminal import escaped, styled, write


def watch(options, start_extension, doctor):
    """Shows the menu and the findings of `doctor`, now and after each change, until a signal."""
    home = os.environ["HOME"]
    folder = os.path.join(home, FOLDER)
    # The extension makes it too, which would be the first change.
    with contextlib.suppress(OSError):
        os.makedirs(folder, exist_ok=True)
    extension, is_first = None, True
    while True:
        # What changes while this is shown is shown next.
        with SettingsWatch(folder) as changes:
            if os.isatty(1):
                write("\x1b[H\x1b[2J")
            elif not is_first:
                write("=" * 72 + "\n")
            is_first = False
            try:
                if not extension or extension.process.poll() is not None:
                    extension = start_extension()
                text = menu_tree(request_menu(extension, options)["menu"])
            except Failure as failure:
                if extension:
                    extension.end()
                extension = None
                text = styled(f"  {escaped(str(failure), chr(10))}", "bad") + "\n"
            write(styled("Menu", "heading") + "\n" + text
                  + "\n" + styled("Findings", "heading") + "\n")
            _show_findings([doctor, "--home", home], options.account_home)
            changes.wait()


def _show_findings(command, account_home):
    if account_home:
        command += ["--account-home", account_home]
    try:
        status = subprocess.run(command, stdin=subprocess.DEVNULL).returncode
    except OSError as error:
        write(styled(f"  quorva-doctor could not be run: {error.strerror}", "bad") + "\n")
        return
    if status < 0:
        write(styled(f"  quorva-doctor was ended by signal {-status}", "bad") + "\n")
