#!/usr/bin/env python3
"""Names with any bytes, and a very large number of names: names_test.py QARREAD"""

import json
import os
import re
import resource
import subprocess
import sys
import tempfile

PROGRAM = os.path.realpath(sys.argv[1]).encode()
# Bytes that have a meaning for a terminal, a shell, JSON, the program or an encoding.
INTERESTING = bytes.fromhex("01090a1b2022272a2c2d2e3a5b5c5d7b7d7e7f80858a939fa0a1bfc0c2c3d0dfe0e2edeff0f4f8fcfeff")
LONG = [byte * 255 for byte in (b"\xff", b"\n", b"\x1b", b"\xc3", b"x", b"\\")] + ["é".encode() * 127, b"x,y.[ab]"]
OPTIONS = [b"-r", b"--stat", b"--help", b"--chunk=0", b"--nonsense", b"---", b"-\xff", b"- x", b"-!", b"[a,b]", b"%s"]


def names():
    yield from (bytes([byte]) for byte in range(1, 256) if byte not in b"./")
    yield from (bytes(pair) for pair in ((a, b) for a in INTERESTING for b in INTERESTING) if bytes(pair) != b"..")
    yield from LONG


def make(folder, all_names):
    """Creates a file for each name, with the name as content."""
    os.mkdir(folder)
    for name in all_names:
        with open(os.path.join(folder, name), "wb") as file:
            file.write(name)


def run(*arguments, locale="C.UTF-8", **options):
    environment = {**os.environ, "LC_ALL": locale}
    return subprocess.run([PROGRAM, *arguments], capture_output=True, env=environment, **options)


def check_content():
    make(b"short", names())
    content = b"".join(sorted(names()))
    for locale in "C.UTF-8", "ja_JP.SJIS", "de_DE.ISO-8859-1", "no_such_locale":
        found = run("-r", "short", locale=locale)
        assert (found.returncode, found.stderr) == (0, b"") and found.stdout == content, (locale, found.stderr[:300])
    paths = b"".join(b"short/" + name + b"\0" for name in sorted(names()))
    for end in paths, paths[:-1]:
        assert run("--files0-from", "-", input=end).stdout == content
    make(b"options", OPTIONS)
    found = run("--", *OPTIONS, cwd=b"options")
    assert (found.returncode, found.stdout) == (0, b"".join(OPTIONS)), found


def check_mark():
    """A name that begins with the prefix which the factory drops."""
    with open("short.mark", "w") as decoy:
        decoy.write("decoy")
    assert b"decoy" not in run("//:short.mark").stdout


def check_lines():
    """There is one line for each name, without any character that could control a terminal."""
    printable = re.compile(r"[^\x00-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]*")
    count = len(list(names()))
    for arguments, rows in ((("--stat",), count + 1), (("--catalogue",), count),
                            (("--check", "--transcode", "UTF-8:UTF-16LE:[ab]"), 1)):
        found = run("-r", *arguments, "short").stdout.decode()
        lines = found.splitlines()
        assert found.count("\n") == len(lines) == rows, (arguments, len(lines))
        assert all(printable.fullmatch(line) for line in lines), arguments
    missing = run(*(b"missing/" + name for name in names()), b"a\r\nb").stderr.decode()
    assert missing.count("\n") == count + 1 and all(printable.fullmatch(line) for line in missing.split("\n"))


def check_json():
    """JSON has the exact names in every locale; names that are not UTF-8 appear as digits."""
    for locale in "C.UTF-8", "ja_JP.SJIS":
        for mode in "--stat", "--check":
            found = run("-r", mode, "--json", "short", locale=locale)
            subprocess.run(["python3", "-m", "json.tool", "--json-lines"], input=found.stdout, check=True,
                           stdout=subprocess.DEVNULL)
            paths = [json.loads(line)["path"] for line in found.stdout.split(b"\n")[:-1]]
            assert [path.encode() if isinstance(path, str) else bytes.fromhex(path["hex"]) for path in paths] == [
                b"short/" + name for name in sorted(names())]
            assert all(isinstance(path, dict) != is_utf8(b"short/" + name) for path, name in zip(paths, sorted(names())))


def is_utf8(name):
    try:
        return bool(name.decode())
    except UnicodeDecodeError:
        return False


def check_multitude():
    """10^5 files, with limits on memory and on open files."""
    def limit():
        if "SANITIZED" not in os.environ:  # sanitizers reserve more
            resource.setrlimit(resource.RLIMIT_AS, (200 << 20, 200 << 20))
        resource.setrlimit(resource.RLIMIT_NOFILE, (8, 8))

    for folder in range(1000):
        os.makedirs(f"many/{folder % 10}/{folder}")
        for number in range(100):
            os.symlink("t", f"many/{folder % 10}/{folder}/{number}.txt")
    paths = sorted(os.path.join(folder, name).encode() for folder, _, found in os.walk("many") for name in found)
    for arguments, given in ((("-r", "many"), b""), (("--files0-from", "-"), b"\0".join(paths))):
        found = run("--check", "--json", *arguments, input=given, preexec_fn=limit)
        assert (found.returncode, found.stderr) == (0, b""), found.stderr[:300]
        lines = found.stdout.splitlines()
        assert len(lines) == 10**5 and {json.loads(line)["path"].encode() for line in lines} == set(paths)


with tempfile.TemporaryDirectory(dir="/dev/shm" if os.access("/dev/shm", os.W_OK) else None) as work:
    os.chdir(work)
    for check in check_content, check_mark, check_lines, check_json, check_multitude:
        check()
