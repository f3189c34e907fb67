#!/usr/bin/env python3
"""Compares the findings of qarread --check with Python's codecs: losses_test.py QARREAD CASE

Each case is a conversion. The test writes files with every kind of offence at every place of interest, and runs
qarread once for all of them. For each file, Python's strict codecs, which report where and why they fail, give the
expected result: the places, their lines and columns, the counts, and whether the file comes back.
"""

import codecs
import json
import os
import subprocess
import sys
import tempfile

MOST_PLACES = 16

# Each case has: the encodings, by the names of qarread and of Python; plain text without losses; offences that qarread
# and Python treat alike, which are malformed sequences and characters that the target lacks; and incomplete characters
# for the end of a text.
CASES = {
    "utf8_to_latin1": ("UTF-8:ISO-8859-1", "utf-8", "latin-1", "Größe ab\tÿ\n",
        [b"\xff", b"\xc3(", b"\xe2\x82", b"\xed\xa0\x80", b"\xf4\x90\x80\x80", b"\xc0\xaf", b"\x80\xbf", b"\xf0\x9f\x98(",
         "€".encode(), "日本".encode(), "😀".encode(), "\ufeff".encode(), "\ufffd".encode(), b"\xff\xff\xe2\x82\xac"],
        [b"\xc3", b"\xe2\x82", b"\xf0", b"\xf0\x9f\x98"]),
    "utf8_to_koi8r": ("UTF-8:KOI8-R", "utf-8", "koi8-r", "Дом и сад, 5°\n",
        [b"\xd0", b"\xfe", "é".encode(), "€".encode(), "ґ".encode(), "\U0001F3E0".encode()], [b"\xd0", b"\xe2\x82"]),
    "utf8_to_sjis": ("UTF-8:SHIFT_JIS", "utf-8", "cp932", "日本語 ｶﾅ abc\n",
        [b"\xe6\x97", b"\xff", "é".encode(), "€".encode(), "한".encode(), "😀".encode()], [b"\xe6", b"\xe6\x97"]),
    "utf8_to_utf16": ("UTF-8:UTF-16LE", "utf-8", "utf-16-le", "aé日😀\n",
        [b"\xff", b"\xe6\x97", b"\xf0\x9f\x98", b"\xed\xb2\x80"], [b"\xe6\x97"]),
    "utf8_to_gb18030": ("UTF-8:GB18030", "utf-8", "gb18030", "中文 aé\u0e01😀\n", [b"\xff", b"\xe4\xb8("], [b"\xe4\xb8"]),
    "utf8_to_iso2022jp": ("UTF-8:ISO-2022-JP", "utf-8", "iso2022_jp", "plain\n", ["日éé".encode(), "é".encode(), b"\xff" + "日".encode()],
        [b"\xc3"]),
    "utf8_to_iso2022kr": ("UTF-8:ISO-2022-KR", "utf-8", "iso2022_kr", "가 plain\n", ["日éé".encode(), "é".encode()], []),
    "utf8_to_ascii": ("UTF-8:US-ASCII", "utf-8", "ascii", "plain text, long enough to be copied in blocks\n",
        [b"\x80", "é".encode(), "日".encode(), "😀".encode()], [b"\xc3"]),
    "cp1253_to_utf8": ("CP1253:UTF-8", "cp1253", "utf-8", "Ένα € παιδί\n", [b"\xd2", b"\xff\xff"], []),
    "koi8r_to_ascii": ("KOI8-R:US-ASCII", "koi8-r", "ascii", "plain text\n", [b"\xd1", b"\xd1\xc1", b"\x80"], []),
    "latin1_to_cp1251": ("ISO-8859-1:CP1251", "latin-1", "cp1251", "abc § ©\n", [b"\xe9", b"\xff\xdf", b"\xa3"], []),
    "sjis_to_utf8": ("SHIFT_JIS:UTF-8", "shift_jis", "utf-8", "日本語 ｶﾅ abc\n", [b"\xfd", b"\x85 ", b"\xff\xfe", b"\x93\n", b"\x85@"],
        [b"\x93"]),
    "sjis_to_latin1": ("SHIFT_JIS:ISO-8859-1", "shift_jis", "latin-1", "only ascii\n",
        ["日本".encode("cp932"), "ｶ".encode("cp932"), b"\xfd"], [b"\x93"]),
    "eucjp_to_utf8": ("EUC-JP:UTF-8", "euc_jp", "utf-8", "日本語 ｶﾅ abc\n", [b"\xff", b"\xc6 "], [b"\xc6"]),
    "big5_to_utf8": ("BIG5:UTF-8", "cp950", "utf-8", "中文字 abc\n", [b"\xa4 ", b"\xa4\n"], [b"\xa4"]),
    "gb18030_to_utf8": ("GB18030:UTF-8", "gb18030", "utf-8", "中文 aé\u0e01😀\n", [b"\xff", b"\xd6 "], [b"\xd6"]),
    "gb18030_to_latin1": ("GB18030:ISO-8859-1", "gb18030", "latin-1", "aé\n", ["中".encode("gb18030"),
        "\u0e01😀".encode("gb18030"), b"\xff"], [b"\xd6"]),
    "utf16le_to_utf8": ("UTF-16LE:UTF-8", "utf-16-le", "utf-8", "aé日😀\n",
        [b"\x00\xd8a\x00", b"\x00\xdc", b"\x00\xdc\x00\xd8a\x00"], [b"a", b"\x3d\xd8", b"\x00\xdc"]),
    "utf16be_to_latin1": ("UTF-16BE:ISO-8859-1", "utf-16-be", "latin-1", "aé\n",
        [b"\xd8\x00\x00a", "日😀".encode("utf-16-be"), "\ufeff".encode("utf-16-be")], [b"\x00", b"\xd8\x3d"]),
    "utf32le_to_latin1": ("UTF-32LE:ISO-8859-1", "utf-32-le", "latin-1", "aé\n",
        ["日😀".encode("utf-32-le"), b"\x00\x00\x11\x00", b"\x00\xd8\x00\x00"], [b"a", b"\x00\x00\x01"]),
    "iso2022jp_to_utf8": ("ISO-2022-JP:UTF-8", "iso2022_jp", "utf-8", "日本語 abc\n", [b"\xff", b"\x80\x80"], []),
    "iso2022jp_to_latin1": ("ISO-2022-JP:ISO-8859-1", "iso2022_jp", "latin-1", "abc, def\n",
        ["日".encode("iso2022_jp"), "日本\n語".encode("iso2022_jp"), b"\xff"], []),
    "iso2022kr_to_utf8": ("ISO-2022-KR:UTF-8", "iso2022_kr", "utf-8", "abc, def\n", [b"\xe9", b"\xff\xff"], []),
    "iso2022kr_to_latin1": ("ISO-2022-KR:ISO-8859-1", "iso2022_kr", "latin-1", "abc, def\n",
        [b"\x0e\x30\x21\x30\x22\x0f"], []),
}

