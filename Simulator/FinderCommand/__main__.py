"""finder-sim: Finder, as far as an extension with a menu can tell, on the command line."""

import argparse
import os
import sys

from click import PATIENCE, click, click_text, is_awaited, request_menu
from demo import prepare_home, run_demo
from extension_process import (
    ExtensionProcess, Failure, InvalidResponse, member, start_virtual_display)
from menu import entry_named, menu_entries, menu_tree
from output_file import OutputFile
from picture import save_picture
from sandbox import CONTAINER, enter_sandbox, lay_out_container
from settings import copy_settings, set_layout
from supervisor import supervise
from terminal import FAILURES, escaped, json_text, reason, show_errors, write
from version import VERSION
from watch import watch

FOOTER = r"""
finder-sim COMMAND --help lists the options of a command.
A character that a terminal could act on is shown as \u and its four digits.
The exit status is 0; 1 after a failure, which a line on standard error names; and 128 and the
number of the signal after an interrupt, 130 after Ctrl-C.
The protocol that it speaks with the extension is in Documentation/ExtensionProtocol.md.
"""

HELP = """\
usage: finder-sim COMMAND [OPTION...]

finder-sim plays Finder for Quorva's extension: it starts the extension from
Quorva.app/Contents/PlugIns beside this program, asks it for menus, and clicks.

  finder-sim demo --language en
  finder-sim menu --select ~/Documents/report.txt --target ~/Documents
  finder-sim menu --target ~/Documents --kind container --language en
  finder-sim picture menu.png --open 新建 --target ~/Documents
  finder-sim click 复制名称与路径 复制完整路径 --select ~/Documents/report.txt
  finder-sim click 复制完整路径 --select ~/a.txt --delivery finder --launch
  finder-sim watch --home ~/somewhere
  finder-sim --version

The extension reads its settings from, and queues its records in,
"Library/Application Support/Quorva" below the home folder: --home, or else
$HOME. Where there is no display, a virtual one is started.

commands:
"""

COMMANDS = {
    "menu": "Show the menu as a tree; what can't be clicked is marked",
    "click": "Click an entry and show the record, the notification and the launch",
    "picture": "Draw the menu as it looks into a PNG file",
    "directories": "List the folders that the extension monitors",
    "watch": "Show the menu and what the doctor finds, again after each change, until Ctrl-C",
    "demo": "Show both layouts of a menu in a sample home, and a click on every kind of entry",
}

SANDBOX_HELP = """
Give the extension a home as in a Mac's sandbox: the container
"Library/Containers/app.ferrolin.Quorva.FinderExtension/Data" below the home folder, laid out where
it is missing, with settings and a queue of its own. Enforced: the account's home can't be listed,
and only the container, Desktop, Documents and their counterparts in iCloud Drive can be read or
changed in it; "/tmp" can't be changed. Not enforced: other folders, the network and other processes
stay open, and a launched application is in the same sandbox. The demonstration does this unless
told otherwise; where the system does not let it be enforced, the demonstration says so and goes on,
and other commands fail"""


class Information(Exception):
    """Text that was asked for in place of work."""


class Parser(argparse.ArgumentParser):

    def print_help(self, file=None):
        raise Information(self.format_help())

    def error(self, message):
        raise Failure(escaped(message) + " (--help says more)")


class Once(argparse.Action):
    """Stores a value, and refuses a second one."""

    def __call__(self, parser, options, value, option_string=None):
        if getattr(options, self.dest) is not None:
            parser.error(f"{option_string} is given twice")
        setattr(options, self.dest, value)


def absolute_path(path):
    """The form in which Finder would name it: from the root, without "." and "..", and without a
    slash at its end. Links are not followed."""
    if not path:
        raise argparse.ArgumentTypeError("a path is missing")
    if not is_utf8(path):
        raise argparse.ArgumentTypeError("a path is not UTF-8")
    return "/" + os.path.abspath(path).lstrip("/")


def is_utf8(text):
    # What Python could not decode are surrogates.
    return not any("\ud800" <= character <= "\udfff" for character in text)


def one_of(*values):
    def choice(value):
        if value not in values:
            raise argparse.ArgumentTypeError(f"{value} is not one of {', '.join(values)}")
        return value
    choice.values = values
    return choice


def position(value):
    if not (value.isascii() and value.isdigit() and int(value)):
        raise argparse.ArgumentTypeError(f"{value} is not a number from 1")
    return int(value)


