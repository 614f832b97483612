"""Entries: sharing, deferred ones, data sources in Python, pickling, dictionaries."""

import copy
import gc
import pickle
import sys

import pytest

import database_entry as de


def test_a_component_is_the_same_object_each_time(entry):
    for name in entry._components:
        assert getattr(entry, name) is getattr(entry, name), name


def test_a_component_outlives_its_entry(maker):
    publication = de.Entry("A", maker, publication=de.Publication(year=1979)).publication
    gc.collect()
    assert publication.year == 1979


def test_a_missing_component_is_none(maker):
    assert de.Entry("A", maker).publication is None
    assert de.Entry("A").cell is None


def test_an_entry_of_a_crystal_maker_holds_a_copy_of_its_cell(maker):
    made = de.Entry("A", maker)
    assert made.cell == maker.cell and made.cell is not maker.cell
    assert de.Entry("A", maker, cell=None).cell is None


def test_what_is_assigned_is_shared(entry, maker):
    other = de.Entry("B", maker)
    other.publication = entry.publication
    other.publication.year = 2001
    assert entry.publication.year == 2001 and other.publication is entry.publication
    other.publication = None
    assert other.publication is None and entry.publication.year == 2001


@pytest.mark.parametrize("name", ["crystal_maker", "cell", "chemical_diagram", "connectivity_info",
                                  "crystal_diagram_match"])
def test_a_component_that_is_fixed_cannot_be_assigned(entry, name):
    with pytest.raises(AttributeError):
        setattr(entry, name, None)


def test_a_component_of_another_kind_is_refused(entry):
    with pytest.raises(TypeError, match="expected Publication"):
        entry.publication = de.CrystalInfo()
    with pytest.raises(TypeError, match="sixteen components"):
        de.Entry("A", publicaton=None)


def test_an_entry_prints_its_summary_and_shows_itself_in_one_line(entry):
    assert str(entry).startswith("identifier: ABCDEF01\ncrystal maker:\n")
    assert repr(entry).startswith("<CrystalStructureImmediateDatabaseEntry 'ABCDEF01': ") and "\n" not in repr(entry)


def test_the_checks_give_their_differences(entry):
    assert de.test_database_entry_summary("run", entry, "ABCDEF01", 4.594, 2) == []
    assert len(de.test_database_entry_summary("run", entry, "ABCDEF02", 4.5, 3)) == 3
    assert de.test_database_entry_handles("run", entry) == []


class Source(de.DataSource):
    """Counts the questions."""

    def __init__(self):
        super().__init__()
        self.asked = []
        self.failure = None

    def identifier(self):
        return "DEFERR01"

    def publication(self):
        self.asked.append("publication")
        if self.failure:
            raise self.failure
        return de.Publication(year=1979)

    def cell(self):
        self.asked.append("cell")


def test_a_deferred_entry_asks_its_source_once():
    source = Source()
    entry = de.DeferredEntry(source)
    assert entry.identifier == "DEFERR01" and source.asked == []
    assert entry.publication is entry.publication and entry.publication.year == 1979
    assert entry.cell is None and entry.cell is None
    assert source.asked == ["publication", "cell"]


def test_a_deferred_entry_keeps_a_source_of_python_alive():
    entry = de.DeferredEntry(Source())
    gc.collect()
    assert entry.publication.year == 1979


def test_an_exception_of_a_source_passes_through_unchanged():
    source = Source()
    source.failure = ZeroDivisionError("mine")
    entry = de.DeferredEntry(source)
    with pytest.raises(ZeroDivisionError) as error:
        entry.publication
    assert error.value is source.failure
    source.failure = None
    assert entry.publication.year == 1979


def test_a_source_of_python_passes_through_the_routines_of_the_library():
    source = Source()
    source.failure = KeyError("mine")
    entry = de.DeferredEntry(source)
    with pytest.raises(KeyError) as error:
        str(entry)
    assert error.value is source.failure


def test_a_source_that_gives_another_thing_is_a_type_error():
    class Wrong(de.DataSource):
        def publication(self):
            return "a publication"

    with pytest.raises(TypeError, match="expected Publication"):
        de.DeferredEntry(Wrong()).publication


