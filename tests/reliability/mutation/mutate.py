#!/usr/bin/env python3
"""mutate.py [--count N] [--only TEXT] [--build DIR]: how many small faults do the tests see?

Copies the tree to DIR (build/mutation), makes one small change at a time to the readers, validators, orderings and
expressions, builds what the change concerns and runs the tests of those rooms, each with a time limit. Which N (400)
of all possible changes are made is fixed by their text, so that a second run repeats the first; a run that was
interrupted goes on where it stopped. Prints the survivors and writes every outcome to DIR/outcomes.tsv.

A change is caught when a test fails, crashes or takes too long. One that does not compile is not counted.
"""
import argparse
import hashlib
import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[3]
TIME_LIMIT = 120

# What is changed, and the test programs that must notice, the quickest first.
ROOMS = {
    "siblings/utilities": ["utilities_test", "foundations_test", "records_test", "references_test", "entries_test",
                           "reliability_test"],
    "siblings/regex": ["regex_test", "references_test"],
    "database_entry/foundations": ["foundations_test", "records_test", "references_test", "entries_test",
                                   "reliability_test"],
    "database_entry/records": ["records_test", "entries_test", "reliability_test"],
    "database_entry/references": ["references_test", "entries_test", "reliability_test"],
    "database_entry/entries": ["entries_test", "checks_test", "reliability_test"],
    "database_entry/checks": ["checks_test"],
}

# A pattern in a line of code and what it becomes; each match is one possible change.
CHANGES = [
    (r"(?<=\w|\)|\]) < (?=[\w(-])", " <= "),
    (r" <= ", " < "),
    (r"(?<=\w|\)|\]) > (?=[\w(-])", " >= "),
    (r" >= ", " > "),
    (r" == ", " != "),
    (r" != ", " == "),
    (r" && ", " || "),
    (r" \|\| ", " && "),
    (r"\btrue\b", "false"),
    (r"\bfalse\b", "true"),
    (r"if \(", "if (!("),
    (r" \+ ", " - "),
    (r" - ", " + "),
    (r"\+\+(?=\w)", "--"),
    (r"\bstd::min\b", "std::max"),
    (r"\bstd::max\b", "std::min"),
    (r"(?<![\w.\"'])0(?![\w.\"'])", "1"),
    (r"(?<![\w.\"'])1(?![\w.\"'])", "2"),
    (r"(?<![\w.\"'x])(\d{2,})(?![\w.\"'])", lambda m: str(int(m[1]) + 1)),
    (r"^\s+(?!return|throw|using|case|default|static|const|std::size_t|auto|int |unsigned)\w[\w.:>-]*\(.*\);$", ""),
    (r"\breturn (?=\w.*;)(?!\w+\(\*this)", "return !"),
    (r"\bcontinue;", "break;"),
    (r"\bbreak;", "continue;"),
    # In expressions.
    (r"(?<=\"|\w)\\\\d", r"\\\\w"),
    (r"\{6\}", "{5}"),
    (r"\{7\}", "{8}"),
    (r"(?<=\))\?(?=\))", ""),
    (r"\+\)\"", "*)\""),
    (r"\\\\s", "\\\\\\\\s?"),
    (r"A-Z", "A-Y"),
    (r"a-z", "b-z"),
    # The order of fields.
    (r"(record\.\w+), (record\.\w+)", r"\2, \1"),
]

NO_CODE = re.compile(r"^\s*(//|#|template|namespace|static_assert|enum |class |struct |friend )|operator[<>=]|\[\[likely\]\]|virtual .* = 0;")


class Change:
    def __init__(self, path, number, column, old, new):
        self.path, self.number, self.column, self.old, self.new = path, number, column, old, new

    @property
    def key(self):
        return f"{self.path}:{self.number}:{self.column}: {self.old.strip()}  =>  {self.new.strip()}"

    @property
    def rank(self):
        return hashlib.sha256(self.key.encode()).hexdigest()


