"""To and from other packages, where they are there: ase.Atoms, gemmi.SmallStructure, pandas tables."""

from __future__ import annotations

from typing import Any, Dict, Iterable, List, Optional, Sequence, Union

from . import _database_entry as _c
from .errors import NullHandleError
from .stores import Database, Row

Entry = _c.CrystalStructureDatabaseEntry

_OPERATORS = ("x,y,z",)


def _crystal(entry: Union[Entry, _c.CrystalMaker]) -> _c.CrystalMaker:
    maker = entry.crystal_maker if isinstance(entry, _c.CrystalStructureDatabaseEntry) else entry
    if maker is None:
        raise NullHandleError("there is no crystal maker, and so no atoms")
    return maker


def _symbol(element: str) -> str:
    """ASE and gemmi know deuterium by other names."""
    return {"D": "H", "T": "H", "": "X"}.get(element, element)


def to_ase(entry: Union[Entry, _c.CrystalMaker]) -> Any:
    """The atoms of one unit cell as ase.Atoms: every operator on every site, each place once.

    The cell has a along x and b in the plane of x and y. `info` has the identifier; the arrays `site` (the number
    of the atom in the crystal maker) and `occupancy` go with the atoms.
    """
    import ase  # type: ignore[import]
    import numpy

    maker = _crystal(entry)
    packed = _c.packed(maker)
    atoms = ase.Atoms(
        symbols=[_symbol(element) for element in packed["elements"]],
        scaled_positions=packed["positions"],
        cell=maker.cell.matrix,
        pbc=True,
    )
    atoms.set_array("site", numpy.asarray(packed["sites"]))
    atoms.set_array("occupancy", maker.occupancies[packed["sites"]])
    if isinstance(entry, _c.CrystalStructureDatabaseEntry):
        atoms.info["identifier"] = str(entry.identifier)
    return atoms


def from_ase(atoms: Any, identifier: Optional[str] = None) -> _c.CrystalStructureImmediateDatabaseEntry:
    """An entry of ase.Atoms with a cell; the symmetry is that of the translations alone, "x,y,z"."""
    a, b, c, alpha, beta, gamma = (float(number) for number in atoms.cell.cellpar())
    if atoms.cell.rank != 3:
        raise ValueError("these atoms have no cell of three axes")
    cell = _c.Cell(a, b, c, alpha, beta, gamma, _OPERATORS)
    occupancies = atoms.arrays.get("occupancy")
    counts: Dict[str, int] = {}
    sites = []
    for i, (symbol, position) in enumerate(
            zip(atoms.get_chemical_symbols(), atoms.get_scaled_positions(wrap=False))):
        counts[symbol] = counts.get(symbol, 0) + 1
        sites.append(_c.Atom(label=f"{symbol}{counts[symbol]}", element="" if symbol == "X" else symbol,
                             position=position,
                             occupancy=1.0 if occupancies is None else float(occupancies[i])))
    if identifier is None:
        identifier = atoms.info.get("identifier", "")
    formula = " ".join(f"{symbol}{count if count > 1 else ''}" for symbol, count in sorted(counts.items()))
    return _c.CrystalStructureImmediateDatabaseEntry(
        identifier, _c.CrystalMaker(cell, sites), **_blank(_c.ChemicalInfo(formula=formula)))


def _blank(chemical_info: _c.ChemicalInfo) -> Dict[str, Any]:
    """Default components, so that the entry can be stored in an archive."""
    return {
        "publication": _c.Publication(), "experimental_info": _c.ExperimentalInfo(),
        "editors_info": _c.EditorsInfo(), "chemical_info": chemical_info, "crystal_info": _c.CrystalInfo(),
        "connectivity_info": _c.ConnectivityInfo(), "cross_reference_info": _c.CrossReferenceInfo(),
        "deposition_info": _c.DepositionInfo(),
    }


def to_gemmi(entry: Union[Entry, _c.CrystalMaker]) -> Any:
    """The asymmetric unit as a gemmi.SmallStructure."""
    import gemmi  # type: ignore[import]

    maker = _crystal(entry)
    structure = gemmi.SmallStructure()
    if isinstance(entry, _c.CrystalStructureDatabaseEntry):
        structure.name = str(entry.identifier)
    structure.cell = gemmi.UnitCell(*maker.cell.parameters)
    operators = maker.cell.symmetry_operators
    if operators:
        group = _c.SpaceGroup(operators)
        if group.is_known:
            structure.spacegroup_hm = group.hermann_mauguin
    for atom in maker.atoms:
        site = gemmi.SmallStructure.Site()
        site.label = atom.label
        site.type_symbol = atom.element
        site.element = gemmi.Element(_symbol(atom.element))
        site.fract = gemmi.Fractional(*atom.position)
        site.occ = atom.occupancy
        structure.add_site(site)
    structure.setup_cell_images()
    return structure


def from_gemmi(structure: Any, identifier: Optional[str] = None) -> _c.CrystalStructureImmediateDatabaseEntry:
    """An entry of a gemmi.SmallStructure; the operators are those of its space group."""
    cell = structure.cell
    group = structure.find_spacegroup()
    operators = [op.triplet() for op in group.operations()] if group else ()
    made = _c.Cell(cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma, operators)
    atoms = [
        _c.Atom(label=site.label, element=site.element.name if site.element.name != "X" else "",
                position=site.fract.tolist(), occupancy=site.occ)
        for site in structure.sites
    ]
    return _c.CrystalStructureImmediateDatabaseEntry(
        structure.name if identifier is None else identifier, _c.CrystalMaker(made, atoms),
        **_blank(_c.ChemicalInfo()))


def frame(entries: Union[Database, Iterable[Union[Entry, Row]]], columns: Optional[Sequence[str]] = None) -> Any:
    """A pandas.DataFrame with a row for each entry and its columns (`de.EntryColumns`), by identifier.

    `entries`: a store, an archive, rows of a store, or entries. `columns` names those that are wanted.
    """
    import pandas  # type: ignore[import]

    if isinstance(entries, Database):
        entries = entries.select()
    rows: List[_c.EntryColumns] = []
    for entry in entries:
        found = entry.columns if isinstance(entry, Row) else _c._columns_of(entry)
        rows.append(found)
    names = [name for name in _c.EntryColumns._names if name != "identifier"] if columns is None else list(columns)
    attributes = [_c.EntryColumns._short_names.get(name, name) for name in names]
    table = {name: [getattr(row, attribute) for row in rows] for name, attribute in zip(names, attributes)}
    index = pandas.Index([row.identifier for row in rows], name="identifier")
    return pandas.DataFrame(table, index=index, columns=names)
