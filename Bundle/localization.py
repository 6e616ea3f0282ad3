"""The string tables: what their keys must be, and how a table is read.

The keys are the extension's own texts, so the sources say what they are: every string literal in
QuorvaFinderExtension/ that holds a Chinese character is looked up, and nothing else is.
"""

import plistlib
import re
from pathlib import Path

SOURCES = Path(__file__).resolve().parent.parent / "QuorvaFinderExtension"
RESOURCES = Path(__file__).resolve().parent / "Resources"

# A key is its own text in Simplified Chinese, so that language's table is empty.
TRANSLATED_LANGUAGES = ("en", "zh-Hant")
LANGUAGES = ("en", "zh-Hans", "zh-Hant")

_CODE = re.compile(
    r"""//[^\n]*
      | /\*.*?\*/
      | '(?:[^'\\\n]|\\.)'
      | (?P<literals> (?:u8)? "(?:[^"\\\n]|\\.)*" (?: \s* (?:u8)? "(?:[^"\\\n]|\\.)*" )* )""",
    re.DOTALL | re.VERBOSE,
)
_LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
_CHINESE = re.compile("[\u3400-\u9fff]")
_ESCAPES = {'"': '"', "\\": "\\", "n": "\n", "t": "\t", "r": "\r", "0": "\0", "'": "'"}

_TABLE = re.compile(
    r"""\s+
      | /\*.*?\*/
      | //[^\n]*
      | "(?P<key>(?:[^"\\]|\\.)*)" \s* = \s* "(?P<value>(?:[^"\\]|\\.)*)" \s* ;""",
    re.DOTALL | re.VERBOSE,
)


def _unescaped(text):
    return re.sub(r"\\(.)", lambda match: _ESCAPES[match[1]], text)


def keys_of_code(code):
    """The keys among the string literals of `code`, which is C++."""
    keys = set()
    for match in _CODE.finditer(code):
        literals = _LITERAL.findall(match["literals"] or "")
        # Of other texts the escapes are not read: a key has none but the usual ones.
        if _CHINESE.search("".join(literals)):
            keys.add(_unescaped("".join(literals)))
    return keys


def source_keys(sources=SOURCES):
    """The keys that the extension looks up."""
    keys = set()
    for path in [*sources.glob("*.cpp"), *sources.glob("*.hpp")]:
        keys |= keys_of_code(path.read_text(encoding="utf-8"))
    return keys


def read_table(path):
    """The table at `path` as a dictionary: a .strings file in text form or a binary property list.

    Raises ValueError when it is neither, or when a key stands in it twice.
    """
    data = Path(path).read_bytes()
    if data.startswith(b"bplist"):
        return plistlib.loads(data)
    text = data.decode("utf-8")
    table = {}
    position = 0
    while position < len(text):
        match = _TABLE.match(text, position)
        if match is None:
            line = text.count("\n", 0, position) + 1
            raise ValueError(f'{path}:{line}: no entry of the form "key" = "value";')
        position = match.end()
        if match["key"] is not None:
            key = _unescaped(match["key"])
            if key in table:
                raise ValueError(f"{path}: “{key}” stands in it twice")
            table[key] = _unescaped(match["value"])
    return table
