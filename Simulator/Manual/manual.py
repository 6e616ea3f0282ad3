#!/usr/bin/python3
"""Writes the manual pages of programs and their completions for bash and zsh, from what the
programs themselves say of their options:

    manual.py OUTPUT FINDER_SIM [PROGRAM...]

FINDER_SIM is asked for its parsers. Any other program is asked for its `--help`, in which each
option has a line that begins with two spaces and a dash: "  -h,--help   What it does". Below OUTPUT
there are then "man/man1", "bash-completion/completions" and "zsh/site-functions", where the
programs that read them look below a prefix's "share".
"""

import argparse
import re
import runpy
import shlex
import subprocess
import sys
import textwrap
from collections import namedtuple
from pathlib import Path

# `commands` are those of a program that has some, by name; else there is one without a name.
Program = namedtuple("Program", "name version summary description commands")
Command = namedtuple("Command", "summary arguments options")
# `values` are those that it takes, if it takes only some; `metavar` is empty where it takes none.
Option = namedtuple("Option", "names metavar values help repeats")

FOLDERS, FILES = ("DIR",), ("PATH", "FILE", "OUT")

OPTION_LINE = re.compile(r"  (?P<names>-[\w-]+(?:, ?-[\w-]+)*)(?:[ =](?P<metavar>[A-Z]\S*))?"
                         r"(?:(?:  +|\n +)(?P<help>\S.*))?")


def options_of_parser(parser):
    positional, options = [], []
    for action in parser._actions:
        values = getattr(action.type, "values", ())
        metavar = "" if action.nargs == 0 else action.metavar or action.dest.upper()
        option = Option(action.option_strings, metavar, values, action.help,
                        action.nargs == "+" or isinstance(action, argparse._AppendAction))
        # What is switched on and off has two names that are no synonyms.
        if any(name.startswith("--no-") for name in option.names):
            on, off = option.names
            options += [option._replace(names=[on]),
                        option._replace(names=[off], help=f"Do without {on}")]
        else:
            (options if option.names else positional).append(option)
    return positional, options


def finder_sim(path):
    """The program `path`, an archive of Python modules."""
    module = runpy.run_path(str(path), run_name="finder_sim")
    name, summary = module["__doc__"].strip().rstrip(".").split(": ", 1)
    commands = {command: Command(text, *options_of_parser(module["command_parser"](command)))
                for command, text in module["COMMANDS"].items()}
    text = module["HELP"].split("\n\n", 1)[1].rsplit("\n\n", 1)[0]
    return Program(name, module["VERSION"], summary, f"{text}\n{module['FOOTER']}", commands)


def other_program(path):
    def output(option):
        return subprocess.run([path, option], check=True, capture_output=True,
                              encoding="utf-8").stdout

    help_text = output("--help")
    options = []
    for line in re.sub(r"\n {8,}(?=\S)", " ", help_text).splitlines():
        found = OPTION_LINE.fullmatch(line)
        if found:
            options.append(Option(re.split(", ?", found["names"]), found["metavar"] or "", (),
                                  found["help"] or "", False))
    paragraphs = re.sub(r"^Usage:.*\n", "", help_text, flags=re.MULTILINE).split("\n\n")
    description = "\n\n".join(text for text in paragraphs if not text.startswith("Options:"))
    summary = " ".join(re.split(r"[.:]\s", description)[0].split())
    return Program(path.name, output("--version").split()[-1], summary, description,
                   {"": Command(summary, [], options)})


def roff(text):
    """`text` as it may stand in a manual page."""
    text = text.replace("\\", r"\e").replace("-", r"\-")
    return re.sub(r"^(?=[.'])", r"\\&", text, flags=re.MULTILINE)


def prose(text):
    """The words of `text` in lines, with a full stop."""
    text = " ".join((text or "").split()).rstrip(".") + "."
    return roff(textwrap.fill(text, 72, break_long_words=False, break_on_hyphens=False))


def manual_page(program):
    title = roff(program.name)
    lines = [f'.TH {title.upper()} 1 "" "Quorva {program.version}"', ".SH NAME",
             rf"{title} \- {roff(program.summary)}", ".SH SYNOPSIS"]
    for name in program.commands:
        lines += [f".B {' '.join(filter(None, (title, name)))}", "[option ...]"]
        lines += [argument.metavar + (" ..." if argument.repeats else "")
                  for argument in program.commands[name].arguments]
        lines.append(".br")
    lines[-1:] = [".SH DESCRIPTION"]
    for paragraph in program.description.strip("\n").split("\n\n"):
        # What is indented are examples.
        lines += ([".nf", roff(paragraph), ".fi"] if paragraph.startswith("  ")
                  else [prose(paragraph)]) + [".PP"]
    lines.pop()
    for name, command in program.commands.items():
        lines += [f".SH COMMAND {roff(name.upper())}", prose(command.summary)] if name else [
            ".SH OPTIONS"]
        for option in command.arguments + command.options:
            names = ", ".join(rf"\fB{roff(part)}\fR" for part in option.names)
            metavar = rf"\fI{roff(option.metavar)}\fR" if option.metavar else ""
            lines += [".TP", " ".join(filter(None, (names, metavar))), prose(option.help)]
    return "\n".join(lines) + "\n"


