# SPDX-License-Identifier: MIT
"""Runs test programs with a mutant alive, and tells whether one of them notices."""

import glob
import os
import pickle
import resource
import shutil
import signal
import subprocess
import tempfile
import threading
from collections import Counter, defaultdict
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

SLOWEST = 60.0  # seconds of a function that is tried at all
LONGEST = 24 * 60 * 60 * 1000  # milliseconds: Qt Test is not to stop what waits for a processor
BATCH_SECONDS = 1.0  # of functions that share a process
TRACE_BYTES = 65536  # as in mutant.h
MEMORY = 2 << 30  # a mutant may allocate without end
# Test functions that cannot pass: with mutants in them, the tables of constants are none, and the
# blur is built for one set of instructions.
IMPOSSIBLE = {("tst_colorutil", "fixedColoursNeedNoCodeAtLoad"),
              ("tst_gaussianblur", "processorsGetNoInstructionsThatTheyLack")}


@dataclass(frozen=True)
class Function:
    """A test function, with what it took and reached when no mutant was alive."""
    program: str
    name: str
    seconds: float
    reached: frozenset


class Runner:
    """Runs test programs, each in a home of its own."""

    def __init__(self, binaries):
        self.binaries = binaries

    def run(self, program, arguments, environment, seconds):
        """Whether the program failed, its processor time and what it said until it failed."""
        home = tempfile.mkdtemp(prefix="mutate-")
        # Some tests go on as another user.
        os.chmod(home, 0o755)
        variables = {name: value for name, value in os.environ.items()
                     if not name.startswith(("MUTANT", "XDG_"))}
        variables.update(environment, HOME=home, TMPDIR=home, XDG_RUNTIME_DIR=home,
                         QT_QPA_PLATFORM="offscreen", LC_ALL="C.UTF-8",
                         # Else Qt Test starts a debugger at each crash, and ends by the clock.
                         QTEST_DISABLE_STACK_DUMP="1", QTEST_FUNCTION_TIMEOUT=str(LONGEST))
        process = subprocess.Popen(
            [self.binaries / "tests" / program, *arguments], cwd=home, env=variables,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            text=True, errors="replace", start_new_session=True)
        self.limit(process.pid, max(1, round(seconds)))
        ended = threading.Event()
        watch = threading.Thread(target=self.stop_if_idle,
                                 args=(process, ended, 4 * seconds + 8))
        watch.start()
        said, failed = [], ""
        for line in process.stdout:
            said.append(line)
            if line.startswith(("FAIL!", "XPASS", "QFATAL")):
                failed = line.strip()
                break
        if failed:
            self.stop(process)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = status
        ended.set()
        watch.join()
        process.stdout.close()
        self.stop(process)
        shutil.rmtree(home, ignore_errors=True)
        if not failed and status:
            failed = f"ended with {os.waitstatus_to_exitcode(status)}"
        return failed, usage.ru_utime + usage.ru_stime, "".join(said)

    def stop_if_idle(self, process, ended, seconds):
        """Stops who waits for ever, but not who waits for a processor: that one has a limit."""
        while not ended.wait(seconds):
            if not self.wants_processor(process.pid):
                self.stop(process)

    @staticmethod
    def wants_processor(group):
        """Whether a thread of a group of processes runs, or would if it could."""
        for thread in glob.glob("/proc/[0-9]*/task/*/stat"):
            try:
                state, _, owner = Path(thread).read_text().rpartition(")")[2].split()[:3]
            except OSError:  # it has ended
                continue
            if int(owner) == group and state in "RD":
                return True
        return False

    @staticmethod
    def limit(process, seconds):
        for what, limits in ((resource.RLIMIT_CPU, (seconds, seconds + 1)),
                             (resource.RLIMIT_AS, (MEMORY, MEMORY)),
                             (resource.RLIMIT_CORE, (0, 0))):
            try:
                resource.prlimit(process, what, limits)
            except ProcessLookupError:
                return

    @staticmethod
    def stop(process):
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass


class Trials:
    """Tries mutants with the test functions that reach them."""

    def __init__(self, binaries, programs, memory, jobs, slowest):
        self.runner = Runner(binaries)
        self.pool = ThreadPoolExecutor(jobs)
        self.catches = Counter()  # by file of the mutant and by function
        self.memory = memory  # the folder of what is known of programs
        self.functions = []
        for functions in self.pool.map(self.known, programs):
            self.functions += [f for f in functions if f.seconds <= slowest]
        self.common = defaultdict(frozenset)  # what all functions of a program reach
        for program in {f.program for f in self.functions}:
            self.common[program] = frozenset.intersection(
                *(f.reached for f in self.functions if f.program == program))

    def known(self, program):
        """The functions of a program, from the last time if it was built as now."""
        files = [self.runner.binaries / "tests" / program, *self.runner.binaries.glob("*/**/*.so.1")]
        built = max(file.stat().st_mtime for file in files)
        memory = self.memory / f"{program}.functions"
        if memory.exists() and memory.stat().st_mtime > built:
            return pickle.loads(memory.read_bytes())
        functions = self.trace(program)
        memory.write_bytes(pickle.dumps(functions))
        return functions

    def trace(self, program):
        """The functions of a test program that pass, each alone and without a mutant."""
        listing = subprocess.run([self.runner.binaries / "tests" / program, "-functions"],
                                 stdout=subprocess.PIPE, text=True, check=True,
                                 env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}).stdout
        functions = []
        for line in listing.split():
            name = line.removesuffix("()")
            if (program, name) in IMPOSSIBLE:
                continue
            with tempfile.NamedTemporaryFile(prefix="mutate-") as trace:
                trace.truncate(TRACE_BYTES)
                failed, seconds, _ = self.runner.run(
                    program, [name], {"MUTANT_TRACE": trace.name}, SLOWEST)
                data = trace.read()
            if failed == f"ended with {-signal.SIGXCPU}":
                print(f"{program} {name} is left out: it is slow", flush=True)
                continue
            if failed:
                print(f"{program} {name} is left out: without a mutant it fails alone", flush=True)
                continue
            reached = frozenset(i for i, byte in enumerate(data) if byte)
            functions.append(Function(program, name, seconds, reached))
        return functions

    def try_all(self, mutants, report, everything):
        """Calls report with each mutant and "not reached", "survived" or who caught it."""
        folders = {m.number: os.path.dirname(m.file.name) for m in everything}
        self.folders = {f: {folders[number] for number in f.reached - self.common[f.program]}
                        for f in self.functions}

        def one(mutant):
            return mutant, self.outcome(mutant)

        for mutant, outcome in self.pool.map(one, mutants):
            report(mutant, outcome)

    def outcome(self, mutant):
        functions = self.suspicious(mutant)
        if not functions:
            return "not reached"
        for program, batch in self.batches(functions, mutant.file.name):
            caught = self.fails(program, batch, mutant)
            if caught:
                return caught
        return "survived"

    def suspicious(self, mutant):
        """The functions that may notice a mutant.

        A constant is set when a program is loaded, whatever function is to run then: of these,
        the ones that reach more than that in its folder, or nothing more at all.
        """
        functions = [f for f in self.functions if mutant.number in f.reached]
        folder = os.path.dirname(mutant.file.name)
        return [f for f in functions if mutant.number not in self.common[f.program]
                or not self.folders[f] or folder in self.folders[f]] or functions

    def batches(self, functions, file):
        """Runs of a program, those first that cost little and have caught much in the file."""
        def worth(function):
            return (function.seconds + 0.02) / (1 + self.catches[file, function])

        batches = []
        for program in sorted({f.program for f in functions}):
            batch, seconds = [], 0.0
            for function in sorted((f for f in functions if f.program == program), key=worth):
                if batch and seconds + function.seconds > BATCH_SECONDS:
                    batches.append((program, batch))
                    batch, seconds = [], 0.0
                batch.append(function)
                seconds += function.seconds
            batches.append((program, batch))
        return sorted(batches, key=lambda b: sum(f.seconds for f in b[1])
                      / (1 + sum(self.catches[file, f] for f in b[1])))

    def fails(self, program, batch, mutant):
        seconds = 4 * sum(function.seconds for function in batch) + 0.5
        failed, _, said = self.runner.run(program, [function.name for function in batch],
                                          {"MUTANT": str(mutant.number)}, seconds)
        if not failed:
            return ""
        done = said.count("\nPASS   :") - 1  # initTestCase
        self.catches[mutant.file.name, batch[max(0, min(done, len(batch) - 1))]] += 1
        return f"{program}: {failed}"
