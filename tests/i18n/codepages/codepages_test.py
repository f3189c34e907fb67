#!/usr/bin/env python3
"""codepages_test.py CODEPAGES PAGE [--update]: compares docs/codepages.md with the converters, or updates its tables.

CODEPAGES checks every code point with every converter, and prints what it finds. Whatever is not in a table of PAGE,
and the reasons for the differences from iconv, are written by hand. Other versions of ICU and glibc have other
characters, so the tables are only compared if PAGE was made with the same versions.
"""

import difflib
import os
import re
import subprocess
import sys

SHOWN_CODES = 20
ALL_CHARACTERS = 0x110000 - 0x800  # all but the surrogates


def row(*cells):
    return "| " + " | ".join(cells) + " |\n"


def table(header, rows):
    return row(*header) + "|" + "---|" * len(header) + "\n" + "".join(rows)


def listed(codes):
    """The number of codes, and the first ones."""
    codes = codes.split()
    shown = " ".join(codes[:SHOWN_CODES]) + (" ..." if len(codes) > SHOWN_CODES else "")
    return f"{len(codes)}: {shown}" if codes else ""


def yes(flag):
    return "yes" if flag == "1" else ""


def pages_table(found, faults):
    with open(os.path.join(os.path.dirname(__file__), "pages.txt"), encoding="utf-8") as lines:
        purposes = dict(re.split("  +", line.strip()) for line in lines if line.strip() and line[0] != "#")
    pages = {name: counts for name, *counts in found["page"]}
    losses = {}  # for each name, whether each of its differences is a loss
    for name, _, _, is_loss in found["difference"]:
        losses.setdefault(name, []).append(is_loss)
    # Pages that iconv lacks: all codes are compared with Python's codec. The row of the converter shows whether any other
    # character is written.
    for name, codes in found["codes"]:
        if [chr(int(code, 16)) for code in codes.split()] != list(bytes(range(256)).decode(name.lower())):
            faults.append(f"{name} differs from Python's codec")
        ((kept, *others),) = [fields[2:6] for fields in found["converter"] if name in fields[1].split()]
        if others != ["0", "", ""]:
            faults.append(f"{name} has other characters than Python's codec")
        pages[name] = [kept, "0", "0"]
    rows = []
    for name, purpose in purposes.items():
        written, in_pieces, otherwise = pages[name]
        lost = losses.get(name, [])
        agrees = "all"
        if lost:
            agrees = "see below" if "1" in lost else "all, and more"
        back = [f"{in_pieces} in pieces"] * (in_pieces != "0") + [f"{otherwise} as another one"] * (otherwise != "0")
        rows.append(row(name, purpose, written, agrees, ", ".join(back) or "all"))
    return table(["name", "for", "characters", "what iconv has", "comes back"], rows)


def differences_table(differences, page, is_same_version, faults):
    by_row, by_kind = {}, {}
    for name, what, which, reason in re.findall(r"^\| (.+?) \| (.+?) \| (.*?) \| (.+?) \|$", page, re.MULTILINE):
        by_row[name, what, which] = by_kind[name, what] = reason
    rows = []
    for name, what, which, is_loss in differences:
        reason = by_row.get((name, what, which), "") if is_same_version else by_kind.get((name, what), "")
        rows.append(row(name, what, which, reason))
        if not reason and (is_same_version or is_loss == "1"):
            faults.append(rows[-1].strip() + " has no reason in docs/codepages.md")
    return table(["name", "difference", "which", "reason"], rows)


def converters_table(converters, refused):
    rows = []
    for name, aliases, kept, in_pieces, not_read, not_rewritten, ascii_bytes, states in converters:
        names = ""
        for alias in aliases.split():
            if alias != name and len(names) < 60:
                names += (", " if names else "") + alias
        lossless = ", lossless" if int(kept) >= ALL_CHARACTERS and not not_read else ""
        rows.append(row(name, names, kept + lossless, "" if in_pieces == "0" else in_pieces, listed(not_read),
                        listed(not_rewritten), yes(ascii_bytes), yes(states)))
    header = ["table", "names", "characters", "in pieces", "not read", "not rewritten", "ASCII", "states"]
    return (table(header, rows) + "\nRefused, since their converters drop text, or write it depending on how it is "
            "split, or need options:\n" + ", ".join(f"`{name}`" for (name,) in refused) + ".\n")


def main(program, path, update=None):
    finished = subprocess.run([program], stdout=subprocess.PIPE, text=True, check=False)
    if finished.returncode < 0:
        sys.exit(f"{program} ended by signal {-finished.returncode}")
    faults = ["the converters have faults"] * (finished.returncode != 0)
    found = {"refused": [], "converter": [], "page": [], "difference": [], "codes": [], "versions": []}
    for line in finished.stdout.splitlines():
        kind, *fields = line.split("\t")
        found[kind].append(fields)
    with open(path, encoding="utf-8") as file:
        page = file.read()

    ((icu, glibc),) = found["versions"]
    versions = f"Made with ICU {icu} and glibc {glibc}; other versions have other tables.\n"
    is_same_version = "\n" + versions in page
    tables = {
        "versions": versions,
        "pages": pages_table(found, faults),
        "differences": differences_table(found["difference"], page, is_same_version, faults),
        "converters": converters_table(found["converter"], found["refused"]),
    }
    described = re.sub(r"(<!-- table: (\w+) -->\n).*?(?=<!-- end -->)", lambda mark: mark[1] + tables.pop(mark[2]),
                       page, flags=re.DOTALL)
    assert not tables, f"{path} has no place for {tables.keys()}"

    if update:
        with open(path, "w", encoding="utf-8") as file:
            file.write(described)
    elif not is_same_version:
        print(f"no fault found; not compared with the tables, which have other versions. Here: {versions}")
    elif described != page:
        sys.stdout.writelines(difflib.unified_diff(page.splitlines(True), described.splitlines(True), path, "found"))
        faults.append("the tables differ; update them with ./dev codepages")
    sys.exit("\n".join(faults) or None)


main(*sys.argv[1:])
