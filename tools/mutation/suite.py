"""Lists the tests of a built tree, and runs them with a mutant."""
import collections
import dataclasses
import json
import math
import os
import re
import select
import shutil
import signal
import subprocess
import tempfile

NOT_RUN = r"CodePages|Instructions|qarread\.names"      # each takes minutes, in many processes
SLOWEST = 8             # seconds of processor time; slower tests are not run with mutants either
RECORDING = 10          # how much slower a test may be when it records which mutants it reaches
NEARBY = 12             # how many tests that detected mutants nearby are run first
FIRST_BATCH = 0.1       # seconds of processor time of the first tests of a program that share a process
MEMORY = 6 << 30        # bytes; some mutants allocate without end


@dataclasses.dataclass(eq=False)
class Test:
    name: str
    command: list
    directory: str
    environment: dict
    skipped: int            # the exit status of a skipped test
    program: str = ""       # a GoogleTest program and its environment
    case: str = ""          # the filter of this test in that program
    seconds: float = 0      # processor time without a mutant
    start: float = 0        # the part of it that any case of the program needs
    met: bytes = b""        # for each mutant, whether the test reaches it


def tests(build):
    listed = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1"], capture_output=True, check=True)
    for entry in json.loads(listed.stdout)["tests"]:
        if "command" not in entry or re.match(NOT_RUN, entry["name"]):
            continue
        properties = {each["name"]: each["value"] for each in entry["properties"]}
        test = Test(entry["name"].split("  #")[0], entry["command"], properties.get("WORKING_DIRECTORY", build),
                    dict(each.split("=", 1) for each in properties.get("ENVIRONMENT", [])),
                    properties.get("SKIP_RETURN_CODE", 0))
        if match := re.match(r"--gtest_filter=(.*)", "".join(test.command[1:2])):
            test.program, test.case = f"{test.command[0]} {test.environment}", match[1]
        yield test


def run(test, environment, limit):
    """Runs a test with at most `limit` seconds of processor time. Returns whether it passed, its output and its seconds
    of processor time. Removes the files and processes that it leaves behind."""
    scratch = tempfile.mkdtemp(prefix="mutant.")
    os.chmod(scratch, 0o755)        # for tests that give up the rights of root
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen(
            ["prlimit", f"--cpu={limit}", f"--as={MEMORY}", "--core=0", *test.command], cwd=test.directory,
            env={**os.environ, **test.environment, **environment, "TMPDIR": scratch}, start_new_session=True,
            stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT)
        ended = os.pidfd_open(process.pid)
        waiting = select.poll()
        waiting.register(ended, select.POLLIN)
        waiting.poll(1000 * (10 + 10 * limit))      # ends tests that wait for ever; generous for busy machines
        os.killpg(process.pid, signal.SIGKILL)      # with all processes that it started
        os.close(ended)
        _, status, used = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        printed = output.read().decode(errors="replace")
    shutil.rmtree(scratch, ignore_errors=True)
    return process.returncode in (0, test.skipped), printed, used.ru_utime + used.ru_stime


def record(test, mutants):
    """Runs a test without a mutant: sets its time and the mutants that it reaches. Returns whether it can be used."""
    passed, _, test.seconds = run(test, {}, SLOWEST)
    if not passed or test.seconds >= SLOWEST:
        return False
    with tempfile.NamedTemporaryFile() as shared:
        os.chmod(shared.name, 0o666)
        shared.truncate(mutants + 1)
        run(test, {"MUTANT": str(-mutants - 1), "MUTANTS_MET": shared.name}, RECORDING * SLOWEST)
        test.met = shared.read()
    return True


def together(cases):
    """One test that runs the cases of one program in one process, up to the first failure."""
    one = cases[0]
    chosen = "--gtest_filter=" + ":".join(case.case for case in cases)
    return dataclasses.replace(one, command=[one.command[0], chosen, "--gtest_fail_fast", *one.command[2:]], case="",
                               seconds=one.start + sum(case.seconds - case.start for case in cases))


def batches(tests, length):
    """The same tests, with the successive cases of each program combined. The first batch of a program takes `length`
    seconds, each further one twice as long as the previous one, since most mutants fail early."""
    found, cases, lengths = [], collections.defaultdict(list), {}
    for test in tests:
        if not test.program:
            found.append(test)
            continue
        cases[test.program].append(test)
        batch = together(cases[test.program])
        if batch.seconds - batch.start >= lengths.setdefault(test.program, length):
            found.append(batch)
            cases.pop(test.program)
            lengths[test.program] *= 2
    return [*found, *map(together, cases.values())]


class Suite:
    """Finds a test that detects a mutant. Tests that detected mutants nearby run first. After `longest` seconds of
    processor time, no further test is run with a mutant."""

    def __init__(self, asked, longest):
        self.longest = longest
        self.asked = sorted(asked, key=lambda test: test.seconds)
        for test in reversed(self.asked):
            test.start = min(other.seconds for other in self.asked if other.program == test.program)
        self.detected = collections.defaultdict(list)       # file: [(line, test that detected a mutant there)...]

    def killer(self, mutant):
        """The name of the test that detects the mutant, or None."""
        able = [test for test in self.asked if test.met[mutant.number]]
        detected = sorted(self.detected[mutant.source.name], key=lambda at: abs(at[0] - mutant.line))
        near = [test for test in dict.fromkeys(test for _, test in detected) if test in able][:NEARBY]
        others = batches([test for test in able if test not in near], FIRST_BATCH)
        left = self.longest
        for test in [*batches(near, FIRST_BATCH), *sorted(others, key=lambda test: test.seconds)]:
            passed, printed, used = run(test, {"MUTANT": str(mutant.number)}, math.ceil(0.5 + 2 * test.seconds))
            if not passed:
                case = re.findall(r"^\[ RUN      \] (\S+)", printed, re.MULTILINE)[-1:]
                found = next((other for other in able if [other.case] == case), test)
                if found in able:
                    self.detected[mutant.source.name].append((mutant.line, found))
                return found.name
            left -= used
            if left < 0:
                break
        return None
