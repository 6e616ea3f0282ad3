"""scripts/pictures, with a program in place of finder-sim."""

import shutil
import unittest

from script_test import ROOT, ScriptTestCase

# Draws what it was asked for. The second picture may fail.
FINDER_SIM = """
import plistlib
home = pathlib.Path(arguments[arguments.index("--home") + 1])
settings = plistlib.loads(next(home.rglob("FeatureSettings.plist")).read_bytes())
words = settings["menuLayout"] + os.environ["TITLE"]
pathlib.Path(arguments[1]).write_bytes(
    bytes(33) + len(words).to_bytes(4, "big") + b"iTXt" + words.encode() + os.urandom(20))
print(json.dumps({"width": 10, "height": 20}))
sys.exit(int(os.environ["STATUS"]) if settings["menuLayout"] == "expanded" else 0)
"""


class PicturesTest(ScriptTestCase):

    def setUp(self):
        super().setUp()
        self.add_program("finder-sim", FINDER_SIM)
        self.project = self.copy_scripts()
        shutil.copytree(ROOT / "Simulator" / "Samples", self.project / "Simulator" / "Samples")
        self.folder = self.project / "Documentation" / "Pictures"
        self.folder.parent.mkdir()

    def pictures(self, *arguments, title="New", status="0"):
        return self.run_script(self.project / "scripts" / "pictures", *arguments, TITLE=title,
                               STATUS=status, QUORVA_BUILD_FOLDER=str(self.programs))

    def drawn(self):
        return {path.name: path.read_bytes() for path in self.folder.glob("*")}

    def test_both_layouts_are_drawn(self):
        result = self.pictures()
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        drawn = self.drawn()
        self.assertEqual(set(drawn), {"collapsed-zh-Hans.png", "expanded-en.png"})
        self.assertIn(b"collapsedNew", drawn["collapsed-zh-Hans.png"])
        self.assertIn(b"expandedNew", drawn["expanded-en.png"])

    def test_a_check_passes_while_the_menu_is_the_same_and_draws_nothing(self):
        self.pictures()
        before = self.drawn()
        result = self.pictures("--check")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.assertEqual(self.drawn(), before)

    def test_a_check_fails_when_the_menu_is_another(self):
        self.pictures()
        for title in ("Old", "Ne", "News"):
            with self.subTest(title):
                result = self.pictures("--check", title=title)
                self.assertEqual(result.returncode, 1)
                self.assertIn("run scripts/pictures", result.stderr)
                self.assertEqual(result.stderr.count("\n"), 1)

    def test_a_check_fails_when_a_picture_is_missing(self):
        self.pictures()
        (self.folder / "expanded-en.png").unlink()
        self.assertIn("expanded-en.png", self.pictures("--check").stderr)

    def test_nothing_is_replaced_by_what_could_not_be_drawn(self):
        self.pictures()
        before = self.drawn()
        self.assertEqual(self.pictures(title="Old", status="1").returncode, 1)
        self.assertEqual(self.drawn(), before)


if __name__ == "__main__":
    unittest.main()