def command_parser(command):
    parser = Parser(
        prog=f"finder-sim {command}", description=COMMANDS[command], epilog=FOOTER,
        allow_abbrev=False, formatter_class=lambda prog: argparse.RawDescriptionHelpFormatter(
            prog, max_help_position=26, width=100))
    parser.set_defaults(select=[], target=None, delivery=None, launch=False, keep_running=False,
                        layout=None, sandbox=False, verbose=False)
    add = parser.add_argument
    if command == "click":
        add("titles", metavar="TITLE", nargs="+",
            help="The titles on the way to the entry, or its last ones when they say enough")
        add("--entry", metavar="N", action=Once, type=position,
            help="Of the entries that the titles name, the first, the second and so on")
    if command == "picture":
        add("out", metavar="OUT", type=absolute_path,
            help="The PNG file to write. What it shows is in it in words too, as its description")
        add("--open", metavar="TITLE", action="extend", nargs="+", default=[],
            help="The titles on the way to a submenu that is shown open beside its entry. They go "
            "behind OUT")
        add("--scale", metavar="N", action=Once, type=one_of(*"1234"),
            help="How many pixels a point takes: 1 (the default) to 4")
    if command != "directories":
        add("--select", metavar="PATH", action="append", type=absolute_path,
            help="An item to select; once for each. Without one nothing is selected")
        add("--target", metavar="DIR", action=Once, type=absolute_path,
            help="The folder that the Finder window shows. Without it there is none")
        add("--kind", action=Once, type=one_of("items", "container", "sidebar", "toolbar"),
            help="Where the menu is opened: items, container, sidebar or toolbar. Without it items "
            "when something is selected, else container")
        add("--language", action=Once, type=one_of("en", "zh-Hans", "zh-Hant"),
            help=f"The language of the menu{' and the samples' if command == 'demo' else ''}: en, "
            "zh-Hans (the default) or zh-Hant")
    if command in ("menu", "picture", "demo"):
        add("--layout", action=Once, type=one_of("collapsed", "expanded"),
            help="Show the menu collapsed or expanded, whatever the settings say. "
            + ("Without it both are shown" if command == "demo" else "It is made from a copy of "
               "them in a temporary home, which JSON then shows in the paths of built-in places"))
    add("--home", metavar="DIR", action=Once, type=absolute_path,
        help="The home folder of the extension, its container on a Mac"
        + ("" if command == "watch" else "; with --sandbox the one that the container is in")
        + (". It is copied, and the copy worked on" if command == "demo" else ""))
    add("--account-home", metavar="DIR", action=Once, type=absolute_path,
        help="The home folder that the user's account has, where it is another")
    if command == "watch":
        return parser
    add("--sandbox", action=argparse.BooleanOptionalAction, help=SANDBOX_HELP,
        default=None if command == "demo" else False)
    if command in ("click", "demo"):
        add("--delivery", metavar="HOW", action=Once, type=one_of("intact", "finder"),
            help="How a clicked item reaches the extension: intact (the default of click) is the "
            "very item of the menu; finder is an item rebuilt of its title, enabled state, tag, "
            "state and indentation, as Finder does it")
    if command == "click":
        add("--launch", action="store_true",
            help="Really start the containing application when the extension asks for it, and end "
            "it when it has performed the record")
        add("--keep-running", action="store_true",
            help="Leave the application that --launch started running")
    add("--json", action="store_true", help="Print JSON instead of text for people")
    add("--verbose", action="store_true", help="Show what the extension writes on standard error")
    return parser


def parse(arguments):
    command, *rest = arguments or [""]
    if command in ("-h", "--help", ""):
        text = HELP + "".join(f"  {name:13}{text}\n" for name, text in COMMANDS.items()) + FOOTER
        raise Information(text) if command else Failure("a command is missing\n\n" + text[:-1])
    if command == "--version":
        raise Information(f"finder-sim {VERSION}\n")
    if command not in COMMANDS:
        raise Failure(escaped(f"{command} is not a command (--help says more)"))
    parser = command_parser(command)
    # Titles may come between options, or else begin with a dash.
    options = (parser.parse_args if "--" in rest else parser.parse_intermixed_args)(rest)
    if options.keep_running and not options.launch:
        parser.error("--keep-running needs --launch")
    if options.home and not os.path.isdir(options.home):
        parser.error(f"there is no folder {options.home}")
    options.command = command
    return options


