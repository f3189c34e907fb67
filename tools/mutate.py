#!/usr/bin/env python3
"""Changes one condition, constant or statement of the library at a time, in a copy of the tree, and tells which
changes the fast tests do not notice.

usage: mutate.py COPY LIMIT [SEED|RESULTS]     COPY is a configured tree, built in COPY/build/gcc; RESULTS, what an
                                               earlier run printed, of which the same changes are made again
"""
import os
import pathlib
import random
import re
import signal
import subprocess
import sys

RULES = [
    (r" == ", " != "), (r" != ", " == "), (r" < ", " <= "), (r" > ", " >= "), (r" <= ", " < "), (r" >= ", " > "),
    (r" && ", " || "), (r" \|\| ", " && "), (r"\(!", "("), (r" \+ ", " - "), (r" - ", " + "), (r" \+= ", " -= "),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"\b(\d+)\b", lambda m: str(int(m[1]) + 1)),
    (r"^(\s+)[\w:>.\-]+ [+\-]?= [^;{]*;$", r"\1;"), (r"^(\s+)[\w:>.\-]+\([^;{]*\);$", r"\1;"),
    (r"\bif \((?!constexpr)", "if (!"), (r"\bbreak;", ";"), (r"\bcontinue;", ";"),
]
SKIPPED = r"^\s*(//|#|static_assert|using|namespace)|\btemplate\b|\"C\""
TESTS = ["--exclude-regex", "CodePages|Slices|WipedKeys|Instructions|Allocations|Races",
         "--stop-on-failure", "--timeout", "60", "--parallel", "2", "--output-on-failure"]


def mutants(tree):
    for path in sorted([*tree.glob("src/**/*.?pp"), *tree.glob("platform/*/src/*.?pp")]):
        lines = path.read_text().split("\n")
        for number, line in enumerate(lines):
            code = line.split("  //")[0]
            if re.search(SKIPPED, code):
                continue
            for pattern, replacement in RULES:
                for match in re.finditer(pattern, code):
                    changed = code[:match.start()] + match.expand(replacement) + code[match.end():] \
                        if isinstance(replacement, str) else code[:match.start()] + replacement(match) + code[match.end():]
                    yield path, number, line, changed


def passes(*command, limit=90):
    with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True) as run:
        try:
            return run.wait(limit) == 0
        except subprocess.TimeoutExpired:  # some changes have no end
            os.killpg(run.pid, signal.SIGKILL)
            return False


def describe(tree, path, number, line, changed):
    return f"{path.relative_to(tree)}:{number + 1}: {line.strip()}  ->  {changed.strip()}"


def chosen(tree, choice):
    every = list(mutants(tree))
    if pathlib.Path(choice).is_file():
        wanted = {line.split(" ", 1)[1] for line in pathlib.Path(choice).read_text().splitlines() if "  ->  " in line}
        return [mutant for mutant in every if describe(tree, *mutant) in wanted]
    random.Random(int(choice)).shuffle(every)
    return every


def main():
    if len(sys.argv) not in (3, 4) or not sys.argv[2].isdigit():
        print("usage: tools/mutate.py COPY LIMIT [SEED|RESULTS]", file=sys.stderr)
        sys.exit(2)
    tree, limit = pathlib.Path(sys.argv[1]), int(sys.argv[2])
    every = chosen(tree, sys.argv[3] if len(sys.argv) > 3 else "1")
    build = str(tree / "build/gcc")
    counts = dict(caught=0, survived=0, invalid=0)
    for path, number, line, changed in every:
        if counts["caught"] + counts["survived"] == limit:
            break
        text = path.read_text()
        lines = text.split("\n")
        lines[number] = changed
        path.write_text("\n".join(lines))
        if not passes("cmake", "--build", build):
            verdict = "invalid"
        else:
            verdict = "survived" if passes("ctest", "--test-dir", build, *TESTS) else "caught"
        path.write_text(text)
        counts[verdict] += 1
        if verdict != "invalid":
            print(verdict, describe(tree, path, number, line, changed), flush=True)
    print(", ".join(f"{count} {verdict}" for verdict, count in counts.items()), f"of {len(every)} possible")


main()
