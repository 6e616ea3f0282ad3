#!/usr/bin/python3
"""Inspects a built QuorvaFinderExtension.appex and fails with a line for each property that is not
as the system demands it.

Reads with LLVM's tools and Python's standard library, so it works where there is no Mac.
"""

import argparse
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "Bundle"))

import localization  # noqa: E402

EXECUTABLE = "QuorvaFinderExtension"
PRINCIPAL_CLASS = "FinderSync"
ARCHITECTURES = ("arm64", "x86_64")
SIZE_AIM = 400 * 1024

DYLIBS = {
    "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit",
    # Foundation exports it again; the linker names it for its own classes and constant strings.
    "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation",
    "/System/Library/Frameworks/FinderSync.framework/Versions/A/FinderSync",
    "/System/Library/Frameworks/Foundation.framework/Versions/C/Foundation",
    "/usr/lib/libSystem.B.dylib",
    "/usr/lib/libc++.1.dylib",
    "/usr/lib/libobjc.A.dylib",
}
METHODS = {
    "menuForMenuKind:": "@24@0:8Q16",
    "toolbarItemName": "@16@0:8",
    "toolbarItemToolTip": "@16@0:8",
    "toolbarItemImage": "@16@0:8",
    "performFeatureChild:": "v24@0:8@16",
    "handleSettingsChanged:": "v24@0:8@16",
}
# Sections whose content the loader runs before the extension's entry.
STARTUP_SECTIONS = {
    "__mod_init_func",
    "__init_offsets",
    "__mod_term_func",
    "__objc_nlclslist",
    "__objc_nlcatlist",
}

HOME_EXCEPTION = "com.apple.security.temporary-exception.files.home-relative-path.read-write"
ENTITLEMENTS = {
    "com.apple.security.app-sandbox": True,
    "com.apple.security.files.user-selected.read-write": True,
    HOME_EXCEPTION: [
        "/Desktop/",
        "/Documents/",
        "/Library/Mobile Documents/com~apple~CloudDocs/Desktop/",
        "/Library/Mobile Documents/com~apple~CloudDocs/Documents/",
    ],
}


def expected_information(version, minimum_system_version):
    """What the bundle's Info.plist has to say."""
    return {
        "CFBundleDevelopmentRegion": "zh-Hans",
        "CFBundleDisplayName": "Quorva",
        "CFBundleExecutable": EXECUTABLE,
        "CFBundleIdentifier": "app.ferrolin.Quorva.FinderExtension",
        "CFBundleInfoDictionaryVersion": "6.0",
        "CFBundleName": "QuorvaFinderExtension",
        "CFBundlePackageType": "XPC!",
        "CFBundleShortVersionString": version,
        "CFBundleSupportedPlatforms": ["MacOSX"],
        "CFBundleVersion": version,
        "LSMinimumSystemVersion": minimum_system_version,
        "LSUIElement": True,
        "NSExtension": {
            "NSExtensionAttributes": {},
            "NSExtensionPointIdentifier": "com.apple.FinderSync",
            "NSExtensionPrincipalClass": PRINCIPAL_CLASS,
        },
        "NSPrincipalClass": "NSApplication",
    }


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def read_property_list(path):
    """The property list at `path`, or what is wrong with it."""
    try:
        return plistlib.loads(Path(path).read_bytes()), None
    except FileNotFoundError:
        return None, "there is none"
    except Exception as error:  # plistlib raises what its parsers raise
        return None, f"not a property list: {error}"


def dictionary_deviations(name, actual, expected):
    """A line for every key of `expected` that `actual` lacks or holds otherwise, and for every key
    too many."""
    for key, value in expected.items():
        if key not in actual:
            yield f"{name}: {key} is missing"
        elif actual[key] != value or type(actual[key]) is not type(value):
            yield f"{name}: {key} is {actual[key]!r}, not {value!r}"
    for key in sorted(actual.keys() - expected.keys()):
        yield f"{name}: {key} is unknown"


def information_deviations(path, version, minimum_system_version):
    information, problem = read_property_list(path)
    if problem:
        yield f"Info.plist: {problem}"
        return
    yield from dictionary_deviations(
        "Info.plist", information, expected_information(version, minimum_system_version)
    )