def test_a_source_need_not_derive_from_anything():
    class Duck:
        def __getattr__(self, name):
            return lambda: "DUCK" if name == "identifier" else None

    assert de.DeferredEntry(Duck()).identifier == "DUCK"


def test_a_source_without_methods_gives_nothing():
    entry = de.DeferredEntry(de.DataSource())
    assert entry.identifier == "" and entry.publication is None


def test_an_entry_without_source_is_refused():
    with pytest.raises(de.NullHandleError):
        de.DeferredEntry(None)


def test_a_connectivity_entry_takes_a_file_name_apart():
    entry = de.ChemicalConnectivityDatabaseEntry()
    entry.set_identifier("12.5 benzene.qdx")
    assert (entry.identifier, entry.name) == ("12.5", "benzene")


COPIES = {
    "pickle": lambda entry: pickle.loads(pickle.dumps(entry)),
    "deepcopy": copy.deepcopy,
    "dictionary": lambda entry: de.Entry.from_dict(entry.to_dict()),
}


@pytest.mark.parametrize("way", sorted(COPIES))
def test_all_sixteen_components_come_back(whole, way):
    copied = COPIES[way](whole)
    assert copied == whole
    assert copied.publication is not whole.publication


@pytest.mark.parametrize("way", sorted(COPIES))
def test_atoms_that_components_share_are_shared_in_a_copy(whole, way):
    copied = COPIES[way](whole)
    atoms = copied.crystal_maker.atoms
    assert copied.crystal_diagram_match.atoms[1][0] is atoms[1]
    assert copied.crystal_diagram_match.atoms[0][1] is copied.chemical_diagram.atoms[0]
    assert copied.crystal_connectivity_match.bonds[0][0] is copied.crystal_diagram_match.bonds[0][0]
    assert copied.disorder_selector[0].atoms[0] is atoms[1]
    assert copied.published_geometry.bonds[0].first_atom is atoms[0]


@pytest.mark.parametrize("way", sorted(COPIES))
def test_a_missing_component_stays_missing_in_a_copy(way):
    copied = COPIES[way](de.Entry("EMPTY"))
    assert all(getattr(copied, name) is None for name in copied._components)


def test_a_shallow_copy_shares_every_component(whole):
    copied = copy.copy(whole)
    assert all(getattr(copied, name) is getattr(whole, name) for name in whole._components)


def test_a_deferred_entry_is_pickled_as_what_it_gives():
    copied = pickle.loads(pickle.dumps(de.DeferredEntry(Source())))
    assert copied.publication.year == 1979 and copied.identifier == "DEFERR01"


def test_every_component_is_pickled_by_itself(whole):
    for name in whole._components:
        component = getattr(whole, name)
        copied = pickle.loads(pickle.dumps(component))
        assert type(copied) is type(component)
        if type(component).__eq__ is not object.__eq__ and name != "disorder_selector":
            assert copied == component, name


@pytest.mark.parametrize("damage", [b"", b"\x02\0\0\0", b"\x01\0\0\0\xff\xff\xff\x7f"])
def test_bytes_that_are_no_entry_are_refused(damage):
    with pytest.raises(de.InvalidValue):
        de._database_entry._entry_from_stored_bytes(damage)


def test_damage_at_every_place_of_a_pickled_entry_is_an_error_or_an_entry(entry):
    stored = entry._stored_bytes()
    for position in range(len(stored)):
        for damaged in (stored[:position], stored[:position] + b"\xff" + stored[position + 1:]):
            try:
                de._database_entry._entry_from_stored_bytes(damaged)
            except de.Error:
                pass


def test_an_entry_is_shown_in_a_notebook(entry):
    shown = entry._repr_html_()
    assert "<svg" in shown and "J.Am.Chem.Soc." in shown
    assert "<table>" in entry.publication._repr_html_()


def test_counts_of_references_come_back_over_many_objects():
    entry = de.Entry("A", publication=de.Publication(authors=["A"]))
    entry.publication
    before = sys.getrefcount(None), sys.getrefcount(de.Publication), len(gc.get_objects())
    for _ in range(100_000):
        entry.publication.authors
        entry.publication.journal
        entry.publication = entry.publication
    gc.collect()
    after = sys.getrefcount(None), sys.getrefcount(de.Publication), len(gc.get_objects())
    assert all(abs(a - b) < 100 for a, b in zip(before, after))
