"""The Finder for the command line."""

import contextlib
import ctypes
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

import samples
from menu_model import MenuBuilder, Request, actionable_items
from quorva_process import (
    BINARY, CUSTOM_DESTINATIONS, EXTENSION_EXECUTABLE, FALLBACK_QUEUE, FEATURE_SETTINGS, TIME_LIMIT,
    EndToEndTestCase, Home, Run, application_bundle, build_folder, end_containing_application,
    program_environment, until)

SELECT = ["--select", "/Volumes/Work/a.txt", "--target", "/Volumes/Work"]
REQUEST = Request(["/Volumes/Work/a.txt"], "/Volumes/Work")

NAMESPACES = ["unshare", "--mount", *(["--user"] if os.geteuid() else [])]


class FinderSimTestCase(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.finder_sim_program = build_folder() / "finder-sim"
        self.settings = self.home.settings(
            feature_settings=samples.feature_settings(), **samples.user_data())
        self.home.write_settings(self.settings)

    def run_finder_sim(self, *arguments, display=True, environment=None, **options):
        return subprocess.run(
            [self.finder_sim_program, *arguments], **{
                "stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE,
                "encoding": "utf-8", "timeout": TIME_LIMIT,
                "env": program_environment(self.home, display=display) | (environment or {})
            } | options)

    def start_finder_sim(self, *arguments, display=True, stdout=subprocess.DEVNULL):
        """Starts a call that the test interrupts."""
        process = subprocess.Popen(
            [self.finder_sim_program, *arguments], stdin=subprocess.DEVNULL,
            stdout=stdout, stderr=subprocess.DEVNULL,
            env=program_environment(self.home, display=display),
            # A shell has its background jobs ignore some of them.
            preexec_fn=lambda: [signal.signal(number, signal.SIG_DFL) for number in INTERRUPTS])
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def finder_sim(self, *arguments, **options):
        """Standard output of a call that must succeed."""
        result = self.run_finder_sim(*arguments, **options)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout

    def refused(self, *arguments, output="", **options):
        """Standard error of a call that must fail."""
        result = self.run_finder_sim(*arguments, **options)
        self.assertNotEqual(result.returncode, 0)
        if output is not None:
            self.assertEqual(result.stdout, output)
        self.assertTrue(result.stderr.startswith("finder-sim: "), result.stderr)
        return result.stderr

    def use_extension(self, *lines):
        """Puts an extension of these lines of Python in the place of the real one."""
        folder = Run.new_folder()
        self.finder_sim_program = folder / "finder-sim"
        shutil.copy(build_folder() / "finder-sim", folder)
        shutil.copytree(build_folder() / "Samples", folder / "Samples")
        program = folder / "Quorva.app" / EXTENSION_EXECUTABLE
        program.parent.mkdir(parents=True)
        program.write_text("\n".join([f"#!{sys.executable}", *lines, ""]), encoding="utf-8")
        program.chmod(0o700)

    def require_namespaces(self):
        if subprocess.run([*NAMESPACES, "true"], stderr=subprocess.DEVNULL).returncode != 0:
            self.skipTest("the system allows no namespaces here")

    def assert_nothing_is_left(self):
        """Neither a process nor a temporary folder."""
        self.assertEqual({process: name for process, name in self.programs().items()
                          if process not in self.programs_before}, {})
        self.assertEqual(list(Run.folder().glob("finder-sim*.*")), [])

    @staticmethod
    def programs():
        """The programs that run in this run, by their processes."""
        found = {}
        for process in Run.processes():
            with contextlib.suppress(OSError):
                found[process] = os.path.basename(os.readlink(f"/proc/{process}/exe"))
        return found

    def containing_applications(self):
        """The processes of this run that are the containing application."""
        return [process for process, name in self.programs().items() if name == "Quorva"]


class FinderSimTest(FinderSimTestCase):

    def test_the_menu_is_shown_as_a_tree(self):
        lines = self.finder_sim("menu", *SELECT).splitlines()
        at = next(index for index, line in enumerate(lines) if "压缩与解压缩" in line)
        indentations = [len(line) - len(line.lstrip()) for line in lines[at:at + 5]]
        self.assertEqual([line.split()[0] for line in lines[at + 1:at + 4]],
                         ["压缩为", "解压到当前文件夹", "解压到同名文件夹"])
        self.assertTrue(indentations[0] < indentations[1] == indentations[2] == indentations[3])
        self.assertEqual(indentations[4], indentations[0])

    def test_the_tree_has_every_entry(self):
        tree = self.finder_sim("menu", *SELECT)
        for _, item in actionable_items(MenuBuilder(self.settings, REQUEST).menu()):
            self.assertIn(item["title"], tree)

    def test_what_can_t_be_clicked_is_marked_without_colours(self):
        tree = self.finder_sim("menu")
        self.assertNotIn("\x1b", tree)
        marked = next(line for line in tree.splitlines() if "压缩为 ZIP" in line)
        plain = next(line for line in tree.splitlines() if "新建文件夹" in line)
        self.assertEqual(plain.strip(), "新建文件夹")
        self.assertNotEqual(marked.strip(), "压缩为 ZIP")

    def test_separators_are_shown(self):
        self.home.write("FeatureSettings.plist", {
            "enabledFeatureIDs": ["archiveTools", "viewOptions"], "menuLayout": "expanded"})
        lines = self.finder_sim("menu", *SELECT).splitlines()
        self.assertEqual(len(lines), 6)
        self.assertNotRegex(lines[3], r"\w")
        self.assertNotEqual(lines[3].strip(), "")

    def test_the_menu_as_json_is_the_extension_s(self):
        answer = json.loads(self.finder_sim("menu", "--json", *SELECT))
        self.assertEqual(answer["menu"], MenuBuilder(self.settings, REQUEST).menu())

    def test_the_kind_of_the_menu_reaches_the_extension(self):
        for number, kind in enumerate(("items", "container", "sidebar", "toolbar")):
            answer = json.loads(self.finder_sim("menu", "--json", "--kind", kind))
            self.assertIn(f"kind={number},", answer["unifiedLog"][-1]["message"])

    def test_several_items_are_selected_in_their_order(self):
        answer = json.loads(self.finder_sim(
            "menu", "--json", "--select", "/b", "--select", "/a", "--select", "/c"))
        item = next(item for _, item in actionable_items(answer["menu"]))
        self.assertEqual(item["representedObject"]["selectedPaths"], ["/b", "/a", "/c"])

    def test_paths_are_given_from_the_root_and_in_their_shortest_form(self):
        for select, target, expected in (
                ("a.txt", ".", ("{}/a.txt", "{}")),
                ("sub/../a.txt", "./sub/", ("{}/a.txt", "{}/sub")),
                ("sub//.", "..", ("{}/sub", "{}/..")),
                ("/", "/..//", ("/", "/"))):
            with self.subTest(select=select, target=target):
                answer = json.loads(self.finder_sim(
                    "menu", "--json", "--select", select, "--target", target))
                item = next(item for _, item in actionable_items(answer["menu"]))
                self.assertEqual(
                    (item["representedObject"]["selectedPaths"],
                     item["representedObject"]["targetedPath"]),
                    ([os.path.normpath(expected[0].format(os.getcwd()))],
                     os.path.normpath(expected[1].format(os.getcwd()))))

    def test_a_click_by_the_path_of_titles_queues_a_record(self):
        for delivery in ("intact", "finder"):
            output = self.finder_sim("click", "复制到", "复制到文件夹", "复制到项目", *SELECT,
                                     "--delivery", delivery)
            [record] = self.home.take_records()
            self.assertEqual((record["actionID"], record["destinationPath"]),
                             ("copyFilesToFolder", "/Volumes/Work/项目"))
            for shown in ("copyFilesToFolder", "app.ferrolin.Quorva.ActionQueued",
                          str(application_bundle())):
                self.assertIn(shown, output)

    def test_a_click_as_json_tells_the_record_and_the_events(self):
        answer = json.loads(self.finder_sim("click", "压缩为 ZIP", *SELECT, "--json"))
        self.assertEqual([event["event"] for event in answer["events"]],
                         ["notification", "openApplication"])
        [(name, record)] = answer["records"].items()
        self.assertEqual(name, self.home.record_files()[0].name)
        self.assertEqual(record, self.home.records()[0])

    def test_a_click_that_launches_shows_what_was_performed_and_leaves_nothing_running(self):
        answer = json.loads(self.finder_sim("click", "压缩为 ZIP", *SELECT, "--launch", "--json"))
        self.assertEqual([line["actionID"] for line in answer["performed"]], ["compressToZIP"])
        self.assertEqual([line["actionID"] for line in self.home.performed()], ["compressToZIP"])
        self.assertEqual(self.home.records(), [])
        self.assertEqual(self.containing_applications(), [])

    def test_a_launched_application_is_kept_when_asked_for_and_by_the_next_click(self):
        self.addCleanup(end_containing_application, application_bundle())
        self.finder_sim("click", "压缩为 ZIP", *SELECT, "--launch", "--keep-running")
        launched = self.containing_applications()
        self.assertEqual(len(launched), 1)
        self.finder_sim("click", "压缩为 ZIP", *SELECT, "--launch")
        self.assertEqual(self.containing_applications(), launched)
        until(lambda: len(self.home.performed()) == 2, "both records were performed")

    def test_an_application_that_does_not_perform_the_record_is_a_failure(self):
        (self.home.quorva / "Performed.jsonl").mkdir()
        error = self.refused("click", "压缩为 ZIP", *SELECT, "--launch", output=None)
        self.assertIn("finder-sim: waiting for Quorva", error)
        self.assertIn("finder-sim: Quorva did not perform the record", error)
        self.assertEqual([record["actionID"] for record in self.home.records()], ["compressToZIP"])

    def test_space_around_a_title_need_not_be_named(self):
        for title in ("Move to", "Move to "):
            self.finder_sim("click", title, "Move to Desktop", "--language", "en", *SELECT)
            [record] = self.home.take_records()
            self.assertEqual(record["actionID"], "moveFilesToDesktop")

    def test_space_around_a_title_is_not_shown(self):
        lines = self.finder_sim("menu", "--language", "en", *SELECT).splitlines()
        self.assertIn("  Move to ▸", lines)

    def test_an_entry_that_can_t_be_clicked_is_not_and_one_line_says_why(self):
        for arguments, reason in ((["压缩与解压缩", "nothing", *SELECT], "no such entry"),
                                  (["压缩为 ZIP"], "disabled"),
                                  (["压缩与解压缩", *SELECT], "submenu")):
            error = self.refused("click", *arguments)
            self.assertEqual(error.count("\n"), 1)
            self.assertIn(arguments[0], error)
            self.assertIn(reason, error)
        self.assertEqual(self.home.records(), [])

    def test_a_title_that_several_entries_have_is_not_guessed(self):
        self.home.write("CustomDestinations.plist", {
            "quickOpen": [{"id": "1", "name": "压缩为 ZIP", "path": "/1"}]})
        error = self.refused("click", "压缩为 ZIP", *SELECT)
        self.assertIn("1 打开 ▸ 压缩为 ZIP (/1); 2 压缩与解压缩 ▸ 压缩为 ZIP", error)
        self.assertEqual(error.count("\n"), 1)
        self.assertEqual(self.home.records(), [])
        self.finder_sim("click", "打开", "压缩为 ZIP", *SELECT)
        self.assertEqual(self.home.records()[0]["destinationPath"], "/1")

    def test_of_entries_that_share_all_titles_one_is_chosen_by_its_number(self):
        self.home.write("CustomDestinations.plist", {"quickOpen": [
            {"id": str(number), "name": "项目", "path": f"/{number}"} for number in range(12)]})
        click = ["click", "打开", "项目", *SELECT]
        for arguments in ([], ["--entry", "13"]):
            error = self.refused(*click, *arguments)
            self.assertEqual(error.count("\n"), 1)
            self.assertIn("--entry: 1 打开 ▸ 项目 (/0); 2 打开 ▸ 项目 (/1); ", error)
            self.assertLess(len(error), 400, "not all of many are listed")
        for number, delivery in ((1, "intact"), (12, "finder")):
            self.finder_sim(*click, "--entry", str(number), "--delivery", delivery)
            [record] = self.home.take_records()
            self.assertEqual(record["destinationPath"], f"/{number - 1}")

    def test_the_monitored_folders_are_listed(self):
        lines = self.finder_sim("directories").splitlines()
        self.assertIn(str(self.home.path / "Desktop"), lines)
        self.assertEqual(json.loads(self.finder_sim("directories", "--json"))["directories"], lines)

    def test_the_account_s_home_is_an_option(self):
        lines = self.finder_sim("directories", "--account-home", "/Users/grace").splitlines()
        self.assertIn("/Users/grace/Desktop", lines)

    def test_the_home_is_an_option(self):
        other = type(self.home)()
        self.finder_sim("click", "压缩为 ZIP", *SELECT, "--home", str(other.path))
        self.assertEqual((len(other.records()), len(self.home.records())), (1, 0))

    def test_the_language_is_an_option(self):
        self.finder_sim("click", "Compress to ZIP", *SELECT, "--language", "en")
        self.assertEqual(self.home.records()[0]["title"], "Compress to ZIP")

    def test_without_a_display_one_is_started_and_ended(self):
        self.programs_before = self.programs()
        self.finder_sim("click", "压缩为 ZIP", *SELECT, display=False)
        self.assertEqual(len(self.home.records()), 1)
        self.assert_nothing_is_left()

    def test_a_display_that_does_not_answer_is_replaced(self):
        self.finder_sim("click", "压缩为 ZIP", *SELECT, environment={"DISPLAY": ":4711"})
        self.assertEqual(len(self.home.records()), 1)

    def test_help_is_answered_with_status_0(self):
        for arguments in (["--help"], ["menu", "--help"], ["click", "--help"],
                          ["directories", "--help"], ["watch", "--help"], ["demo", "--help"]):
            output = self.finder_sim(*arguments)
            self.assertIn("usage", output)
        for name in ("menu", "click", "directories", "demo", "finder-sim COMMAND --help"):
            self.assertIn(name, self.finder_sim("--help"))

    def test_without_a_command_the_help_is_shown_as_an_error(self):
        self.assertIn(self.finder_sim("--help"), self.refused())

    def test_the_version_is_the_project_s(self):
        cmake = (Path(__file__).parents[2] / "CMakeLists.txt").read_text(encoding="utf-8")
        version = re.search(r"^  VERSION (\S+)", cmake, re.MULTILINE)[1]
        self.assertEqual(self.finder_sim("--version"), f"finder-sim {version}\n")

    def test_the_help_of_a_command_lists_its_options(self):
        for option in ("--select", "--target", "--kind", "--home", "--account-home", "--delivery",
                       "--launch", "--json"):
            self.assertIn(option, self.finder_sim("click", "--help"))

    def test_wrong_arguments_are_answered_with_one_line_and_another_status(self):
        for arguments in (["fly"], ["menu", "--kind", "desktop"], ["menu", "--fly"],
                          ["menu", "--layout", "flat"], ["click", "x", "--entry", "0"],
                          ["click", "x", "--delivery", "xpc"], ["menu", "--select"], ["click"],
                          ["menu", "--select", ""], ["menu", "--target", ""],
                          ["menu", "--language", "fr"], ["directories", "--account-home", ""],
                          ["menu", "--home", str(self.home.path / "none")]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.refused(*arguments).count("\n"), 1)

    def start_application(self, bundle, home):
        variables = program_environment(home, display=False)
        return self.start_program(["env", *(f"{name}={value}" for name, value in variables.items()),
                                   bundle / "Contents/MacOS/Quorva"])

    def test_an_application_of_another_home_or_build_keeps_nothing_from_launching(self):
        other_build = Run.new_folder() / "Quorva.app"
        shutil.copytree(application_bundle(), other_build)
        others = [self.start_application(application_bundle(), Home()),
                  self.start_application(other_build, self.home)]
        self.finder_sim("demo")
        answer = json.loads(self.finder_sim("click", "压缩为 ZIP", *SELECT, "--launch", "--json"))
        self.assertIn("openApplication", [event["event"] for event in answer["events"]])
        self.assertEqual([other.poll() for other in others], [None, None])

    def test_the_demonstration_shows_both_layouts_and_a_click_on_every_kind_of_entry(self):
        output = self.finder_sim("demo")
        for shown in ("copyFilesToFolder", "moveFilesToFolder", "quickOpenPath",
                      "openWithApplicationPath", "finderViewPreset__", "runShortcut__",
                      "runScript__", "app.ferrolin.Quorva.ActionQueued"):
            self.assertIn(shown, output)
        report = json.loads(self.finder_sim("demo", "--json"))
        self.assertEqual([menu["layout"] for menu in report["menus"]], ["collapsed", "expanded"])
        collapsed, expanded = (self.top_level(menu["menu"]) for menu in report["menus"])
        self.assertIn(("复制名称与路径", True), collapsed)
        self.assertNotIn(("复制完整路径", False), collapsed)
        self.assertIn(("复制完整路径", False), expanded)
        self.assertNotIn(("复制名称与路径", True), expanded)
        self.assertEqual(len(report["clicks"]), 8)

    def test_the_demonstration_shows_one_layout_and_another_language_when_asked_to(self):
        for language, (destination, file) in {
                "en": ("Copy to Projects", "Quarterly Report.txt"),
                "zh-Hans": ("复制到项目", "季度报告.txt"),
                "zh-Hant": ("拷貝到專案", "季度報告.txt")}.items():
            report = json.loads(self.finder_sim(
                "demo", "--json", "--language", language, "--layout", "collapsed"))
            self.assertEqual([menu["layout"] for menu in report["menus"]], ["collapsed"])
            shown = json.dumps(report["menus"], ensure_ascii=False)
            self.assertIn(destination, shown)
            if language == "en":
                self.assertEqual(re.findall("[\u4e00-\u9fff]+", shown), [])
            [record] = report["clicks"][0]["records"].values()
            self.assertEqual(os.path.basename(record["selectedPaths"][0]), file)
            self.assertEqual(len(report["clicks"]), 8)

    def test_the_other_layout_needs_no_settings_file(self):
        written = {path: path.read_bytes() for path in self.home.quorva.glob("*.plist")}
        for layout in ("collapsed", "expanded"):
            self.home.write(FEATURE_SETTINGS, samples.feature_settings(layout, grouped=True))
            expected = self.finder_sim("menu", *SELECT)
            other = {"collapsed": "expanded", "expanded": "collapsed"}[layout]
            self.home.write(FEATURE_SETTINGS, samples.feature_settings(other, grouped=True))
            self.assertEqual(self.finder_sim("menu", *SELECT, "--layout", layout), expected)
        self.home.write(FEATURE_SETTINGS, samples.feature_settings())
        self.assertEqual(
            {path: path.read_bytes() for path in self.home.quorva.glob("*.plist")}, written)
        home = Home()
        without = self.finder_sim("menu", *SELECT, "--home", home.path, "--layout", "expanded")
        self.assertEqual(list(home.path.iterdir()), [])
        home.write(FEATURE_SETTINGS, {"menuLayout": "expanded"})
        self.assertEqual(without, self.finder_sim("menu", *SELECT, "--home", home.path))

    def test_settings_that_are_no_property_list_can_t_be_given_another_layout(self):
        self.home.write_bytes(FEATURE_SETTINGS, b"<plist><dict>")
        for command in ("menu", "demo"):
            error = self.refused(command, "--home", self.home.path, "--layout", "expanded",
                                 output=None)
            self.assertIn(FEATURE_SETTINGS, error)
            self.assertEqual(error.count("\n"), 1)

    @staticmethod
    def top_level(menu):
        """The titles of a menu's features or entries, and whether they open a submenu."""
        items = menu["items"]
        if [item.get("title") for item in items] == ["Quorva"]:
            items = items[0]["submenu"]["items"]
        return [(item.get("title"), "submenu" in item) for item in items]

    def test_the_demonstration_leaves_neither_files_nor_processes(self):
        self.programs_before = self.programs()
        before = sorted(self.home.path.rglob("*"))
        self.finder_sim("demo", display=False)
        self.assertEqual(sorted(self.home.path.rglob("*")), before)
        self.assert_nothing_is_left()

    def test_a_home_that_can_t_be_copied_leaves_nothing(self):
        self.programs_before = self.programs()
        os.mkfifo(self.home.path / "pipe")
        self.assertIn(str(self.home.path), self.refused("demo", "--home", str(self.home.path)))
        self.assert_nothing_is_left()

    def test_an_option_that_a_command_would_ignore_is_refused(self):
        for arguments in (
                ["menu", "--delivery", "intact"], ["menu", "--launch"], ["menu", "--keep-running"],
                ["directories", "--select", "/a"], ["directories", "--target", "/"],
                ["directories", "--kind", "items"], ["directories", "--language", "en"],
                ["directories", "--delivery", "intact"], ["directories", "--launch"],
                ["directories", "--layout", "expanded"], ["menu", "--entry", "1"],
                ["click", "x", "--layout", "expanded"], ["watch", "--sandbox"], ["watch", "--json"],
                ["demo", "--launch"], ["demo", "--keep-running"],
                ["click", "压缩为 ZIP", *SELECT, "--keep-running"]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.refused(*arguments).count("\n"), 1)
        self.assertEqual(self.home.records(), [])

    def test_a_click_without_a_record_fails(self):
        self.home.queue.write_text("not a folder")
        error = self.refused("click", "压缩为 ZIP", *SELECT, output=None)
        self.assertEqual(error.count("\n"), 1)

    def test_a_record_in_the_folder_that_stands_in_for_the_queue_is_shown(self):
        if FALLBACK_QUEUE.exists() and FALLBACK_QUEUE.stat().st_uid != os.geteuid():
            self.skipTest(f"{FALLBACK_QUEUE} belongs to another user of this machine")
        home = Home()
        (home.path / "Library").write_text("not a folder")
        selected = str(home.path / "unlike any other")
        answer = json.loads(self.finder_sim(
            "click", "压缩为 ZIP", "--select", selected, "--json", "--home", str(home.path)))
        records = answer["records"]
        [own] = [name for name, record in records.items() if record["selectedPaths"] == [selected]]
        self.addCleanup(os.unlink, own)
        self.assertTrue(own.startswith(str(FALLBACK_QUEUE) + "/"), own)

    def test_an_output_that_is_lost_is_a_failure(self):
        for arguments in (["--help"], ["menu"], ["menu", "--json"], ["directories"], ["demo"],
                          ["click", "压缩为 ZIP", *SELECT]):
            with self.subTest(arguments=arguments, output="/dev/full"):
                with open("/dev/full", "wb") as full:
                    error = self.refused(*arguments, output=None, stdout=full)
                    self.assertEqual(error.count("\n"), 1)
            with self.subTest(arguments=arguments, output="closed"):
                error = self.refused(*arguments, preexec_fn=lambda: os.close(1))
                self.assertEqual(error.count("\n"), 1)
            with self.subTest(arguments=arguments, output="nobody reads it"):
                reader, writer = os.pipe()
                os.close(reader)
                with open(writer, "wb") as pipe:
                    self.assertNotEqual(
                        self.run_finder_sim(*arguments, stdout=pipe).returncode, 0)


# Each with what is shown in its place.
UNFIT_TO_SHOW = {
    "\x1b]0;title\x07": r"\u001b]0;title\u0007",
    "\x1b[2J": r"\u001b[2J",
    "line\r\nfeed\ttab": r"line\u000d\u000afeed\u0009tab",
    "\x7f\x85\x9b31m": r"\u007f\u0085\u009b31m",
    "\u202eexe.txt\u202c\u2066\u2069\u200f": r"\u202eexe.txt\u202c\u2066\u2069\u200f",
    "\u2028\u2029": r"\u2028\u2029",
}


class UnfitToShowTest(FinderSimTestCase):
    """What a terminal would act on reaches people only as text."""

    def setUp(self):
        super().setUp()
        self.home.write(CUSTOM_DESTINATIONS, {"quickOpen": [
            {"id": str(number), "name": name, "path": "/" + name}
            for number, name in enumerate(UNFIT_TO_SHOW)]}, BINARY)

    def check(self, shown):
        """That nothing in it is for a terminal."""
        for character in shown.replace("\n", ""):
            self.assertTrue(character.isprintable(), repr(character))

    def test_titles_of_a_menu(self):
        tree = self.finder_sim("menu", *SELECT)
        self.check(tree)
        for shown in UNFIT_TO_SHOW.values():
            self.assertIn(shown, tree)

    def test_titles_and_paths_of_a_menu_as_json_which_means_the_same(self):
        text = self.finder_sim("menu", "--json", *SELECT)
        self.check(text)
        titles = [item["title"] for _, item in actionable_items(json.loads(text)["menu"])]
        for title in UNFIT_TO_SHOW:
            self.assertIn(title, titles)

    def test_a_click(self):
        for title, shown in UNFIT_TO_SHOW.items():
            output = self.finder_sim(
                "click", "打开", title, "--select", "/" + title, "--target", "/x" + title)
            self.check(output)
            self.assertIn(f"▸ {shown}\n", output)
            [record] = self.home.take_records()
            self.assertEqual((record["title"], record["selectedPaths"]), (title, ["/" + title]))

    def test_the_monitored_folders(self):
        for name, shown in UNFIT_TO_SHOW.items():
            output = self.finder_sim("directories", "--account-home", "/Users/" + name)
            self.check(output)
            self.assertIn(f"/Users/{shown}/Desktop\n", output)

    def test_the_demonstration(self):
        for title, shown in UNFIT_TO_SHOW.items():
            output = self.finder_sim("demo", "--select", "/" + title, "--target", "/")
            self.check(output)
            self.assertIn("selected  /" + shown, output)

    def test_errors(self):
        for name, shown in UNFIT_TO_SHOW.items():
            for arguments in (["click", name + "?", *SELECT], ["menu", "--kind", name],
                              ["demo", "--home", "/" + name]):
                error = self.refused(*arguments)
                self.check(error)
                self.assertIn(shown, error)
        error = self.refused("menu", "--kind", os.fsdecode(b"\xff\x80"))
        self.assertIn(r"\ufffd\ufffd", error)

    def test_what_the_extension_writes_on_standard_error(self):
        for title, shown in UNFIT_TO_SHOW.items():
            result = self.run_finder_sim("click", "打开", title, *SELECT, "--verbose")
            self.check(result.stderr)
            self.assertIn("clicked sender=" + shown.replace(r"\u000a", "\n"), result.stderr)

    def test_a_reply_and_its_error(self):
        self.use_extension(
            "import json", "json.loads(input())",
            r"""print('{"id":1,"error":"\\u001b[2J\\u009b"}')""")
        self.assertIn(r"\u001b[2J\u009b", self.refused("menu"))
        self.use_extension(r"import sys; sys.stderr.write('\x1b[2J\rlast\nwords')")
        error = self.refused("menu")
        self.check(error)
        self.assertIn("\\u001b[2J\\u000dlast\nwords", error)


MENU = '{"title":"","items":[%s]}'
ITEM = ('{"title":"压缩为 ZIP","enabled":true,"action":"a:","target":"T","identifier":null,"tag":0,'
        '"keyEquivalent":"","representedObject":null%s}')


class OddResponseTest(FinderSimTestCase):
    """An extension that does not keep to the protocol is an error in one line."""

    ANY = [b"", b"nonsense", b"\xff", b"null", b"1", b"[]", b'"text"', b"{}", b'{"id":2}',
           b'{"id":"1"}', b'{"id":1,"error":5}', b'{"id":1', b"[" * 100_000,
           b'{"id":1,"menu":' + b"[" * 600 + b"]" * 600 + b"}"]

    def respond(self, *lines):
        self.use_extension(
            "import sys",
            f"for line in {lines!r}:",
            "    sys.stdin.readline()",
            "    sys.stdout.buffer.write(line + b'\\n')",
            "    sys.stdout.flush()",
            "sys.stdin.read()")

    def check(self, *arguments):
        error = self.refused(*arguments)
        self.assertEqual(error.count("\n"), 1, error)

    def test_to_any_request(self):
        for line in self.ANY:
            with self.subTest(line=line[:60]):
                self.respond(line)
                for arguments in (["menu"], ["menu", "--json"], ["directories"], ["demo", "--json"],
                                  ["click", "x"]):
                    self.check(*arguments)

    def test_to_a_request_for_the_menu(self):
        item = ITEM % ""
        for menu in ("5", '"text"', "[]", "{}", '{"items":5}', MENU % "5", MENU % "{}",
                     MENU % item.replace('"压缩为 ZIP"', "5"), MENU % item.replace("true", "1"),
                     MENU % item.replace('"action"', '"activity"'),
                     MENU % (ITEM % ',"submenu":5'), MENU % (ITEM % ',"submenu":{}')):
            with self.subTest(menu=menu):
                self.respond(f'{{"id":1,"menu":{menu}}}'.encode())
                for arguments in (["menu"], ["click", "压缩为 ZIP"], ["demo", "--json"]):
                    self.check(*arguments)

    def test_to_a_request_for_the_folders(self):
        for directories in ("5", "[5]", "{}", "null"):
            with self.subTest(directories=directories):
                self.respond(f'{{"id":1,"directories":{directories}}}'.encode())
                self.check("directories")

    def test_to_a_click(self):
        menu = f'{{"id":1,"menu":{MENU % (ITEM % "")}}}'.encode()
        for events in ("5", '"x"', "[5]", "[{}]", '[{"event":5}]', '[{"event":"notification"}]',
                       '[{"event":"notification","name":5,"userInfo":null}]',
                       '[{"event":"openApplication"}]',
                       '[{"event":"openApplication","path":5,"activates":false}]',
                       '[{"event":"openApplication","path":"","activates":5}]'):
            with self.subTest(events=events):
                self.respond(menu, f'{{"id":2,"events":{events}}}'.encode())
                self.check("click", "压缩为 ZIP")
        self.respond(menu, b'{"id":2}')
        self.check("click", "压缩为 ZIP")


PR_CAPBSET_DROP, CAP_SETPCAP, CAP_SYS_ADMIN = 24, 8, 21


class SandboxTest(FinderSimTestCase):
    """The extension lives as in a Mac's sandbox."""

    def setUp(self):
        super().setUp()
        self.container = (self.home.path / "Library" / "Containers"
                          / "app.ferrolin.Quorva.FinderExtension" / "Data")

    def outcomes(self, *operations, within=()):
        """What the extension meets when it tries these in the sandbox: names of errors, or None.
        `within` is a command that runs finder-sim."""
        self.require_namespaces()
        self.use_extension(
            "import errno, json, os, pathlib",
            "def outcome(operation):",
            "    try: eval(operation)",
            "    except OSError as error: return errno.errorcode[error.errno]",
            f"outcomes = [outcome(operation) for operation in {operations!r}]",
            "input()",
            "print(json.dumps({'id': 1, 'menu': None, 'outcomes': outcomes}))")
        command = [*within, self.finder_sim_program]
        self.finder_sim_program = command.pop(0)
        output = self.finder_sim(*command, "menu", "--sandbox", "--json")
        return json.loads(output)["outcomes"]

    def test_the_extension_s_home_is_laid_out_like_a_container(self):
        self.require_namespaces()
        lines = self.finder_sim("directories", "--sandbox").splitlines()
        self.assertIn(str(self.container), lines)
        for name in ("Desktop", "Downloads", "Movies", "Music", "Pictures"):
            self.assertEqual((self.container / name).readlink(), self.home.path / name)
        for name in ("Documents", "Library/Application Support/Quorva", "tmp"):
            self.assertFalse((self.container / name).is_symlink())
            self.assertTrue((self.container / name).is_dir())

    def test_links_lead_to_the_home_of_the_account(self):
        self.require_namespaces()
        account_home = Run.new_folder()
        (account_home / "Desktop").mkdir()
        lines = self.finder_sim(
            "directories", "--sandbox", "--account-home", account_home).splitlines()
        self.assertEqual((self.container / "Desktop").readlink(), account_home / "Desktop")
        self.assertIn(str(account_home / "Desktop"), lines)

    def test_settings_are_read_and_records_queued_in_the_container(self):
        self.require_namespaces()
        self.refused("click", "打开", "/1", *SELECT, "--sandbox")
        Home(self.container).write("CustomDestinations.plist", {
            "quickOpen": [{"id": "1", "name": "/1", "path": "/1"}]})
        self.finder_sim("click", "打开", "/1", *SELECT, "--sandbox", "--launch")
        self.assertEqual([line["title"] for line in Home(self.container).performed()], ["/1"])
        self.assertEqual(self.home.performed(), [])

    def test_a_home_that_was_used_with_it_can_be_used_without(self):
        self.require_namespaces()
        self.finder_sim("menu", "--sandbox")
        self.finder_sim("click", "压缩为 ZIP", *SELECT, "--launch")
        self.assertEqual([line["actionID"] for line in self.home.performed()], ["compressToZIP"])

    def test_the_account_s_home_can_t_be_listed_or_changed(self):
        home = self.home.path
        (home / "secret.txt").touch()
        (home / "Downloads").mkdir()
        self.assertEqual(
            self.outcomes(f"os.listdir({str(home)!r})",
                          f"os.listdir({str(self.container.parent)!r})",
                          f"open({str(home / 'secret.txt')!r})",
                          f"os.listdir({str(home / 'Downloads')!r})",
                          f"open({str(home / 'new.txt')!r}, 'w')", "os.listdir('..')"),
            ["EACCES", "EACCES", "ENOENT", "ENOENT", "EROFS", "EACCES"])

    def test_what_the_entitlements_open_can_be_read_and_changed(self):
        icloud = self.home.path / "Library" / "Mobile Documents" / "com~apple~CloudDocs"
        folders = [folder / name for folder in (self.home.path, icloud)
                   for name in ("Desktop", "Documents")]
        for folder in folders:
            folder.mkdir(parents=True)
        self.assertEqual(
            self.outcomes(*(f"pathlib.Path({str(folder / 'new')!r}).touch()" for folder in folders),
                          "os.listdir('Desktop')", "open('tmp/new', 'w')",
                          "open(os.environ['TMPDIR'] + '/new', 'w')",
                          "open(os.environ['HOME'] + '/Documents/new', 'w')"), [None] * 8)
        for folder in folders:
            self.assertTrue((folder / "new").exists())

    def test_the_temporary_folder_of_the_system_can_be_read_and_not_changed(self):
        self.assertEqual(self.outcomes("os.listdir('/tmp')", "open('/tmp/new', 'w')"),
                         [None, "EROFS"])

    def test_what_is_mounted_below_the_temporary_folder_can_t_be_changed_either(self):
        mounted = tempfile.mkdtemp(dir="/tmp")
        self.addCleanup(os.rmdir, mounted)
        self.assertEqual(
            self.outcomes(f"open('{mounted}/new', 'w')", within=[
                "unshare", "--map-root-user", "--mount", "sh", "-ec",
                f"mount -t tmpfs tmpfs {mounted}; touch {mounted}/old; exec \"$0\" \"$@\""]),
            ["EROFS"])

    def test_the_demonstration_runs_in_it_unless_told_otherwise(self):
        self.require_namespaces()
        for arguments, sandbox in (([], "enforced"), (["--no-sandbox"], "none")):
            report = json.loads(self.finder_sim("demo", "--json", *arguments))
            self.assertEqual(report["sandbox"], sandbox)
            self.assertEqual(len(report["clicks"]), 8)

    def test_the_demonstration_takes_a_home_with_a_container(self):
        self.require_namespaces()
        self.finder_sim("menu", "--sandbox")
        shutil.copytree(self.home.quorva, self.container / "Library/Application Support/Quorva",
                        dirs_exist_ok=True)
        self.finder_sim("demo", "--home", self.home.path)

    @unittest.skipUnless(os.geteuid() == 0, "nothing keeps a user from a namespace but the system")
    def test_where_it_can_t_be_enforced_the_demonstration_says_so_and_other_commands_fail(self):
        for capability, call in ((CAP_SYS_ADMIN, "unshare"), (CAP_SETPCAP, "prctl")):
            def refuse():
                ctypes.CDLL(None).prctl(PR_CAPBSET_DROP, capability, 0, 0, 0)

            output = self.finder_sim("demo", preexec_fn=refuse)
            self.assertIn(f"laid out, but not enforced: {call}: ", output)
            error = self.refused("menu", "--sandbox", preexec_fn=refuse)
            self.assertEqual(error.count("\n"), 1)

    @unittest.skipUnless(os.geteuid() == 0, "a user has all capabilities in an own namespace")
    def test_where_only_the_last_step_fails_nothing_is_enforced(self):
        marker = Path(tempfile.mkdtemp(dir="/tmp"), "marker")
        self.addCleanup(shutil.rmtree, marker.parent)
        self.use_extension(
            "import pathlib", f"pathlib.Path({str(marker)!r}).touch()", "for number in 1, 2:",
            "    input()", """    print('{"id":%d,"menu":null}' % number, flush=True)""")
        output = self.finder_sim("demo", preexec_fn=lambda: ctypes.CDLL(None).prctl(
            PR_CAPBSET_DROP, CAP_SETPCAP, 0, 0, 0))
        self.assertIn("not enforced: prctl: ", output)
        self.assertTrue(marker.exists())


INTERRUPTS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT)


