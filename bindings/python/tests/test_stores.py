"""Stores and queries, other packages, perception and pictures."""

import copy
import sys
import threading
import time

import numpy
import pytest

import database_entry as de


@pytest.fixture(scope="module")
def database(published, tmp_path_factory):
    db = de.connect(tmp_path_factory.mktemp("stores") / "published.db", create=True)
    db.put(published)
    return db


def test_a_store_is_asked_in_the_words_of_ase(database, published):
    assert database.count() == len(database) == len({str(entry.identifier) for entry in published})
    rows = list(database.select("Ti,O"))
    assert rows and all({"Ti", "O"} <= set(row.elements) for row in rows)
    assert database.get(rows[0].id) == rows[0].entry
    assert database.count("Ti,O") == len(rows) == len(database.identifiers("Ti,O"))


def test_a_row_has_columns_and_components(database):
    row = next(database.select("Ti,O,nelements=2"))
    assert row.nelements == 2 and row["formula"] == row.formula and row.identifier == row.id
    assert row.cell.a == pytest.approx(row.a) and row.publication is row.entry.publication


def test_rows_are_of_the_entries_that_were_found(tmp_path, entry):
    db = de.connect(tmp_path / "one.db", create=True)
    for name in ("AAAAAA", "BBBBBB", "CCCCCC"):
        entry.identifier = name
        db.put(entry)
    rows = list(db.select())
    db.remove("AAAAAA")
    assert [row.id for row in rows] == ["AAAAAA", "BBBBBB", "CCCCCC"]
    assert rows[2].columns.identifier == "CCCCCC" and rows[1].formula == "O2 Ti"
    with pytest.raises(de.EntryNotFound):
        rows[0].formula
    with pytest.raises(AttributeError):
        rows[1].formule


@pytest.mark.parametrize("conditions, text", [
    ({"year": 1963}, "year=1963"), ({"year": (1960, 1970)}, "year=1960..1970"), ({"author": "wyckoff"}, "author=wyckoff"),
])
def test_keywords_are_conditions(database, conditions, text):
    assert database.identifiers(**conditions) == database.identifiers(text)
    assert database.count(**conditions) > 0


def test_queries_are_joined_by_operators(database):
    titanium, oxygen = de.EntryQuery.from_text("Ti"), de.EntryQuery.from_filter('elements HAS "O"')
    assert database.count(titanium & oxygen) == database.count("Ti,O")
    assert database.count(titanium | oxygen) == database.count("Ti") + database.count("O") - database.count("Ti,O")
    assert database.count(titanium & ~oxygen) == database.count("Ti,!O")
    assert (titanium & oxygen).text() == "Ti,O"


def test_pages_follow_one_another(database):
    first = database.identifiers("O", limit=10)
    second = database.identifiers("O", limit=10, after=first[-1])
    assert first + second == database.identifiers("O", limit=20)


def test_a_wrong_query_says_the_column():
    with pytest.raises(de.QueryError, match="column 4") as error:
        de.query("Ti,yaer=1990")
    assert error.value.column == 4 and isinstance(error.value, ValueError)


def test_what_is_not_there_is_not_found(database):
    with pytest.raises(de.EntryNotFound) as error:
        database.get("C900883")
    assert error.value.nearest and isinstance(error.value, KeyError)
    with pytest.raises(ValueError, match="more than one"):
        database.get(author="wyckoff")


def test_all_sixteen_components_are_stored(whole):
    db = de.connect("memory:")
    assert db.put(whole) == "added" and db.put(whole) == "unchanged"
    assert db.get(whole.identifier) == whole and whole.identifier in db
    whole.publication.year += 1
    with pytest.raises(de.EntryAlreadyStored):
        db.put(whole, on_duplicate="refuse")
    del db[whole.identifier]
    assert len(db) == 0


def test_a_deferred_entry_of_a_store_reads_what_is_wanted(whole):
    db = de.connect("memory:")
    db.put(whole)
    entry = db.deferred(whole.identifier)
    assert entry.publication is entry.publication and entry == whole


