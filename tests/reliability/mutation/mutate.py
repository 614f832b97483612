#!/usr/bin/env python3
"""mutate.py [--count N] [--only TEXT] [--survivors] [--build DIR]: how many small faults do the tests see?

Copies the tree to DIR (build/mutation), makes one small change at a time to the readers, validators, orderings and
expressions, builds what the change concerns and runs the tests of those rooms until one fails. Which N (400) of all
possible changes are made is fixed by their text, so that a second run repeats the first; a run that was interrupted
goes on where it stopped. --survivors makes only those again that no test saw before. Prints the survivors and the
seconds that a change took, and writes every outcome to DIR/outcomes.tsv.

A change is caught when a test fails, crashes, or takes too much time or memory. One that does not compile, or of
which the compiler makes the same programs as before, is not counted.
"""
import argparse
import hashlib
import os
import pathlib
import re
import resource
import shutil
import subprocess
import sys
import time

from changes import all_changes

ROOT = pathlib.Path(__file__).resolve().parents[3]
MEMORY_LIMIT = 2 << 30
FILE_LIMIT = 256 << 20

# The test programs. Only the entry is spared the sweep of all values of every byte, which takes longer than all the
# rest; the boundary values at every offset stay.
RECORDS = ["records_test", "built_in_journal_list_test", "full_journal_list_test"]
RELIABILITY = ["reliability_test --gtest_filter=-Everything/Damaged.EveryByteTakesEveryValue/Entry"]
UTILITIES = ["utilities_test", "foundations_test", "chemistry_test", *RECORDS, "references_test", "entries_test",
             "summaries_test", *RELIABILITY]
# What is changed, and the programs that must notice, the quickest first.
ROOMS = {
    "siblings/utilities": UTILITIES,
    "siblings/utilities/archiving": UTILITIES,
    "siblings/regex": ["regex_test --gtest_filter=-SmallPatterns.*", "references_test",
                       "regex_test --gtest_filter=SmallPatterns.*", "reliability_test --gtest_filter=OutOfMemory*",
                       "small_stack"],
    "database_entry/foundations": ["foundations_test", *RECORDS, "summaries_test", "references_test", "entries_test",
                                   *RELIABILITY],
    "database_entry/records": [*RECORDS, "summaries_test", "entries_test", *RELIABILITY],
    "database_entry/references": ["references_test", "summaries_test", "entries_test", "search_flags_test",
                                  *RELIABILITY],
    "database_entry/entries": ["entries_test", "summaries_test", "search_flags_test", "checks_test", *RELIABILITY],
    "database_entry/checks": ["checks_test"],
}


def limits(seconds):
    """Sets the limits of a process, and of each that it starts, before it begins."""
    def set_limits():
        for what, most in [(resource.RLIMIT_AS, MEMORY_LIMIT), (resource.RLIMIT_FSIZE, FILE_LIMIT),
                           (resource.RLIMIT_CORE, 0), (resource.RLIMIT_CPU, seconds)]:
            resource.setrlimit(what, (most, most))
    return set_limits