# A designator at the start of a text, which is not a character.
HEADERS = {"iso2022_kr": b"\x1b$)C"}


def characters(data, codec):
    """Yields (offset, length, character) of each character, and (offset, length, None) of each malformed sequence."""
    decoder = codecs.getincrementaldecoder(codec)("strict")
    begin = at = 0
    while at < len(data):
        held = len(decoder.getstate()[0])
        try:
            text = decoder.decode(data[at:at + 1], at + 1 == len(data))
        except UnicodeDecodeError as error:
            first = at - held + error.start
            length = error.end - error.start
            yield first, length, None
            at = first + length
            decoder.reset()
            continue
        at += 1
        if text:
            begin = at - held - 1
            yield begin, at - begin, text


def expected(data, from_codec, to_codec):
    """The member `losses` of the JSON record; and the decoded text, or None if anything is lost."""
    places, counts, text, line, column = [], {"malformed": 0, "unmappable": 0}, "", 1, 1
    for offset, length, character in characters(data, from_codec):
        kind = "malformed" if character is None else "" if is_in(character, to_codec) else "unmappable"
        if kind:
            counts[kind] += 1
            code = "U+FFFD" if character is None else f"U+{ord(character):04X}"
            places.append({"offset": offset, "length": length, "line": line, "column": column, "character": code,
                           "malformed": character is None})
        text += character or "\ufffd"
        line, column = (line + 1, 1) if character == "\n" else (line, column + 1)
    counts["places"] = places[:MOST_PLACES]
    return counts, None if places else text


