"""The menu as a picture: a PNG that also says in words what it shows."""

import base64
import struct
import zlib

from click import request_menu
from extension_process import Failure, InvalidResponse, member
from menu import DISABLED, OPENS, SEPARATOR, SEPARATOR_LINE, breadcrumbs, menu_entries
from terminal import escaped

# What every PNG begins with: the signature, and the length and the kind of its header.
BEGINNING = b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR"
# The signature, and the header with its checksum.
HEADER_END = 33


def save_picture(extension, options):
    """Draws the menu that `options` describe into the file that they name. The result says what it
    shows, and how large it is."""
    entries = list(menu_entries(request_menu(extension, options)["menu"]))
    if not entries:
        raise Failure("the menu has no entries to draw")
    index_path = opened(entries, options.open)
    response = extension.request("picture", indexPath=index_path, scale=int(options.scale or 1))
    description = "\n".join(lines(entries, index_path)) + "\n"
    png = with_description(member(response, "png", str), description)
    options.out.write(png)
    width, height = struct.unpack_from(">II", png, len(BEGINNING))
    return {"path": options.out.path, "width": width, "height": height, "description": description}


def opened(entries, titles):
    """The index path of the entry with these titles from the menu downwards, each of an entry that
    opens a submenu. Space around a title, which nobody sees, need not be named, and neither need
    the item that the whole menu is under."""
    root = entries[0].titles[0] if len({entry.index_path[0] for entry in entries}) == 1 else None
    if titles and root not in (None, titles[0].strip()):
        titles = [root, *titles]
    index_path = []
    for position, title in enumerate(titles):
        named = [entry for entry in entries
                 if entry.index_path[:-1] == index_path and entry.item != SEPARATOR
                 and entry.titles[-1].strip() == title.strip()]
        opening = [entry for entry in named if "submenu" in entry.item]
        enabled = [entry for entry in opening if entry.item["enabled"]]
        where = breadcrumbs(titles[:position + 1])
        if not enabled:
            raise Failure(f"there is no entry {where}: finder-sim menu shows them" if not named else
                          f"the entry {where} opens no submenu" if not opening else
                          f"the entry {where} is disabled")
        index_path = enabled[0].index_path
    return index_path


def lines(entries, index_path):
    """What the picture shows, one line for each entry: those of the menu and of the submenus that
    are open on the way of `index_path`."""
    for entry in entries:
        depth = len(entry.index_path) - 1
        if entry.index_path[:-1] != index_path[:depth]:
            continue
        line = SEPARATOR_LINE
        if entry.item != SEPARATOR:
            line = (escaped(entry.titles[-1]) + OPENS * ("submenu" in entry.item)
                    + DISABLED * (not entry.item["enabled"]))
        yield "    " * depth + line


def with_description(png, description):
    """The bytes of `png`, which is Base64, with `description` as the text under that keyword."""
    try:
        content = base64.b64decode(png, validate=True)
    except ValueError:
        content = b""
    if not content.startswith(BEGINNING) or len(content) < HEADER_END:
        raise InvalidResponse('"png" is not a PNG')
    # An uncompressed text in UTF-8, in no particular language.
    text = b"iTXtDescription\0\0\0\0\0" + description.encode("utf-8")
    chunk = struct.pack(">I", len(text) - 4) + text + struct.pack(">I", zlib.crc32(text))
    return content[:HEADER_END] + chunk + content[HEADER_END:]
