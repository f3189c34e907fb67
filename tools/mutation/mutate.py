#!/usr/bin/python3 -B
"""Changes one place of the library at a time, and prints the changes that no test detects.

usage: mutate.py COPY [FILE...]     COPY is a copy of the tree, whose sources are overwritten, configured in COPY/build;
                                    FILE is one of its sources; without it, the whole library is mutated, and a mutant
                                    is tested for a few seconds only

All mutants are compiled at once; the environment variable MUTANT selects one at run time. Each mutant is tested by the
tests that reach its place, until one fails.
"""
import collections
import concurrent.futures
import json
import math
import os
import pathlib
import resource
import shlex
import subprocess
import sys

import places
import suite
from sources import Source

FOLDERS = ["src", "include", "platform/*/src", "platform/*/include"]
EQUIVALENT = "equivalent.txt"
LEFT_OUT = "has_avx2.cpp"       # selects one of two ways with the same results
LONGEST = 10                    # seconds of processor time for a mutant of the whole library
JOBS = os.cpu_count()


def units(build, wanted):
    """The translation units to parse, each with the compiler options that affect parsing."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        meaning = []
        options = iter(shlex.split(entry["command"]))
        for option in options:
            if option in ("-isystem", "-include"):
                meaning += [option, next(options)]
            elif option.startswith(("-I", "-std", "-D")) and not option.endswith("_EXPORTS"):
                meaning.append(option)
        if entry["file"] in wanted:
            found[entry["file"], *meaning] = entry["file"], meaning
    return list(found.values())


def in_parallel(function, all_arguments):
    with concurrent.futures.ProcessPoolExecutor(JOBS) as pool:
        return list(pool.map(function, *zip(*all_arguments))) if all_arguments else []


def equivalent(chosen):
    """The names of the mutants of the chosen sources that are listed as equivalent."""
    lines = (pathlib.Path(__file__).parent / EQUIVALENT).read_text(encoding="utf-8").splitlines()
    return {line for line in lines if line.split(":")[0] in chosen}


def find_mutants(read, sources, chosen):
    """Finds the mutants of the chosen sources, without the equivalent ones. Returns them, and how many were left out."""
    for found in in_parallel(places.find, [(file, options, chosen) for file, options in read]):
        for name, place, kind, changed in sorted(found, key=str):
            sources[name].add(place, kind, changed)
    listed = equivalent({sources[name].name for name in chosen})
    left_out, names = [], collections.Counter()
    for name in chosen:
        for mutant in sources[name].mutants():
            names[mutant.name] += 1
            if names[mutant.name] > 1:
                mutant.name += f"  ({names[mutant.name]})"
            if mutant.name in listed:
                left_out.append(mutant)
        sources[name].leave_out(left_out)
    for unknown in sorted(listed - {mutant.name for mutant in left_out}):
        print(f"{EQUIVALENT} has a mutant that does not exist: {unknown}", flush=True)
    mutants = [mutant for name in chosen for mutant in sources[name].mutants()]
    for number, mutant in enumerate(mutants, 1):
        mutant.number = number
    return mutants, len(left_out)


def write_mutants(read, sources, chosen):
    """Writes the chosen sources with all mutants that compile; returns these."""
    while read:
        for name in chosen:
            sources[name].write()
        results = in_parallel(places.errors, [(file, options, chosen) for file, options in read])
        read = [unit for unit, errors in zip(read, results) if errors]
        errors = {(what, tuple(around)) for errors in results for what, around in errors}
        dropped = [what for what, around in errors if any(sources[name].drop(offset) for name, offset in around)]
        if errors and not dropped:
            sys.exit("mutate: this does not compile\n" + "\n".join(what for what, _ in errors))
    return [mutant for name in chosen for mutant in sources[name].mutants()]


def ask(asked, mutants, longest):
    """Yields each mutant and the name of the test that detects it, or None; prints the undetected ones."""
    everything = suite.Suite(asked, longest)
    with concurrent.futures.ThreadPoolExecutor(2 * JOBS) as pool:      # a test may wait
        for mutant, killer in zip(mutants, pool.map(everything.killer, mutants)):
            if killer is None:
                met = any(test.met[mutant.number] for test in asked)
                print(mutant, "" if met else ", not reached or without a difference", sep="", flush=True)
            yield mutant, killer


def processor_time():
    return sum(used.ru_utime + used.ru_stime
               for used in map(resource.getrusage, (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN)))


def progress(*words):
    print(f"mutate: {processor_time():5.0f} s:", *words, file=sys.stderr, flush=True)


def main():
    if len(sys.argv) < 2 or not os.path.isdir(os.path.join(sys.argv[1], "build")):
        sys.exit(__doc__)
    tree = pathlib.Path(sys.argv[1]).resolve()
    build = tree / "build"
    sources = {str(path): Source(path, str(path.relative_to(tree)))
               for folder in FOLDERS for path in sorted(tree.glob(folder + "/**/*.?pp"))
               if path.name != LEFT_OUT}
    named = {str(tree / name) for name in sys.argv[2:]} or set(sources)
    if unknown := named - set(sources):
        sys.exit(f"mutate: not a source of the library: {', '.join(unknown)}")
    chosen = [path for path in sources if path in named]
    read = units(build, sources if any(name.endswith(".hpp") for name in chosen) else chosen)
    found, left_out = find_mutants(read, sources, chosen)
    mutants = write_mutants(read, sources, chosen)
    progress(f"{len(mutants)} mutants; {len(found) - len(mutants)} more do not compile, {left_out} are equivalent")
    subprocess.run(["cmake", "--build", build, "--", "--quiet"], stdout=sys.stderr, check=True)
    progress("built")
    everything = list(suite.tests(build))
    with concurrent.futures.ThreadPoolExecutor(JOBS) as pool:
        usable = list(pool.map(lambda test: suite.record(test, len(found)), everything))
    asked = [test for test, can_be in zip(everything, usable) if can_be and any(test.met)]
    progress(f"{len(asked)} tests are used; not used, since slow or failing without a mutant:",
             *(test.name for test, can_be in zip(everything, usable) if not can_be))
    all_of, noticed = collections.Counter(), collections.Counter()
    for mutant, killer in ask(asked, mutants, math.inf if sys.argv[2:] else LONGEST):
        all_of[mutant.kind] += 1
        noticed[mutant.kind] += killer is not None
    for kind, count in sorted(all_of.items()):
        print(f"{kind:10} {noticed[kind]:5} of {count:5} detected")
    print(f"{'all':10} {noticed.total():5} of {all_of.total():5} detected, {noticed.total() / all_of.total():.1%}, in "
          f"{processor_time() / 60:.0f} minutes of processor time")


main()
