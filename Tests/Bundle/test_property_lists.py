"""Info.plist and the entitlements, as they stand in the repository."""

import re
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "MacOSCheck"))

import inspect_bundle  # noqa: E402


class PropertyListsTest(unittest.TestCase):
    def test_the_information_says_what_the_system_demands(self):
        template = (ROOT / "Bundle" / "Info.plist.in").read_text(encoding="utf-8")
        values = {"PROJECT_VERSION": "1.2.3", "CMAKE_OSX_DEPLOYMENT_TARGET": "12.0"}
        information = re.sub(r"@(\w+)@", lambda match: values[match[1]], template)
        with tempfile.NamedTemporaryFile(suffix=".plist") as file:
            file.write(information.encode("utf-8"))
            file.flush()
            deviations = inspect_bundle.information_deviations(file.name, "1.2.3", "12.0")
            self.assertEqual(list(deviations), [])

    def test_the_entitlements_are_those_of_the_sandboxed_extension(self):
        entitlements = ROOT / "Bundle" / "QuorvaFinderExtension.entitlements"
        self.assertEqual(list(inspect_bundle.entitlement_deviations(entitlements)), [])


if __name__ == "__main__":
    unittest.main()