def function_name(program):
    return "_" + program.name.replace("-", "_")


def bash_completion(program):
    """A function that completes the word at the cursor by the command and the word before it."""
    cases = []
    for name, command in program.commands.items():
        for option in command.options:
            if option.metavar:
                action = (f"words={shlex.quote(' '.join(option.values))}" if option.values else
                          "kind=directory" if option.metavar in FOLDERS else
                          "kind=file" if option.metavar in FILES else "return")
                pattern = "|".join(f"{name}:{part}" for part in option.names)
                cases.append(f"        {pattern}) {action} ;;")
        words = " ".join(part for option in command.options for part in option.names
                         if part.startswith("--"))
        if any(argument.metavar in FILES for argument in command.arguments):
            words = f"[[ $word == -* ]] && words={shlex.quote(words)} || kind=file"
        else:
            words = f"words={shlex.quote(words)}"
        cases.append(f"        {name}:*) {words} ;;")
    command, first = "", []
    if "" not in program.commands:
        command = "${COMP_WORDS[1]}"
        first = ["    if ((COMP_CWORD == 1)); then",
                 f"        command= before= words='{' '.join(program.commands)} --help --version'",
                 "    fi"]
    return "\n".join([
        f"# bash completion of {program.name}", f"{function_name(program)}() {{",
        f"    local words= kind= command={command}",
        "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}",
        "    COMPREPLY=()",
        "    # To bash, \"=\" is a word.",
        "    if [[ $word == = ]]; then",
        "        word=",
        "    elif [[ $before == = ]]; then",
        "        before=${COMP_WORDS[COMP_CWORD - 2]}",
        "    fi", *first,
        "    case $command:$before in", *cases, "    esac",
        "    if [[ $kind ]]; then",
        "        compopt -o filenames 2>/dev/null",
        "        mapfile -t COMPREPLY < <(compgen -A \"$kind\" -- \"$word\")",
        "    else",
        "        mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")",
        "    fi", "}", f"complete -F {function_name(program)} {program.name}", ""])


def zsh_text(text):
    """The first sentence of `text`, as it may stand in a description."""
    text = re.split(r"\. |; |: ", " ".join((text or "").split()))[0].rstrip(".")
    return re.sub(r"([\\:\[\]])", r"\\\1", text)


def zsh_arguments(command):
    def value(option):
        action = (f"({' '.join(option.values)})" if option.values else
                  "_files -/" if option.metavar in FOLDERS else
                  "_files" if option.metavar in FILES else "()")
        return f":{option.metavar}:{action}" if option.metavar else ""

    descriptions = [f"*{value(argument)}" for argument in command.arguments]
    for option in command.options:
        for name in option.names:
            others = "*" if option.repeats else f"({' '.join(option.names)})"
            descriptions.append(f"{others}{name}[{zsh_text(option.help)}]{value(option)}")
    return "_arguments -S " + " ".join(map(shlex.quote, descriptions))


def zsh_completion(program):
    lines = [f"#compdef {program.name}"]
    if "" in program.commands:
        return "\n".join([*lines, zsh_arguments(program.commands[""]), ""])
    texts = [f"{name}:{zsh_text(command.summary)}" for name, command in program.commands.items()]
    lines += ["if (( CURRENT == 2 )); then",
              f"    local -a commands=({' '.join(map(shlex.quote, texts))})",
              "    _describe command commands",
              "    _arguments '(- *)--help[Show the help]' '(- *)--version[Show the version]'",
              "    return", "fi", "shift words", "(( CURRENT-- ))", "case $words[1] in"]
    lines += [f"    {name}) {zsh_arguments(command)} ;;"
              for name, command in program.commands.items()]
    return "\n".join([*lines, "esac", ""])


def main():
    output, first, *others = map(Path, sys.argv[1:])
    texts = {}
    for program in [finder_sim(first), *map(other_program, others)]:
        texts[f"man/man1/{program.name}.1"] = manual_page(program)
        texts[f"bash-completion/completions/{program.name}"] = bash_completion(program)
        texts[f"zsh/site-functions/_{program.name}"] = zsh_completion(program)
    for path, text in texts.items():
        (output / path).parent.mkdir(parents=True, exist_ok=True)
        (output / path).write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
