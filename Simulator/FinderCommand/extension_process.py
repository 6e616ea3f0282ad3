"""The extension as a process of its own, spoken to as Documentation/ExtensionProtocol.md has it,
and the display that it needs."""

import json
import os
import select
import subprocess
import time


class Failure(Exception):
    """Something that the user is told in one line."""


class InvalidResponse(Failure):
    def __init__(self, reason):
        super().__init__(f"the extension's response does not follow the protocol: {reason}")


def member(value, name, *types):
    """The member `name` of a JSON object. Raises InvalidResponse unless it is of one of `types`."""
    if not isinstance(value, dict) or name not in value:
        raise InvalidResponse(f'there is no "{name}"')
    if types and not isinstance(value[name], types):
        raise InvalidResponse(f'"{name}" is of another type')
    return value[name]


class ExtensionProcess:
    # How many seconds a response may take, and the end of the process once its input has ended.
    response_limit = float("inf")
    end_limit = 3

    def __init__(self, executable, environment=None, show_errors=None):
        """Calls `show_errors`, if it is given, with the lines of standard error as they come."""
        self._errors = os.memfd_create("standard error")
        self.process = subprocess.Popen(
            [executable], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=self._errors,
            bufsize=0, env=environment)
        self._received = b""
        self._last_id = 0
        self._show_errors = show_errors
        self._shown = 0

    def __del__(self):
        os.close(self._errors)

    def standard_error(self):
        """What the process has written to standard error so far."""
        return os.pread(self._errors, os.fstat(self._errors).st_size, 0).decode("utf-8", "replace")

    def send_bytes(self, content):
        """Writes to standard input as it is."""
        view = memoryview(content)
        try:
            while view:
                view = view[self.process.stdin.write(view):]
        except BrokenPipeError:
            raise self._ended() from None

    def send_line(self, line):
        self.send_bytes((line if isinstance(line, bytes) else line.encode("utf-8")) + b"\n")

    def read_line(self):
        """The next line of standard output; None at its end."""
        deadline = time.monotonic() + self.response_limit
        pieces = [self._received]
        output = self.process.stdout.fileno()
        while b"\n" not in pieces[-1]:
            ready = select.select([output], [], [], 0.1)[0]
            self._show_new_errors(b"\n")
            piece = os.read(output, 1 << 20) if ready else b""
            if ready and not piece:
                self._received = b"".join(pieces)
                return None
            if time.monotonic() > deadline:
                raise Failure("no response in time\n" + self.standard_error())
            pieces.append(piece)
        line, self._received = b"".join(pieces).split(b"\n", 1)
        return line

    def read_response(self):
        line = self.read_line()
        if line is None:
            raise self._ended()
        try:
            return json.loads(line.decode("utf-8"))
        except (ValueError, RecursionError) as error:
            raise InvalidResponse(error) from None

    def request(self, name, **members):
        """Sends a request that must be granted, and returns the response."""
        self._last_id += 1
        self.send_line(json.dumps({"id": self._last_id, "request": name, **members}))
        response = self.read_response()
        if member(response, "id") != self._last_id:
            raise InvalidResponse("it is to another request")
        if "error" in response:
            raise Failure("the extension reports: " + member(response, "error", str))
        return response

    def end(self):
        """Ends the input, and then the process; returns its status."""
        self.process.stdin.close()
        self.process.stdout.close()
        try:
            self.process.wait(self.end_limit)
        except subprocess.TimeoutExpired:
            self.process.kill()
        self._show_new_errors(b"")
        return self.process.wait()

    def _show_new_errors(self, end):
        """Shows what has come to standard error since, as far as the last `end`."""
        if self._show_errors:
            size = os.fstat(self._errors).st_size - self._shown
            text = os.pread(self._errors, size, self._shown)
            text = text[:text.rfind(end) + len(end)]
            self._shown += len(text)
            self._show_errors(text.decode("utf-8", "replace"))

    def _ended(self):
        status = self.end()
        how = f"by signal {-status}" if status < 0 else f"with status {status}"
        errors = "" if self._show_errors else self.standard_error()
        return Failure(f"the extension ended {how}"
                       + (errors and "; its last words:\n" + errors[-2048:]))


def start_virtual_display():
    """Starts an Xvfb that ends with this process; returns its process and the display's name."""
    reader, writer = os.pipe()
    server = subprocess.Popen(
        ["setpriv", "--pdeathsig", "TERM", "Xvfb", "-displayfd", str(writer), "-screen", "0",
         "640x480x24", "-nolisten", "tcp", "-noreset"],
        pass_fds=[writer], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL)
    os.close(writer)
    with open(reader, encoding="ascii") as names:
        name = names.readline().strip()
    if not name:
        raise OSError(0, "Xvfb did not start")
    return server, ":" + name
