"""Property lists that no writer writes: binary ones put together by hand, and XML ones."""

import struct


def binary(objects, top=0, offset_size=4, reference_size=4, trailer=None):
    """A binary property list of these objects, each as its bytes."""
    content = b"bplist00"
    offsets = []
    for value in objects:
        offsets.append(len(content))
        content += value
    table = len(content)
    content += b"".join(offset.to_bytes(offset_size, "big") for offset in offsets)
    if trailer is None:
        trailer = (offset_size, reference_size, len(objects), top, table)
    return content + b"\0" * 6 + struct.pack(">BBQQQ", *trailer)


def counted(marker, count):
    """A marker with its count, in the long form where it has to be."""
    if count < 15:
        return bytes([marker | count])
    return bytes([marker | 15, 0x13]) + count.to_bytes(8, "big")


def references(numbers, size=4):
    return b"".join(number.to_bytes(size, "big") for number in numbers)


def array(elements, size=4):
    return counted(0xA0, len(elements)) + references(elements, size)


def dictionary(keys, values, size=4):
    return counted(0xD0, len(keys)) + references(keys, size) + references(values, size)


def text(value):
    return counted(0x50, len(value)) + value.encode("ascii")


def utf16(value):
    return counted(0x60, len(value) // 2) + value


XML_HEAD = b'<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0">'


def xml(content):
    return XML_HEAD + content + b"</plist>\n"


def deep_arrays(depth):
    """Arrays in one another."""
    return binary([array([number + 1]) for number in range(depth)] + [array([])])


def deep_dictionaries(depth):
    key = depth + 1
    return binary([dictionary([key], [number + 1]) for number in range(depth)]
                  + [array([]), text("copy")])


def billion_references(levels=60, width=10):
    """Each array holds the next one ten times: few bytes, and more values than there is memory."""
    return binary([array([number + 1] * width) for number in range(levels)] + [text("x")])


def shared_entries(count):
    """A list that holds one and the same entry many times, which is a list like any other."""
    entry = dictionary([2, 3, 4, 5], [6, 7, 8, 8])
    return binary([array([1] * count), entry, text("id"), text("name"), text("viewMode"),
                   text("sortMode"), text("shared"), text("Shared"), text("list")])


HUGE = 2**63 - 1

# Every one of them is anything but a list of entries, in whichever file it stands.
HOSTILE = {
    "a head alone": b"bplist00",
    "a head and a trailer of zeros": b"bplist00" + b"\0" * 32,
    "a head and a trailer of ones": b"bplist00" + b"\xff" * 32,
    "a trailer without a head": b"\0" * 40,
    "another version": b"bplist99" + binary([array([])])[8:],
    "no object": binary([]),
    "a top object that is not there": binary([array([])], top=1),
    "a top object far away": binary([array([])], top=HUGE),
    "an array of more than there is": binary([counted(0xA0, 2**40)]),
    "an array of as many as a number can say": binary([counted(0xA0, HUGE)]),
    "an array whose length is negative": binary([b"\xaf\x13" + b"\xff" * 8]),
    "an array whose length has 16 bytes": binary([b"\xaf\x14" + b"\xff" * 16]),
    "an array whose length is not a number": binary([b"\xaf\x51a"]),
    "an array whose length is missing": binary([b"\xaf"]),
    "a dictionary of more than there is": binary([counted(0xD0, 2**40)]),
    "a dictionary of half of what overflows": binary([counted(0xD0, 2**62)]),
    "a string of more than there is": binary([counted(0x50, 2**40)]),
    "a string of as many as a number can say": binary([counted(0x50, HUGE)]),
    "a UTF-16 string of half of what overflows": binary([counted(0x60, 2**62)]),
    "bytes of more than there is": binary([counted(0x40, 2**40)]),
    "a reference that is not there": binary([array([7])]),
    "a reference to itself": binary([array([0])]),
    "two that refer to each other": binary([array([1]), array([0])]),
    "a dictionary in itself": binary([dictionary([1], [0]), text("copy")]),
    "a dictionary as its own key": binary([dictionary([0], [0])]),
    "a key that is a number": binary([dictionary([1], [2]), b"\x10\x01", array([])]),
    "a key that is an array": binary([dictionary([1], [2]), array([]), array([])]),
    "a null": binary([b"\x00"]),
    "a filler": binary([b"\x0f"]),
    "an unknown marker": binary([b"\x77"]),
    "a set": binary([b"\xc0"]),
    "an identifier": binary([b"\x80\x01"]),
    "a number of 16 bytes": binary([b"\x14" + b"\xff" * 16]),
    "a real of 3 bytes": binary([b"\x2f" + b"\xff" * 16]),
    "a date that is not a number": binary([b"\x33\x7f\xf8" + b"\0" * 6]),
    "offsets without a size": binary([array([])], trailer=(0, 1, 1, 0, 9)),
    "references without a size": binary([array([])], trailer=(1, 0, 1, 0, 9)),
    "offsets of 255 bytes": binary([array([])], trailer=(255, 1, 1, 0, 9)),
    "an offset table beyond the end": binary([array([])], trailer=(1, 1, 1, 0, 2**40)),
    "an offset table at the largest number": binary([array([])], trailer=(8, 8, 1, 0, HUGE)),
    "an offset table at the largest number of 64 bits": binary(
        [array([])], trailer=(8, 8, 1, 0, 2**64 - 1)),
    "more objects than bytes": binary([array([])], trailer=(1, 1, 2**40, 0, 9)),
    "as many objects as overflow with their offsets": binary(
        [array([])], trailer=(8, 8, 2**61, 0, 9)),
    "an offset into the head": binary([array([])])[:-33] + b"\x00" + binary([array([])])[-32:],
    "references that unfold to more than there is memory": billion_references(),
    "references that unfold to dictionaries": binary(
        [dictionary([50] * 10, [number + 1] * 10) for number in range(50)] + [text("copy")]),
    "arrays 100,000 levels deep": deep_arrays(100_000),
    "XML arrays 100,000 levels deep": xml(b"<array>" * 100_000 + b"</array>" * 100_000),
    "XML arrays that do not end": XML_HEAD + b"<array>" * 100_000,
    "XML with an entity that unfolds": (
        b'<?xml version="1.0"?><!DOCTYPE plist ['
        b'<!ENTITY a "xxxxxxxxxx">'
        + b"".join(b'<!ENTITY %c "%s">' % (letter + 1, b"&%c;" % letter * 10)
                   for letter in range(ord("a"), ord("k")))
        + b"]><plist version='1.0'><string>&k;</string></plist>"),
    "XML with a file for an entity": (
        b'<?xml version="1.0"?><!DOCTYPE plist [<!ENTITY a SYSTEM "file:///etc/passwd">]>'
        b'<plist version="1.0"><string>&a;</string></plist>'),
    "XML without an element": XML_HEAD + b"</plist>",
    "XML with an unknown element": xml(b"<list><string>a</string></list>"),
    "XML with elements that cross": xml(b"<array><dict></array></dict>"),
    "XML with a key and no value": xml(b"<dict><key>copy</key></dict>"),
    "XML of another kind": b'<?xml version="1.0"?><html><body>copy</body></html>',
    "XML in an encoding that nobody knows":
        b'<?xml version="1.0" encoding="X-NONE"?><plist><string>a</string></plist>',
    "text with a zero byte": b"copy\0move",
    "a megabyte of zeros": b"\0" * (1 << 20),
    "a megabyte of opening brackets": b"(" * (1 << 20),
    "a megabyte of opening braces": b"{a=" * (1 << 18),
    "a megabyte of less-than signs": b"<" * (1 << 20),
    "half a megabyte of quotes": b'"' * (1 << 19),
    "a UTF-16 mark and nothing": b"\xff\xfe",
    "a UTF-8 mark and nothing": b"\xef\xbb\xbf",
}

# A value that is nested too deeply is of a wrong type where it stands: the dictionary is one still.
TOO_DEEP = {
    "dictionaries 100,000 levels deep": deep_dictionaries(100_000),
    "XML dictionaries 100,000 levels deep": xml(
        b"<dict><key>copy</key>" * 100_000 + b"<array/>" + b"</dict>" * 100_000),
}
