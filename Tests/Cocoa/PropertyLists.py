"""Writes property lists with Python's own writer into the folder given as the argument."""

import datetime
import pathlib
import plistlib
import struct
import sys

SETTINGS = {
    "text": "没有 \U0001f600 <&>",
    "empty": "",
    "yes": True,
    "no": False,
    "one": 1,
    "negative": -7,
    "least": -(2**63),
    "greatest": 2**63 - 1,
    "real": 1.5,
    "date": datetime.datetime(2026, 11, 20, 18, 30, 0),
    "data": b"\x00\xff",
    "list": ["a", ["b"], {}],
    "dictionary": {"没有": {"c": "d"}},
}


def binary(objects, root=0, reference_size=1):
    """A binary property list of raw objects, valid or not."""
    body = b"bplist00"
    offsets = []
    for raw in objects:
        offsets.append(len(body))
        body += raw
    table = b"".join(struct.pack(">Q", offset) for offset in offsets)
    trailer = struct.pack(">6xBBQQQ", 8, reference_size, len(objects), root, len(body))
    return body + table + trailer


def array(*references):
    return bytes([0xA0 | len(references), *references])


def wide_array(references):
    return b"\xaf\x12" + struct.pack(">I", len(references)) + bytes(references)


def array_of(*references):
    """An array with references of four bytes."""
    return bytes([0xA0 | len(references)]) + struct.pack(f">{len(references)}I", *references)


def deep_binary(depth):
    objects = [b"\xa1" + struct.pack(">I", index + 1) for index in range(depth)] + [b"\x51a"]
    return binary(objects, reference_size=4)


def deep_xml(depth):
    return (
        b'<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0">'
        + b"<array>" * depth
        + b"<string>a</string>"
        + b"</array>" * depth
        + b"</plist>"
    )


def hidden_deep_xml(depth):
    """Deep, with end tags in comments and texts that only look like ends."""
    level = b"<array><!-- </array> --><string><![CDATA[</array>]]></string>"
    return (
        b'<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0">'
        + level * depth
        + b"</array>" * depth
        + b"</plist>"
    )


def main():
    folder = pathlib.Path(sys.argv[1])
    files = {
        "settings.xml": plistlib.dumps(SETTINGS, fmt=plistlib.FMT_XML),
        "settings.binary": plistlib.dumps(SETTINGS, fmt=plistlib.FMT_BINARY),
        "references.xml": plistlib.dumps("&<>" * 300_000, fmt=plistlib.FMT_XML),
        "numericReferences.xml": b'<plist version="1.0"><string>' + b"&#38;" * 400_000
        + b"</string></plist>",
        "keyWithNUL.binary": binary([b"\xd1\x01\x02", b"\x53a\x00b", b"\x51c"]),
        "wideKeyWithNUL.binary": binary([b"\xd1\x01\x02", b"\x62\x00a\x00\x00", b"\x51c"]),
        "textWithNUL.binary": binary([b"\xa1\x01", b"\x53a\x00b"]),
        "mark.xml": b"\xef\xbb\xbf" + plistlib.dumps("text", fmt=plistlib.FMT_XML),
        "text.xml": plistlib.dumps("text", fmt=plistlib.FMT_XML),
        "text.binary": plistlib.dumps("text", fmt=plistlib.FMT_BINARY),
        "wideTextWithNUL.binary": binary([b"\x63\x00a\x00\x00\x00b"]),
        "many.xml": plistlib.dumps([{"id": str(i)} for i in range(100_000)]),
        "many.binary": plistlib.dumps(
            [{"id": str(i)} for i in range(100_000)], fmt=plistlib.FMT_BINARY
        ),
        "deep500.binary": deep_binary(500),
        "deep500.xml": deep_xml(500),
        "uid.binary": plistlib.dumps({"a": plistlib.UID(1)}, fmt=plistlib.FMT_BINARY),
        "tooDeep.binary": deep_binary(100_000),
        "tooDeep.xml": deep_xml(100_000),
        "tooDeepHidden.xml": hidden_deep_xml(100_000),
        "set.binary": binary([b"\xd1\x01\x02", b"\x51a", b"\xc0"]),
        # Shared by a level just within the limit and by one that is beyond it.
        "shared.binary": binary([array_of(1, 511), *(array_of(i + 1) for i in range(1, 513)),
                                 b"\x51a"], reference_size=4),
        # From here on nothing is to be read.
        "bad.self": binary([array(0)]),
        "bad.cycle": binary([array(1), array(2), array(0)]),
        "bad.dictionaryCycle": binary([b"\xd1\x01\x00", b"\x51a"]),
        "bad.bomb": binary([array(i + 1, i + 1) for i in range(40)] + [b"\x51a"]),
        "bad.wideBomb": binary([wide_array([1] * 250), wide_array([2] * 250),
                                wide_array([3] * 250), wide_array([4] * 250), b"\x51a"]),
        "bad.emptyBomb": binary([array(*[i + 1] * 14) for i in range(12)] + [b"\xa0"]),
        "bad.keyBomb": binary([b"\xd1\x01\x01"] + [array(i + 1, i + 1) for i in range(1, 40)]
                              + [b"\x51a"]),
        "bad.textBomb": binary([b"\xaf\x12" + struct.pack(">I", 100_000) + b"\x01" * 100_000,
                                b"\x5f\x12" + struct.pack(">I", 1_000_000) + b"a" * 1_000_000]),
        "bad.keyIsANumber": binary([b"\xd1\x01\x02", b"\x10\x01", b"\x51c"]),
        "bad.keyIsAnArray": binary([b"\xd1\x01\x02", b"\xa0", b"\x51c"]),
        "bad.XMLWithNUL": b'<plist version="1.0"><dict><key>a\0b</key><true/></dict></plist>',
        "bad.sharedReferences": binary([b"\xaf\x12" + struct.pack(">I", 60000) + b"\x01" * 60000]
                                       + [b"\xa1\x00"]),
        "bad.length": binary([b"\x5f\x13" + b"\xff" * 8]),
        "bad.negativeLength": binary([b"\x4f\x13" + b"\x80" + b"\x00" * 7]),
        "bad.count": binary([b"\xaf\x13" + b"\x7f" + b"\xff" * 7]),
        "bad.dictionaryCount": binary([b"\xdf\x13" + b"\x80" + b"\x00" * 7]),
        "bad.reference": binary([array(9)]),
        "bad.root": binary([b"\x51a"], root=7),
        "bad.objectCount": plistlib.dumps("a", fmt=plistlib.FMT_BINARY)[:-24]
        + struct.pack(">QQQ", 2**60, 0, 8),
        "bad.offsets": plistlib.dumps("a", fmt=plistlib.FMT_BINARY)[:-8]
        + struct.pack(">Q", 2**64 - 1),
        "bad.trailer": b"bplist00" + b"\xff" * 32,
        "bad.openXML": deep_xml(100_000)[:500_000],
        "bad.deepText": b"(" * 100_000,
        "bad.deepTextDictionary": b"{a=" * 100_000,
        "bad.empty": b"",
        "bad.zeros": bytes(4096),
        "bad.magic": b"bplist00",
    }
    for name, content in files.items():
        (folder / name).write_bytes(content)


main()