def is_in(character, codec):
    try:
        return bool(character.encode(codec))
    except UnicodeEncodeError:
        return False


def encode(text, codec):
    """Encodes `text` without the header."""
    return text.encode(codec).removeprefix(HEADERS.get(codec, b""))


def samples(codec, plain, offences, endings):
    """Yields the contents of the files, without their header."""
    text, one, newline = (encode(part, codec) for part in (plain, "x", "\r\n"))

    def filling(size):
        return text * (size // len(text))

    yield text
    yield filling(40000)
    for offence in offences:
        yield offence
        yield offence + text
        yield text + offence
        yield text + newline + offence + newline + offence + text
        # At every place of the blocks in which the library converts a text.
        for first in range(0, 64, MOST_PLACES):
            yield b"".join(filling(64) + one * extra + offence for extra in range(first, first + MOST_PLACES))
        for count in (MOST_PLACES - 1, MOST_PLACES + 1, 200):
            yield (text + offence) * count + text
    # Around the borders of blocks, of input and of output.
    for number in range(max(12, len(offences))):
        for border in (4096, 16384, 65536):
            offence = offences[number % len(offences)]
            before = filling(border - 32)
            yield before + one * ((border - 6 + number - len(before)) // len(one)) + offence + text + offence
    yield filling(40000) + b"".join(offence + text for offence in offences)
    for ending in endings:
        yield ending
        for border in (64, 4096):
            yield filling(border) + text + ending


def main(program, case):
    names, from_codec, to_codec, plain, offences, endings = CASES[case]
    failures = 0
    with tempfile.TemporaryDirectory() as work:
        os.chdir(work)
        header = HEADERS.get(from_codec, b"")
        contents = [header + content for content in samples(from_codec, plain, offences, endings)]
        paths = [f"{number}.txt" for number in range(len(contents))]
        for path, content in zip(paths, contents):
            with open(path, "wb") as file:
                file.write(content)
        check = [program, "--check", "--transcode", names + ":txt"]
        found = subprocess.run(check + ["--json"] + paths, capture_output=True)
        lines = found.stdout.decode().splitlines()
        subprocess.run(["python3", "-m", "json.tool", "--json-lines"], input=found.stdout, check=True,
                       stdout=subprocess.DEVNULL)
        assert found.returncode == 1 and not found.stderr and len(lines) == len(paths), found
        told = subprocess.run(check + paths, capture_output=True).stdout.decode().splitlines()
        wanted = []
        for path, content, line in zip(paths, contents, lines):
            losses, text = expected(content, from_codec, to_codec)
            record = json.loads(line)
            converted = None if text is None else text.encode(to_codec)
            returns = text is not None and header + encode(converted.decode(to_codec), from_codec) == content
            record_wanted = {"path": path, "reader": "transform", "transform": names.replace(":", " to "),
                             "in": len(content), "out": record["out"] if text is None else len(converted),
                             "status": "ok", "reversible": returns, "losses": losses}
            if record != record_wanted or list(record) != list(record_wanted):
                failures += 1
                print("FAILED:", path, content[:60], "...", content[-60:], f"\n  found  {record}\n  wanted {record_wanted}")
            wanted += lines_about(path, content, losses, returns, names)
        if told != wanted:
            failures += 1
            print("FAILED: lines", [pair for pair in zip(told, wanted) if pair[0] != pair[1]][:3])
    print(len(contents), "texts,", failures, "failures")
    return min(failures, 1)


def lines_about(path, content, losses, returns, names):
    from_name, to_name = names.split(":")
    for place in losses["places"]:
        what = f"{place['character']} is not in {to_name}"
        if place["malformed"]:
            piece = content[place["offset"]:place["offset"] + place["length"]]
            what = f"{piece.hex(' ').upper()} is malformed in {from_name}"
        yield f"{path}:{place['line']}:{place['column']}: {what}"
    more = losses["malformed"] + losses["unmappable"] - len(losses["places"])
    if more:
        yield f"{path}: and {more} more loss" + ("es" if more > 1 else "")
    yield f"{path}: {'comes' if returns else 'does not come'} back byte for byte"


if __name__ == "__main__":
    sys.exit(main(os.path.realpath(sys.argv[1]), sys.argv[2]))
