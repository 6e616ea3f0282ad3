"""The extension at work in a sample home: both layouts of a menu, and a click on every kind of
entry."""

import os
import re
import shutil

from click import click, click_text, quorva_folder, request_menu
from extension_process import Failure
from menu import breadcrumbs, menu_entries, menu_tree
from sandbox import CONTAINER, LINKS
from terminal import escaped, json_text, styled, write

# What is clicked, the beginning of its action identifier, and how it is delivered.
CLICKS = (
    ("a command of the catalogue", "copyFullPath", "intact"),
    ("a folder to copy to", "copyFilesToFolder", "finder"),
    ("a folder to move to", "moveFilesToFolder", "finder"),
    ("a quick-open location", "quickOpenPath", "finder"),
    ("an application to open with", "openWithApplicationPath", "intact"),
    ("a view preset", "finderViewPreset__", "finder"),
    ("a custom shortcut", "runShortcut__", "intact"),
    ("a custom script", "runScript__", "finder"),
)

SUPPORT = "Library/Application Support"
LAYOUT = re.compile(b"<string>(collapsed|expanded)</string>")


def prepare_home(options, samples, folder):
    """Copies the home that `options` name, or the samples, into `folder`, and has them name the
    copy. In a sandbox the settings lie in the container."""
    original = options.home or samples
    home = os.path.join(folder, "ada")
    os.mkdir(folder, 0o700)
    try:
        # The copy of a container has links of its own.
        shutil.copytree(original, home,
                        ignore=lambda at, _: LINKS if at.endswith("/" + CONTAINER) else ())
    except OSError as error:
        reasons = error.args[0] if isinstance(error, shutil.Error) else [(error.strerror,)]
        raise Failure(f"the home {original} can't be copied: {reasons[0][-1]}") from None
    os.environ.setdefault("SIMULATOR_ACCOUNT_NAME", "ada")
    if options.sandbox is False:
        os.environ.setdefault("SIMULATOR_ACCOUNT_HOME", "/Users/ada")
    else:
        options.account_home = options.account_home or home
        support, container = os.path.join(home, SUPPORT), os.path.join(home, CONTAINER)
        if os.path.exists(support) and not os.path.exists(container):
            os.renames(support, os.path.join(container, SUPPORT))
    options.home = home
    options.launch = True
    if not options.select and not options.target:
        options.target = os.path.join(home, "Documents/Reports")
        options.select = [os.path.join(options.target, name)
                          for name in ("季度报告.txt", "Budget 2026.csv")]


def set_layout(layout):
    """Makes `layout` the one of the settings. Returns whether they name one."""
    path = os.path.join(quorva_folder(), "FeatureSettings.plist")
    if not os.path.isfile(path):
        return False
    with open(path, "rb") as file:
        content, count = LAYOUT.subn(f"<string>{layout}</string>".encode(), file.read())
    with open(path, "wb") as file:
        file.write(content)
    return count > 0


def run_demo(extension, options):
    report = {"sandbox": options.sandbox, "menus": [], "clicks": []}

    def say(text):
        if not options.json:
            write(text + "\n")

    def show_menu(layout):
        menu = request_menu(extension, options)["menu"]
        say("\n" + styled(f"Layout: {layout}", "heading") + "\n" + menu_tree(menu)[:-1])
        report["menus"].append({"layout": layout, "menu": menu})
        return menu

    say(styled("A menu", "heading"))
    if options.target:
        say("  in        " + escaped(options.target))
    for path in options.select:
        say("  selected  " + escaped(path))
    say("  sandbox   " + escaped(options.sandbox))
    menu = show_menu("collapsed" if set_layout("collapsed") else "its own")
    if set_layout("expanded"):
        menu = show_menu("expanded")
    delivery = options.delivery
    for what, action_id, own_delivery in CLICKS:
        options.delivery = delivery or own_delivery
        say("\n" + styled(f"A click on {what}", "heading") + styled(
            ", the item rebuilt as Finder does it" if options.delivery == "finder"
            else ", the very item of the menu", "dim"))
        # Of several the last: behind the built-in ones come the user's own.
        entries = [entry for entry in menu_entries(menu)
                   if entry.is_clickable and _action_id(entry.item).startswith(action_id)]
        if not entries:
            say(styled("  There is none in this menu.", "dim"))
            continue
        result = click(extension, entries[-1], options)
        say(click_text(result)[:-1])
        if len(result["records"]) != 1 or len(result["performed"]) != 1:
            raise Failure(f"the click on {breadcrumbs(entries[-1].titles)} was not performed")
        report["clicks"].append(result)
    say("\n" + styled("What Quorva wrote down in Performed.jsonl", "heading"))
    for result in report["clicks"]:
        say("  " + json_text(result["performed"][0], None))
    if options.json:
        write(json_text(report) + "\n")


def _action_id(item):
    context = item.get("representedObject")
    return str(context.get("actionID", "")) if isinstance(context, dict) else ""
