#!/usr/bin/python3
"""Measures bonds and bond types on the molecules of Debian's refmac-dictionary, beside Open Babel.

usage: molecules.py PROBE [--dictionary FOLDER] [--every N] [--list] [--bonds PERCENT] [--types PERCENT]

PROBE is the built perception_probe. Taken are the molecules of two atoms or more whose coordinates agree with the
dictionary's own table of bond lengths within 0.2 Å. Counted are
  bonds   molecules whose bonds are exactly those of the dictionary
  types   molecules, of those whose bonds both programs found and that have no metal, whose bond types are right
  drawn   with --draw: molecules up to 60 atoms whose diagram has no atoms on one another

Types are compared up to resonance: each program's Kekulé structure gives every atom a number of pi bonds; atoms that
the graph of elements does not tell apart may exchange theirs. A group of bonds that the dictionary calls delocalised
or aromatic is right where it holds at least one pi bond, and its atoms are not compared one by one.
Fails (exit code 1) where fewer than the given percentages are right, or fewer than Open Babel has right.
"""
import argparse
import collections
import glob
import math
import multiprocessing
import os
import shlex
import subprocess
import sys

METALS = set("""LI BE NA MG AL K CA SC TI V CR MN FE CO NI CU ZN GA RB SR Y ZR NB MO TC RU RH PD AG CD IN SN CS BA LA CE
PR ND SM EU GD TB DY HO ER TM YB LU HF TA W RE OS IR PT AU HG TL PB BI TH U NP PU AM""".split())

Molecule = collections.namedtuple("Molecule", "name elements places bonds")


def loops(path):
    """The loops of a dictionary file: lists of tags with lists of rows."""
    tags, rows, in_header = [], [], False
    with open(path, encoding="latin-1") as file:
        for line in file:
            text = line.strip()
            if text.startswith("loop_"):
                if tags:
                    yield tags, rows
                tags, rows, in_header = [], [], True
            elif in_header and text.startswith("_"):
                tags.append(text.split()[0])
            elif not text or text.startswith(("#", "data_", "_", ";")):
                continue
            elif tags:
                in_header = False
                try:
                    words = shlex.split(text)
                except ValueError:
                    words = text.split()
                if len(words) >= len(tags):
                    rows.append(words)
    if tags:
        yield tags, rows


def read_molecule(path):
    """The molecule of one file; None where it is not among those that are measured."""
    atoms, bonds = {}, []
    elements, places = [], []
    for tags, rows in loops(path):
        column = {tag.split(".")[1]: place for place, tag in enumerate(tags) if "." in tag}
        if "_chem_comp_atom.x" in tags:
            for row in rows:
                atoms[row[column["atom_id"]]] = len(elements)
                elements.append(row[column["type_symbol"]].upper())
                try:
                    places.append([float(row[column[axis]]) for axis in "xyz"])
                except ValueError:
                    return None
        elif "_chem_comp_bond.atom_id_1" in tags:
            for row in rows:
                ends = [atoms.get(row[column[name]]) for name in ("atom_id_1", "atom_id_2")]
                try:
                    length = float(row[column["value_dist"]])
                except (ValueError, KeyError):
                    return None
                if None in ends:
                    return None
                bonds.append((min(ends), max(ends), row[column["type"]].lower(), length))
    if len(elements) < 2 or not bonds:
        return None
    for first, second, _, length in bonds:
        if abs(math.dist(places[first], places[second]) - length) > 0.2:
            return None
    return Molecule(os.path.basename(path)[:-4], elements, places, bonds)


def element_word(symbol):
    return symbol.capitalize()


def ask_probe(probe, molecules, draw):
    text = []
    for molecule in molecules:
        text.append(f"molecule {molecule.name} {len(molecule.elements)}")
        for element, place in zip(molecule.elements, molecule.places):
            text.append(f"{element_word(element)} {place[0]} {place[1]} {place[2]}")
    answer = subprocess.run([probe, "molecules"] + ["draw"] * draw, input="\n".join(text), stdout=subprocess.PIPE, text=True, check=True)
    answers, drawn = {}, {}
    for line in answer.stdout.splitlines():
        words = line.split()
        if words[0] == "molecule":
            name = words[1]
            bonds = answers[name] = {}
        elif words[0] == "bond":
            first, second = sorted(map(int, words[1:3]))
            bonds[first, second] = int(words[3])
        elif words[0] in ("drawn", "undrawn"):
            drawn[name] = words[0] == "drawn" and words[1] == "0"
    return answers, drawn


def ask_open_babel(molecule):
    from openbabel import openbabel
    openbabel.obErrorLog.SetOutputLevel(0)
    mol = openbabel.OBMol()
    mol.BeginModify()
    for element, place in zip(molecule.elements, molecule.places):
        atom = mol.NewAtom()
        atom.SetAtomicNum(openbabel.GetAtomicNum(element_word(element)))
        atom.SetVector(*place)
    mol.EndModify()
    mol.ConnectTheDots()
    mol.PerceiveBondOrders()
    bonds = {}
    for bond in openbabel.OBMolBondIter(mol):
        ends = sorted((bond.GetBeginAtomIdx() - 1, bond.GetEndAtomIdx() - 1))
        bonds[tuple(ends)] = bond.GetBondOrder()
    return molecule.name, bonds