def prepare_environment(options, application, folder):
    """Gives the extension the environment that the options ask for, and the sandbox. A home that is
    to have other settings than the user's is `folder`."""
    for name, value in (("HOME", options.home), ("SIMULATOR_ACCOUNT_HOME", options.account_home),
                        ("SIMULATOR_LANGUAGE", getattr(options, "language", None))):
        if value:
            os.environ[name] = value
    os.environ["SIMULATOR_LAUNCH"] = "1" if options.launch else "0"
    home = os.environ.get("HOME", "")
    if not home.startswith("/"):
        raise Failure("HOME is not an absolute path: name the home with --home")
    if not is_utf8(home):
        raise Failure("the home folder's path is not UTF-8")
    extension_home = home
    if options.layout and options.command != "demo":
        extension_home = os.environ["HOME"] = folder
        os.mkdir(folder, 0o700)
        below = CONTAINER if options.sandbox else ""
        copy_settings(os.path.join(home, below), os.path.join(folder, below))
        set_layout(os.path.join(folder, below), options.layout)
    is_required, options.sandbox = options.sandbox, "none"
    if is_required is not False:
        account_home = os.environ.setdefault("SIMULATOR_ACCOUNT_HOME", home)
        container = lay_out_container(extension_home, account_home)
        os.environ["HOME"] = container
        os.environ.update(dict.fromkeys(("TMPDIR", "TEMP", "TMP"), container + "/tmp"))
        os.environ["DISPLAY"] = start_virtual_display()[1]
        try:
            enter_sandbox(container, account_home, application)
            options.sandbox = "enforced"
        except OSError as error:
            options.sandbox = f"laid out, but not enforced: {error.strerror}"
            if is_required:
                raise Failure(f"the sandbox can't be enforced: {error.strerror}") from None


def show_response(options, extension):
    """What every command but the demonstration does."""
    if options.command == "directories":
        response = extension.request("directories")
        paths = member(response, "directories", list)
        if not all(isinstance(path, str) for path in paths):
            raise InvalidResponse("a path is not a string")
        text = "".join(escaped(path) + "\n" for path in paths)
    elif options.command == "picture":
        response = save_picture(extension, options)
        text = "{}: {} × {} pixels\n".format(
            escaped(response["path"]), response["width"], response["height"])
    else:
        response = request_menu(extension, options)
        text = menu_tree(response["menu"])
    if options.command == "click":
        entry = entry_named(menu_entries(response["menu"]), options.titles, options.entry)
        response = click(extension, entry, options)
        text = click_text(response, options.launch)
    write(json_text(response) + "\n" if options.json else text)
    if options.command == "click" and not response["records"]:
        raise Failure("no record of the click was written (--verbose says why)")
    if options.command == "click" and is_awaited(response, options) and not response["performed"]:
        raise Failure(f"Quorva did not perform the record within {PATIENCE} seconds")


def carry_out(options, folder):
    build_folder = os.path.dirname(os.path.realpath(sys.argv[0]))
    application = os.path.join(build_folder, "Quorva.app")
    if options.command == "demo":
        prepare_home(options, os.path.join(build_folder, "Samples/Home"), folder)
    if options.command == "picture":
        options.out = OutputFile(options.out)
    prepare_environment(options, application, folder)

    def start_extension():
        return ExtensionProcess(
            application + "/Contents/PlugIns/QuorvaFinderExtension.appex/Contents/MacOS/"
            "QuorvaFinderExtension", show_errors=show_errors if options.verbose else None)

    if options.command == "watch":
        watch(options, start_extension, os.path.join(build_folder, "quorva-doctor"))
        return
    extension = start_extension()
    try:
        if options.command == "demo":
            run_demo(extension, options)
        else:
            show_response(options, extension)
    finally:
        extension.end()


def exit_status(work):
    """Carries out `work`. A failure becomes a line on standard error."""
    try:
        work()
        return 0
    except SystemExit as end:
        return end.code
    except FAILURES as failure:
        show_errors(f"finder-sim: {reason(failure)}\n")
        return 1


def main():
    # What is opened later never takes the place of a standard stream that is closed.
    while os.open(os.devnull, os.O_RDONLY) < 3:
        pass
    folder = os.path.join(os.environ.get("TMPDIR") or "/tmp", f"finder-sim.{os.urandom(8).hex()}")
    keeps_application, outcome = False, None
    try:
        options = parse(sys.argv[1:])
        keeps_application = options.keep_running
    except (Information, Failure, OSError) as end:
        outcome = end

    def work():
        if isinstance(outcome, Information):
            write(str(outcome))
        elif outcome:
            raise outcome
        else:
            carry_out(options, folder)

    sys.exit(supervise(lambda: exit_status(work), folder, keeps_application))


if __name__ == "__main__":
    main()
