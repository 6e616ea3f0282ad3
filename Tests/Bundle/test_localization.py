"""The string tables against the texts of the sources."""

import itertools
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "Bundle"))

import localization  # noqa: E402

# Put directly before the name of a destination.
PREFIXES = ("复制到", "移动到")
DESTINATIONS = ("桌面", "下载", "文稿")
# Titles that no table translates but that a click is matched against all the same.
APPLICATIONS = ("Pages", "Numbers", "Keynote")


def table(language):
    return localization.read_table(
        localization.RESOURCES / f"{language}.lproj" / "Localizable.strings"
    )


class KeysTest(unittest.TestCase):
    def test_texts_are_literals_with_chinese_characters(self):
        code = 'call("下载", "Pages", u8"列表 · 最近修改", R"(x)");'
        self.assertEqual(localization.keys_of_code(code), {"下载", "列表 · 最近修改"})

    def test_comments_are_no_texts(self):
        code = '// "桌面"\n/* "文稿" */ char quote = \'"\'; auto text = "下载";'
        self.assertEqual(localization.keys_of_code(code), {"下载"})

    def test_adjacent_literals_are_one_text(self):
        self.assertEqual(localization.keys_of_code('auto t = "在 "\n  "Finder";'), {"在 Finder"})

    def test_the_sources_have_the_texts_of_every_feature_and_child_and_nine_more(self):
        # 14 features, 73 children, and beyond them: two submenus, the pictures folder, two
        # applications, three presets and the empty menu.
        self.assertEqual(len(localization.source_keys()), 14 + 73 + 9)


class TablesTest(unittest.TestCase):
    def test_every_text_has_a_translation(self):
        for language in localization.TRANSLATED_LANGUAGES:
            with self.subTest(language=language):
                self.assertEqual(localization.source_keys() - table(language).keys(), set())

    def test_no_table_has_a_key_that_nothing_uses(self):
        for language in localization.LANGUAGES:
            with self.subTest(language=language):
                self.assertEqual(table(language).keys() - localization.source_keys(), set())

    def test_simplified_chinese_shows_the_keys(self):
        self.assertEqual(table("zh-Hans"), {})

    def test_no_translation_is_empty(self):
        for language in localization.TRANSLATED_LANGUAGES:
            with self.subTest(language=language):
                self.assertTrue(all(value.strip() for value in table(language).values()))

    def test_three_full_stops_are_kept_where_the_text_has_them_and_nowhere_else(self):
        for language in localization.TRANSLATED_LANGUAGES:
            for key, value in table(language).items():
                with self.subTest(language=language, key=key):
                    self.assertEqual(value.endswith("..."), key.endswith("..."))
                    self.assertNotIn("…", value)

    def test_a_translation_keeps_the_separator_of_presets(self):
        for language in localization.TRANSLATED_LANGUAGES:
            for key, value in table(language).items():
                with self.subTest(language=language, key=key):
                    self.assertEqual(value.count(" · "), key.count(" · "))

    def test_only_the_prefixes_may_begin_or_end_with_a_space(self):
        for language in localization.TRANSLATED_LANGUAGES:
            for key, value in table(language).items():
                with self.subTest(language=language, key=key):
                    self.assertEqual(value.rstrip() if key in PREFIXES else value, value.strip())

    def test_titles_are_the_same_in_a_translation_exactly_where_they_are_in_chinese(self):
        # A clicked item comes back from Finder with its title alone, so two titles that fall
        # together in one language only would make the click mean something else there.
        titles = {(key,): key for key in localization.source_keys()}
        titles |= {pair: "".join(pair) for pair in itertools.product(PREFIXES, DESTINATIONS)}
        titles |= {(name,): name for name in APPLICATIONS}
        for language in localization.TRANSLATED_LANGUAGES:
            translations = table(language)
            translated = {
                parts: "".join(translations.get(part, part) for part in parts) for parts in titles
            }
            for left, right in itertools.combinations(titles, 2):
                with self.subTest(language=language, left=left, right=right):
                    self.assertEqual(
                        translated[left] == translated[right], titles[left] == titles[right]
                    )


class ReaderTest(unittest.TestCase):
    def read(self, text):
        import tempfile

        with tempfile.NamedTemporaryFile(suffix=".strings") as file:
            file.write(text.encode("utf-8"))
            file.flush()
            return localization.read_table(file.name)

    def test_a_key_that_stands_twice_is_refused(self):
        with self.assertRaisesRegex(ValueError, "twice"):
            self.read('"a" = "b";\n"a" = "c";')

    def test_an_entry_without_a_semicolon_is_refused_with_its_line(self):
        with self.assertRaisesRegex(ValueError, ":2: "):
            self.read('"a" = "b";\n"c" = "d"')

    def test_comments_and_escapes_are_read(self):
        self.assertEqual(self.read('/* x */ "a\\"" = "b"; // "c"\n'), {'a"': "b"})


if __name__ == "__main__":
    unittest.main()
