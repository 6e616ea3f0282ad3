"""The extension's settings, and copies of them with another layout."""

import contextlib
import os
import plistlib
import shutil

from extension_process import Failure

# Below the extension's home.
FOLDER = "Library/Application Support/Quorva"

FEATURE_SETTINGS = "FeatureSettings.plist"
FILES = (FEATURE_SETTINGS, "CustomDestinations.plist", "CustomShortcutActions.plist",
         "FinderViewPresets.plist")


def copy_settings(home, copy):
    """Copies the settings files of `home` that can be read into the new folder `copy`."""
    os.makedirs(os.path.join(copy, FOLDER))
    for name in FILES:
        original = os.path.join(home, FOLDER, name)
        with contextlib.suppress(OSError):
            if os.path.isfile(original):
                shutil.copyfile(original, os.path.join(copy, FOLDER, name))


def set_layout(home, layout):
    """Makes `layout` the one of the settings of `home`. Fails where they are in neither XML nor the
    binary encoding, the only ones that Python reads."""
    path = os.path.join(home, FOLDER, FEATURE_SETTINGS)
    settings = {}
    try:
        if os.path.isfile(path):
            with open(path, "rb") as file:
                settings = plistlib.load(file)
        # A value of another kind is ignored, like a missing file.
        settings = settings if isinstance(settings, dict) else {}
        content = plistlib.dumps(settings | {"menuLayout": layout}, sort_keys=False)
    except Exception:
        # Whatever the reader makes of bytes that anyone may have written.
        raise Failure(f"{FEATURE_SETTINGS} can't be given another layout, because it is neither "
                      "an XML nor a binary property list") from None
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(content)