class Tree:
    """A copy of the sources with a build of its own."""

    def __init__(self, folder):
        self.source = folder / "source"
        self.build = folder / "build"
        self.copy()
        # Every change is undone: the cache gives back the objects from before it.
        self.environment = dict(os.environ, CCACHE_DIR=str(folder / "cache"), CCACHE_DEPEND="1", CCACHE_MAXSIZE="3G")
        subprocess.run(["cmake", "-G", "Ninja", "-S", self.source, "-B", self.build, "-DCMAKE_BUILD_TYPE=",
                        "-DCMAKE_CXX_FLAGS=-O1 -g0 -w -D_GLIBCXX_ASSERTIONS", "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache",
                        "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", "-DDATABASE_ENTRY_BUILD_TESTS=ON"], check=True,
                       stdout=subprocess.DEVNULL)
        self.digests, self.seconds, self.reached = {}, {}, None
        every_test = dict.fromkeys(test for tests in ROOMS.values() for test in tests)
        for test in every_test:
            failure = self.built(test)
            if failure or not self.passes(test, 600):
                sys.exit(f"mutate.py: on the unchanged tree {failure or 'a failure'}: {test}")
        for test in every_test:
            self.digests[test] = self.digest(test)

    def copy(self):
        """Brings the copy up to date, and leaves alone what is the same."""
        files = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, capture_output=True, check=True).stdout
        for name in files.decode().split("\0")[:-1]:
            original, copy = ROOT / name, self.source / name
            if not copy.exists() or copy.read_bytes() != original.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(original, copy)

    def program(self, test):
        return next(self.build.glob(f"tests/**/{test.split()[0]}"))

    def built(self, test):
        """Builds the program. Gives "" when that went well, or what failed."""
        ninja = subprocess.run(["ninja", "-j2", test.split()[0]], cwd=self.build, env=self.environment, text=True,
                               preexec_fn=limits(60), stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if ninja.returncode == 0:
            return ""
        # What else can fail is the library's own generator, which refuses a list or makes a wrong table.
        return "does not compile" if re.search(r"^FAILED: .*\.o\s*$", ninja.stdout, re.MULTILINE) else "the build"

    def digest(self, test):
        """Of the program and of the libraries, all of which may have changed."""
        files = [self.program(test), *sorted(self.build.glob("**/libdatabase_entry*.so"))]
        return [hashlib.sha256(file.read_bytes()).digest() for file in files]

    def passes(self, test, limit):
        """Whether the tests pass in that many seconds of the processor, and four times as many of the clock."""
        start = time.monotonic()
        command = [self.program(test), *test.split()[1:]]
        try:
            status = subprocess.run(command, cwd=self.build, env=dict(os.environ, GTEST_FAIL_FAST="1"),
                                    timeout=4 * limit, preexec_fn=limits(limit), stdout=subprocess.DEVNULL,
                                    stderr=subprocess.DEVNULL).returncode
        except subprocess.TimeoutExpired:
            return False
        self.seconds.setdefault(test, time.monotonic() - start)
        return status == 0

    def outcome(self, tests):
        """What failed, "survived", or why the change does not count."""
        differs = False
        for test in tests:
            self.reached = test
            failure = self.built(test)
            if failure:
                return failure
            if self.digest(test) != self.digests[test]:
                differs = True
                if not self.passes(test, int(10 * self.seconds[test]) + 3):
                    return test
        return "survived" if differs else "same programs"

    def outcome_of(self, change):
        path = self.source / change.path
        original = path.read_text()
        lines = original.splitlines()
        lines[change.number - 1] = change.new
        path.write_text("\n".join(lines) + "\n")
        try:
            return self.outcome(next(tests for room, tests in ROOMS.items() if change.path.startswith(room)))
        finally:
            path.write_text(original)
            self.built(self.reached)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--count", type=int, default=400)
    parser.add_argument("--only", default="", help="only files whose path holds this")
    parser.add_argument("--survivors", action="store_true", help="make those again that no test saw, and no others")
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/mutation")
    arguments = parser.parse_args()

    tree = Tree(arguments.build)
    record = arguments.build / "outcomes.tsv"
    outcomes = dict(line.split("\t") for line in record.read_text().splitlines()) if record.exists() else {}
    counted, made, start = [], 0, time.monotonic()
    for change in all_changes(tree.source, ROOMS, arguments.only):
        if len(counted) == arguments.count:
            break
        again = outcomes.get(change.key) == "survived" if arguments.survivors else change.key not in outcomes
        if again:
            outcomes[change.key] = tree.outcome_of(change)
            made += 1
            with record.open("a") as file:
                file.write(f"{change.key}\t{outcomes[change.key]}\n")
        if outcomes.get(change.key, "not made") not in ("not made", "does not compile", "same programs"):
            counted.append(change)
            if made and len(counted) % 20 == 0:
                print(f"{len(counted)} changes", file=sys.stderr, flush=True)
    survivors = [change for change in counted if outcomes[change.key] == "survived"]
    for change in sorted(survivors, key=lambda change: (change.path, change.number)):
        print(f"line {change.number} of {change.key}")
    print(f"{len(counted)} changes, {len(counted) - len(survivors)} caught "
          f"({100 * (len(counted) - len(survivors)) / max(1, len(counted)):.1f} %), {len(survivors)} survived; "
          f"{made} made now, {(time.monotonic() - start) / max(1, made):.1f} s each")


if __name__ == "__main__":
    main()
