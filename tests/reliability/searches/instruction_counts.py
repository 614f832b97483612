#!/usr/bin/env python3
"""instruction_counts.py SEARCH_COST [BYTES [FIRST]]: twice the text may cost at most 2.2 times the instructions.

Counts the instructions of every search, from number FIRST (0) on, over a text of BYTES (20,000) and over one of twice that, with valgrind,
and prints both and their ratio. Exit code 1 when a ratio is above the limit.
"""
import re
import subprocess
import sys

LIMIT = 2.2


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True)


def instructions(program, index, size):
    run = output_of("valgrind", "--tool=cachegrind", "--cache-sim=no", "--cachegrind-out-file=/dev/null",
                    program, str(index), str(size))
    return int(re.search(r"I\s+refs:\s+([\d,]+)", run.stderr)[1].replace(",", ""))


def main():
    program = sys.argv[1]
    size = int(sys.argv[2]) if len(sys.argv) > 2 else 20_000
    worst = 0
    first = int(sys.argv[3]) if len(sys.argv) > 3 else 0
    for index in range(first, int(output_of(program).stdout)):
        name = output_of(program, str(index)).stdout.strip()
        # What the start of the program costs belongs to neither.
        start = instructions(program, index, 0)
        once = instructions(program, index, size) - start
        twice = instructions(program, index, 2 * size) - start
        ratio = twice / once
        worst = max(worst, ratio)
        print(f"{ratio:5.3f}  {once / size:9.1f} instructions a byte  {name}", flush=True)
    print(f"worst ratio {worst:.3f}, limit {LIMIT}")
    return 1 if worst > LIMIT else 0


if __name__ == "__main__":
    sys.exit(main())
