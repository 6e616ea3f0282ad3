"""The extension at work in a sample home: the layouts of a menu, and a click on every kind of
entry."""

import os
import shutil

from click import click, click_text, request_menu
from extension_process import Failure
from menu import breadcrumbs, menu_entries, menu_tree
from sandbox import CONTAINER, LINKS
from settings import FILES, FOLDER, set_layout
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

# The names of the samples in other languages. The original of one that is part of another comes
# behind it.
NAMES = {
    "转成 PDF 并发邮件": {"en": "Convert to PDF and Mail", "zh-Hant": "轉成 PDF 並寄出"},
    "给照片加水印": {"en": "Add Watermark", "zh-Hant": "為照片加浮水印"},
    "列表 · 最近修改": {"en": "List · Date Modified", "zh-Hant": "列表 · 修改日期"},
    "列表 · 按大小 2": {"en": "List · Size 2", "zh-Hant": "列表 · 大小 2"},
    "图标 · 按名称": {"en": "Icons · Name", "zh-Hant": "圖像 · 名稱"},
    "客户 &amp; 合同": {"en": "Clients &amp; Contracts", "zh-Hant": "客戶 &amp; 合約"},
    "归档": {"en": "Archive", "zh-Hant": "封存"},
    "备份盘": {"en": "Backup Disk", "zh-Hant": "備份磁碟"},
    "项目": {"en": "Projects", "zh-Hant": "專案"},
    "资料": {"en": "Data", "zh-Hant": "資料"},
    "季度报告": {"en": "Quarterly Report", "zh-Hant": "季度報告"},
    "购物清单": {"en": "Shopping List", "zh-Hant": "購物清單"},
}


def prepare_home(options, samples, folder):
    """Copies the home that `options` name, or the samples, into `folder`, and has them name the
    copy. In a sandbox the settings lie in the container."""
    original = options.home or samples
    language = None if options.home else options.language
    home = os.path.join(folder, "ada")
    os.mkdir(folder, 0o700)
    try:
        # The copy of a container has links of its own.
        shutil.copytree(original, home,
                        ignore=lambda at, _: LINKS if at.endswith("/" + CONTAINER) else ())
    except OSError as error:
        reasons = error.args[0] if isinstance(error, shutil.Error) else [(error.strerror,)]
        raise Failure(f"the home {original} can't be copied: {reasons[0][-1]}") from None
    if language:
        _translate(home, language)
    os.environ.setdefault("SIMULATOR_ACCOUNT_NAME", "ada")
    if options.sandbox is False:
        os.environ.setdefault("SIMULATOR_ACCOUNT_HOME", "/Users/ada")
    else:
        options.account_home = options.account_home or home
        settings, container = os.path.join(home, FOLDER), os.path.join(home, CONTAINER)
        if os.path.exists(settings) and not os.path.exists(container):
            os.renames(settings, os.path.join(container, FOLDER))
    options.home = home
    options.launch = True
    if not options.select and not options.target:
        options.target = os.path.join(home, "Documents/Reports")
        options.select = [os.path.join(options.target, name)
                          for name in (_translated("季度报告.txt", language), "Budget 2026.csv")]


def _translated(text, language):
    for original, names in NAMES.items():
        text = text.replace(original, names.get(language, original))
    return text


def _translate(home, language):
    """Gives the samples in `home`, and what their settings name, the names of `language`."""
    for folder, _, names in os.walk(home):
        for name in names:
            path = os.path.join(folder, name)
            if name in FILES:
                with open(path, encoding="utf-8") as file:
                    text = _translated(file.read(), language)
                with open(path, "w", encoding="utf-8") as file:
                    file.write(text)
            os.rename(path, os.path.join(folder, _translated(name, language)))


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
    for layout in [options.layout] if options.layout else ["collapsed", "expanded"]:
        set_layout(os.environ["HOME"], layout)
        menu = show_menu(layout)
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
        say(click_text(result, options.launch)[:-1])
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
