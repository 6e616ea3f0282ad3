"""Where two values differ, in a line that can be read however large they are."""

import itertools
import os.path

ABSENT = type("Absent", (), {"__repr__": lambda self: "nothing"})()

# Of long strings, as much is shown around where they differ.
EXCERPT = 100


def first_difference(actual, expected):
    """The way to the first difference of two values of JSON, and what is there. In a menu it leads
    through the titles, with the position of each among its siblings."""
    way = []
    while True:
        if isinstance(actual, dict) and isinstance(expected, dict):
            # A title says the most of what stands in the place of what.
            keys = sorted(actual.keys() | expected.keys(), key=lambda key: (key != "title", key))
            pairs = [(key, actual.get(key, ABSENT), expected.get(key, ABSENT)) for key in keys]
        elif isinstance(actual, (list, tuple)) and type(actual) is type(expected):
            both = itertools.zip_longest(actual, expected, fillvalue=ABSENT)
            pairs = [(index, *pair) for index, pair in enumerate(both)]
        else:
            break
        key, actual, expected = next(pair for pair in pairs if pair[1] != pair[2])
        if key not in ("items", "submenu"):
            way.append(place(key, expected if actual is ABSENT else actual))
    if isinstance(actual, str) and isinstance(expected, str):
        position = len(os.path.commonprefix([actual, expected]))
        if position > EXCERPT:
            way.append(f"character {position}")
            start = position - EXCERPT // 2
            actual, expected = actual[start:], expected[start:]
    return f"{' > '.join(way) or 'the value'}: {shown(actual)}, expected {shown(expected)}"


def place(key, value):
    """A member, an element, or an item of a menu."""
    if isinstance(key, str):
        return key
    title = value.get("title") if isinstance(value, dict) else None
    return f"[{key}]" if title is None else f"[{key}] {title}"


def shown(value):
    text = repr(value)
    return text if len(text) <= 2 * EXCERPT else text[:2 * EXCERPT] + "…"
