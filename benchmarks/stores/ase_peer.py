#!/usr/bin/env python3
"""Does with ASE's database what the benchmark asks for: ase_peer.py STRUCTURES DATABASE

STRUCTURES has a JSON object a line: code, year, cell, symbols, positions. Each line of standard input is a task
and how often to do it ("get 10", "select 1", "write 500"); a line is written when it is done.
"""
import json
import random
import sys

import ase.db
from ase import Atoms


def write(database, structure, code):
    positions = structure["positions"] or None  # a few structures are a cell without atoms
    atoms = Atoms(structure["symbols"], scaled_positions=positions, cell=structure["cell"], pbc=True)
    a, b, c = structure["cell"][:3]
    database.write(atoms, code=code, year=structure["year"], a=a, b=b, c=c)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        structures = [json.loads(line) for line in file]
    database = ase.db.connect(sys.argv[2])
    with database:
        for structure in structures:
            write(database, structure, structure["code"])
    print("ready", flush=True)
    written = 0
    for line in sys.stdin:
        task, count = line.split()
        if task == "get":
            for _ in range(int(count)):
                database.get(code=random.choice(structures)["code"]).toatoms()
        elif task == "select":
            question = "Ti,O,year>=1950,year<=1990,a>3.93,a<4.01,b>3.93,b<4.01,c>3.93,c<4.01"
            for _ in range(int(count)):
                list(database.select(question))
        elif task == "write":
            with database:
                for _ in range(int(count)):
                    write(database, structures[written % len(structures)], "new%d" % written)
                    written += 1
        print("done", flush=True)


main()
