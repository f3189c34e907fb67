"""Makes archives that must not be unpacked: hostile.py FOLDER. Prints a line for each: its name, a tab, and a part of the expected error."""

import gzip
import io
import json
import os
import subprocess
import sys
import tarfile
import tempfile

folder = sys.argv[1]


def entry(name, kind=tarfile.REGTYPE, target="", content=b"x", size=None):
    info = tarfile.TarInfo(name)
    info.type, info.linkname = kind, target
    info.size = 0 if kind != tarfile.REGTYPE else len(content) if size is None else size
    return info, content


def link(name, target):
    return entry(name, tarfile.SYMTYPE, target)


def archive(*entries):
    data = io.BytesIO()
    with tarfile.open(fileobj=data, mode="w", format=tarfile.PAX_FORMAT) as tar:
        for info, content in entries:
            tar.addfile(info, io.BytesIO(content) if info.isreg() else None)
    return data.getvalue()


def described(text, *entries):
    return archive(*entries, entry(".qar-description.json", content=text.encode()))


def description(**changes):
    record = {"name": "a", "record": "a", "demo": False, "userData": "", "size": 1, "crc32": 0x8CDC1683}
    whole = {"format": 1, "version": "1", "entries": [record], "rootMacros": [], "tarvoPath": [], "classPath": []}
    for key, value in changes.items():
        (record if key in record else whole)[key] = value
    return json.dumps(whole)


a = entry("a")
hostile = {
    "parent.tar": ("leads upwards", archive(entry("../evil"))),
    "inner_parent.tar": ("leads upwards", archive(entry("a/../../evil"))),
    "parent_directory.tar": ("leads upwards", archive(entry("a/..", tarfile.DIRTYPE))),
    "absolute.tar": ("is absolute", archive(entry(os.path.join(os.path.abspath(folder), "evil")))),
    "no_name.tar": ("has no name", archive(entry("./."))),
    "too_long.tar": ("too long", archive(entry("d/" * 3000 + "a"))),
    "absolute_link.tar": ("may lead out", archive(link("a", "/etc"))),
    "link_up.tar": ("may lead out", archive(link("d/a", "../../evil"))),
    "link_through.tar": ("may lead out", archive(link("d/up", ".."), link("a", "d/up/../evil"))),
    "through_link.tar": ("l/evil: Not a directory", archive(link("l", "d"), entry("d/x"), entry("l/evil"))),
    "over_link.tar": ("occurs twice", archive(link("a", "d"), entry("a"))),
    "twice.tar": ("a: occurs twice", archive(a, entry("./a"))),
    "file_as_directory.tar": ("a/b: Not a directory", archive(a, entry("a/b"))),
    "directory_as_file.tar": ("a: File exists", archive(entry("a/b"), a)),
    "hard_link_out.tar": ("leads upwards", archive(entry("a", tarfile.LNKTYPE, "../evil"))),
    "hard_link_absolute.tar": ("is absolute", archive(entry("a", tarfile.LNKTYPE, "/etc/passwd"))),
    "hard_link_to_link.tar": ("not an earlier file", archive(link("d/l", "../x"), entry("a", tarfile.LNKTYPE, "d/l"))),
    "device.tar": ("neither a file", archive(entry("a", tarfile.CHRTYPE))),
    "fifo.tar": ("neither a file", archive(entry("a", tarfile.FIFOTYPE))),
    "nothing.tar": ("", b""),
    "no_tar.tar": ("", b"This is no archive at all." * 100),
    "no_end.tar": ("is truncated", archive(a)[:1024]),
    "no_end_after_header.tar": ("", archive(entry("é" * 200))[:1024]),
    "no_json.tar": ("cannot be read", described("{", a)),
    "deep.tar": ("too deeply", described("[" * 1000 + "]" * 1000, a)),
    "no_object.tar": ("cannot be read", described("[]", a)),
    "other_format.tar": ("unknown format", described(description(format=2), a)),
    "negative.tar": ("cannot be read", described(description(size=-1), a)),
    "fraction.tar": ("cannot be read", described(description(size=1.0), a)),
    "flag.tar": ("cannot be read", described(description(demo=1), a)),
    "large_checksum.tar": ("checksum in the description", described(description(crc32=1 << 32), a)),
    "digits.tar": ("hexadecimal text", described(description(name={"hex": "4g"}), a)),
    "odd_digits.tar": ("hexadecimal text", described(description(name={"hex": "123"}), a)),
    "zero_byte.tar": ("zero byte", described(description(version="a\0b"), a)),
    "other_checksum.tar": ("a: the content is damaged", described(description(crc32=7), a)),
    "other_size.tar": ("a: the content is damaged", described(description(size=2), a)),
    "missing.tar": ("a: is missing", described(description())),
    "unknown.tar": ("b: is missing in the description", described(description(), a, entry("b"))),
    "two_records.tar": ("occurs twice in the description", described(description(entries=2 * json.loads(description())["entries"]), a)),
    "description_link.tar": ("is not a file", archive(link(".qar-description.json", "a"))),
}

# Decompression bombs: the same content in gzip and in zstd, and a hole of 1 TiB in a few blocks.
zeros = archive(entry("zeros", content=bytes(100_000_000)))
hostile["bomb.tar.gz"] = ("decompression bomb", gzip.compress(zeros, 1))
hostile["bomb.tar.zst"] = (
    "decompression bomb",
    subprocess.run(["zstd", "-q"], input=zeros, stdout=subprocess.PIPE, check=True).stdout,
)
with tempfile.NamedTemporaryFile(dir=folder) as hole:
    hole.truncate(1 << 40)
    tar = subprocess.run(["tar", "-cSC", folder, os.path.basename(hole.name)], stdout=subprocess.PIPE, check=True)
    hostile["hole.tar"] = ("decompression bomb", tar.stdout)

for name, (text, data) in hostile.items():
    with open(os.path.join(folder, name), "wb") as file:
        file.write(data)
    print(name, text, sep="\t")
