"""Drives the built programs: the extension's process, the containing application, `finder-sim`.

Every run of a test file has a folder of its own below the system's temporary folder. It holds the
homes of the tests, and it is the temporary folder of everything that the tests start, so that the
run's notifications reach nothing else. The run has one virtual display. All of that ends with the
run.

The build folder comes from the environment variable QUORVA_BUILD_FOLDER. The tests are to be run
with run_alone.py; a test that needs that is skipped without it.
"""

import atexit
import contextlib
import functools
import json
import os
import plistlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

import schemas
from first_difference import first_difference
from menu_model import UNUSABLE, Settings

sys.path.append(str(Path(__file__).resolve().parents[2] / "Simulator/FinderCommand"))
from extension_process import ExtensionProcess, start_virtual_display  # noqa: E402

ACCOUNT_NAME = "ada"

FEATURE_SETTINGS = "FeatureSettings.plist"
CUSTOM_DESTINATIONS = "CustomDestinations.plist"
CUSTOM_SHORTCUT_ACTIONS = "CustomShortcutActions.plist"
FINDER_VIEW_PRESETS = "FinderViewPresets.plist"
SETTINGS_FILES = (
    FEATURE_SETTINGS, CUSTOM_DESTINATIONS, CUSTOM_SHORTCUT_ACTIONS, FINDER_VIEW_PRESETS)

XML = plistlib.FMT_XML
BINARY = plistlib.FMT_BINARY

# The notification that follows each click: from nobody in particular, delivered at once.
QUEUED = {"event": "notification", "name": "app.ferrolin.Quorva.ActionQueued", "object": None,
          "userInfo": None, "immediately": True}

TEMPORARY_LOG = Path("/tmp/quorva-finder-extension.log")
FALLBACK_QUEUE = Path("/tmp/quorva-action-queue")

# A disk of 256 KiB, where run_alone.py could make one.
SMALL_DISK = Path("/Volumes/Small")

# Whether no other process of the machine can matter to the tests, nor they to it.
ALONE = "QUORVA_ALONE" in os.environ

# How long anything may take before a test gives up on it. Nothing is measured with it.
TIME_LIMIT = 120


def build_folder():
    folder = os.environ.get("QUORVA_BUILD_FOLDER")
    if not folder:
        raise RuntimeError("QUORVA_BUILD_FOLDER must name the build folder")
    return Path(folder).resolve()


def application_bundle():
    # The build folder has one; where below it is the build's own business.
    name = "Quorva.app/Contents/PlugIns/QuorvaFinderExtension.appex"
    for candidate in (build_folder() / name, *sorted(build_folder().glob("*/" + name))):
        if candidate.is_dir():
            return candidate.parents[2]
    raise RuntimeError(f"there is no {name} in {build_folder()}")


EXTENSION_EXECUTABLE = (
    "Contents/PlugIns/QuorvaFinderExtension.appex/Contents/MacOS/QuorvaFinderExtension")


def until(condition, what):
    """Waits until `condition` returns something true, and returns that."""
    deadline = time.monotonic() + TIME_LIMIT
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > deadline:
            raise AssertionError("waited in vain until " + what)
        time.sleep(0.005)


class Run:
    """What all tests of one run share."""

    @staticmethod
    @functools.cache
    def folder():
        # Tests put sockets below it, whose paths can't be long.
        folder = Path(tempfile.mkdtemp(prefix="quorva-"))
        atexit.register(Run._end, folder)
        return folder

    @staticmethod
    def new_folder():
        return Path(tempfile.mkdtemp(prefix="", dir=Run.folder()))

    @staticmethod
    @functools.cache
    def display():
        """The virtual display's name."""
        Run.folder()
        server, name = start_virtual_display()
        atexit.register(Run._stop, server)
        return name

    @staticmethod
    def _stop(process):
        process.terminate()
        process.wait()

    @staticmethod
    def _end(folder):
        for process in Run.processes():
            with contextlib.suppress(ProcessLookupError):
                os.kill(process, signal.SIGTERM)
        until(lambda: not Run.processes(), "what the tests had started ended")
        for path in folder.rglob("*"):
            if path.is_dir() and not path.is_symlink():
                path.chmod(0o700)
        shutil.rmtree(folder)

    @staticmethod
    def processes():
        """What runs with this run's temporary folder, or one in it, but for this process."""
        markers = tuple(b"\0TMPDIR=" + os.fsencode(Run.folder()) + end for end in (b"\0", b"/"))
        found = []
        for process in Path("/proc").glob("[0-9]*"):
            with contextlib.suppress(OSError):
                environment = b"\0" + (process / "environ").read_bytes()
                if any(marker in environment for marker in markers):
                    found.append(int(process.name))
        return [process for process in found if process != os.getpid()]


