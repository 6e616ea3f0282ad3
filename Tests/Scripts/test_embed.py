"""scripts/embed, with programs in place of the Mac's that record how they were called."""

import os
import plistlib
import shlex
import shutil
import unittest

from script_test import ROOT, ScriptTestCase

ENTITLEMENTS = ROOT / "Bundle" / "QuorvaFinderExtension.entitlements"

# codesign keeps what a bundle was signed with in the bundle, and every program fails for what FAIL
# names.
PROGRAM = """
import plistlib
if name == "uname":
    print("Darwin")
    sys.exit()
if os.environ.get("FAIL") == " ".join([name, arguments[0], pathlib.Path(arguments[-1]).name]):
    sys.exit("refused")
if name == "plutil":
    print(plistlib.loads(pathlib.Path(arguments[-1]).read_bytes())["CFBundleIdentifier"])
if name == "codesign" and arguments[:2] == ["--display", "--verbose"]:
    sys.exit("Identifier=app.ferrolin.Quorva\\nTeamIdentifier=" + os.environ.get("TEAM", "not set"))
if name == "codesign":
    signature = pathlib.Path(arguments[-1]) / "signature"
    if "--sign" in arguments and "--entitlements" in arguments:
        signature.write_bytes(
            pathlib.Path(arguments[arguments.index("--entitlements") + 1]).read_bytes()
        )
    if arguments[0] == "--display":
        sys.stdout.write(signature.read_text())
if name == "cmake" and arguments[0] == "--list-presets=build":
    print('  "macos-universal"')
if name == "cmake" and arguments[0] == "--preset":
    os.makedirs("build/" + arguments[1])
if name == "cmake" and arguments[0] == "--install":
    executable = pathlib.Path(arguments[-1], os.environ["EXECUTABLE"])
    executable.parent.mkdir(parents=True, exist_ok=True)
    executable.write_text("built")
    executable.chmod(0o755)
"""
EXECUTABLE = "QuorvaFinderExtension.appex/Contents/MacOS/QuorvaFinderExtension"


