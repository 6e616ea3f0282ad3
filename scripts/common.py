"""What the Python scripts share, as common.sh is shared by the others."""

import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SCRIPT = pathlib.Path(sys.argv[0]).name


def show_progress(text=""):
    """Puts `text` in the place of the last one, for whoever watches at a terminal."""
    if sys.stderr.isatty():
        print(f"\r\x1b[K{text}", end="", file=sys.stderr, flush=True)


def fail(message):
    show_progress()
    sys.exit(f"{SCRIPT}: {message}")


def refuse(message):
    """For arguments that the script does not take."""
    print(f"{SCRIPT}: {message}; --help lists what there is", file=sys.stderr)
    sys.exit(2)


def arguments(help_text, options=None):
    """The arguments of the script; --help prints `help_text` and ends the script. With `options`
    nothing else is taken, and each of them at most once."""
    given = sys.argv[1:]
    if given[:1] == ["--help"]:
        print(help_text.strip())
        sys.exit()
    for index, argument in enumerate(given):
        if options is not None and (argument not in options or argument in given[:index]):
            refuse(f"unknown argument {argument}")
    return given
