#!/usr/bin/python3
"""Compares packed cells and neighbours with those of ASE on the sample crystals.

usage: crystals.py PROBE DBENTRY [FOLDER]

PROBE is the built perception_probe, DBENTRY the built program, FOLDER holds CIF files (the sample package's). Compared are
  packing     atoms and composition of the cell, for each file that both read
  neighbours  the pairs of atoms within the sum of their radii and 0.4 Å, each with its cell translation
  Z           atoms of the cell against Z times the formula of the file, where it gives both
Every difference is printed with its reason where one is known. Exit code 1 where one is not.
"""
import collections
import json
import os
import re
import subprocess
import sys
import tempfile
import warnings

import ase
import ase.io
import ase.neighborlist
import numpy

warnings.filterwarnings("ignore")


def entries(probe, archive):
    """Each entry of the archive: name, elements, positions, pairs, bonds, molecules."""
    answer = subprocess.run([probe, "crystals", archive], stdout=subprocess.PIPE, text=True, check=True)
    entry = None
    for line in answer.stdout.splitlines():
        words = line.split()
        if words[0] == "entry":
            if entry:
                yield entry
            entry = dict(name=words[1], elements=[], positions=[], pairs=[], bonds=[], refused=None, molecules=[])
        elif words[0] == "atom":
            entry["elements"].append(words[1])
            entry["positions"].append([float(word) for word in words[2:5]])
        elif words[0] == "cell":
            entry["cell"] = [float(word) for word in words[1:7]]
        elif words[0] in ("pair", "bond"):
            entry[words[0] + "s"].append((int(words[1]), int(words[2]), float(words[3]), *map(int, words[4:7])))
        elif words[0] == "refused":
            entry["refused"] = line
        elif words[0] == "molecule":
            entry["molecules"].append(words)
    if entry:
        yield entry


def radii(probe):
    answer = subprocess.run([probe, "radii"], stdout=subprocess.PIPE, text=True, check=True)
    return {line.split()[0]: float(line.split()[1]) for line in answer.stdout.splitlines()}


def ase_pairs(entry, radius):
    elements = [element if radius.get(element, 0.0) > 0.0 else "X" for element in entry["elements"]]
    if not elements:
        return set()
    atoms = ase.Atoms(elements, scaled_positions=entry["positions"], cell=entry["cell"], pbc=True)
    cutoffs = numpy.array([radius[element] + 0.2 if element != "X" else 0.0 for element in elements])
    # The pair is counted where the distance is below the sum of the two numbers.
    first, second, shift = ase.neighborlist.neighbor_list("ijS", atoms, cutoffs)
    return {(int(i), int(j), *map(int, s)) for i, j, s in zip(first, second, shift)
            if elements[i] != "X" and elements[j] != "X"}


def own_pairs(entry):
    both = set()
    for i, j, _, a, b, c in entry["pairs"]:
        both.add((i, j, a, b, c))
        both.add((j, i, -a, -b, -c))
    return both


def formula(text):
    counts = collections.Counter()
    for element, count in re.findall(r"([A-Z][a-z]?)\s*([0-9.]*)", text):
        counts[element] += float(count or 1)
    return counts


def tag(path, name):
    with open(path, encoding="latin-1") as file:
        found = re.search(rf"^{name}\s+(.*)$", file.read(), re.MULTILINE | re.IGNORECASE)
    return found.group(1).strip().strip("'\"") if found else ""


def packing(entry, path):
    """What is different from ASE's packed cell: a text, or nothing."""
    try:
        atoms = ase.io.read(path, format="cif")
    except Exception as refusal:  # whatever a reader of files throws
        return f"not read by ASE: {type(refusal).__name__}"
    if len(atoms) == 0:
        return "not read by ASE: no atoms"
    ours = collections.Counter("H" if element == "D" else element for element in entry["elements"])
    theirs = collections.Counter("H" if element == "D" else element for element in atoms.get_chemical_symbols())
    if ours == theirs:
        return ""
    difference = {element: ours[element] - theirs[element] for element in sorted(ours | theirs)
                  if ours[element] != theirs[element]}
    positions = numpy.array(entry["positions"])
    # Sites of two elements, or of one, on one place: ASE keeps the first of them.
    shared = 0
    for i in range(len(positions)):
        apart = positions[i + 1:] - positions[i]
        apart -= numpy.round(apart)
        shared += int((numpy.abs(apart).max(axis=1, initial=0) < 2e-3).sum()) if len(apart) else 0
    if shared:
        return f"sites share a place, of which ASE keeps one: {difference}"
    if set(ours) - set(theirs) and "X" in ours:
        return f"an element that is not known: {difference}"
    return f"DIFFERS: {difference}"


def main():
    probe, dbentry = sys.argv[1:3]
    folder = sys.argv[3] if len(sys.argv) > 3 else "/usr/share/avogadro2/crystals"
    radius = radii(probe)
    with tempfile.TemporaryDirectory() as work:
        archive, report = os.path.join(work, "crystals.dbe"), os.path.join(work, "report.jsonl")
        subprocess.run([dbentry, "import", folder, "-o", archive, "--report", report], stderr=subprocess.DEVNULL)
        with open(report, encoding="utf-8") as file:
            lines = [json.loads(line) for line in file]
        files = [line["file"] for line in lines if line["status"] == "imported"]
        found = list(entries(probe, archive))
    assert len(files) == len(found), (len(files), len(found))

    counts = collections.Counter()
    failed = False
    for path, entry in zip(files, found):
        name = os.path.relpath(path, folder)
        if entry["refused"]:
            print(f"{name}: {entry['refused']}")
            counts["refused"] += 1
            continue
        said = packing(entry, path)
        counts["packing: " + (said.split(":")[0] or "equal")] += 1
        if said:
            print(f"{name}: packing: {said}")
        failed |= said.startswith("DIFFERS")

        ours, theirs = own_pairs(entry), ase_pairs(entry, radius)
        counts["neighbours: " + ("equal" if ours == theirs else "differ")] += 1
        if ours != theirs:
            failed = True
            print(f"{name}: neighbours: {len(ours - theirs)} of ours only, {len(theirs - ours)} of ASE's only")

        z, text = tag(path, "_cell_formula_units_Z"), tag(path, "_chemical_formula_sum")
        if z and text and re.fullmatch(r"[0-9]+", z):
            wanted = collections.Counter({element: count * int(z) for element, count in formula(text).items()})
            ours = collections.Counter(entry["elements"])
            if all(abs(wanted[element] - ours[element]) < 0.5 for element in wanted | ours):
                counts["Z: equal"] += 1
            else:
                counts["Z: differs"] += 1
                print(f"{name}: Z {z} times {text} is not {dict(ours)} of all sites")
    for key in sorted(counts):
        print(f"{key}: {counts[key]}")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
