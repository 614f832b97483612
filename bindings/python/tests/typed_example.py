"""A program of a user who checks types; mypy reads it in strict mode, and test_stubs.py runs it too."""

from __future__ import annotations

import datetime
from typing import Dict, List, Optional, Tuple

import numpy
from numpy.typing import NDArray

import database_entry as de


def rutile() -> de.CrystalMaker:
    cell = de.Cell(4.594, 4.594, 2.959, 90, 90, 90, ["x,y,z", de.CrystalSymmetryOperator("-x,-y,z")])
    return de.CrystalMaker(cell, [
        de.Atom(label="Ti1", element="Ti", position=(0, 0, 0)),
        de.Atom(label="O1", element="O", position=numpy.array([0.305, 0.305, 0.0]), occupancy=0.5)])


def records() -> de.Entry:
    publication = de.Publication(authors=["A.B.Smith"], journal=4, year=1979)
    publication.authors.append("C.Jones")
    publication.authors = ("A.B.Smith", "C.Jones")
    experiment = de.ExperimentalInfo(probe="neutron", temperature=295.0)
    experiment.probe = de.ExperimentalInfo.x_ray
    probe: de.ExperimentalInfo.RadiationProbe = experiment.probe
    text: str = probe.text
    editors = de.EditorsInfo()
    editors.accession_date = datetime.date(2003, 5, 17)
    day: int = editors.accession_date.day
    assert (text, day) == ("x-ray", 17)
    entry = de.Entry("ABCDEF01", rutile(), publication=publication, experimental_info=experiment)
    entry.publication = publication
    entry.deposition_info = de.DepositionInfo({"VORN": "VORN 123456"})
    entry.cross_reference_info = de.CrossReferenceInfo([de.DatabaseCrossReference("isomer", "Isomer of", "GHIJKL")])
    return entry


def arrays(entry: de.CrystalStructureDatabaseEntry) -> Tuple[NDArray[numpy.float64], int]:
    elements: List[str] = [atom.element for atom in entry.crystal_maker.atoms]
    diagram: Optional[de.ChemicalDiagram] = entry.chemical_diagram
    assert diagram is None and elements == ["Ti", "O"]
    return entry.crystal_maker.positions @ entry.cell.matrix, len(entry.cell.symmetry_operators)


class Source(de.DataSource):
    def identifier(self) -> str:
        return "DEFERR01"

    def publication(self) -> de.Publication:
        return de.Publication(year=1979)


def stores(entry: de.Entry) -> Dict[str, int]:
    with de.connect("memory:") as db:
        added: str = db.put(entry)
        assert added == "added"
        for row in db.select("Ti,O", limit=3):
            name: de.DatabaseEntryIdentifier = row.id
            year: Optional[int] = row.columns.year
            assert name == entry.identifier and year == row.entry.publication.year
        return db.tally("element", de.query("Ti") & ~de.EntryQuery.from_filter('elements HAS "N"'))


def main() -> None:
    entry = records()
    cartesian, operators = arrays(entry)
    assert cartesian.shape == (2, 3) and operators == 2
    assert stores(entry) == {"O": 1, "Ti": 1}
    assert de.DeferredEntry(Source()).publication.year == 1979
    again: de.Entry = de.Entry.from_json(entry.to_json(indent=2))
    assert again == entry and isinstance(again.to_dict(), dict)


main()
