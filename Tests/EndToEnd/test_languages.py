"""The menu in the languages that the bundle has, and clicks on its translated entries."""

import re
import unittest

import samples
from catalogue import FEATURES
from menu_model import ClickModel, MenuBuilder, Request, actionable_items
from quorva_process import EXTENSION_EXECUTABLE, EndToEndTestCase, application_bundle

REQUEST = Request(["/Volumes/Work/a.txt"], "/Volumes/Work")


def translations(language):
    """The string table of the bundle, read without the system's help."""
    bundle = (application_bundle() / EXTENSION_EXECUTABLE).parents[2]
    table = bundle / "Contents" / "Resources" / f"{language}.lproj" / "Localizable.strings"
    text = re.sub(r"/\*.*?\*/", "", table.read_text(encoding="utf-8"), flags=re.DOTALL)
    pairs = re.findall(r'^"((?:[^"\\]|\\.)*)" = "((?:[^"\\]|\\.)*)";$', text, re.MULTILINE)
    return dict(pairs)


class LanguagesTest(EndToEndTestCase):

    LANGUAGES = ("en", "zh-Hant", "zh-Hans")

    def test_the_tables_have_every_text_of_the_catalogue_but_in_simplified_chinese(self):
        self.assertEqual(translations("zh-Hans"), {})
        for language in ("en", "zh-Hant"):
            table = translations(language)
            for _, title, commands in FEATURES:
                self.assertIn(title, table)
                for command in commands:
                    self.assertIn(command[1], table)
            for key in ("没有已启用功能", "复制到文件夹", "移动到文件夹", "用户目录", "图片", "预览",
                        "文本编辑", "列表 · 最近修改", "图标 · 按名称", "分栏 · 按名称"):
                self.assertIn(key, table)

    def test_the_whole_menu_is_in_the_language(self):
        for language in self.LANGUAGES:
            extension = self.start_extension(language=language)
            for layout in ("collapsed", "expanded"):
                for files in ({}, samples.user_data()):
                    with self.subTest(language=language, layout=layout, user_data=bool(files)):
                        settings = self.home.settings(
                            feature_settings=samples.feature_settings(layout),
                            translations=translations(language), **files)
                        self.home.write_settings(settings)
                        self.assertEqual(extension.menu(REQUEST),
                                         MenuBuilder(settings, REQUEST).menu())

    def test_a_menu_without_a_feature_says_so_in_the_language(self):
        self.home.write("FeatureSettings.plist", {"enabledFeatureIDs": []})
        for language, title in (("en", "No Features Enabled"), ("zh-Hant", "沒有已啟用的功能"),
                                ("zh-Hans", "没有已启用功能")):
            menu = self.start_extension(language=language).menu()
            self.assertEqual([item["title"] for item in menu["items"]], [title])

    def test_without_a_language_the_texts_are_simplified_chinese(self):
        self.assertEqual(self.start_extension().menu(REQUEST),
                         MenuBuilder(self.home.settings(), REQUEST).menu())

    def test_the_titles_of_a_language_are_those_of_its_table(self):
        extension = self.start_extension(language="en")
        menu = extension.menu(REQUEST)
        titles = [item["title"] for item in menu["items"][0]["submenu"]["items"]]
        self.assertEqual(titles[:4], ["Open", "New", "Move to ", "Copy to "])

    def test_every_entry_that_finder_delivers_means_the_same_action_in_every_language(self):
        for language in self.LANGUAGES:
            settings = self.home.settings(
                feature_settings=samples.feature_settings(),
                translations=translations(language), **samples.user_data())
            self.home.write_settings(settings)
            extension = self.start_extension(language=language)
            menu = extension.menu(REQUEST)
            for path, item in actionable_items(menu):
                with self.subTest(language=language, title=item["title"]):
                    extension.click(path, REQUEST, delivery="intact")
                    [intact] = self.home.take_records()
                    extension.click(path, REQUEST, delivery="finder")
                    [delivered] = self.home.take_records()
                    for key in ("actionID", "title", "destinationPath", "selectedPaths",
                                "targetedPath"):
                        self.assertEqual(delivered[key], intact[key])

    def test_a_title_of_another_language_means_nothing(self):
        extension = self.start_extension(language="en")
        extension.send({"title": "压缩为 ZIP"}, REQUEST)
        self.assertEqual(self.home.records(), [])
        extension.send({"title": "Compress to ZIP"}, REQUEST)
        settings = self.home.settings(translations=translations("en"))
        expected = ClickModel(settings).click({"title": "Compress to ZIP"}, REQUEST).record
        self.assert_record(self.home.records()[0], expected)


if __name__ == "__main__":
    unittest.main()
