"""The menu as a picture: a PNG that also says in words what it shows."""

import base64
import struct
import zlib

from click import request_menu
from extension_process import Failure, InvalidResponse, member
from menu import SEPARATOR, breadcrumbs
from terminal import escaped

SIGNATURE = b"\x89PNG\r\n\x1a\n"


def save_picture(extension, options):
    """Draws the menu that `options` describe into the file that they name. The result says what it
    shows, and how large it is."""
    menu = request_menu(extension, options)["menu"]
    if not menu or not member(menu, "items", list):
        raise Failure("the menu has no entries to draw")
    index_path = opened(menu, options.open)
    response = extension.request("picture", indexPath=index_path, scale=int(options.scale or 1))
    description = "\n".join(lines(menu, index_path)) + "\n"
    png = with_description(member(response, "png", str), description)
    with open(options.out, "wb") as file:
        file.write(png)
    width, height = struct.unpack_from(">II", png, 16)
    return {"path": options.out, "width": width, "height": height, "description": description}


def opened(menu, titles):
    """The index path of the entry with these titles from the menu downwards, each of an entry that
    opens a submenu. Space around a title, which nobody sees, need not be named."""
    index_path = []
    for position, title in enumerate(titles):
        named = [(index, item) for index, item in enumerate(member(menu, "items", list))
                 if item != SEPARATOR and member(item, "title", str).strip() == title.strip()]
        where = breadcrumbs(titles[:position + 1])
        if not named:
            raise Failure(f"there is no entry {where}")
        opening = [(index, item) for index, item in named if "submenu" in item]
        if not opening:
            raise Failure(f"the entry {where} opens no submenu")
        index, item = opening[0]
        if not member(item, "enabled", bool):
            raise Failure(f"the entry {where} is disabled")
        index_path.append(index)
        menu = item["submenu"]
    return index_path


def lines(menu, index_path, indentation=""):
    """What the picture shows, one line for each entry."""
    for index, item in enumerate(menu["items"]):
        if item == SEPARATOR:
            yield indentation + "────────"
            continue
        opens = " ▸" if "submenu" in item else ""
        disabled = "" if item["enabled"] else "  (disabled)"
        yield indentation + escaped(item["title"]) + opens + disabled
        if index_path[:1] == [index]:
            yield from lines(item["submenu"], index_path[1:], indentation + "    ")


def with_description(png, description):
    """The bytes of `png`, which is Base64, with `description` as the text under that keyword."""
    content = base64.b64decode(png)
    if not content.startswith(SIGNATURE):
        raise InvalidResponse('"png" is not a PNG')
    # An uncompressed text in UTF-8, in no particular language, behind the header of 25 bytes.
    text = b"iTXtDescription\0\0\0\0\0" + description.encode("utf-8")
    chunk = struct.pack(">I", len(text) - 4) + text + struct.pack(">I", zlib.crc32(text))
    start = len(SIGNATURE) + 25
    return content[:start] + chunk + content[start:]
