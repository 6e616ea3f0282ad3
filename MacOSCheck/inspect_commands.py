#!/usr/bin/python3
"""Inspects the commands that build the extension, one a line on standard input, and fails with a
line for each that is not as it must be.

What is looked for can't be seen in the product: a linker marks dylibs, and not executables, as safe
for app extensions, and a file that is compiled in an older language may still compile.
"""

import shlex
import sys
from pathlib import Path

EXECUTABLE = "QuorvaFinderExtension"
LANGUAGE = ("-std=c++2b", "-std=c++23")


def command_deviations(commands):
    for command in commands.splitlines():
        words = shlex.split(command)
        what = None
        if "-c" in words:
            source = words[words.index("-c") + 1]
            what = f"{source} was compiled"
            if not any(option in words for option in LANGUAGE):
                yield f"language: {source} is compiled without an option for C++23"
        elif "-o" in words and Path(words[words.index("-o") + 1]).name == EXECUTABLE:
            what = "the executable was linked"
            if "_NSExtensionMain" not in words:
                yield "entry: the executable was linked without -e _NSExtensionMain"
        if what and "-fapplication-extension" not in words:
            yield f"application extension: {what} without -fapplication-extension"


def main():
    deviations = list(command_deviations(sys.stdin.read()))
    for line in deviations:
        print(f"macos-check: {line}", file=sys.stderr)
    return 1 if deviations else 0


if __name__ == "__main__":
    sys.exit(main())
