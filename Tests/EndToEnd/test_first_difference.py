"""What a failed comparison says."""

import unittest

from first_difference import first_difference


def item(title, *submenu, **members):
    if submenu:
        members["submenu"] = {"title": title, "items": list(submenu)}
    return {"title": title, "enabled": True, "tag": 0, **members}


def menu(*items):
    return {"title": "Quorva", "items": list(items)}


CASES = {
    "the way to an item of a menu": (
        menu(item("A"), item("新建", item("B"), item("C", enabled=False))),
        menu(item("A"), item("新建", item("B"), item("C"))),
        "[1] 新建 > [1] C > enabled: False, expected True"),
    "a title before what else differs": (
        menu(item("A", identifier="a")), menu(item("B", identifier="b")),
        "[0] A > title: 'A', expected 'B'"),
    "an item too many": (
        menu(item("A"), {"separator": True}), menu(item("A")),
        "[1]: {'separator': True}, expected nothing"),
    "an item that is missing": (
        menu(), menu({"title": "A"}), "[0] A: nothing, expected {'title': 'A'}"),
    "a member that is missing": ({"a": 1}, {"a": 1, "b": None}, "b: nothing, expected None"),
    "an element": (["a", ["b", 1]], ["a", ["b", 2]], "[1] > [1]: 1, expected 2"),
    "values of different types": ({"a": []}, {"a": {}}, "a: [], expected {}"),
    "values that are not nested": (1, 2, "the value: 1, expected 2"),
    "a tuple": ((1, "a"), (1, "b"), "[1]: 'a', expected 'b'"),
    "short strings": ("ab", "ac", "the value: 'ab', expected 'ac'"),
    "where long strings differ": (
        "x" * 1000 + "a" + "y" * 1000, "x" * 1000 + "b",
        f"character 1000: '{'x' * 50}a{'y' * 148}…, expected '{'x' * 50}b'"),
}


class FirstDifferenceTest(unittest.TestCase):

    def test_it_names_the_place_and_both_values(self):
        for name, (actual, expected, message) in CASES.items():
            with self.subTest(name):
                self.assertEqual(first_difference(actual, expected), message)

    def test_it_is_short_however_large_the_values_are(self):
        for actual, expected in (([*range(100_000)], []), ("a" * 100_000, "b"),
                                 ({"a": "b" * 100_000}, {"a": ["c"] * 100_000})):
            self.assertLess(len(first_difference(actual, expected)), 500)


class FailedComparisonsTest(unittest.TestCase):
    """A test with comparisons that fail."""

    def run_test(self, test):
        from quorva_process import EndToEndTestCase

        result = unittest.TestResult()
        type("ExampleTest", (EndToEndTestCase,), {"test": test})("test").run(result)
        return [(str(case), message) for case, message in result.failures]

    def test_a_failed_comparison_says_no_more_than_the_first_difference(self):
        [(_, message)] = self.run_test(lambda test: test.assertEqual([*range(2000)], [0] * 2000))
        self.assertTrue(message.endswith("AssertionError: [1]: 1, expected 0\n"), message)

    def test_each_failed_case_is_named_and_the_tenth_ends_the_test(self):
        def test(test):
            for number in range(30):
                with test.subTest(number=number):
                    test.assertEqual({"a": number % 2}, {"a": 1})

        failures = self.run_test(test)
        self.assertEqual([case.split(" ")[-1] for case, _ in failures[:-1]],
                         [f"(number={number})" for number in range(0, 20, 2)])
        self.assertTrue(failures[-1][1].endswith(
            "AssertionError: ten cases have failed; the others are left out\n"), failures[-1][1])
        self.assertNotIn("another exception", failures[-1][1])


if __name__ == "__main__":
    unittest.main()