class InterruptTest(FinderSimTestCase):
    """An interrupt leaves nothing behind, whatever was going on."""

    # How often each command is interrupted, each time a little later.
    INTERRUPTIONS = int(os.environ.get("QUORVA_INTERRUPTIONS", "3"))

    COMMANDS = [
        ["menu", *SELECT],
        ["directories"],
        ["click", "压缩为 ZIP", *SELECT],
        ["click", "压缩为 ZIP", *SELECT, "--launch"],
        ["click", "压缩为 ZIP", *SELECT, "--launch", "--keep-running"],
        ["click", "压缩为 ZIP", *SELECT, "--launch", "--sandbox"],
        ["demo"],
    ]

    def setUp(self):
        super().setUp()
        self.programs_before = self.programs()

    def test_at_any_moment_of_any_command(self):
        generator = random.Random(20240229)
        interrupted = 0
        for command in self.COMMANDS:
            begin = time.monotonic()
            self.run_finder_sim(*command, display=False)
            duration = time.monotonic() - begin
            self.addCleanup(end_containing_application, application_bundle())
            end_containing_application(application_bundle())
            for _ in range(self.INTERRUPTIONS):
                number = generator.choice(INTERRUPTS)
                process = self.start_finder_sim(*command, display=generator.random() < 0.5)
                # A moment of the command, which the rest of the test does not depend on.
                time.sleep(generator.uniform(0, duration))
                process.send_signal(number)
                status = process.wait(TIME_LIMIT)
                with self.subTest(command=command, signal=number.name, status=status):
                    self.assertIn(status, (0, -number, 128 + number))
                    if status != 0:
                        interrupted += 1
                        self.assert_nothing_is_left()
                    end_containing_application(application_bundle())
        self.assertGreater(interrupted, 0)

    def test_a_launched_application_ends_with_an_interrupted_demonstration(self):
        demonstration = self.start_finder_sim("demo")
        until(self.containing_applications, "an application was launched")
        demonstration.send_signal(signal.SIGINT)
        self.assertEqual(demonstration.wait(TIME_LIMIT), 128 + signal.SIGINT)
        self.assert_nothing_is_left()

    def test_while_nobody_reads_the_output(self):
        reader, writer = os.pipe()
        self.addCleanup(os.close, reader)
        os.set_blocking(writer, False)
        with contextlib.suppress(BlockingIOError):
            while os.write(writer, bytes(4096)):
                pass
        os.set_blocking(writer, True)
        demonstration = self.start_finder_sim("demo", stdout=writer)
        os.close(writer)
        until(lambda: "QuorvaFinderExten" in "".join(self.programs().values()), "it started")
        demonstration.send_signal(signal.SIGTERM)
        self.assertEqual(demonstration.wait(TIME_LIMIT), 128 + signal.SIGTERM)
        self.assert_nothing_is_left()

    def test_while_the_extension_does_not_respond(self):
        started = Run.new_folder() / "started"
        for lines in (["os.kill(os.getpid(), signal.SIGSTOP)"],
                      ["[signal.signal(number, signal.SIG_IGN) for number in (1, 2, 3, 15)]",
                       "pathlib.Path(%r).touch()" % str(started), "while True: time.sleep(1000)"]):
            with self.subTest(lines=lines):
                self.use_extension("import os, pathlib, signal, time",
                                   "pathlib.Path(%r).touch()" % str(started), *lines)
                # What is in a sandbox can't say that it has started.
                process = self.start_finder_sim("demo", "--no-sandbox")
                until(started.exists, "the extension started")
                process.send_signal(signal.SIGINT)
                self.assertEqual(process.wait(TIME_LIMIT), 128 + signal.SIGINT)
                self.assert_nothing_is_left()
                started.unlink()

    def test_an_extension_that_does_not_end_with_its_input_is_ended(self):
        self.use_extension("import signal, time", "signal.signal(signal.SIGTERM, signal.SIG_IGN)",
                           "input()", """print('{"id":1,"menu":null}', flush=True)""",
                           "while True: time.sleep(1000)")
        self.finder_sim("menu")
        self.assert_nothing_is_left()

    def test_a_signal_that_its_parent_has_it_ignore_is_ignored(self):
        process = subprocess.Popen(
            [self.finder_sim_program, "demo"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            env=program_environment(self.home),
            preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        until(self.containing_applications, "an application was launched")
        process.send_signal(signal.SIGHUP)
        self.assertEqual(process.wait(TIME_LIMIT), 0)


if __name__ == "__main__":
    unittest.main()
