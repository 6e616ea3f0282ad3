"""scripts/actions and what it writes."""

import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from script_test import ROOT

TABLES = "Bundle/Resources/en.lproj/Localizable.strings"
CATALOGUE = "QuorvaFinderExtension/FinderFeature.cpp"


class ActionsTest(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.copy = Path(folder.name) / "a copy"
        for name in ("Bundle", "QuorvaFinderExtension", "Documentation"):
            shutil.copytree(ROOT / name, self.copy / name)
        (self.copy / "scripts").mkdir()
        for name in ("actions", "common.py"):
            shutil.copy(ROOT / "scripts" / name, self.copy / "scripts")

    def check(self):
        return subprocess.run([self.copy / "scripts" / "actions", "--check"],
                              capture_output=True, encoding="utf-8")

    def replace(self, file, old, new):
        path = self.copy / file
        text = path.read_text(encoding="utf-8")
        self.assertIn(old, text)
        path.write_text(text.replace(old, new), encoding="utf-8")

    def test_the_document_and_the_schemas_are_what_the_catalogue_says(self):
        result = self.check()
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_a_new_title_makes_the_document_old(self):
        self.replace(TABLES, '"New Folder"', '"Another Folder"')
        self.assertIn("Actions.md is not what the catalogue says: run scripts/actions",
                      self.check().stderr)

    def test_a_new_identifier_makes_the_schemas_old(self):
        for schema in ("ActionRecord", "FeatureSettings"):
            name = f"Documentation/Schemas/{schema}.schema.json"
            self.replace(name, '"mergePDFs"', '"mergeTwoPDFs"')
            self.assertIn(f"{name} is not what", self.check().stderr)
            self.replace(name, '"mergeTwoPDFs"', '"mergePDFs"')

    def test_a_new_command_needs_a_sentence(self):
        self.replace(CATALOGUE, '{"mergePDFs",', '{"mergeTwoPDFs",')
        self.assertIn("mergeTwoPDFs", self.check().stderr)

    def test_a_command_that_is_written_in_another_way_is_not_overlooked(self):
        self.replace(CATALOGUE, '{"mergePDFs", ', '{std::string_view("mergePDFs"), ')
        self.assertEqual(self.check().returncode, 1)


if __name__ == "__main__":
    unittest.main()
