"""Menus as the extension's responses show them."""

from collections import namedtuple

from extension_process import Failure, member
from terminal import escaped, styled

# An entry of a menu: the titles and the positions on the way to it, the item of the response, and
# whether it and what it lies in are enabled, it opens nothing, and has an action.
Entry = namedtuple("Entry", "titles index_path item is_clickable")

SEPARATOR = {"separator": True}

# How an entry shows that it is a separator, opens a submenu, is disabled.
SEPARATOR_LINE, OPENS, DISABLED = "────────", " ▸", "  (disabled)"

# How many entries an error lists.
CHOICES = 9


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


def shown(title):
    """A title for people, without the space around it, which nobody sees."""
    return escaped(title).strip()


def breadcrumbs(titles):
    """The titles as one line for people: "Quorva ▸ 新建 ▸ 新建文件夹"."""
    return " ▸ ".join(map(shown, titles))


def entry_named(entries, titles, number=None):
    """The entry that `titles` names: all the titles on the way to it, or so many of its last ones
    that no other clickable entry is meant, or else the one with this number, from 1, of those that
    are. Space around a title need not be named. Fails when there is none.
    """
    entries = list(entries)
    clickable = [entry for entry in entries if entry.is_clickable]
    stripped = [title.strip() for title in titles]

    def ends_so(entry):
        return [title.strip() for title in entry.titles[-len(titles):]] == stripped

    named = ([entry for entry in clickable if entry.titles == titles]
             or [entry for entry in clickable if entry.titles[-len(titles):] == titles]
             or [entry for entry in clickable if ends_so(entry)])
    if len(named) == 1 and number is None:
        return named[0]
    if named and 1 <= (number or 0) <= len(named):
        return named[number - 1]
    what = breadcrumbs(titles)
    if named:
        choices = [f"{position} {breadcrumbs(entry.titles)}{_destination(entry.item)}"
                   for position, entry in enumerate(named[:CHOICES], start=1)]
        raise Failure(f"{what} names {len(named)} of the entries; choose by more titles or with "
                      f"--entry: {'; '.join(choices)}{'; …' * (len(named) > CHOICES)}")
    others = [entry.item for entry in entries if ends_so(entry)]
    why = ("there is no such entry" if not others else
           "it opens a submenu" if "submenu" in others[0] else "it is disabled")
    raise Failure(f"{what} can't be clicked: {why} (finder-sim menu, with the same options, shows "
                  "the menu)")


def _destination(item):
    """What tells entries of one title apart."""
    context = item.get("representedObject")
    path = context.get("destinationPath") if isinstance(context, dict) else None
    return f" ({escaped(path)})" if isinstance(path, str) and path else ""


def menu_tree(menu):
    """`menu` as a tree, one entry a line: submenus indented, disabled entries dimmed and marked."""
    if menu is None:
        return styled("(the extension gives no menu)", "dim") + "\n"
    lines = [" " * (4 * len(entry.titles) - 2) + _line(entry) for entry in menu_entries(menu)]
    return "\n".join(lines or [styled("  (empty)", "dim")]) + "\n"


def _line(entry):
    if entry.item == SEPARATOR:
        return styled(SEPARATOR_LINE, "dim")
    title = shown(entry.titles[-1])
    opens = "submenu" in entry.item
    if not entry.item["enabled"]:
        return styled(f"✕ {title}{OPENS * opens}{DISABLED}", "dim")
    if not opens:
        return title
    items = member(entry.item["submenu"], "items", list)
    return styled(title, "bold") + OPENS + ("" if items else styled("  (empty)", "dim"))
