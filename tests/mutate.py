#!/usr/bin/env python3
"""Changes one condition, constant or statement of the library at a time, in a copy of the tree, and tells which
changes the fast tests do not notice.

usage: mutate.py COPY LIMIT [SEED]     COPY is a configured tree, built in COPY/build/gcc
"""
import pathlib
import random
import re
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
TESTS = ["--exclude-regex", "CodePages|Slices|WipedKeys|Performance|Instructions|Allocations|SystemCalls\\.Are|Races",
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


def passes(*command, limit=300):
    try:
        return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=limit).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def main():
    tree, limit = pathlib.Path(sys.argv[1]), int(sys.argv[2])
    every = list(mutants(tree))
    random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1).shuffle(every)
    build = str(tree / "build/gcc")
    caught, survivors, invalid = 0, [], 0
    for path, number, line, changed in every:
        if caught + len(survivors) == limit:
            break
        text = path.read_text()
        lines = text.split("\n")
        lines[number] = changed
        path.write_text("\n".join(lines))
        if not passes("cmake", "--build", build):
            invalid += 1
        elif passes("ctest", "--test-dir", build, *TESTS):
            survivors.append(f"{path.relative_to(tree)}:{number + 1}: {line.strip()}  ->  {changed.strip()}")
            print("survived", survivors[-1], flush=True)
        else:
            caught += 1
        path.write_text(text)
    print(f"{caught} caught, {len(survivors)} survived, {invalid} did not compile, of {len(every)} possible")


main()
