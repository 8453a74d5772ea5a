#!/usr/bin/env python3
"""Writes the seeds into fuzz/corpus. The tree and command seeds are bytes of the grammars in fuzz/support."""
import pathlib

CORPUS = pathlib.Path(__file__).parent / "corpus"

CLOSE, OPEN, OPEN_RAW, PUT, PUT_RAW_VALUE, PUT_RAW_NAME, TEXT, KEY, FAR_KEY, CURVE, LAYER, FILL = range(12)
ELEMENTS = ["layer", "curve", "key", "left", "right", "<xmlattr>", "", "other"]


def key_body(value=3, flags=0, left=(2, 1, 4), right=(2, 1, 3)):
    return bytes([value, flags, *left, *right])


def key(frame, **body):
    return bytes([KEY, frame]) + key_body(**body)


def far_key(frame):
    return bytes([FAR_KEY]) + frame.to_bytes(4, "big") + key_body()


def curve(*keys):
    return bytes([CURVE, 4, 6, 5]) + b"".join(k + bytes([CLOSE]) for k in keys)


def layer(name, *contents):
    return bytes([LAYER, len(name)]) + name + b"".join(contents) + bytes([CLOSE])


def put(attribute, value):
    return bytes([PUT, attribute, value])


VALUE, TYPE, DX, DY, FRAME, SMOOTH, SYMMETRICAL, NAME, MUTE, TIME_UNIT = range(10)
NAN, NAN_BITS, NEGATIVE, HUGE, TRUE = 11, 13, 4, 7, 26
UNIT, ZERO_UNIT, ZERO_DENOMINATOR, NEGATIVE_UNIT = 33, 34, 35, 36

this_key = bytes([FILL, 0, 7])
this_curve = bytes([FILL, 1, 4, 6, 5])
keys = [key(1), key(5, flags=3), key(9, left=(3, 0, 0), right=(3, 0, 0)), far_key(4294967295)]

TREES = {
    "key_tree": {
        "sound": this_key + key_body(),
        "automatic": this_key + key_body(left=(3, 0, 0), right=(3, 5, 6)),
        "constrained": this_key + key_body(flags=3, left=(1, 5, 6), right=(0, 6, 5)),
        "nan": this_key + key_body(value=NAN_BITS),
        "huge": this_key + key_body(value=HUGE),
        "twice": this_key + key_body() + put(VALUE, 1),
        "raw": bytes([PUT_RAW_VALUE, VALUE, 4]) + b"1e-4" + bytes([TEXT, 3]) + b"abc",
    },
    "curve_tree": {
        "empty": this_curve,
        "keys": this_curve + b"".join(k + bytes([CLOSE]) for k in keys),
        "same_frame": this_curve + key(3) + bytes([CLOSE]) + key(3),
        "bad_unit": this_curve + put(TIME_UNIT, ZERO_DENOMINATOR),
        "negative_unit": put(TIME_UNIT, NEGATIVE_UNIT) + put(10, 1) + put(11, 1) + put(12, 1),
        "no_time": put(TIME_UNIT, ZERO_UNIT) + put(10, 1) + put(11, 1) + put(12, 1),
        "limits_reversed": put(TIME_UNIT, UNIT) + put(10, 6) + put(11, NAN) + put(12, NEGATIVE),
        "two_attribute_lists": this_curve + bytes([OPEN, ELEMENTS.index("<xmlattr>"), CLOSE]),
    },
    "layer_tree": {
        "sound": bytes([FILL, 2, 3]) + b"arm" + curve(*keys),
        "mute": bytes([FILL, 2, 1]) + b"m" + put(MUTE, TRUE) + curve(),
        "two_curves": bytes([FILL, 2, 0]) + curve(keys[0]) + bytes([CLOSE]) + curve(keys[1]),
        "no_curve": bytes([FILL, 2, 2]) + b"\xff\x00",
    },
    "animation_tree": {
        "empty": b"",
        "layers": layer(b"a", curve(*keys), bytes([CLOSE])) + layer(b"b", curve(), bytes([CLOSE])),
        "damaged_last": layer(b"a", curve(keys[0]), bytes([CLOSE])) + layer(b"b"),
        "name_of_any_bytes": layer(b"\xff\r\x01\0", curve(*keys), bytes([CLOSE])) + layer(b"\xed\xa0\x80", curve()),
        "foreign": bytes([OPEN, ELEMENTS.index("other"), TEXT, 2]) + b"xy" + bytes([CLOSE]) + layer(b"", curve()),
        "deep": bytes([OPEN, 0] * 60),
    },
}

