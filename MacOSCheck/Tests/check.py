"""What the tests of the check share: the compiler, and the bundle that the check has built."""

import os
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "MacOSCheck"), str(ROOT / "Bundle")]

FOLDER = Path(os.environ["MACOS_CHECK_FOLDER"])
BUNDLE = FOLDER / "product" / "QuorvaFinderExtension.appex"
ENTITLEMENTS = ROOT / "Bundle" / "QuorvaFinderExtension.entitlements"


def compiled(source, *options, minimum="12.0"):
    """Runs the compiler over `source`, Objective-C++ text, and returns how that went."""
    # A file, because the compiler reads its source once for each architecture.
    with tempfile.NamedTemporaryFile(suffix=".mm", mode="w", encoding="utf-8") as file:
        file.write(source)
        file.flush()
        return subprocess.run(
            [
                str(ROOT / "MacOSCheck" / "bin" / "clang++"),
                *("-isysroot", str(FOLDER / "SDK"), f"-mmacosx-version-min={minimum}"),
                *("-std=c++23", "-Wall", "-Wextra", "-Werror", "-Wunguarded-availability"),
                *("-Wundeclared-selector", "-fapplication-extension", file.name, *options),
            ],
            capture_output=True,
            text=True,
            check=False,
        )
