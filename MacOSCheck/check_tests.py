#!/usr/bin/python3
"""Compiles the tests, which the build has compiled and linked for arm64, for x86_64 too: only as
far as to see that they compile. Standard input has the commands that built them, one a line."""

import concurrent.futures
import os
import shlex
import shutil
import subprocess
import sys

BUILT, OTHER = "arm64", "x86_64"
# Options that name what a compilation leaves behind, each with its value.
PRODUCTS = ("-o", "-MT", "-MF")


def other_architecture(command):
    """The words of a command that compiles for the architecture that was built, changed to compile
    for the other one: precompiled headers are made, and of the rest only the syntax is checked.
    None for other commands."""
    words = [word.replace(f"cmake_pch_{BUILT}", f"cmake_pch_{OTHER}").replace(
        f"-Xarch_{BUILT}", f"-Xarch_{OTHER}") for word in shlex.split(command)]
    if "-c" not in words or words[words.index("-arch") + 1] != BUILT or words.count("-arch") != 1:
        return None
    words[words.index("-arch") + 1] = OTHER
    if "-emit-pch" in words:
        return words
    kept = [word for index, word in enumerate(words)
            if word not in (*PRODUCTS, "-MD", "-c") and words[index - 1] not in PRODUCTS]
    return [*kept, "-fsyntax-only"]


def run(words, folder):
    """What the compiler says of an error, or nothing."""
    result = subprocess.run(words, cwd=folder, capture_output=True, text=True, check=False)
    return result.stderr if result.returncode != 0 else ""


def failures(commands, folder):
    changed = [words for words in map(other_architecture, commands.splitlines()) if words]
    headers = [words for words in changed if "-emit-pch" in words]
    for words in headers:
        header = next(word for word in words if word.endswith(".hxx"))
        for path in (header, words[words.index("-c") + 1]):
            shutil.copy(path.replace(OTHER, BUILT), path)
    sources = [words for words in changed if "-emit-pch" not in words]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as executor:
        for group in (headers, sources):
            yield from filter(None, executor.map(lambda words: run(words, folder), group))
    if not sources:
        yield "there is nothing to check\n"


def main():
    found = list(failures(sys.stdin.read(), sys.argv[1]))
    for text in found:
        print(f"macos-check: a test does not compile for {OTHER}:\n{text}", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