def entitlement_deviations(path):
    entitlements, problem = read_property_list(path)
    if problem:
        yield f"entitlements: {problem}"
        return
    yield from dictionary_deviations("entitlements", entitlements, ENTITLEMENTS)


def table_deviations(resources):
    keys = localization.source_keys()
    for language in localization.LANGUAGES:
        path = resources / f"{language}.lproj" / "Localizable.strings"
        try:
            table = localization.read_table(path)
        except FileNotFoundError:
            yield f"string tables: {language} has none"
            continue
        except Exception as error:
            yield f"string tables: {language} can't be read: {error}"
            continue
        wanted = keys if language in localization.TRANSLATED_LANGUAGES else set()
        for key in sorted(wanted - table.keys()):
            yield f"string tables: {language} lacks “{key}”"
        for key in sorted(table.keys() - wanted):
            yield f"string tables: {language} has “{key}”, which nothing uses"


def load_commands(slice_path):
    """The load commands as dictionaries, with their sections under "sections"."""
    commands = []
    for block in re.split(
        r"^Load command \d+$", run("llvm-otool-19", "-l", slice_path), flags=re.M
    )[1:]:
        head, *sections = re.split(r"^Section$", block, flags=re.M)
        fields = dict(re.findall(r"^\s*(\w+) (.+?)(?: \(offset \d+\))?$", head, flags=re.M))
        fields["sections"] = [
            dict(re.findall(r"^\s*(\w+) (.+)$", section, flags=re.M)) for section in sections
        ]
        commands.append(fields)
    return commands


def entry_deviations(slice_path, commands):
    mains = [command for command in commands if command["cmd"] == "LC_MAIN"]
    text = [command for command in commands if command.get("segname") == "__TEXT"]
    if len(mains) != 1 or len(text) != 1:
        yield "entry: there is no LC_MAIN"
        return
    address = int(text[0]["vmaddr"], 16) + int(mains[0]["entryoff"])
    stubs = {
        int(match[1], 16): match[2]
        for match in re.finditer(
            r"^(0x[0-9a-f]+)\s+\d+ (\S+)$", run("llvm-otool-19", "-Iv", slice_path), flags=re.M
        )
    }
    if stubs.get(address) != "_NSExtensionMain":
        yield f"entry: LC_MAIN leads to {stubs.get(address, hex(address))}, not to _NSExtensionMain"


def class_deviations(slice_path):
    """The principal class, as the Objective-C metadata has it."""
    metadata = run("llvm-objdump-19", "--macho", "--objc-meta-data", slice_path)
    lists = [part for part in metadata.split("Contents of ") if "__objc_classlist" in part[:40]]
    classes = re.split(r"^[0-9a-f]{16} 0x[0-9a-f]+ _OBJC_CLASS_\$_", "".join(lists), flags=re.M)[1:]
    found = [text for text in classes if text.split(None, 1)[0] == PRINCIPAL_CLASS]
    if len(found) != 1:
        yield f"principal class: there is no Objective-C class {PRINCIPAL_CLASS}"
        return
    instance_part = found[0].split("Meta Class", 1)[0]
    superclass = re.search(r"^\s+superclass 0x[0-9a-f]+ ?(\S*)$", instance_part, flags=re.M)
    if superclass is None or superclass[1] != "_OBJC_CLASS_$_FIFinderSync":
        yield f"principal class: its superclass is {superclass and superclass[1]}, not FIFinderSync"
    methods = dict(
        re.findall(r"^\s+name 0x[0-9a-f]+ (\S+)\n\s+types 0x[0-9a-f]+ (\S+)$", instance_part, re.M)
    )
    for name, types in METHODS.items():
        if name not in methods:
            yield f"principal class: the method {name} is missing"
        elif methods[name] != types:
            yield f"principal class: the method {name} has the types {methods[name]}, not {types}"


