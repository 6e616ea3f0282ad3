"""An API that is used wrongly, or too early, does not compile."""

import unittest

from check import compiled

IMPORTS = """
#import <AppKit/AppKit.h>
#import <FinderSync/FinderSync.h>
#import <Foundation/Foundation.h>
#include <charconv>
#include <os/log.h>
"""

RIGHT = """
void use(NSMenuItem* item, NSFileHandle* handle, NSError** error) {
    item.title = [NSUUID UUID].UUIDString;
    item.action = @selector(addItem:);
    [handle seekToEndReturningOffset:nullptr error:error];
    [[NSFileManager defaultManager] URLsForDirectory:NSDesktopDirectory inDomains:NSUserDomainMask];
    os_log_info(os_log_create("a", "b"), "count=%{public}ld", 1L);
}
"""

# What is replaced in it, by what, and what the compiler then says.
WRONG = {
    "a_property_that_does_not_exist": ("UUID].UUIDString", "UUID].string", "property 'string'"),
    "a_method_that_does_not_exist": (
        "URLsForDirectory:",
        "URLsForFolder:",
        "instance method '-URLsForFolder:inDomains:' not found",
    ),
    "a_class_method_that_does_not_exist": (
        "[NSUUID UUID]",
        "[NSUUID uuid]",
        "class method '\\+uuid",
    ),
    "a_class_that_does_not_exist": ("[NSUUID UUID]", "[NSUuid UUID]", "undeclared identifier"),
    "a_constant_that_does_not_exist": (
        "NSDesktopDirectory",
        "NSDesktopFolder",
        "undeclared identifier 'NSDesktopFolder'",
    ),
    "a_constant_of_another_enumeration": (
        "URLsForDirectory:NSDesktopDirectory",
        "URLsForDirectory:NSUTF8StringEncoding",
        "cannot initialize a parameter of type 'NSSearchPathDirectory'",
    ),
    "a_selector_that_does_not_exist": (
        "@selector(addItem:)",
        "@selector(add:)",
        "undeclared selector",
    ),
    "a_value_of_another_type": (
        "= [NSUUID UUID].UUIDString",
        "= [NSUUID UUID]",
        "incompatible pointer",
    ),
    "a_function_that_does_not_exist": ("os_log_create(", "os_log_make(", "undeclared identifier"),
    "a_log_format_that_does_not_fit": ("%{public}ld", "%{public}s", "format specifies type"),
    "nil_where_an_object_is_wanted": (
        "item.title = [NSUUID UUID].UUIDString",
        "[item.menu addItem:nil]",
        "null passed to a callee that requires a non-null argument",
    ),
    "a_floating_point_conversion_that_macos_12_does_not_have": (
        "item.title",
        "char text[9];\n    (void)std::to_chars(text, text + 9, 0.5);\n    item.title",
        "'to_chars' is unavailable: introduced in macOS 13.3",
    ),
}


class DeclarationsTest(unittest.TestCase):
    def test_right_use_compiles_for_both_architectures(self):
        for architecture in ("arm64", "x86_64"):
            with self.subTest(architecture=architecture):
                result = compiled(IMPORTS + RIGHT, "-fsyntax-only", "-arch", architecture)
                self.assertEqual(result.returncode, 0, result.stderr)

    def test_wrong_use_does_not_compile(self):
        for name, (old, new, message) in WRONG.items():
            with self.subTest(name):
                self.assertEqual(RIGHT.count(old), 1)
                result = compiled(
                    IMPORTS + RIGHT.replace(old, new), "-fsyntax-only", "-arch", "arm64"
                )
                self.assertNotEqual(result.returncode, 0)
                self.assertRegex(result.stderr, message)

    def test_what_is_newer_than_the_minimum_macos_does_not_compile(self):
        result = compiled(IMPORTS + RIGHT, "-fsyntax-only", "-arch", "x86_64", minimum="10.14")
        self.assertNotEqual(result.returncode, 0)
        self.assertRegex(result.stderr, "is only available on macOS 10.15 or newer")


if __name__ == "__main__":
    unittest.main()