def test_an_entry_that_was_got_is_as_it_was_then(whole):
    db = de.connect("memory:")
    db.put(whole)
    entry = db.get(whole.identifier)
    whole.publication.year += 1
    assert db.put(whole) == "replaced"
    assert entry.publication.year == whole.publication.year - 1 and entry.crystal_maker == whole.crystal_maker


def test_an_entry_is_got_changed_and_put(tmp_path, whole):
    db = de.connect(tmp_path / "one.db", create=True)
    db.put(whole)
    entry = db[whole.identifier]
    entry.publication.year = 2001
    assert db.put(entry) == "replaced" and db.put(db.deferred(whole.identifier)) == "unchanged"
    assert db.get(whole.identifier) == entry and entry.crystal_info == whole.crystal_info


def test_a_shallow_copy_of_an_entry_that_was_got_shares_its_components(whole):
    db = de.connect("memory:")
    db.put(whole)
    entry = db.get(whole.identifier)
    copied = copy.copy(entry)
    assert isinstance(copied, de.Entry) and copied == whole and copied.publication is entry.publication
    assert entry.to_bytes() == whole.to_bytes()


def test_within_a_snapshot_nothing_changes(tmp_path, entry):
    db = de.connect(tmp_path / "one.db", create=True)
    db.put(entry)
    with db.snapshot():
        de.connect(tmp_path / "one.db").remove(entry.identifier)
        assert db.count() == 1 and db.get(entry.identifier) == entry
    assert db.count() == 0


def test_a_snapshot_may_end_after_its_store_is_closed(tmp_path, entry):
    db = de.connect(tmp_path / "one.db", create=True)
    with db.snapshot():
        db.close()
    with pytest.raises(de.Error, match="closed"):
        with db.snapshot():
            pass


def test_a_source_may_use_the_store_that_its_entry_is_put_into(whole):
    db = de.connect("memory:")

    class Source(de.DataSource):
        def identifier(self):
            return "SELFIE"

        def publication(self):
            return de.Publication(volume=str(db.count()))

    assert db.put(de.DeferredEntry(Source())) == "added"
    assert db.get("SELFIE").publication.volume == "0"


def test_a_source_may_close_the_store_that_its_entry_is_put_into():
    db = de.connect("memory:")

    class Source(de.DataSource):
        def identifier(self):
            return "CLOSER"

        def publication(self):
            db.close()

    assert db.put(de.DeferredEntry(Source())) == "added"
    with pytest.raises(de.Error, match="closed"):
        db.count()


def test_threads_may_read_what_they_got_from_one_store(database, in_threads):
    wanted = database.identifiers(limit=40)

    def work():
        for name in wanted:
            entry = database.get(name)
            assert database.count("O") > 0
            assert entry.publication is entry.publication and entry.cell == database.deferred(name).cell

    in_threads(work)


def test_a_closed_store_says_so(whole):
    with de.connect("memory:") as db:
        db.put(whole)
        entry = db[whole.identifier]
    assert entry == whole
    with pytest.raises(de.Error, match="closed"):
        db.count()


def test_a_store_that_is_not_there_is_an_error(tmp_path):
    with pytest.raises(de.StoreError, match="none.db"):
        de.connect(tmp_path / "none.db")


def test_threads_share_a_store_and_read_archives_of_their_own(database, published, tmp_path, in_threads):
    file = tmp_path / "published.dbe"
    with de.open(file, "w") as archive:
        archive.extend(published)
    oxides = database.count("O")

    def work():
        for _ in range(5):
            assert database.count("O") == oxides
            assert sum(1 for _ in de.open(file)) == 506
            for row in database.select("O", limit=20):
                assert row.entry.publication is row.entry.publication

    in_threads(work)


def test_other_threads_run_while_an_archive_is_read(published, tmp_path):
    file = tmp_path / "many.dbe"
    with de.open(file, "w") as archive:
        for _ in range(40):
            archive.extend(published)
    counted, done = [0], threading.Event()

    def count():
        while not done.is_set():
            counted[0] += 1
            time.sleep(0.0005)

    before = sys.getswitchinterval()
    sys.setswitchinterval(100.0)  # another thread is let in only where the lock is let go
    counter = threading.Thread(target=count)
    try:
        counter.start()
        reader = de.open(file)
        at_start = counted[0]
        assert len(reader) == 40 * 506
        assert counted[0] > at_start + 5
    finally:
        done.set()
        sys.setswitchinterval(before)
        counter.join()


