#!/usr/bin/env python3
"""coverage.py BUILD: which lines and branches of the libraries the tests of BUILD have reached.

Reads the profiles below BUILD/profiles through llvm-profdata and llvm-cov (of the clang that built), and prints lines
and branches by room. A branch is one way out of a condition or switch as the source has it: what only an
exception takes is none, and a template is one source, however often it is used. What is marked

    // uncovered: REASON

counts neither for nor against: the line that ends in it, or below a line of its own one statement with all that is
indented deeper. Exit code 1 when a line or a branch is missing, or when a mark is for what was reached.
"""
import argparse
import json
import pathlib
import re
import subprocess
import sys
from collections import defaultdict

ROOMS = ("database_entry/", "siblings/")
MARK = re.compile(r"// uncovered: \S")
BRACKETS_ONLY = re.compile(r"[\s{})\];]*$")  # the line after a return, where nothing is left to run
WRITTEN_BY_THE_COMPILER = re.compile(r"\bif constexpr\b|= default;")  # its conditions have no count


def output_of(*command):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"coverage.py: {' '.join(map(str, command[:2]))}: {done.stderr}")
    return done.stdout


def programs(build):
    """The test programs and the program of the build itself: all libraries are in them."""
    names = ("*_test", "*_generator", "early_user*")
    return sorted(path for folder in ("tests", "database_entry") for name in names
                  for path in (build / folder).rglob(name) if path.is_file())


def reached(build):
    """What llvm-cov exports for every file of ours: name -> (segments, branches)."""
    profiles = sorted((build / "profiles").glob("*.profraw"))
    if not profiles:
        sys.exit(f"coverage.py: there is no profile in {build / 'profiles'}; run the tests first (./dev coverage)")
    data = build / "tests.profdata"
    output_of("llvm-profdata", "merge", *profiles, "-o", data)
    first, *others = programs(build)
    objects = [word for program in others for word in ("-object", program)]
    export = json.loads(output_of("llvm-cov", "export", "-format=text", f"-instr-profile={data}", first, *objects))
    tree = pathlib.Path.cwd()
    for file in export["data"][0]["files"]:
        path = pathlib.Path(file["filename"]).resolve()
        name = str(path.relative_to(tree)) if path.is_relative_to(tree) else ""
        if name.startswith(ROOMS):
            yield name, file["segments"], file["branches"]


def counts_of_lines(segments):
    """By line: how often it was run. A segment is [line, column, count, counts, begins a region, is a gap]."""
    counts = {}
    wrapped = None  # the segment that goes on from an earlier line
    by_line = defaultdict(list)
    for segment in segments:
        by_line[segment[0]].append(segment)
    for line in range(min(by_line), max(by_line) + 1):
        begun = [segment for segment in by_line[line] if segment[3] and segment[4] and not segment[5]]
        inside = [wrapped] if wrapped and wrapped[3] else []
        if begun or inside:
            counts[line] = max(segment[2] for segment in begun + inside)
        wrapped = by_line[line][-1] if by_line[line] else wrapped
    return counts


def counts_of_branches(branches):
    """By place: how often the condition was true, and false. Uses of a template count together."""
    counts = defaultdict(lambda: [0, 0])
    for line, column, _, _, *ways in branches:
        for way in (0, 1):
            # Some counts are differences of others, below nothing (and then huge) where an exception left in between.
            counts[line, column][way] += ways[way] if ways[way] < 2**62 else 0
    return counts


def indent(text):
    return len(text) - len(text.lstrip())


def marked_lines(source):
    """By line that holds a mark: the lines that it is for. Lines are numbered from 1."""
    marks = {}
    for number, text in enumerate(source, 1):
        if not MARK.search(text):
            continue
        lines = {number}
        if text.lstrip().startswith("//"):
            lines = {number + 1}
            while indent(source[max(lines)]) > indent(text):
                lines.add(max(lines) + 1)
        marks[number] = lines
    return marks


class Tally:
    def __init__(self):
        self.lines = [0, 0]  # reached, all
        self.branches = [0, 0]

    @staticmethod
    def percent(counts):
        return f"{counts[0]} of {counts[1]}, {100 * counts[0] / counts[1] if counts[1] else 100:.2f} %"

    def __str__(self):
        return f"lines {self.percent(self.lines)}; branches {self.percent(self.branches)}"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=pathlib.Path)
    arguments = parser.parse_args()

    tallies = defaultdict(Tally)
    missing = []
    wrong_marks = []
    marks = 0
    for name, segments, branches in reached(arguments.build):
        source = pathlib.Path(name).read_text().splitlines()
        lines = counts_of_lines(segments)
        marks_here = marked_lines(source)
        marks += len(marks_here)
        marked = set().union(*marks_here.values())
        brackets = {number for number, text in enumerate(source, 1) if BRACKETS_ONLY.match(text)}
        gaps = set()
        tally = tallies["/".join(pathlib.Path(name).parts[:2])]
        for line, count in lines.items():
            if line in brackets:
                continue
            if count == 0:
                gaps.add(line)
            if line not in marked:
                tally.lines[0] += count > 0
                tally.lines[1] += 1
                if count == 0:
                    missing.append(f"{name}:{line}: never run: {source[line - 1].strip()}")
        for (line, column), ways in sorted(counts_of_branches(branches).items()):
            if WRITTEN_BY_THE_COMPILER.search(source[line - 1]):
                continue
            if 0 in ways:
                gaps.add(line)
            if line not in marked:
                tally.branches[0] += sum(count > 0 for count in ways)
                tally.branches[1] += 2
                if 0 in ways and lines.get(line) != 0:
                    never = " and ".join(word for word, count in zip(("true", "false"), ways) if count == 0)
                    missing.append(f"{name}:{line}:{column}: never {never}: {source[line - 1].strip()}")
        wrong_marks += [f"{name}:{mark}: is marked as uncovered, but all of it was reached"
                        for mark, lines in sorted(marks_here.items()) if not lines & gaps]

    whole = Tally()
    for room, tally in sorted(tallies.items()):
        print(f"{room:32} {tally}")
        for part in ("lines", "branches"):
            setattr(whole, part, [sum(pair) for pair in zip(getattr(whole, part), getattr(tally, part))])
    print(f"{'all':32} {whole}; {marks} places are left out, each with its reason")
    for finding in missing + wrong_marks:
        print(finding)
    return 1 if missing or wrong_marks else 0


if __name__ == "__main__":
    sys.exit(main())
