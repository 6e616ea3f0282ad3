"""Each property of the bundle is broken on a copy, and the inspection says which."""

import plistlib
import shutil
import tempfile
import unittest
from pathlib import Path

from check import BUNDLE, ENTITLEMENTS, compiled

import inspect_bundle

MINIMUM = "12.0"
VERSION = inspect_bundle.read_property_list(BUNDLE / "Contents" / "Info.plist")[0][
    "CFBundleVersion"
]

EXAMPLE = """
#import <FinderSync/FinderSync.h>
@interface FinderSync : FIFinderSync
@end
@implementation FinderSync
- (NSMenu*)menuForMenuKind:(FIMenuKind)kind {
    return kind == FIMenuKindToolbarItemMenu ? [[NSMenu alloc] initWithTitle:@""] : nil;
}
- (NSString*)toolbarItemName { return @""; }
- (NSString*)toolbarItemToolTip { return @""; }
- (NSImage*)toolbarItemImage { return [[NSImage alloc] init]; }
- (void)performFeatureChild:(id)sender { NSLog(@"%@", sender); }
- (void)handleSettingsChanged:(NSNotification*)notification { NSLog(@"%@", notification); }
@end
"""
EXTENSION_ENTRY = ("-Wl,-e,_NSExtensionMain",)
FRAMEWORKS = ("-framework", "FinderSync", "-framework", "AppKit", "-framework", "Foundation")


class BundleTestCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.bundle = self.folder / BUNDLE.name
        shutil.copytree(BUNDLE, self.bundle)
        self.information = self.bundle / "Contents" / "Info.plist"
        self.resources = self.bundle / "Contents" / "Resources"
        self.executable = self.bundle / "Contents" / "MacOS" / inspect_bundle.EXECUTABLE
        self.entitlements = self.folder / "entitlements"
        shutil.copy(ENTITLEMENTS, self.entitlements)

    def deviations(self):
        return list(
            inspect_bundle.bundle_deviations(self.bundle, VERSION, MINIMUM, self.entitlements)
        )


class BundleTest(BundleTestCase):
    def test_a_bundle_as_it_must_be_has_no_deviation(self):
        self.assertEqual(self.deviations(), [])

    def test_every_part_of_a_bundle_is_inspected(self):
        self.information.unlink()
        self.entitlements.unlink()
        self.executable.unlink()
        (self.resources / "en.lproj" / "Localizable.strings").unlink()
        self.assertEqual(
            self.deviations(),
            [
                "Info.plist: there is none",
                "entitlements: there is none",
                "string tables: en has none",
                "executable: there is none, or it is not a Mach-O file",
            ],
        )


class PropertyListTest(BundleTestCase):
    def assert_each_key_is_inspected(self, path, name, deviations):
        original = plistlib.loads(path.read_bytes())
        for key in original:
            with self.subTest(missing=key):
                changed = {other: value for other, value in original.items() if other != key}
                path.write_bytes(plistlib.dumps(changed))
                self.assertEqual(list(deviations(path)), [f"{name}: {key} is missing"])
            with self.subTest(other=key):
                path.write_bytes(plistlib.dumps(original | {key: "something else"}))
                (line,) = list(deviations(path))
                self.assertTrue(line.startswith(f"{name}: {key} is 'something else', not "), line)
        with self.subTest("unknown"):
            path.write_bytes(plistlib.dumps(original | {"Unknown": True}))
            self.assertEqual(list(deviations(path)), [f"{name}: Unknown is unknown"])
        with self.subTest("damaged"):
            path.write_bytes(b"<plist>")
            (line,) = list(deviations(path))
            self.assertTrue(line.startswith(f"{name}: not a property list: "), line)
        with self.subTest("absent"):
            path.unlink()
            self.assertEqual(list(deviations(path)), [f"{name}: there is none"])

    def test_each_key_of_the_information_is_inspected(self):
        self.assert_each_key_is_inspected(
            self.information,
            "Info.plist",
            lambda path: inspect_bundle.information_deviations(path, VERSION, MINIMUM),
        )

    def test_each_entitlement_is_inspected(self):
        self.assert_each_key_is_inspected(
            self.entitlements, "entitlements", inspect_bundle.entitlement_deviations
        )

    def test_a_home_relative_exception_that_is_missing_is_named(self):
        entitlements = plistlib.loads(self.entitlements.read_bytes())
        entitlements[inspect_bundle.HOME_EXCEPTION].remove("/Desktop/")
        self.entitlements.write_bytes(plistlib.dumps(entitlements))
        (line,) = self.deviations()
        self.assertTrue(line.startswith(f"entitlements: {inspect_bundle.HOME_EXCEPTION} is "), line)


