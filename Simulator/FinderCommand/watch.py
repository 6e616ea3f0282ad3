"""The menu and what the doctor finds, shown again at every change of the settings."""

import contextlib
import os
import pwd
import re
import subprocess

from click import request_menu
from menu import menu_tree
from settings import FOLDER
from settings_watch import SettingsWatch
from terminal import FAILURES, escaped, reason, styled, write

CLEAR = "\x1b[H\x1b[2J"


def watch(options, start_extension, doctor):
    """Shows the menu and the findings of `doctor`, now and after each change, until a signal ends
    the process."""
    home = os.environ["HOME"]
    folder = os.path.join(home, FOLDER)
    # The extension makes it too, which would be the first change.
    with contextlib.suppress(OSError):
        os.makedirs(folder, exist_ok=True)
    extension, separator = None, ""
    while True:
        # What changes while this is shown is shown next.
        with SettingsWatch(folder) as changes:
            try:
                if not extension or extension.process.poll() is not None:
                    extension = start_extension()
                text = menu_tree(request_menu(extension, options)["menu"])
            except FAILURES as failure:
                if extension:
                    extension.end()
                extension = None
                text = styled(f"  {escaped(reason(failure), chr(10))}", "bad") + "\n"
            text = styled("Menu", "heading") + "\n" + text + "\n" + _findings(doctor, home)
            # At once, or else a terminal flickers.
            write((CLEAR if os.isatty(1) else separator) + text)
            separator = "=" * 72 + "\n"
            changes.wait()


def _findings(doctor, home):
    """What the doctor says of the settings, without the menu, which is shown anyway."""
    # Where the extension finds it.
    account_home = os.environ.get("SIMULATOR_ACCOUNT_HOME")
    with contextlib.suppress(KeyError):
        account_home = account_home or pwd.getpwuid(os.getuid()).pw_dir
    options = ["--home", home] + (["--account-home", account_home] if account_home else [])
    try:
        result = subprocess.run([doctor, *options], stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, encoding="utf-8", errors="replace")
    except OSError as error:
        return styled(f"quorva-doctor could not be run: {error.strerror}", "bad") + "\n"
    # The last section. What the settings say is escaped and indented, so it never looks like this.
    text = escaped(result.stdout.split("\n\nMenu\n")[0], "\n")
    text = re.sub("^(Findings|Notes)$", lambda heading: styled(heading[0], "heading"),
                  text.strip("\n") + "\n", flags=re.MULTILINE)
    if result.returncode < 0:
        text += styled(f"quorva-doctor was ended by signal {-result.returncode}", "bad") + "\n"
    return text