def changes_of(source, path):
    for number, line in enumerate((source / path).read_text().splitlines(), 1):
        if NO_CODE.search(line):
            continue
        code = line.split(" //")[0]
        for pattern, replacement in CHANGES:
            for match in re.finditer(pattern, code):
                new = code[:match.start()] + match.expand(replacement) if isinstance(replacement, str) else \
                    code[:match.start()] + replacement(match)
                new += code[match.end():]
                if replacement == "if (!(":
                    # Negates the whole condition: closes behind the bracket that pairs with the first.
                    new = negated(code, match.end())
                if new is not None and new != code:
                    yield Change(path, number, match.start() + 1, code, new)


def negated(code, start):
    depth = 1
    for index in range(start, len(code)):
        depth += {"(": 1, ")": -1}.get(code[index], 0)
        if depth == 0:
            return code[:start] + "!(" + code[start:index] + ")" + code[index:]
    return None


def all_changes(source, only):
    found = []
    for room in ROOMS:
        for path in sorted((source / room).glob("*")):
            relative = str(path.relative_to(source))
            if path.suffix in (".cpp", ".h") and path.name != "export.h" and only in relative:
                found += changes_of(source, relative)
    return found


class Tree:
    """A copy of the sources with a build of its own."""

    def __init__(self, folder):
        self.source = folder / "source"
        self.build = folder / "build"
        if not self.source.exists():
            self.source.mkdir(parents=True)
            files = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, capture_output=True, check=True).stdout
            for name in files.decode().split("\0")[:-1]:
                (self.source / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(ROOT / name, self.source / name)
            subprocess.run(["cmake", "-G", "Ninja", "-S", self.source, "-B", self.build, "-DCMAKE_BUILD_TYPE=",
                            "-DCMAKE_CXX_FLAGS=-O1 -g0 -w", "-DDATABASE_ENTRY_BUILD_TOOLS=OFF"], check=True,
                           stdout=subprocess.DEVNULL)

    def run(self, command, limit):
        try:
            return subprocess.run(command, cwd=self.build, timeout=limit, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT).returncode
        except subprocess.TimeoutExpired:
            return "time"

    def outcome(self, tests):
        """The test that failed, "survived", or "does not compile"."""
        for test in tests:
            built = self.run(["ninja", "-j2", test], 900)
            if built != 0:
                return "does not compile"
            program = next(self.build.glob(f"tests/**/{test}"))
            if self.run([program, "--gtest_fail_fast", "--gtest_brief=1"], TIME_LIMIT) != 0:
                return test
        return "survived"

    def outcome_of(self, change):
        path = self.source / change.path
        original = path.read_text()
        lines = original.splitlines()
        lines[change.number - 1] = change.new
        path.write_text("\n".join(lines) + "\n")
        try:
            return self.outcome(tests_of(change.path))
        finally:
            path.write_text(original)


def tests_of(path):
    return next(tests for room, tests in ROOMS.items() if path.startswith(room))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--count", type=int, default=400)
    parser.add_argument("--only", default="", help="only files whose path holds this")
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/mutation")
    arguments = parser.parse_args()

    tree = Tree(arguments.build)
    for tests in ROOMS.values():
        if tree.outcome(tests) != "survived":
            sys.exit("mutate.py: the tests fail on the unchanged tree")

    record = arguments.build / "outcomes.tsv"
    outcomes = dict(line.split("\t") for line in record.read_text().splitlines()) if record.exists() else {}
    counted = 0
    for change in sorted(all_changes(tree.source, arguments.only), key=lambda change: change.rank):
        if counted == arguments.count:
            break
        if change.key not in outcomes:
            outcomes[change.key] = tree.outcome_of(change)
            with record.open("a") as file:
                file.write(f"{change.key}\t{outcomes[change.key]}\n")
        if outcomes[change.key] != "does not compile":
            counted += 1
        if counted % 20 == 0:
            print(f"{counted} changes", file=sys.stderr, flush=True)
    made = [key for key, outcome in outcomes.items() if outcome != "does not compile"]
    survivors = [key for key in made if outcomes[key] == "survived"]
    for key in sorted(survivors):
        print(key)
    print(f"{len(made)} changes, {len(made) - len(survivors)} caught "
          f"({100 * (len(made) - len(survivors)) / max(1, len(made)):.1f} %), {len(survivors)} survived")


if __name__ == "__main__":
    main()
