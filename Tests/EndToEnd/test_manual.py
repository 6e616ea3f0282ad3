"""The manual pages and the completions that the build makes of the programs' options."""

import contextlib
import os
import pty
import re
import select
import subprocess
import time
import unittest

from quorva_process import TIME_LIMIT, Run, build_folder

SHARE = build_folder() / "share"
PROGRAMS = sorted(page.stem for page in (SHARE / "man" / "man1").iterdir())


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, encoding="utf-8",
                          timeout=TIME_LIMIT).stdout


def commands(program):
    """The commands of a program as its help lists them."""
    _, _, text = output(build_folder() / program, "--help").partition("\ncommands:\n")
    return re.findall(r"^  (\w+) +", text, re.MULTILINE)


def options():
    """The options of every program and command by how it is called, as its help has them."""
    for program in PROGRAMS:
        for command in commands(program) or [""]:
            words = [program, *filter(None, [command])]
            text = output(build_folder() / program, *words[1:], "--help")
            found = re.findall(r"^  (?:-\w, ?)?(--[\w-]+)(?:, (--[\w-]+))?", text, re.MULTILINE)
            yield words, {option for pair in found for option in pair if option}


class ManualPageTest(unittest.TestCase):

    def page(self, program):
        path = SHARE / "man" / "man1" / f"{program}.1"
        self.assertEqual(output("mandoc", "-T", "lint", "-W", "error", path), "")
        return re.sub(".\b", "", output("mandoc", "-T", "utf8", path))

    def test_every_command_and_option_has_an_entry(self):
        pages = {program: self.page(program) for program in PROGRAMS}
        self.assertIn("finder-sim", pages)
        for (program, *command), expected in options():
            [section] = re.findall(
                rf"^{'COMMAND ' + command[0].upper() if command else 'OPTIONS'}\n(.*?)^\S",
                pages[program], re.MULTILINE | re.DOTALL)
            entries = set(re.findall(r"^ {7}(?:-\w, )?(--[\w-]+)", section, re.MULTILINE))
            self.assertGreater(len(expected), 2)
            self.assertEqual(entries, expected, (program, command))

    def test_each_names_the_version_of_its_program(self):
        for program in PROGRAMS:
            version = output(build_folder() / program, "--version").split()[-1]
            self.assertIn(f"Quorva {version}", self.page(program))


class BashCompletionTest(unittest.TestCase):

    def completions(self, *words):
        """What the last word is completed to."""
        script = ('source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); '
                  f"_{words[0].replace('-', '_')}; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
        file = SHARE / "bash-completion" / "completions" / words[0]
        return output("bash", "-uc", script, file, *words).split("\n")[:-1]

    def test_commands(self):
        self.assertEqual(self.completions("finder-sim", ""),
                         [*commands("finder-sim"), "--help", "--version"])
        self.assertEqual(self.completions("finder-sim", "d"), ["directories", "demo"])

    def test_the_options_of_each_command(self):
        for words, expected in options():
            self.assertEqual(set(self.completions(*words, "--")), expected, words)
            self.assertEqual(set(self.completions(*words, "--json", "--ho")), {"--home"}, words)

    def test_values_behind_a_space_and_an_equals_sign(self):
        for words in (["--kind", "s"], ["--kind", "=", "s"]):
            self.assertEqual(self.completions("finder-sim", "menu", *words), ["sidebar"])
        self.assertEqual(self.completions("finder-sim", "menu", "--layout", "="),
                         ["collapsed", "expanded"])
        self.assertEqual(self.completions("finder-sim", "click", "--entry", ""), [""])

    def test_files_and_folders(self):
        folder = Run.new_folder()
        (folder / "a folder").mkdir()
        (folder / "a file").touch()
        self.assertEqual(self.completions("finder-sim", "menu", "--home", f"{folder}/a"),
                         [f"{folder}/a folder"])
        self.assertEqual(sorted(self.completions("finder-sim", "menu", "--select", f"{folder}/a")),
                         [f"{folder}/a file", f"{folder}/a folder"])


class ZshCompletionTest(unittest.TestCase):

    def completed(self, *lines):
        """The words of each line as an interactive shell has completed them at its end."""
        process, terminal = pty.fork()
        if process == 0:
            os.execvpe("zsh", ["zsh", "-f", "-i"], {
                "PATH": os.environ["PATH"], "TERM": "xterm", "LANG": "C.UTF-8",
                "HOME": str(Run.new_folder())})
        functions = "; ".join(f"{program}() {{ print -rl -- \"RAN\": $@ \"END\"; }}"
                              for program in PROGRAMS)
        os.write(terminal, (
            f"fpath=({SHARE}/zsh/site-functions $fpath); autoload -Uz compinit; compinit -u -D; "
            f"{functions}\n" + "".join(line + "\t\n" for line in lines) + "exit\n").encode())
        text, deadline = b"", time.monotonic() + TIME_LIMIT
        # The end of the last process at the terminal is an error there.
        with contextlib.suppress(OSError):
            while time.monotonic() < deadline:
                if select.select([terminal], [], [], 1)[0]:
                    text += os.read(terminal, 1 << 16)
        os.close(terminal)
        os.waitpid(process, 0)
        found = re.findall("\nRAN:\n(.*?)\nEND\n", text.decode().replace("\r\n", "\n"), re.DOTALL)
        self.assertEqual(len(found), len(lines), text.decode())
        return [words.split() for words in found]

    def test_each_is_free_of_errors(self):
        for program in PROGRAMS:
            output("zsh", "-n", SHARE / "zsh" / "site-functions" / f"_{program}")

    def test_commands_options_values_and_folders_are_completed(self):
        folder = Run.new_folder()
        (folder / "somewhere").mkdir()
        (folder / "some file").touch()
        self.assertEqual(
            self.completed("finder-sim dir", "finder-sim menu --lay", "finder-sim menu --kind si",
                           "finder-sim demo --delivery fi", "finder-sim click 新建 --ent",
                           f"finder-sim watch --home {folder}/so", "finder-sim watch --js",
                           *(f"{program} --vers" for program in PROGRAMS)),
            [["directories"], ["menu", "--layout"], ["menu", "--kind", "sidebar"],
             ["demo", "--delivery", "finder"], ["click", "新建", "--entry"],
             ["watch", "--home", f"{folder}/somewhere"], ["watch", "--js"],
             *(["--version"] for _ in PROGRAMS)])


if __name__ == "__main__":
    unittest.main()
