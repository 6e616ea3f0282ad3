"""What the extension is asked for: a menu, and a click with what comes of it."""

import contextlib
import fcntl
import json
import os
import time

from extension_process import member
from menu import breadcrumbs
from terminal import escaped, json_text, show_errors, styled

# Where records go when the home folder has no room for a queue.
FALLBACK_QUEUE = "/tmp/quorva-action-queue"

# How many seconds the containing application may take to perform a record.
PATIENCE = 10


def quorva_folder():
    return os.path.join(os.environ["HOME"], "Library/Application Support/Quorva")


def _finder_state(options):
    return {"selectedPaths": options.select, "targetedPath": options.target}


def request_menu(extension, options):
    """The response to the request for the menu that `options` describe."""
    kind = options.kind or ("items" if options.select else "container")
    response = extension.request("menu", kind=kind, **_finder_state(options))
    member(response, "menu", dict, type(None))
    return response


def click(extension, entry, options):
    """Clicks `entry` of the menu that `extension` was last asked for.

    The result is the response with three more members: "titles"; "records", the new records of the
    queue (or else of the folder that stands in for it) by file name, each as a JSON value or, where
    it is none, as a string; and "performed", what a containing application that runs, or is
    launched as `options` say, wrote down about them.
    """
    queue = os.path.join(quorva_folder(), "ActionQueue")
    lock = None
    with contextlib.suppress(OSError):
        # Whoever empties the queue holds the lock meanwhile. It is there for a record to be shown
        # before it is performed.
        if options.launch:
            os.makedirs(queue, exist_ok=True)
        lock = os.open(queue, os.O_RDONLY | os.O_DIRECTORY)
        fcntl.flock(lock, fcntl.LOCK_EX)
    performed_before = len(_performed())
    queued, queued_elsewhere = _records(queue), _records(FALLBACK_QUEUE)
    result = extension.request("click", indexPath=entry.index_path,
                               delivery=options.delivery or "intact", **_finder_state(options))
    for event in member(result, "events", list):
        member(event, "event", str)
    records = {name: record for name, record in _records(queue).items() if name not in queued}
    expected = list(records.values())
    if not records:
        records = {os.path.join(FALLBACK_QUEUE, name): record
                   for name, record in _records(FALLBACK_QUEUE).items()
                   if name not in queued_elsewhere}
    if lock is not None:
        os.close(lock)
    performed = []
    begin = time.monotonic()
    has_said_so = False
    awaited = is_awaited(result, options)
    while awaited and len(performed) < len(expected) and time.monotonic() < begin + PATIENCE:
        if time.monotonic() > begin + 1 and not has_said_so:
            has_said_so = True
            show_errors("finder-sim: waiting for Quorva, which runs, to perform the record\n")
        time.sleep(0.02)
        performed = [line for line in _performed()[performed_before:] if line in expected]
    return result | {"titles": entry.titles, "performed": performed, "records": records}


def is_awaited(result, options):
    """Whether an application is to perform the record of a click: one that is launched or, as the
    extension asked for none, runs already."""
    events = (event["event"] for event in result["events"])
    return options.launch or "openApplication" not in events


def _records(queue):
    """The records in `queue` by name."""
    names = []
    with contextlib.suppress(OSError):
        names = [name for name in os.listdir(queue) if name.endswith(".json")]
    contents = {name: _contents(os.path.join(queue, name)) for name in names}
    return {name: _value(text) for name, text in contents.items() if text is not None}


def _performed():
    contents = _contents(os.path.join(quorva_folder(), "Performed.jsonl"))
    return [_value(line) for line in (contents or "").split("\n")[:-1]]


def _contents(path):
    """What is in a file; None where no file can be read."""
    with contextlib.suppress(OSError):
        if os.path.isfile(path):
            with open(path, encoding="utf-8", errors="surrogateescape") as file:
                return file.read()
    return None


def _value(text):
    """The JSON value that `text` is, or else the text."""
    try:
        return json.loads(text)
    except (ValueError, RecursionError):
        return text


def click_text(result, is_launched):
    """The result of `click` for people."""
    lines = [("Clicked", styled(breadcrumbs(result["titles"]), "bold"))]
    for name, record in result["records"].items():
        lines.append(("Record", styled(escaped(name), "dim")))
        lines += [("", line) for line in json_text(record).split("\n")]
    if not result["records"]:
        lines.append(("Record", styled("none reached the queue", "bad")))
    for event in result["events"]:
        if event["event"] == "notification":
            user_info = member(event, "userInfo", dict, type(None))
            lines.append(("Notification", escaped(member(event, "name", str))
                          + ("" if user_info is None else " " + json_text(user_info, None))))
        else:
            place = "to the front" if member(event, "activates", bool) else "in the background"
            place += "" if is_launched else ", not started without --launch"
            lines.append(("Launch", escaped(member(event, "path", str))
                          + styled(f"  ({place})", "dim")))
    if result["performed"]:
        lines.append(("Performed", styled(
            "Quorva wrote the record down in Performed.jsonl and deleted it", "good")))
    return "".join(f"  {styled(f'{name:14}', 'heading') if name else ' ' * 14}{text}\n"
                   for name, text in lines)
