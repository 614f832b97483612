#!/usr/bin/env python3
"""Reads what valgrind said of a run of the tests, and fails where our libraries or the module had a part in it.

The interpreter and numpy keep memory until the process ends, and read ahead in texts; that is theirs.
"""

import re
import sys

OURS = re.compile(r"database_entry")
# Made once, when the module is imported, and used for as long as it is there.
FOR_GOOD = re.compile(r"PyInit_|add_descriptor|class_documentation|initialize_generic|make_new_python_type")


def main():
    with open(sys.argv[1], encoding="utf-8", errors="replace") as file:
        text = re.sub(r"^==\d+== ?", "", file.read(), flags=re.MULTILINE)
    blocks = [block for block in text.split("\n\n") if "    at 0x" in block or "   at 0x" in block]
    ours = [block for block in blocks if OURS.search(block) and not FOR_GOOD.search(block)]
    for block in ours:
        print(block, end="\n\n")
    print(f"valgrind: {len(blocks)} reports, {len(ours)} with a part of ours")
    if "ERROR SUMMARY" not in text:
        print("valgrind: the run has no end")
        return 1
    return 1 if ours else 0


if __name__ == "__main__":
    sys.exit(main())
