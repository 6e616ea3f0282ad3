"""What scripts/mutate says of its list of changes that no test can notice."""

import unittest

from script_test import ScriptTestCase

LIST = """
QuorvaFinderExtension/One.cpp
- return a == b;
+ return a != b;
The two are the same.

QuorvaFinderExtension/Two.cpp
- return a < b;
+ return a > b;
Likewise.
"""


class MutateTest(ScriptTestCase):

    def setUp(self):
        super().setUp()
        # The copy that would be built can't be configured.
        self.add_program("cmake", "sys.exit(1)")
        self.project = self.copy_scripts()
        for name, content in (
                ("QuorvaFinderExtension/One.cpp", "bool f() {\n    return a == b;\n}\n"),
                ("QuorvaFinderExtension/Two.cpp", "bool g() {\n    return a + b;\n}\n"),
                ("Tests/Unit/EquivalentMutations.txt", LIST)):
            (self.project / name).parent.mkdir(parents=True, exist_ok=True)
            (self.project / name).write_text(content)

    def errors(self, *arguments):
        result = self.run_script(self.project / "scripts" / "mutate", *arguments)
        self.assertEqual(result.returncode, 1)
        return result.stderr

    def test_a_listed_change_that_can_no_longer_be_made_is_a_failure(self):
        self.assertEqual(
            self.errors(),
            "mutate: EquivalentMutations.txt lists a change that can no longer be made: "
            "QuorvaFinderExtension/Two.cpp: return a < b;  =>  return a > b;\n")

    def test_what_is_listed_of_other_files_than_those_that_are_named_does_not_matter(self):
        self.assertEqual(self.errors("1", "1", "One.cpp"),
                         "mutate: the copy could not be configured\n")


if __name__ == "__main__":
    unittest.main()
