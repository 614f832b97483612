"""What several test files share: the published structures of the system's package, and the program."""

import glob
import os
import threading

import pytest
from hypothesis import settings

import database_entry as de

# Nothing is left in the tree, and every run tries the same examples.
settings.register_profile("tree", database=None, derandomize=True)
settings.load_profile("tree")

CRYSTALS = "/usr/share/avogadro2/crystals"


@pytest.fixture(scope="session")
def published():
    """Every entry of the package; four files are damaged and say so."""
    entries = []
    damaged = 0
    for path in sorted(glob.glob(CRYSTALS + "/**/*.cif", recursive=True)):
        try:
            entries += de.read_cif(path)
        except de.CifError:
            damaged += 1
    assert (len(entries), damaged) == (506, 4)
    return entries


@pytest.fixture
def maker():
    """Rutile, with half of its atoms."""
    cell = de.Cell(4.594, 4.594, 2.959, 90, 90, 90, ["x,y,z", "-x,-y,z"])
    return de.CrystalMaker(cell, [
        de.Atom(label="Ti1", element="Ti", position=(0, 0, 0)),
        de.Atom(label="O1", element="O", position=(0.305, 0.305, 0.0), occupancy=0.5),
    ])


@pytest.fixture
def entry(maker):
    """An entry with the ten archived components."""
    return de.Entry(
        "ABCDEF01", maker,
        publication=de.Publication(authors=["A.B.Smith", "C.Jones"], journal=4, volume="101", year=1979, page="2345"),
        experimental_info=de.ExperimentalInfo(temperature=295.0, probe="neutron"),
        editors_info=de.EditorsInfo(accession_date=de.Date(2003, 5, 17)),
        chemical_info=de.ChemicalInfo(formula="O2 Ti", synonyms=["rutile"], classifiers=[8]),
        crystal_info=de.CrystalInfo(z=2.0), connectivity_info=de.ConnectivityInfo(),
        cross_reference_info=de.CrossReferenceInfo([de.DatabaseCrossReference("isomer", "Isomer of", "GHIJKL")]),
        deposition_info=de.DepositionInfo({"VORN": "VORN 123456"}))


@pytest.fixture
def whole(entry):
    """All sixteen components; the matches share atoms with the crystal, the connectivity and the diagram."""
    atoms = entry.crystal_maker.atoms
    bonds = [de.Bond(first=atoms[0], second=atoms[1], type="single_bond")]
    drawn = [de.DiagramAtom(element="Ti", x=1.0), de.DiagramAtom(element="O")]
    lines = [de.DiagramBond(first=drawn[0], second=drawn[1], type="single_bond")]
    known = [de.ConnectivityAtom(element="Ti", charge=4), de.ConnectivityAtom(element="O")]
    links = [de.ConnectivityBond(first=known[0], second=known[1])]
    components = {name: getattr(entry, name) for name in entry._components}
    components.update(
        chemical_diagram=de.ChemicalDiagram(atoms=drawn, bonds=lines),
        connectivity_info=de.ConnectivityInfo(de.Connectivity(atoms=known, bonds=links)),
        crystal_diagram_match=de.CrystalDiagramMatch(atoms=list(zip(atoms, drawn)), bonds=list(zip(bonds, lines))),
        connectivity_diagram_match=de.ConnectivityDiagramMatch(
            atoms=list(zip(known, drawn)), bonds=list(zip(links, lines))),
        crystal_connectivity_match=de.CrystalConnectivityMatch(
            atoms=list(zip(atoms, known)), bonds=list(zip(bonds, links))),
        disorder_selector=de.DisorderSelectors([de.DisorderSelector(assembly="A", group="1", atoms=atoms[1:])]),
        published_geometry=de.PublishedGeometry(
            bonds=[de.PublishedBond(atoms[0], atoms[1], de.UncertainValue(1.95, 0.01), first_flag=True)], flag=True))
    return de.Entry("ABCDEF02", **components)


@pytest.fixture(scope="session")
def dbentry():
    """The program, beside the module."""
    program = os.environ.get("DBENTRY")
    if not program:
        pytest.skip("DBENTRY names no program")
    return program


@pytest.fixture
def in_threads():
    """Runs a function in four threads at once; what one of them throws fails the test."""
    def run(work):
        failures = []

        def guarded():
            try:
                work()
            except BaseException as error:
                failures.append(error)

        threads = [threading.Thread(target=guarded) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        assert not failures

    return run