def alone(test):
    """Skips a test that needs folders of its own at fixed paths, where it has to share them."""
    return unittest.skipUnless(ALONE, "it needs folders of its own at fixed paths")(test)


class Home:
    """A home folder as the extension finds it, with its settings and what it wrote."""

    def __init__(self, path=None, account_name=ACCOUNT_NAME, account_home=None):
        self.path = Path(path) if path else Run.new_folder()
        self.account_name = account_name
        self.account_home = account_home
        self._log_position = 0

    @property
    def application_support(self):
        return self.path / "Library" / "Application Support"

    @property
    def quorva(self):
        return self.application_support / "Quorva"

    @property
    def queue(self):
        return self.quorva / "ActionQueue"

    @property
    def log_file(self):
        return self.quorva / "FinderExtension.log"

    @property
    def real_home(self):
        home = self.account_home
        if home and str(home).startswith("/Users/") and "/Library/Containers/" not in str(home):
            return str(home)
        return "/Users/" + self.account_name

    def write_bytes(self, name, content):
        self.quorva.mkdir(parents=True, exist_ok=True)
        (self.quorva / name).write_bytes(content)

    def write(self, name, value, encoding=XML):
        """Writes a settings file; UNUSABLE removes it."""
        if value is UNUSABLE:
            (self.quorva / name).unlink(missing_ok=True)
        else:
            self.write_bytes(name, plistlib.dumps(value, fmt=encoding, sort_keys=False))

    def write_settings(self, settings, encoding=XML):
        """Writes the four files of a model."""
        for name, value in zip(SETTINGS_FILES, (
                settings.feature_settings, settings.custom_destinations,
                settings.custom_shortcut_actions, settings.finder_view_presets)):
            self.write(name, value, encoding)

    def settings(self, **files):
        """The model of this home with these files; UNUSABLE for those that are not named."""
        return Settings(str(self.path), self.real_home, **files)

    def record_files(self):
        return sorted(self.queue.glob("*.json")) if self.queue.is_dir() else []

    def records(self):
        return [queue_record(file.read_bytes()) for file in self.record_files()]

    def take_records(self):
        """The records in the queue, in the order of their creation, which are then removed."""
        records = self.records()
        for file in self.record_files():
            file.unlink()
        return sorted(records, key=lambda record: record["createdAt"])

    def performed(self):
        """What the containing application has carried out."""
        file = self.quorva / "Performed.jsonl"
        if not file.exists():
            return []
        return [json.loads(line) for line in file.read_text(encoding="utf-8").splitlines()]

    def new_log_messages(self):
        """The messages of the diagnostic log since the last call."""
        with self.log_file.open("rb") as log:
            log.seek(self._log_position)
            content = log.read()
        self._log_position += len(content)
        return log_messages(content)


def queue_record(content):
    """The record that a file of the queue holds, which must be a whole one."""
    record = json.loads(content.decode("utf-8"))
    error = schemas.error("ActionRecord", record)
    assert error is None, error
    assert list(record) == sorted(record), list(record)
    return record


LOG_LINE_START = re.compile(rb"^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d \+0000\] ", re.MULTILINE)


def log_messages(content):
    """The messages of a diagnostic log's bytes. A message may itself have line breaks."""
    if not content:
        return []
    before, *messages = LOG_LINE_START.split(content)
    assert before == b"" and content.endswith(b"\n"), content[:200]
    return [message.removesuffix(b"\n").decode("utf-8") for message in messages]


class Extension(ExtensionProcess):
    """The extension's process of a home."""

    response_limit = end_limit = TIME_LIMIT

    def __init__(self, home, launch=False, language=None, executable=None, environment=None):
        super().__init__(executable or application_bundle() / EXTENSION_EXECUTABLE,
                         program_environment(home, launch, language) | (environment or {}))

    @property
    def pid(self):
        return self.process.pid

    def answer(self, request):
        """Sends a request as it is and reads its answer, which may be an error."""
        self.send_line(json.dumps(request))
        return self.read_response()

    def request(self, name, **fields):
        answer = super().request(name, **fields)
        assert isinstance(answer["events"], list) and isinstance(answer["unifiedLog"], list)
        return answer

    def menu(self, request=None, kind="items"):
        """The menu of a request of the model."""
        return self.request("menu", kind=kind, **finder_state(request))["menu"]

    def click(self, index_path, request=None, delivery="intact"):
        return self.request("click", indexPath=index_path, delivery=delivery,
                            **finder_state(request))

    def send(self, item, request=None):
        return self.request("send", item=item, **finder_state(request))

    def close(self):
        """Ends standard input and waits for the end; returns the exit status."""
        self.process.stdin.close()
        if not self.process.stdout.closed:
            rest = self.read_line() or self._received or None
            assert rest is None, f"more on standard output: {rest[:200]!r}"
        return self.end()

    def kill(self):
        """Ends the process at once, whatever it is doing."""
        self.process.kill()
        self.end()


