"""The Finder for the command line."""

import contextlib
import json
import os
import shutil
import signal
import subprocess
import unittest

import samples
from menu_model import MenuBuilder, Request, actionable_items
from quorva_process import (
    TIME_LIMIT, EndToEndTestCase, Run, application_bundle, build_folder, end_containing_application,
    program_environment, until)

SELECT = ["--select", "/Volumes/Work/a.txt", "--target", "/Volumes/Work"]
REQUEST = Request(["/Volumes/Work/a.txt"], "/Volumes/Work")


class FinderSimTest(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.settings = self.home.settings(
            feature_settings=samples.feature_settings(), **samples.user_data())
        self.home.write_settings(self.settings)

    def run_finder_sim(self, *arguments, display=True, environment=None):
        return subprocess.run(
            [build_folder() / "finder-sim", *arguments], stdin=subprocess.DEVNULL,
            capture_output=True, encoding="utf-8", timeout=TIME_LIMIT,
            env=program_environment(self.home, display=display) | (environment or {}))

    def finder_sim(self, *arguments, **options):
        """Standard output of a call that must succeed."""
        result = self.run_finder_sim(*arguments, **options)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout

    def refused(self, *arguments):
        """Standard error of a call that must fail."""
        result = self.run_finder_sim(*arguments)
        self.assertNotEqual(result.returncode, 0)
        self.assertEqual(result.stdout, "")
        self.assertTrue(result.stderr.startswith("finder-sim: "), result.stderr)
        return result.stderr

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

    def containing_applications(self):
        """The processes of this run that are the containing application."""
        executable = str(application_bundle() / "Contents" / "MacOS" / "Quorva")
        return [process for process in Run.processes()
                if os.path.realpath(f"/proc/{process}/exe") == executable]

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

    def test_an_unknown_title_lists_what_there_is_to_click(self):
        error = self.refused("click", "压缩与解压缩", "nothing", *SELECT)
        self.assertIn("nothing", error.splitlines()[0])
        for _, item in actionable_items(MenuBuilder(self.settings, REQUEST).menu()):
            self.assertIn(item["title"], error)
        self.assertEqual(self.home.records(), [])

    def test_an_entry_that_is_disabled_is_not_clicked(self):
        self.refused("click", "压缩为 ZIP")
        self.assertEqual(self.home.records(), [])

    def test_a_title_that_several_entries_have_is_not_guessed(self):
        self.home.write("CustomDestinations.plist", {
            "quickOpen": [{"id": "1", "name": "压缩为 ZIP", "path": "/1"}]})
        self.refused("click", "压缩为 ZIP", *SELECT)
        self.assertEqual(self.home.records(), [])
        self.finder_sim("click", "打开", "压缩为 ZIP", *SELECT)
        self.assertEqual(self.home.records()[0]["destinationPath"], "/1")

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
        before = Run.processes()
        watched = subprocess.Popen(
            [build_folder() / "finder-sim", "demo"], stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, env=program_environment(self.home, display=False))
        self.addCleanup(watched.wait)
        self.addCleanup(watched.kill)
        displays = until(lambda: self.displays(before), "a display was started")
        self.assertEqual(len(displays), 1)
        self.assertEqual(watched.wait(TIME_LIMIT), 0)
        until(lambda: not self.displays(before), "the display ended")
        self.finder_sim("click", "压缩为 ZIP", *SELECT, display=False)
        self.assertEqual(len(self.home.records()), 1)
        until(lambda: not self.displays(before), "the display ended")

    @staticmethod
    def displays(before):
        """The virtual displays among the processes of this run that were not there before."""
        found = []
        for process in set(Run.processes()) - set(before):
            with contextlib.suppress(OSError):
                if os.path.basename(os.readlink(f"/proc/{process}/exe")) == "Xvfb":
                    found.append(process)
        return found

    def test_a_display_that_does_not_answer_is_replaced(self):
        self.finder_sim("click", "压缩为 ZIP", *SELECT, environment={"DISPLAY": ":4711"})
        self.assertEqual(len(self.home.records()), 1)

    def test_help_is_answered_with_status_0(self):
        for arguments in (["--help"], ["menu", "--help"], ["click", "--help"],
                          ["directories", "--help"], ["demo", "--help"]):
            output = self.finder_sim(*arguments)
            self.assertIn("Usage", output)
        for name in ("menu", "click", "directories", "demo", "finder-sim COMMAND --help"):
            self.assertIn(name, self.finder_sim("--help"))
        for option in ("--select", "--target", "--kind", "--home", "--account-home", "--delivery",
                       "--launch", "--json"):
            self.assertIn(option, self.finder_sim("click", "--help"))

    def test_wrong_arguments_are_answered_with_one_line_and_another_status(self):
        for arguments in ([], ["fly"], ["menu", "--kind", "desktop"], ["menu", "--fly"],
                          ["click", "x", "--delivery", "xpc"], ["menu", "--select"], ["click"],
                          ["menu", "--select", ""], ["menu", "--target", ""],
                          ["menu", "--language", "fr"], ["directories", "--account-home", ""],
                          ["menu", "--home", str(self.home.path / "none")]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.refused(*arguments).count("\n"), 1)

    def test_only_an_application_of_this_user_keeps_the_demonstration_from_launching_its_own(self):
        folder = Run.new_folder()
        program = folder / "Quorva.app" / "Contents" / "MacOS" / "Quorva"
        program.parent.mkdir(parents=True)
        shutil.copy("/bin/sleep", program)
        own = self.start_program([program, "1000"])
        self.assertIn(f"process {own.pid}", self.refused("demo"))
        own.kill()
        own.wait()
        if os.geteuid() == 0:  # Only root sees the programs of others, and can start one.
            Run.folder().chmod(0o711)
            folder.chmod(0o711)
            other = self.start_program(
                ["setpriv", "--reuid", "65534", "--clear-groups", "--", program, "1000"])
            until(lambda: os.readlink(f"/proc/{other.pid}/exe") == str(program), "it started")
        self.finder_sim("demo")

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

    @staticmethod
    def top_level(menu):
        """The titles of a menu's features or entries, and whether they open a submenu."""
        items = menu["items"]
        if [item.get("title") for item in items] == ["Quorva"]:
            items = items[0]["submenu"]["items"]
        return [(item.get("title"), "submenu" in item) for item in items]

    def test_the_demonstration_leaves_neither_files_nor_processes(self):
        def left():
            files = list(Run.folder().glob("finder-sim-demo.*"))
            return sorted(self.home.path.rglob("*")), files, sorted(Run.processes())

        self.finder_sim("click", "压缩为 ZIP", *SELECT)  # Starts the run's notification daemon.
        before = left()
        self.assertEqual(before[1], [])
        self.finder_sim("demo")
        self.assertEqual(left(), before)

    def test_the_demonstration_leaves_nothing_when_it_is_interrupted(self):
        self.finder_sim("click", "压缩为 ZIP", *SELECT)
        before = sorted(Run.processes())
        demonstration = subprocess.Popen(
            [build_folder() / "finder-sim", "demo"], stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, env=program_environment(self.home))
        self.addCleanup(demonstration.wait)
        self.addCleanup(demonstration.kill)
        until(self.containing_applications, "an application was launched")
        demonstration.send_signal(signal.SIGINT)
        self.assertEqual(demonstration.wait(TIME_LIMIT), 128 + signal.SIGINT)
        until(lambda: sorted(Run.processes()) == before, "all processes ended")
        self.assertEqual(list(Run.folder().glob("finder-sim-demo.*")), [])


if __name__ == "__main__":
    unittest.main()