def classes(molecule):
    """A number for each atom; equal for those that elements and bonds do not tell apart."""
    neighbours = [[] for _ in molecule.elements]
    for first, second, _, _ in molecule.bonds:
        neighbours[first].append(second)
        neighbours[second].append(first)
    rank = list(molecule.elements)
    for _ in range(len(rank)):
        keys = [(rank[atom], tuple(sorted(rank[other] for other in neighbours[atom]))) for atom in range(len(rank))]
        order = {key: place for place, key in enumerate(sorted(set(keys)))}
        renewed = [order[key] for key in keys]
        if len(set(renewed)) == len(set(rank)):
            return renewed
        rank = renewed
    return rank


ORDERS = {"single": 1, "sinlge": 1, "double": 2, "triple": 3}


def types_right(molecule, orders, rank):
    shared = [(first, second) for first, second, kind, _ in molecule.bonds if kind not in ORDERS]
    loose = {atom for pair in shared for atom in pair}
    expected, found = collections.Counter(), collections.Counter()
    for first, second, kind, _ in molecule.bonds:
        order = orders[first, second]
        for atom in (first, second):
            if atom in loose:
                continue
            expected[rank[atom]] += ORDERS[kind] - 1
            found[rank[atom]] += order - 1
        if order == 0:
            return False
        # A bond from a loose atom to another one is compared by itself.
        if kind in ORDERS and first in loose and second in loose and order != ORDERS[kind]:
            return False
    if any(expected[key] != found[key] for key in expected | found):
        return False
    # Each group of delocalised bonds holds a pi bond.
    groups = []
    for pair in shared:
        joined = [group for group in groups if group & set(pair)]
        groups = [group for group in groups if not group & set(pair)]
        groups.append(set(pair).union(*joined))
    return all(any(orders[pair] > 1 for pair in shared if set(pair) <= group) for group in groups)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("probe")
    parser.add_argument("--dictionary", default="/usr/share/refmac/monomers")
    parser.add_argument("--every", type=int, default=1, help="take one file of N")
    parser.add_argument("--bonds", type=float, default=99.5, help="percent of molecules whose bonds must be right")
    parser.add_argument("--types", type=float, default=90.0, help="percent of molecules whose types must be right")
    parser.add_argument("--list", action="store_true", help="name the molecules that are not right")
    parser.add_argument("--draw", type=float, metavar="PERCENT", help="draw too; percent of diagrams without overlaps")
    options = parser.parse_args()

    paths = sorted(glob.glob(os.path.join(options.dictionary, "?", "*.cif")))[::options.every]
    with multiprocessing.Pool() as pool:
        molecules = [molecule for molecule in pool.map(read_molecule, paths, 64) if molecule]
        open_babel = dict(pool.map(ask_open_babel, molecules, 64))
    ours, drawn = ask_probe(options.probe, molecules, options.draw is not None)
    print(f"{len(paths)} files, {len(molecules)} molecules whose coordinates agree with their table")

    bonds_right = collections.Counter()
    types = collections.Counter()
    judged = 0
    for molecule in molecules:
        wanted = {(first, second) for first, second, _, _ in molecule.bonds}
        answers = {"perception": ours[molecule.name], "Open Babel": open_babel[molecule.name]}
        for program, bonds in answers.items():
            if set(bonds) == wanted:
                bonds_right[program] += 1
            elif options.list and program == "perception":
                missing = [f"-{molecule.elements[a]}{a}-{molecule.elements[b]}{b}" for a, b in wanted - set(bonds)]
                extra = [f"+{molecule.elements[a]}{a}-{molecule.elements[b]}{b}" for a, b in set(bonds) - wanted]
                print("bonds", molecule.name, *missing, *extra)
        if METALS & set(molecule.elements) or any(set(bonds) != wanted for bonds in answers.values()):
            continue
        judged += 1
        rank = classes(molecule)
        for program, bonds in answers.items():
            right = types_right(molecule, bonds, rank)
            types[program] += right
            if options.list and not right and program == "perception":
                print("types", molecule.name)

    failed = False
    for what, right, total, least in (("bonds", bonds_right, len(molecules), options.bonds),
                                      ("types", types, judged, options.types)):
        percent = {program: 100.0 * right[program] / max(total, 1) for program in ("perception", "Open Babel")}
        print(f"{what}: of {total} molecules " +
              ", ".join(f"{program} {right[program]} ({percent[program]:.2f} %)" for program in percent))
        failed |= percent["perception"] < least or percent["perception"] < percent["Open Babel"]
    if drawn:
        clear = sum(drawn.values())
        print(f"drawn: of {len(drawn)} molecules up to 60 atoms {clear} ({100.0 * clear / len(drawn):.2f} %) without overlaps")
        failed |= 100.0 * clear / len(drawn) < options.draw
        if options.list:
            print("overlaps", *(name for name in drawn if not drawn[name]))
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