def slice_deviations(slice_path, minimum_system_version):
    header = run("llvm-otool-19", "-hv", slice_path)
    file_type = header.split("\n")[-2].split()[4]
    if file_type != "EXECUTE":
        yield f"file type: MH_{file_type}, not MH_EXECUTE"
    commands = load_commands(slice_path)
    yield from entry_deviations(slice_path, commands)

    versions = [command for command in commands if command["cmd"] == "LC_BUILD_VERSION"]
    minimum = versions[0]["minos"] if len(versions) == 1 else "not given"
    if minimum != minimum_system_version:
        yield f"minimum version: {minimum}, not {minimum_system_version}"
    if len(versions) == 1 and versions[0]["platform"] not in ("1", "macos"):
        yield f"platform: {versions[0]['platform']}, not macOS"

    dylibs = {
        command["name"]
        for command in commands
        if re.fullmatch(r"LC_(LOAD|LOAD_WEAK|REEXPORT|LOAD_UPWARD|LAZY_LOAD)_DYLIB", command["cmd"])
    }
    for dylib in sorted(dylibs - DYLIBS):
        yield f"dylibs: {dylib} is not one of those that the extension may need"
    allowed = {dylib.rsplit("/", 1)[1].split(".", 1)[0] for dylib in DYLIBS}
    for line in run("llvm-nm-19", "-m", "-u", slice_path).splitlines():
        match = re.search(r" (\S+)(?: \(from ([^)]+)\)| \(([^)]+)\))?$", line)
        if match[2] not in allowed:
            yield f"undefined symbols: {match[1]} comes from {match[2] or match[3] or 'nowhere'}"

    for command in commands:
        for section in command["sections"]:
            if section["sectname"] in STARTUP_SECTIONS:
                yield f"static initialisers: there is a section {section['sectname']}"
    yield from class_deviations(slice_path)


def executable_deviations(executable, minimum_system_version, deviations=slice_deviations):
    """A line for each slice missing or unknown, and those of `deviations` for each other."""
    try:
        architectures = run("llvm-lipo-19", "-archs", str(executable)).split()
    except subprocess.CalledProcessError:
        yield "executable: there is none, or it is not a Mach-O file"
        return
    for architecture in ARCHITECTURES:
        if architecture not in architectures:
            yield f"slices: {architecture} is missing"
    for architecture in sorted(set(architectures) - set(ARCHITECTURES)):
        yield f"slices: {architecture} is unknown"
    for architecture in sorted(set(architectures) & set(ARCHITECTURES)):
        with tempfile.TemporaryDirectory() as folder:
            path = thin_slice(executable, architecture, folder)
            for line in deviations(path, minimum_system_version):
                yield f"{architecture}: {line}"


def thin_slice(executable, architecture, folder):
    path = f"{folder}/{architecture}"
    if len(run("llvm-lipo-19", "-archs", str(executable)).split()) > 1:
        run("llvm-lipo-19", str(executable), "-thin", architecture, "-output", path)
    else:
        shutil.copy(executable, path)
    return path


def bundle_deviations(bundle, version, minimum_system_version, entitlements):
    contents = bundle / "Contents"
    yield from information_deviations(contents / "Info.plist", version, minimum_system_version)
    yield from entitlement_deviations(entitlements)
    yield from table_deviations(contents / "Resources")
    yield from executable_deviations(contents / "MacOS" / EXECUTABLE, minimum_system_version)


def report(bundle):
    executable = bundle / "Contents" / "MacOS" / EXECUTABLE
    yield f"{bundle.name}: every property is as the system demands it"
    for architecture in ARCHITECTURES:
        with tempfile.TemporaryDirectory() as folder:
            path = thin_slice(executable, architecture, folder)
            stripped = f"{folder}/stripped"
            run("llvm-strip-19", path, "-o", stripped)
            size = Path(stripped).stat().st_size
            aim = "within" if size < SIZE_AIM else "beyond"
            yield f"  {architecture:8} {size / 1024:6.0f} KiB stripped ({aim} the aim of 400 KiB)"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("bundle", type=Path, help="the .appex to inspect")
    parser.add_argument("--version", required=True, help="the version that it must state")
    parser.add_argument("--minimum-system-version", required=True, metavar="VERSION")
    parser.add_argument("--entitlements", required=True, type=Path, help="what it is signed with")
    arguments = parser.parse_args()

    deviations = list(
        bundle_deviations(
            arguments.bundle,
            arguments.version,
            arguments.minimum_system_version,
            arguments.entitlements,
        )
    )
    for line in deviations:
        print(f"macos-check: {line}", file=sys.stderr)
    if deviations:
        return 1
    print("\n".join(report(arguments.bundle)))
    return 0


if __name__ == "__main__":
    sys.exit(main())
