"""Menus as the extension's responses show them."""

from collections import namedtuple

from extension_process import Failure, member
from terminal import escaped, styled

# An entry of a menu: the titles and the positions on the way to it, the item of the response, and
# whether it and what it lies in are enabled, it opens nothing, and has an action.
Entry = namedtuple("Entry", "titles index_path item is_clickable")

SEPARATOR = {"separator": True}


def menu_entries(menu, parent=Entry([], [], None, True)):
    """Every entry of `menu` in the order in which they show, those of a submenu behind the entry
    that opens it."""
    if menu is None:
        return
    for index, item in enumerate(member(menu, "items", list)):
        title, enabled = "", False
        if item != SEPARATOR:
            title = member(item, "title", str)
            enabled = member(item, "enabled", bool) and parent.is_clickable
            member(item, "action", str, type(None))
        opens = "submenu" in item
        entry = Entry(parent.titles + [title], parent.index_path + [index], item,
                      enabled and not opens and item["action"] is not None)
        yield entry
        if opens:
            yield from menu_entries(item["submenu"] or {}, entry._replace(is_clickable=enabled))


def breadcrumbs(titles):
    """The titles as one line for people: "Quorva ▸ 新建 ▸ 新建文件夹"."""
    return " ▸ ".join(map(escaped, titles))


def entry_named(entries, titles):
    """The entry that `titles` names: all the titles on the way to it, or so many of its last ones
    that no other clickable entry is meant. Space around a title, which nobody sees, need not be
    named. Fails, with those that are meant or with what there is to click, when there is none.
    """
    clickable = [entry for entry in entries if entry.is_clickable]
    stripped = [title.strip() for title in titles]
    for named in ([entry for entry in clickable if entry.titles == titles][:1],
                  [entry for entry in clickable if entry.titles[-len(titles):] == titles],
                  [entry for entry in clickable
                   if [title.strip() for title in entry.titles[-len(titles):]] == stripped]):
        if len(named) == 1:
            return named[0]
    raise Failure("\n  ".join(
        [("there are several entries " if named else "nothing can be clicked at ")
         + breadcrumbs(titles) + "\nWhat can be clicked:",
         *(breadcrumbs(entry.titles) for entry in named or clickable)]))


def menu_tree(menu):
    """`menu` as a tree, one entry a line: submenus indented, disabled entries dimmed and marked."""
    if menu is None:
        return styled("(the extension gives no menu)", "dim") + "\n"
    lines = [" " * (4 * len(entry.titles) - 2) + _line(entry) for entry in menu_entries(menu)]
    return "\n".join(lines or [styled("  (empty)", "dim")]) + "\n"


def _line(entry):
    if entry.item == SEPARATOR:
        return styled("────────", "dim")
    title = escaped(entry.titles[-1])
    opens = "submenu" in entry.item
    if not entry.item["enabled"]:
        return styled(f"✕ {title}{' ▸' if opens else ''}  (disabled)", "dim")
    if not opens:
        return title
    items = member(entry.item["submenu"], "items", list)
    return styled(title, "bold") + " ▸" + ("" if items else styled("  (empty)", "dim"))