def test_a_table_has_a_row_for_each_entry(database):
    pytest.importorskip("pandas")
    table = de.frame(database.select("Ti,O"), ["formula", "year", "a", "volume"])
    assert list(table.columns) == ["formula", "year", "a", "volume"] and len(table) == database.count("Ti,O")
    assert table.index.name == "identifier"
    assert len(de.frame(database)) == database.count()


def test_atoms_go_to_ase_and_come_back(database):
    pytest.importorskip("ase")
    entry = database.get(database.identifiers("Ti,O,nelements=2", limit=1)[0])
    atoms = de.to_ase(entry)
    numpy.testing.assert_allclose(atoms.cell.cellpar(), entry.cell.parameters, atol=1e-9)
    back = de.from_ase(atoms)
    assert back.identifier == entry.identifier and len(back.crystal_maker.atoms) == len(atoms)
    numpy.testing.assert_allclose(back.crystal_maker.positions, atoms.get_scaled_positions(wrap=False))
    assert de.Entry.from_bytes(back.to_bytes()).crystal_maker == back.crystal_maker


def test_structures_go_to_gemmi_and_come_back(database):
    pytest.importorskip("gemmi")
    entry = database.get(database.identifiers("Ti,O,nelements=2", limit=1)[0])
    structure = de.to_gemmi(entry)
    back = de.from_gemmi(structure)
    assert [atom.label for atom in back.crystal_maker.atoms] == [atom.label for atom in entry.crystal_maker.atoms]
    numpy.testing.assert_allclose(back.cell.parameters, entry.cell.parameters)
    assert de.SpaceGroup(back.cell.symmetry_operators).number == de.SpaceGroup(entry.cell.symmetry_operators).number


def test_a_space_group_and_a_reduced_cell_come_from_the_cell(database):
    entry = database.get(database.identifiers("Na,Cl,nelements=2", limit=1)[0])
    group = de.SpaceGroup(entry.cell.symmetry_operators)
    assert group.number == 225 and group.crystal_system == "cubic"
    numpy.testing.assert_allclose(de.reduced_cell(entry.cell)[3:], 60, atol=1e-6)
    with pytest.raises(de.LatticeError):
        de.reduced_cell(de.Cell(1, 1, 1, 10, 10, 170))


def test_components_are_perceived_from_the_atoms():
    cell = de.Cell(10, 10, 10, 90, 90, 90, ["x,y,z"])
    water = de.CrystalMaker(cell, [de.Atom(label="O", element="O", position=(0.5, 0.5, 0.5)),
                                   de.Atom(label="H1", element="H", position=(0.596, 0.5, 0.5)),
                                   de.Atom(label="H2", element="H", position=(0.476, 0.593, 0.5))])
    perceived, report = de.perceive(de.Entry("WATER", water))
    assert "connectivity_info" in report.filled and report.bonds == 2
    assert perceived.crystal_connectivity_match.atoms[0][0] is perceived.crystal_maker.atoms[0]
    assert [molecule["formula"] for molecule in de.molecules(water)] == ["H2 O"]
    assert perceived._repr_html_().count("<svg") == 1


def test_pictures_are_bytes_of_their_format(database, tmp_path):
    entry = database.get(database.identifiers("Na,Cl,nelements=2", limit=1)[0])
    assert b"<svg" in de.picture(entry, "cell") and de.picture(entry, "cell", "png")[1:4] == b"PNG"
    de.save_picture(entry, tmp_path / "cell.pdf", "cell", view="c", width=300, height=300)
    assert (tmp_path / "cell.pdf").read_bytes().startswith(b"%PDF")
    with pytest.raises(de.PerceptionError):
        de.picture(de.Entry("EMPTY"), "cell")


def test_a_check_says_what_an_editor_would_ask(maker):
    findings = de.check(de.Entry("A", maker), year=2020)
    assert {finding.number for finding in findings} <= set(range(11, 82))
    assert all(finding.sentence for finding in findings)
