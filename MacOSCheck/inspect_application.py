#!/usr/bin/python3
"""Inspects the containing application that `make run` embeds the extension in, the doctor, and what
the tests were linked to, and fails with a line for each property that is not as it must be.

These programs are linked as far as the declarations reach: of the C++ library they may need more
than the declarations have, and of everything else nothing.
"""

import argparse
import re
import sys
from pathlib import Path

from inspect_bundle import (
    dictionary_deviations, executable_deviations, load_commands, read_property_list, run)

CXX_LIBRARY = re.compile(
    # Names of namespace std, with their tables and thunks.
    r"__Z(?:T[VTIS]|Thn?\d+_|Tvn?\d+_n?\d+_|GV)?(?:N[KVr]*)?(?:St|S[absiod]).*"
    # The allocation functions, and what the language's runtime has.
    r"|__Z(?:nw|na|dl|da).*|__ZTI[a-z]|__ZTVN10__cxxabiv1.*|___cxa_\w+|___dynamic_cast")


def expected_information(version, minimum_system_version):
    return {
        "CFBundleExecutable": "Quorva",
        "CFBundleIdentifier": "app.ferrolin.Quorva",
        "CFBundleInfoDictionaryVersion": "6.0",
        "CFBundleName": "Quorva",
        "CFBundlePackageType": "APPL",
        "CFBundleShortVersionString": version,
        "CFBundleVersion": version,
        "LSMinimumSystemVersion": minimum_system_version,
        "LSUIElement": True,
        "NSAppDataUsageDescription": "Quorva reads the actions that you choose in Finder from the "
        "data of its Finder extension.",
        "NSPrincipalClass": "NSApplication",
    }


def symbol_deviations(program):
    """A line for each symbol that neither a library of the declarations nor the C++ library has."""
    for line in run("llvm-nm-19", "-m", "-u", str(program)).splitlines():
        match = re.search(r" (\S+) \(dynamically looked up\)$", line)
        if match and not CXX_LIBRARY.fullmatch(match[1]):
            yield f"undefined symbols: {match[1]} comes from nowhere"


def slice_deviations(path, minimum_system_version):
    minima = [command["minos"] for command in load_commands(path)
              if command["cmd"] == "LC_BUILD_VERSION"]
    if minima != [minimum_system_version]:
        yield f"minimum version: {minima}, not {minimum_system_version}"
    yield from symbol_deviations(path)


def application_deviations(application, version, minimum_system_version):
    information, problem = read_property_list(application / "Contents" / "Info.plist")
    if problem:
        yield f"Info.plist: {problem}"
    else:
        yield from dictionary_deviations(
            "Info.plist", information, expected_information(version, minimum_system_version))
    yield from executable_deviations(
        application / "Contents" / "MacOS" / "Quorva", minimum_system_version, slice_deviations)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("application", type=Path, help="the Quorva.app to inspect")
    parser.add_argument("--version", required=True, help="the version that it must state")
    parser.add_argument("--minimum-system-version", required=True, metavar="VERSION")
    parser.add_argument("programs", type=Path, nargs="*",
                        help="programs whose symbols are inspected")
    arguments = parser.parse_args()

    deviations = [f"Quorva.app: {line}" for line in application_deviations(
        arguments.application, arguments.version, arguments.minimum_system_version)]
    for program in arguments.programs:
        deviations += [f"{program.name}: {line}" for line in symbol_deviations(program)]
    for line in deviations:
        print(f"macos-check: {line}", file=sys.stderr)
    return 1 if deviations else 0


if __name__ == "__main__":
    sys.exit(main())
