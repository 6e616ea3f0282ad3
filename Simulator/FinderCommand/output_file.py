"""A file that is written after the sandbox has shut."""

import contextlib
import os
import stat


class OutputFile:
    """The file at `path`, which need not exist yet. Its folder is held open, so that it can be
    written although the sandbox hides it, or keeps it from being changed."""

    def __init__(self, path):
        self.path = path
        folder, self._name = os.path.split(path)
        with self._failures_name_the_path():
            self._folder = os.open(folder, os.O_PATH | os.O_DIRECTORY)

    def write(self, content):
        """Writes all of `content` or, to what is or becomes a regular file, nothing."""
        with self._failures_name_the_path():
            if not self._is_replaceable():
                self._write(self._name, content)
                return
            name = f".finder-sim.{os.urandom(8).hex()}"
            try:
                self._write(name, content)
                os.rename(name, self._name, src_dir_fd=self._folder, dst_dir_fd=self._folder)
            except OSError:
                with contextlib.suppress(OSError):
                    os.unlink(name, dir_fd=self._folder)
                raise

    def _is_replaceable(self):
        try:
            mode = os.lstat(self._name, dir_fd=self._folder).st_mode
        except FileNotFoundError:
            return True
        return stat.S_ISREG(mode) and os.access(self._name, os.W_OK, dir_fd=self._folder)

    def _write(self, name, content):
        with open(name, "wb", opener=lambda name, flags: os.open(
                name, flags, 0o666, dir_fd=self._folder)) as file:
            file.write(content)

    @contextlib.contextmanager
    def _failures_name_the_path(self):
        try:
            yield
        except OSError as error:
            raise OSError(error.errno, error.strerror, self.path) from None