class StringTablesTest(BundleTestCase):
    def table(self, language):
        return self.resources / f"{language}.lproj" / "Localizable.strings"

    def test_a_missing_table_is_named(self):
        for language in ("en", "zh-Hans", "zh-Hant"):
            with self.subTest(language):
                table = self.table(language)
                kept = table.read_bytes()
                table.unlink()
                self.assertEqual(
                    list(inspect_bundle.table_deviations(self.resources)),
                    [f"string tables: {language} has none"],
                )
                table.write_bytes(kept)

    def test_a_missing_translation_is_named(self):
        table = plistlib.loads(self.table("en").read_bytes())
        del table["桌面"]
        self.table("en").write_bytes(plistlib.dumps(table, fmt=plistlib.FMT_BINARY))
        self.assertEqual(
            list(inspect_bundle.table_deviations(self.resources)), ["string tables: en lacks “桌面”"]
        )

    def test_a_key_that_nothing_uses_is_named(self):
        table = plistlib.loads(self.table("zh-Hant").read_bytes())
        self.table("zh-Hant").write_bytes(
            plistlib.dumps(table | {"什么": "什麼"}, fmt=plistlib.FMT_BINARY)
        )
        self.assertEqual(
            list(inspect_bundle.table_deviations(self.resources)),
            ["string tables: zh-Hant has “什么”, which nothing uses"],
        )

    def test_a_damaged_table_is_named(self):
        self.table("en").write_bytes(b"bplist00")
        (line,) = list(inspect_bundle.table_deviations(self.resources))
        self.assertTrue(line.startswith("string tables: en can't be read: "), line)


