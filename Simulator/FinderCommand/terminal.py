"""What is written for people and for programs."""

import contextlib
import json
import os
import re
import signal

from extension_process import Failure

# Control characters, separators of lines and paragraphs, what changes the direction of writing, and
# what stands for bytes that are not UTF-8.
UNFIT_TO_SHOW = re.compile(
    "[\0-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069\ufffd\ud800-\udfff]")

STYLES = {"bold": "1", "dim": "2", "heading": "1;36", "good": "32", "bad": "31"}

# What ends the work on one response, or the process that gives it.
FAILURES = (Failure, OSError, RecursionError)


def reason(failure):
    """What the user is told of one of FAILURES."""
    if isinstance(failure, RecursionError):
        return "the extension's response is nested too deeply"
    if isinstance(failure, OSError):
        return ": ".join(filter(None, (failure.filename, failure.strerror)))
    return str(failure)


def escaped(text, kept=""):
    """`text` as no terminal acts on it: what it could act on becomes "\\u" and four hexadecimal
    digits, but for the character `kept`. JSON means the same afterwards."""
    def escape(found):
        code = ord(found[0])
        return (found[0] if found[0] == kept
                else f"\\u{0xFFFD if 0xD800 <= code < 0xE000 else code:04x}")
    return UNFIT_TO_SHOW.sub(escape, text)


def styled(text, style):
    """`text` in `style`, or as it is where standard output is not a terminal or NO_COLOR is set."""
    shows_styles = os.isatty(1) and "NO_COLOR" not in os.environ
    return f"\x1b[{STYLES[style]}m{text}\x1b[0m" if shows_styles else text


def json_text(value, indent=2):
    """`value` as JSON that may be shown to people too; on one line without `indent`."""
    separators = None if indent else (",", ":")
    return escaped(json.dumps(value, ensure_ascii=False, indent=indent, separators=separators),
                   "\n")


def write(text, descriptor=1):
    """Writes to standard output or standard error past Python's streams: one that is closed is an
    error like any other."""
    view = memoryview(text.encode("utf-8"))
    try:
        while view:
            view = view[os.write(descriptor, view):]
    except BrokenPipeError:
        # As whoever reads no further expects it; Python has the signal ignored.
        raise SystemExit(128 + signal.SIGPIPE) from None
    except OSError as error:
        raise Failure(f"the output could not be written: {error.strerror}") from None


def show_errors(text):
    """Writes to standard error, also when nothing can be written there."""
    with contextlib.suppress(Failure):
        write(escaped(text, "\n"), 2)