def finder_state(request):
    if request is None:
        return {"selectedPaths": [], "targetedPath": None}
    return {"selectedPaths": request.selected, "targetedPath": request.targeted}


def program_environment(home, launch=False, language=None, display=True):
    environment = {
        "HOME": str(home.path),
        "PATH": os.environ.get("PATH", "/usr/bin:/bin"),
        # GNUstep asks for the latter two.
        **dict.fromkeys(("TMPDIR", "TEMP", "TMP"), str(Run.folder())),
        "SIMULATOR_ACCOUNT_NAME": home.account_name,
        "SIMULATOR_ACCOUNT_HOME": str(home.account_home or home.path),
    }
    if display:
        environment["DISPLAY"] = Run.display()
    if launch:
        environment["SIMULATOR_LAUNCH"] = "1"
    if language:
        environment["SIMULATOR_LANGUAGE"] = language
    # For coverage and sanitizers.
    for name, value in os.environ.items():
        if name.endswith("SAN_OPTIONS") or name == "LLVM_PROFILE_FILE":
            environment[name] = value
    return environment


def post_notification(home, name, user_info=None, sender=""):
    """Posts a distributed notification from a process of its own."""
    arguments = [name, sender]
    if user_info is not None:
        arguments.append(json.dumps([part for pair in user_info.items() for part in pair]))
    subprocess.run([build_folder() / "Tests" / "EndToEnd" / "post-notification", *arguments],
                   env=program_environment(home, display=False), check=True, timeout=TIME_LIMIT)


def containing_applications(bundle):
    """The processes of the containing application that an extension of this run has launched."""
    executable = str(bundle / "Contents" / "MacOS" / "Quorva")
    found = []
    for process in Run.processes():
        with contextlib.suppress(OSError):
            if os.readlink(f"/proc/{process}/exe") == executable:
                found.append(process)
    return found


def end_containing_application(bundle):
    """Ends the containing application that an extension of this run has launched."""
    for process in containing_applications(bundle):
        os.kill(process, signal.SIGTERM)
    until(lambda: not containing_applications(bundle), "the containing application ended")


def item_at(menu, *titles):
    """The index path of the first item with this path of titles."""
    path = []
    for title in titles:
        index, item = next(
            (index, item) for index, item in enumerate(menu["items"]) if item.get("title") == title)
        path.append(index)
        menu = item.get("submenu")
    return path


def titles(menu):
    """The titles of a menu as a nested list; None stands for a separator."""
    result = []
    for item in menu["items"]:
        if "submenu" in item:
            result.append((item["title"], titles(item["submenu"])))
        else:
            result.append(item.get("title"))
    return result


class EndToEndTestCase(unittest.TestCase):
    """A test with a home and processes of its own, which all end well."""

    def setUp(self):
        self.home = Home()
        self._failed_cases = 0
        for kind in (dict, list, str, tuple):
            self.addTypeEqualityFunc(kind, self._assert_same)

    def _assert_same(self, actual, expected, msg=None):
        if actual != expected:
            self.fail(self._formatMessage(msg, first_difference(actual, expected)))

    @contextlib.contextmanager
    def subTest(self, **case):
        """Ends the test with the tenth case that fails."""
        with super().subTest(**case):
            try:
                yield
            except Exception:
                self._failed_cases += 1
                raise
        if self._failed_cases == 10:
            raise self.failureException("ten cases have failed; the others are left out") from None

    def start_extension(self, home=None, **options):
        """Starts the extension; it has to end with status 0 when its input does."""
        process = Extension(home or self.home, **options)
        self.addCleanup(self._end_well, process)
        return process

    def start_mortal_extension(self, home=None, **options):
        """Starts an extension that the test itself ends."""
        process = Extension(home or self.home, **options)
        self.addCleanup(process.kill)
        return process

    def start_program(self, arguments):
        """Starts another program, which ends with the test."""
        process = subprocess.Popen(arguments, stdin=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def _end_well(self, process):
        try:
            self.assertEqual(process.close(), 0, "status at the end of input")
        finally:
            process.kill()

    def assert_handed_over(self, events):
        """A notification and a launch, in this order."""
        notification, *launch = events
        self.assertEqual(notification, QUEUED)
        # In the open, an application of someone else's run may be running.
        if ALONE or launch:
            self.assertEqual(launch, [{
                "event": "openApplication", "path": str(application_bundle()), "activates": False,
                "addsToRecentItems": False}])

    def assert_record(self, record, expected):
        """Compares a queue record with what it has to say, but for its time."""
        self.assertLess(abs(record["createdAt"] - time.time()), 10 * TIME_LIMIT)
        self.assertEqual({key: value for key, value in record.items() if key != "createdAt"},
                         expected)