XML_KEY = '<key value="%s" frame="%s"%s><left type="bezier" dx="-3" dy="0"/><right type="%s" dx="3" dy="0"/></key>'
XML_CURVE = '<curve timeUnit="1/25" minimum="-inf" maximum="inf" maximumDerivative="inf">%s</curve>'
XML_LAYER = '<layer name="%s">%s</layer>'
LAST_KEY = XML_KEY % ("nan(0x7fc00001)", 4294967295, ' smooth="true"', "bezier auto")


def xml(contents):
    return ('<?xml version="1.0" encoding="utf-8"?>\n<animation>%s</animation>\n' % contents).encode()


XMLS = {
    "empty": xml(""),
    "keys": xml(XML_LAYER % ("arm", XML_CURVE % (XML_KEY % ("0.5", 0, "", "linear") + LAST_KEY))),
    "names": xml(XML_LAYER % ("&#9;&lt;&amp;&quot;\u00fc&#x10ffff;", XML_CURVE % "")),
    "entities": xml('<!DOCTYPE a [<!ENTITY b "&c;&c;">]>' + XML_LAYER % ("&b;", XML_CURVE % "")),
    "comment": xml("<!-- <layer> --><![CDATA[<layer>]]>" + XML_LAYER % ("c", XML_CURVE % "")),
    "truncated": xml(XML_LAYER % ("arm", XML_CURVE % ""))[:60],
    "utf16": "<animation/>".encode("utf-16"),
    "deep": xml("<b>" * 60 + "</b>" * 60),
    "utf16_unmarked": "<animation/>".encode("utf-16-le"),
    "utf32": "<animation/>".encode("utf-32-be"),
    "byte_order_mark": b"\xef\xbb\xbf" + xml(XML_LAYER % ("\u00fc", XML_CURVE % "")),
    "latin1": xml(XML_LAYER % ("\u00fc", XML_CURVE % "")).decode().encode("latin-1"),
    "latin1_declared": xml("").replace(b"utf-8", b"ISO-8859-1"),
    "declared_late": b"<animation><?xml version='1.0' encoding='latin1'?></animation>",
    "overlong": b"<animation>\xc0\xaf\xe0\x80\x80\xf0\x80\x80\xaf</animation>",
    "surrogates": b"<animation>\xed\xa0\xbd\xed\xb8\x80</animation>",
    "beyond_unicode": b"<animation>\xf4\x90\x80\x80\xff</animation>",
    "half_character": b"<animation/>\xf0\x9f\xa6",
    "references": xml(XML_LAYER % ("&#0;&#x1;&#xd800;&#xfffe;&#x110000;&#x100000041;", XML_CURVE % "")),
    "unknown_references": xml(XML_LAYER % ("&nbsp;&amp&;&#;&#x;&#X41;", XML_CURVE % "")),
    "lines_in_names": xml(XML_LAYER % ("a\r\n\tb&#13;&#10;&#9;", XML_CURVE % "")),
    "controls_in_names": xml(XML_LAYER % ("a\1b\x7f", XML_CURVE % "")),
    "many_attributes": xml("<layer" + " a=''" * 300 + "/>"),
    "many_comments": xml("<!-- <!-- -->" * 100),
    "two_roots": xml("") + b"<animation/>",
    "no_time": xml(XML_LAYER % ("a", (XML_CURVE % "").replace("1/25", "0/1"))),
}