class ExecutableTest(BundleTestCase):
    """On small executables, so that each can be built wrong in one way."""

    def build(
        self, source=EXAMPLE, options=EXTENSION_ENTRY, architectures=("arm64", "x86_64"), **rest
    ):
        archs = [option for name in architectures for option in ("-arch", name)]
        result = compiled(source, *archs, *options, *FRAMEWORKS, "-o", str(self.executable), **rest)
        self.assertEqual(result.returncode, 0, result.stderr)

    def assert_both_slices_deviate(self, *lines):
        self.assertEqual(
            self.deviations(),
            [f"{architecture}: {line}" for architecture in ("arm64", "x86_64") for line in lines],
        )

    def replaced(self, old, new):
        self.assertEqual(EXAMPLE.count(old), 1)
        return EXAMPLE.replace(old, new)

    def test_an_example_as_it_must_be_has_no_deviation(self):
        self.build()
        self.assertEqual(self.deviations(), [])

    def test_a_missing_slice_is_named(self):
        for kept, missing in (("arm64", "x86_64"), ("x86_64", "arm64")):
            with self.subTest(missing=missing):
                self.build(architectures=[kept])
                self.assertEqual(self.deviations(), [f"slices: {missing} is missing"])

    def test_a_missing_executable_is_named(self):
        self.executable.unlink()
        self.assertEqual(
            self.deviations(), ["executable: there is none, or it is not a Mach-O file"])

    def test_an_entry_of_its_own_is_named(self):
        self.build(EXAMPLE + "int main() { return 0; }", options=())
        lines = self.deviations()
        self.assertEqual(len(lines), 2)
        for line in lines:
            self.assertRegex(line, "entry: LC_MAIN leads to 0x[0-9a-f]+, not to _NSExtensionMain")

    def test_a_dylib_in_place_of_an_executable_is_named(self):
        self.build(options=("-dynamiclib",))
        self.assert_both_slices_deviate(
            "file type: MH_DYLIB, not MH_EXECUTE", "entry: there is no LC_MAIN"
        )

    def test_another_minimum_version_is_named(self):
        self.build(minimum="11.0")
        self.assert_both_slices_deviate("minimum version: 11.0, not 12.0")

    def test_a_dylib_beyond_the_allowed_ones_is_named(self):
        library = self.folder / "libother.tbd"
        library.write_text(
            "--- !tapi-tbd\ntbd-version: 4\ntargets: [ x86_64-macos, arm64-macos ]\n"
            "install-name: '/usr/lib/libother.dylib'\nexports:\n"
            "  - targets: [ x86_64-macos, arm64-macos ]\n    symbols: [ _other ]\n...\n"
        )
        self.build(
            self.replaced(
                'return @""; }\n- (NSString*)toolbarItemToolTip',
                'other(); return @""; }\n- (NSString*)toolbarItemToolTip',
            ).replace("@interface", 'extern "C" void other();\n@interface'),
            options=(*EXTENSION_ENTRY, f"-L{self.folder}", "-lother"),
        )
        self.assert_both_slices_deviate(
            "dylibs: /usr/lib/libother.dylib is not one of those that the extension may need",
            "undefined symbols: _other comes from libother",
        )

    def test_a_symbol_that_no_library_has_is_named(self):
        self.build(
            self.replaced('NSLog(@"%@", sender)', "missing()").replace(
                "@interface", 'extern "C" void missing();\n@interface'
            ),
            options=(*EXTENSION_ENTRY, "-Wl,-U,_missing"),
        )
        self.assert_both_slices_deviate(
            "undefined symbols: _missing comes from dynamically looked up"
        )

    def test_a_static_initialiser_is_named(self):
        self.build(EXAMPLE + "NSString* account = NSUserName();")
        lines = self.deviations()
        self.assertEqual(len(lines), 2)
        for line in lines:
            self.assertRegex(line, "static initialisers: there is a section __(mod_init|init_off)")

    def test_a_load_method_is_named(self):
        self.build(self.replaced("- (NSMenu*)menu", "+ (void)load {}\n- (NSMenu*)menu"))
        self.assert_both_slices_deviate("static initialisers: there is a section __objc_nlclslist")

    def test_a_missing_principal_class_is_named(self):
        self.build(
            EXAMPLE.replace("FinderSync :", "Finder :").replace(
                "tation FinderSync", "tation Finder"
            )
        )
        self.assert_both_slices_deviate("principal class: there is no Objective-C class FinderSync")

    def test_another_superclass_is_named(self):
        self.build(self.replaced(": FIFinderSync", ": NSObject"))
        self.assert_both_slices_deviate(
            "principal class: its superclass is _OBJC_CLASS_$_NSObject, not FIFinderSync"
        )

    def test_each_missing_method_is_named(self):
        for method in inspect_bundle.METHODS:
            with self.subTest(method):
                name = method.rstrip(":")
                self.build(self.replaced(f"){name}", f")x{name}"))
                self.assert_both_slices_deviate(f"principal class: the method {method} is missing")

    def test_a_method_of_other_types_is_named(self):
        self.build(
            self.replaced("(void)performFeatureChild:", "(BOOL)performFeatureChild:").replace(
                'NSLog(@"%@", sender);', "return sender != nil;"
            )
        )
        lines = self.deviations()
        self.assertEqual(len(lines), 2)
        for line in lines:
            self.assertRegex(line, "the method performFeatureChild: has the types [Bc]24@0:8@16")


if __name__ == "__main__":
    unittest.main()