class EmbedTest(ScriptTestCase):
    def setUp(self):
        super().setUp()
        for name in ("cmake", "codesign", "pluginkit", "plutil", "uname"):
            self.add_program(name, PROGRAM)
        self.app = self.folder / "Quorva.app"
        (self.app / "Contents").mkdir(parents=True)
        self.write_information("app.ferrolin.Quorva")
        self.extension = self.folder / "built" / "QuorvaFinderExtension.appex"
        executable = self.extension.parent / EXECUTABLE
        executable.parent.mkdir(parents=True)
        executable.write_text("new")
        executable.chmod(0o755)
        self.embedded = self.app / "Contents" / "PlugIns" / "QuorvaFinderExtension.appex"

    def write_information(self, identifier):
        (self.app / "Contents" / "Info.plist").write_bytes(
            plistlib.dumps({"CFBundleIdentifier": identifier})
        )

    def embed(self, *arguments, script=ROOT / "scripts" / "embed", **options):
        return self.run_script(script, *arguments, EXECUTABLE=EXECUTABLE, **options)

    def write_former(self):
        self.embedded.mkdir(parents=True)
        (self.embedded / "former").touch()

    def signings(self):
        return [call for call in self.calls("codesign") if "--sign" in call]

    def assert_fails(self, result, *lines, status=1):
        self.assertEqual(result.returncode, status)
        self.assertEqual(
            result.stderr.splitlines()[-len(lines):], [f"embed: {line}" for line in lines])

    def test_the_extension_is_copied_to_the_plug_ins(self):
        result = self.embed("--extension", self.extension, self.app)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(
            (self.embedded / "Contents/MacOS/QuorvaFinderExtension").read_text(), "new"
        )
        self.assertEqual(os.listdir(self.embedded.parent), ["QuorvaFinderExtension.appex"])

    def test_an_extension_that_is_there_is_replaced_whole(self):
        self.embedded.mkdir(parents=True)
        (self.embedded / "old").touch()
        self.embed("--extension", self.extension, self.app)
        self.assertFalse((self.embedded / "old").exists())

    def test_the_extension_is_signed_before_the_application(self):
        self.embed("--extension", self.extension, self.app)
        self.assertEqual(
            [call[-1] for call in self.signings()], [str(self.embedded), str(self.app)]
        )

    def test_nothing_is_signed_deeply(self):
        self.embed("--extension", self.extension, self.app)
        self.assertTrue(all("--deep" not in call for call in self.calls("codesign")))

    def test_the_extension_is_signed_with_its_entitlements(self):
        self.embed("--extension", self.extension, self.app)
        call = self.signings()[0]
        self.assertEqual(call[call.index("--entitlements") + 1], str(ENTITLEMENTS))

    def test_the_application_keeps_its_entitlements(self):
        self.embed("--extension", self.extension, self.app)
        call = self.signings()[1]
        self.assertIn("--preserve-metadata=entitlements,flags,runtime", call)
        self.assertNotIn("--entitlements", call)

    def test_the_application_gets_the_entitlements_that_are_given(self):
        entitlements = self.folder / "app.entitlements"
        entitlements.write_text("given")
        self.embed("--extension", self.extension, "--app-entitlements", entitlements, self.app)
        call = self.signings()[1]
        self.assertEqual(call[call.index("--entitlements") + 1], str(entitlements))

    def test_the_default_identity_signs_ad_hoc(self):
        self.embed("--extension", self.extension, self.app)
        for call in self.signings():
            self.assertEqual(call[call.index("--sign") + 1], "-")
            self.assertNotIn("--timestamp", call)

    def test_an_application_that_a_team_has_signed_is_not_signed_ad_hoc(self):
        result = self.embed("--extension", self.extension, self.app, TEAM="A1B2C3D4E5")
        self.assert_fails(
            result,
            f"{self.app} is signed by the team A1B2C3D4E5: "
            "name an identity of that team with --identity",
        )
        self.assertEqual(self.signings(), [])
        self.assertFalse(self.embedded.exists())

    def test_an_identity_that_is_given_signs_what_a_team_has_signed(self):
        for identity in ("Developer ID: A", "-"):
            with self.subTest(identity):
                result = self.embed("--extension", self.extension, "--identity", identity,
                                    self.app, TEAM="A1B2C3D4E5")
                self.assertEqual(result.returncode, 0, result.stderr)

    def test_an_identity_that_is_given_signs_both_with_a_timestamp(self):
        self.embed("--extension", self.extension, "--identity", "Developer ID: A", self.app)
        for call in self.signings():
            self.assertEqual(call[call.index("--sign") + 1], "Developer ID: A")
            self.assertIn("--timestamp", call)

    def test_both_signatures_are_verified_after_both_are_made(self):
        self.embed("--extension", self.extension, self.app)
        calls = self.calls("codesign")
        last_signing = max(calls.index(call) for call in self.signings())
        for bundle in (self.embedded, self.app):
            verification = ["--verify", "--strict", str(bundle)]
            self.assertGreater(calls.index(verification), last_signing)

    def test_a_signature_that_does_not_verify_fails(self):
        for name, bundle in (
            ("QuorvaFinderExtension.appex", self.embedded),
            ("Quorva.app", self.app),
        ):
            with self.subTest(name):
                result = self.embed(
                    "--extension", self.extension, self.app, FAIL=f"codesign --verify {name}"
                )
                self.assert_fails(
                    result,
                    f"the signature of {bundle} does not verify",
                    "the extension was removed, as there was none before; "
                    "the application has to be signed again",
                )

    def test_an_extension_without_the_sandbox_entitlement_fails(self):
        # A copy of the script, beside other entitlements.
        root = self.copy_scripts()
        (root / "Bundle").mkdir()
        (root / "Bundle" / ENTITLEMENTS.name).write_bytes(
            plistlib.dumps({"com.apple.security.app-sandbox": False})
        )
        result = self.embed(
            "--extension", self.extension, self.app, script=root / "scripts" / "embed"
        )
        self.assert_fails(
            result,
            "the embedded extension is not sandboxed: the system would refuse it",
            "the extension was removed, as there was none before; "
            "the application has to be signed again",
        )

    def test_the_lines_that_enable_the_extension_are_printed_and_not_run(self):
        result = self.embed("--extension", self.extension, self.app)
        self.assertIn(f"pluginkit -a '{self.embedded}'\n", result.stdout)
        self.assertIn("pluginkit -e use -i app.ferrolin.Quorva.FinderExtension\n", result.stdout)
        self.assertIn("pluginkit -m -A -D -v -p com.apple.FinderSync\n", result.stdout)
        self.assertEqual(self.calls("pluginkit"), [])

    def test_without_an_extension_the_universal_one_is_built_and_embedded(self):
        root = self.copy_scripts()
        shutil.copytree(ROOT / "Bundle", root / "Bundle")
        (root / "CMakePresets.json").touch()
        result = self.embed(self.app, script=root / "scripts" / "embed")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(
            self.calls("cmake"),
            [
                ["--list-presets=build"],
                ["--preset", "macos-universal"],
                ["--build", "--preset", "macos-universal", "--", "--quiet"],
                ["--install", "build/macos-universal", "--prefix", str(root / "build/product")],
            ],
        )
        self.assertEqual(
            (self.embedded / "Contents/MacOS/QuorvaFinderExtension").read_text(), "built"
        )

    def test_an_application_of_another_identifier_is_refused_and_left_alone(self):
        self.write_information("com.example.Other")
        result = self.embed("--extension", self.extension, self.app)
        self.assert_fails(
            result,
            f"{self.app} is com.example.Other, and the extension belongs to app.ferrolin.Quorva",
        )
        self.assertFalse(self.embedded.exists())

    def test_what_is_not_an_application_is_refused(self):
        result = self.embed("--extension", self.extension, self.folder)
        self.assert_fails(
            result, f"{self.folder} is not an application: it has no Contents/Info.plist"
        )

    def test_what_is_not_the_extension_is_refused(self):
        result = self.embed("--extension", self.folder, self.app)
        self.assert_fails(
            result,
            f"{self.folder} is not the extension: "
            "it has no Contents/MacOS/QuorvaFinderExtension",
        )

    def test_an_option_without_its_value_is_refused(self):
        self.assert_fails(
            self.embed(self.app, "--identity"),
            "--identity needs a value; --help lists what there is",
            status=2,
        )

    def test_without_an_application_it_is_refused(self):
        self.assert_fails(
            self.embed(), "an application is missing; --help lists what there is", status=2
        )

    def test_without_the_tools_of_a_mac_it_says_so(self):
        (self.programs / "dirname").symlink_to(shutil.which("dirname"))
        (self.programs / "codesign").unlink()
        self.assert_fails(
            self.embed("--extension", self.extension, self.app, PATH=str(self.programs)),
            "codesign is missing: this needs a Mac",
        )

    def test_a_link_to_the_extension_is_followed(self):
        link = self.folder / "link.appex"
        link.symlink_to(self.extension)
        for extension in (str(link), f"{link}/"):
            with self.subTest(extension):
                result = self.embed("--extension", extension, self.app)
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertFalse(self.embedded.is_symlink())
                self.assertEqual(
                    (self.embedded / "Contents/MacOS/QuorvaFinderExtension").read_text(), "new"
                )

    def test_paths_are_the_callers(self):
        result = self.embed(
            "--extension", "built/QuorvaFinderExtension.appex", "Quorva.app/", cwd=self.folder
        )
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn(f"pluginkit -a '{self.embedded}'\n", result.stdout)

    def test_printed_paths_are_absolute_and_without_detours(self):
        result = self.embed("--extension", "../built/QuorvaFinderExtension.appex",
                            ".././Quorva.app", cwd=self.programs)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn(f"Embedded and signed: {self.embedded}\n", result.stdout)

    def test_when_signing_fails_the_former_extension_is_put_back(self):
        self.write_former()
        for name, what in (("QuorvaFinderExtension.appex", "extension"),
                           ("Quorva.app", "application")):
            with self.subTest(name):
                result = self.embed(
                    "--extension", self.extension, self.app, FAIL=f"codesign --force {name}"
                )
                self.assert_fails(
                    result,
                    f"the {what} could not be signed",
                    "the former extension was put back",
                )
                self.assertEqual(os.listdir(self.embedded), ["former"])
                self.assertEqual(os.listdir(self.embedded.parent), [self.embedded.name])

    def test_when_a_signature_does_not_verify_the_former_extension_is_put_back(self):
        self.write_former()
        result = self.embed(
            "--extension", self.extension, self.app, FAIL="codesign --verify Quorva.app"
        )
        self.assert_fails(
            result,
            f"the signature of {self.app} does not verify",
            "the former extension was put back; the application has to be signed again",
        )
        self.assertEqual(os.listdir(self.embedded), ["former"])

    def test_no_copy_of_the_former_extension_stays_behind(self):
        temporary = self.folder / "temporary"
        temporary.mkdir()
        self.write_former()
        for failure in ("", "codesign --force Quorva.app"):
            self.embed(
                "--extension", self.extension, self.app, FAIL=failure, TMPDIR=str(temporary)
            )
            self.assertEqual(os.listdir(temporary), [])

    def test_the_printed_commands_quote_any_path(self):
        app = self.app.rename(self.folder / "Ada's $HOME `x` \"Quorva\".app")
        result = self.embed("--extension", self.extension, app)
        self.assertEqual(result.returncode, 0, result.stderr)
        command = next(line for line in result.stdout.splitlines() if "pluginkit -a" in line)
        self.assertEqual(
            shlex.split(command),
            ["pluginkit", "-a", str(app / "Contents/PlugIns/QuorvaFinderExtension.appex")],
        )


if __name__ == "__main__":
    unittest.main()