BVH = """HIERARCHY
ROOT hip
{
  OFFSET 0 0 0
  CHANNELS 2 Xposition Zrotation
  JOINT knee
  {
    OFFSET 0 -1.5 0
    CHANNELS 1 Xrotation
    End Site
    {
      OFFSET 0 -1 0
    }
  }
}
MOTION
Frames: %s
Frame Time: %s
"""

BVHS = {
    "walk": BVH % (2, ".0083333") + "1 2 3\n-0 1e-46 .5\n",
    "crlf": (BVH % (1, "0.04") + "1 2 3\n").replace("\n", "\r\n"),
    "billion_frames": BVH % (4294967295, "1e-9") + "1 2 3\n",
    "long_frame": BVH % (1, "2147483647") + "1 2 3\n",
    "too_large": BVH % (1, "1.7") + "1e39 2 3\n",
    "deep": "HIERARCHY\nROOT a\n{\nOFFSET 0 0 0\nCHANNELS 0\n" + "JOINT a { OFFSET 0 0 0 CHANNELS 0\n" * 300,
    "same_names": (BVH % (1, "0.04") + "1 2 3\n").replace("knee", "hip"),
    "truncated": (BVH % (1, "0.04"))[:100],
    "cr": (BVH % (1, "0.04") + "1 2 3\n").replace("\n", "\r"),
    "latin1": (BVH % (1, "0.04") + "1 2 3\n").replace("knee", "kn\u00ebe").encode("latin-1"),
    "utf16": (BVH % (1, "0.04") + "1 2 3\n").encode("utf-16"),
    "byte_order_mark": "\ufeff" + (BVH % (1, "0.04") + "1 2 3\n").replace("knee", "kn\u00ebe"),
    "not_finite": (BVH % (1, "0.04") + "nan inf 3\n").replace("-1.5", "-inf"),
    "billion_channels": (BVH % (1, "0.04")).replace("CHANNELS 2", "CHANNELS 1000000000"),
    "fewer_values": BVH % (2, "0.04") + "1 2 3\n1 2\n",
}


def command_key(frame):
    return bytes([frame, 1, 2, 5, 3, 2, 6, 4, 0])


STORY_HEAD = bytes([1, 4]) + b"".join(command_key(f) for f in (2, 5, 9, 20)) + bytes([2]) \
    + command_key(3) + command_key(8) + bytes([4, 12])
STRICT, WILD = b"\0", b"\1\0"
SINGLE, DRAG, BACK, WALK = range(4)

COMMANDS = {
    "singles": STRICT + STORY_HEAD + b"".join(bytes([SINGLE, kind, 0x35, 1, 1, 2, 1]) for kind in range(8)),
    "drags": STRICT + STORY_HEAD + b"".join(bytes([DRAG, kind, 0x33, 1, 2, 1, 15, 3, 4, 1, 7, 2]) for kind in range(5)),
    "walks": STRICT + STORY_HEAD + bytes([SINGLE, 2, 3, DRAG, 0, 0xFE, 1, 1, 1, 12, 3, BACK, WALK, 2, WALK, 0]),
    "wild": WILD + STORY_HEAD + b"".join(bytes([kind, 2, 0x35, 3, 9, 1, 4]) for kind in range(8)),
    "limited": b"\1\2" + STORY_HEAD + bytes([4, 2, 3, 4, 0, 1, 1, 5, 6, 3, 7, 1, 4, 5, 2]) * 3,
    "far_frames": STRICT + STORY_HEAD + bytes([DRAG, 3, 0xFF, 1, 1, 255, DRAG, 4, 0xFF, 1, 1, 254, 1])
    + bytes([DRAG, 0, 3, 1, 0, 1, 255]),
}


def write(target, seeds):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    for name, contents in seeds.items():
        (folder / name).write_bytes(contents if isinstance(contents, bytes) else contents.encode())


for tree_target, tree_seeds in TREES.items():
    write(tree_target, tree_seeds)
write("animation_xml", XMLS)
write("bvh", BVHS)
write("commands", COMMANDS)
