"""What nobody should do: none of it ends the interpreter, and what can be said is said."""

import copy
import gc
import math
import os
import pickle
import subprocess
import sys
import textwrap
import weakref

import numpy
import pytest

import database_entry as de

RECORDS = sorted(name for name, cls in vars(de).items() if hasattr(cls, "_fields"))
LISTS = sorted(name for name, cls in vars(de).items() if hasattr(cls, "_item_type"))
WRONG = [object(), b"bytes", "text", -1, 2**31, 2**70, -2**70, 1e400, math.nan, [], {}, None, ..., int,
         numpy.zeros((2, 2)), [[1, 2], [3]], lambda: 0, "\ud800", "\x00"]


@pytest.mark.parametrize("name", RECORDS)
def test_a_field_takes_a_value_or_says_why_not(name):
    cls = getattr(de, name)
    try:
        record = cls()
    except TypeError:
        pytest.skip("it has no default")
    for field in cls._fields:
        for value in WRONG:
            try:
                setattr(record, field, value)
            except (TypeError, ValueError, OverflowError, AttributeError, de.Error) as error:
                assert str(error)
    assert repr(record) and isinstance(record.to_dict(), dict)


@pytest.mark.parametrize("name", LISTS)
def test_a_list_takes_an_item_or_says_why_not(name):
    items = getattr(de, name)()
    for value in WRONG:
        for change in (items.append, items.extend, lambda item: items.insert(10**6, item), items.remove, items.index):
            try:
                change(value)
            except (TypeError, ValueError, OverflowError):
                pass
    for position in (len(items), -len(items) - 1, 2**62, -2**62):
        with pytest.raises(IndexError):
            items[position]
    assert items[2**62:] == [] and len(items[-2**70:2**70]) == len(items)


def test_a_list_may_be_changed_while_it_is_walked():
    texts = de.Texts(["a", "b"])
    for text in texts:
        if len(texts) < 100:
            texts.append(text)
    assert len(texts) == 100
    for _ in texts:
        texts.clear()
    texts.extend(texts)
    texts[:] = (text for text in [*texts, "c"])
    assert texts == ["c"]


def test_a_list_outlives_its_record():
    authors = de.Publication(authors=["A.B.Smith"]).authors
    gc.collect()
    authors.append("C.Jones")
    assert authors == ["A.B.Smith", "C.Jones"]


def test_an_object_that_was_never_made_is_a_type_error():
    class Lazy(de.Publication):
        def __init__(self):
            pass

    with pytest.raises(TypeError, match="__init__"):
        Lazy()
    for cls in (de.Publication, de.Texts, de.Entry, de.DeferredEntry, de.Cell):
        made = cls.__new__(cls)
        for work in (repr, str, lambda it: it.to_bytes(), lambda it: it.year, len, copy.copy, pickle.dumps,
                     lambda it: it == it, lambda it: it.identifier):
            with pytest.raises((TypeError, AttributeError)):
                work(made)


@pytest.mark.parametrize("cls", [de.CrystalStructureDatabaseEntry, de.EntryColumns, de.RangeLimit])
def test_what_has_no_constructor_says_so(cls):
    with pytest.raises(TypeError, match="No constructor"):
        cls()


@pytest.mark.parametrize("stored", [b"", b"\x01", b"\x01\0\0\0\xff\xff\xff\x7f", b"\x02\0\0\0\0\0\0\0", b"\xff" * 200])
def test_damaged_pickles_are_refused(stored):
    from database_entry import records

    with pytest.raises(de.Error):
        records._restore_entry(de.Entry, stored)


def test_every_cut_and_many_changes_of_a_pickled_entry_are_refused_or_read(whole):
    from database_entry import records

    stored = whole._stored_bytes()
    for end in range(0, len(stored), 7):
        with pytest.raises(de.Error):
            records._restore_entry(de.Entry, stored[:end])
    for place in range(0, len(stored), 5):
        changed = bytearray(stored)
        changed[place] ^= 0xFF
        try:
            str(records._restore_entry(de.Entry, bytes(changed)))
        except (de.Error, MemoryError):
            pass


@pytest.mark.parametrize("bytes_of", [b"", b"\xff\xff\xff\x7f", b"\xff\xff\xff\xff", b"\0" * 40])
def test_damaged_records_are_refused(bytes_of):
    with pytest.raises((de.Error, ValueError)):
        de.Publication()._read_bytes(bytes_of)
    with pytest.raises((de.Error, ValueError)):
        de.Entry.from_bytes(bytes_of)


@pytest.mark.parametrize("plain", [
    {}, {"identifier": 5}, {"identifier": "A", "publication": []}, {"identifier": "A", "publication": {"yaer": 1}},
    {"identifier": "A", "crystal_maker": {"$ref": "/nowhere"}}, {"identifier": "A", "cell": {"a": "x"}},
    {"identifier": "A", "publication": {"$ref": "/publication"}}, 5, None, []])
def test_wrong_dictionaries_are_refused(plain):
    with pytest.raises((TypeError, ValueError, KeyError, AttributeError, de.Error)):
        de.Entry.from_dict(plain)


def test_numbers_that_are_none_stay_what_they_are():
    for number in (math.nan, math.inf, -math.inf, -0.0, 5e-324):
        info = de.CrystalInfo(z=number)
        again = pickle.loads(pickle.dumps(info))
        assert numpy.float64(again.z).tobytes() == numpy.float64(number).tobytes()
    cell = de.Cell(math.nan, math.inf, -1, 0, 0, 0, [])
    for work in (lambda: cell.matrix, lambda: de.reduced_cell(cell), lambda: cell.volume, lambda: repr(cell)):
        try:
            work()
        except de.Error as error:
            assert str(error)


@pytest.mark.parametrize("cell", [(math.nan,) * 6, (0,) * 6, (1e308,) * 3 + (90,) * 3, (1e-308,) * 3 + (90,) * 3,
                                  (5, 5, 5, 179.999, 179.999, 179.999), (-5, 5, 5, 90, 90, 90)])
def test_impossible_crystals_are_refused_by_what_needs_one(cell):
    maker = de.CrystalMaker(de.Cell(*cell, ["x,y,z"]), [
        de.Atom(label="A", element="Xx", position=(math.nan, math.inf, 1e300)),
        de.Atom(label="B", element="C", position=(0, 0, 0), occupancy=-1.0)])
    entry = de.Entry("A", maker)
    for work in (de.packed, de.perceive_bonds, de.molecules):
        try:
            work(maker)
        except (de.Error, ValueError) as error:
            assert str(error)
    for work in (de.perceive, de.check, lambda e: de.picture(e, "cell"), lambda e: e._repr_html_(), repr, str,
                 lambda e: e.to_json(), lambda e: e.to_cif(), lambda e: e.to_xyz(), de.to_ase):
        try:
            work(entry)
        except (de.Error, ValueError) as error:
            assert str(error)


def test_crystals_with_null_atoms_are_no_end():
    maker = de.CrystalMaker(de.Cell(5, 5, 5, 90, 90, 90, ["x,y,z"]), [None])
    entry = de.Entry("A", maker)
    for work in (lambda: maker.positions, lambda: maker.occupancies, lambda: repr(maker), lambda: de.packed(maker),
                 lambda: str(entry), entry._repr_html_, entry.to_json, entry.to_cif, entry.to_dict, entry._stored_bytes,
                 lambda: de.perceive(entry), lambda: de.check(entry), lambda: de.picture(entry, "cell"),
                 lambda: de.connect("memory:").put(entry), lambda: maker == maker, lambda: entry == entry):
        try:
            work()
        except (de.Error, ValueError) as error:
            assert str(error)


@pytest.mark.parametrize("place", ["", "/", "/dev/null", "/proc/self/mem", "no/such/folder/x.db", "a\0b", "postgresql://",
                                   "postgresql://nowhere.invalid:1/x", "x" * 5000])
def test_a_place_that_is_no_store_is_an_error(place):
    with pytest.raises((de.Error, OSError, ValueError)):
        de.connect(place)


def test_a_file_that_goes_or_changes_under_a_store_is_an_error_or_nothing(tmp_path, whole):
    file = tmp_path / "one.db"
    db = de.connect(file, create=True)
    db.put(whole)
    entry = db.deferred(whole.identifier)
    file.write_bytes(os.urandom(4096))
    for work in (db.count, lambda: list(db.select()), lambda: entry.publication, lambda: db.put(whole), db.verify,
                 lambda: db.get("X"), db.close):
        try:
            work()
        except de.Error as error:
            assert str(error)


def test_a_file_that_goes_or_changes_under_an_archive_is_an_error_or_nothing(tmp_path, entry):
    file = tmp_path / "one.dbe"
    with de.open(file, "w") as writer:
        writer.append(entry)
        writer.append(entry)
    archive = de.open(file)
    assert len(archive) == 2
    with open(file, "r+b") as handle:
        handle.truncate(10)
    with pytest.raises((de.Error, IndexError)):
        [archive[1], archive[0]]
    archive.close()
    for work in (lambda: archive[0], lambda: len(de.open(tmp_path))):
        with pytest.raises((de.Error, ValueError, OSError)):
            work()


@pytest.mark.parametrize("work", [
    lambda: de.query("Ti" * 10**5), lambda: de.query("(" * 10**5), lambda: de.query(filter="NOT " * 10**5 + "a=1"),
    lambda: de.query(filter="(" * 10**5), lambda: de.query(year=(1,)), lambda: de.query(year=object()),
    lambda: de.query(nothing=5), lambda: de.query("\ud800"), lambda: de.EntryQuery.compare("year", "~", 5),
    lambda: de.EntryQuery.cell([1, 2]), lambda: de.EntryQuery.cell(range(10**6)), lambda: de.query(5)])
def test_wrong_queries_are_refused(work):
    with pytest.raises((de.Error, TypeError, ValueError)):
        work()


def test_wrong_limits_are_refused(whole):
    db = de.connect("memory:")
    db.put(whole)
    for options in ({"limit": -1}, {"limit": 2**70}, {"limit": "x"}, {"after": 5}):
        with pytest.raises((TypeError, ValueError, OverflowError, RuntimeError)):
            list(db.select(**options))
    assert db.identifiers(limit=2**62) == [whole.identifier] and db.identifiers(limit=0) == []
    with pytest.raises((TypeError, de.Error)):
        db.put([whole, 5])
    with pytest.raises((TypeError, de.Error)):
        db.put(None)


@pytest.mark.parametrize("failure", [ZeroDivisionError, KeyboardInterrupt, SystemExit, StopIteration, GeneratorExit,
                                     MemoryError, RecursionError, de.ArchiveError])
def test_what_a_source_raises_passes_through_everything(failure, tmp_path):
    class Source(de.DataSource):
        def identifier(self):
            return "RAISER"

        def crystal_info(self):
            raise failure("mine")

    entry = de.DeferredEntry(Source())
    for work in (lambda: entry.crystal_info, lambda: str(entry), entry.to_json, entry.to_cif, entry.to_dict,
                 entry.to_bytes, entry._repr_html_, lambda: pickle.dumps(entry), lambda: copy.copy(entry),
                 lambda: de.connect("memory:").put(entry), lambda: de.perceive(entry), lambda: de.check(entry),
                 lambda: de.write_json([entry], tmp_path / "x"), lambda: entry == de.Entry("A")):
        try:
            work()
        except failure as error:
            assert error.args == ("mine",)
    with pytest.raises(failure):
        entry.crystal_info


def test_a_source_without_an_end_is_a_recursion_error():
    class Source(de.DataSource):
        def publication(self):
            return de.DeferredEntry(self).publication

    with pytest.raises(RecursionError):
        de.DeferredEntry(Source()).publication


def test_a_source_that_drops_itself_is_no_end():
    class Source(de.DataSource):
        def publication(self):
            holder.clear()
            gc.collect()
            return de.Publication(year=1979)

    holder = [de.DeferredEntry(Source())]
    assert holder[0].publication.year == 1979


def test_a_source_that_holds_its_entry_goes_with_it():
    class Source(de.DataSource):
        def publication(self):
            return de.Publication(year=1979)

    source = Source()
    source.entry = de.DeferredEntry(source)
    gone = weakref.ref(source)
    assert source.entry.publication.year == 1979
    gc.collect()
    assert gone() is not None
    del source
    gc.collect()
    assert gone() is None


def test_a_circle_that_somebody_holds_stays():
    class Source(de.DataSource):
        def publication(self):
            return de.Publication(year=1979)

    source = Source()
    source.entry = entry = de.DeferredEntry(source)
    del source
    gc.collect()
    assert entry.publication.year == 1979


def test_components_are_counted_as_python_counts():
    publication = de.Publication()
    before = sys.getrefcount(publication)
    entries = [de.Entry("A", publication=publication) for _ in range(100)]
    assert all(entry.publication is publication for entry in entries)
    del entries
    gc.collect()
    assert sys.getrefcount(publication) == before


def test_a_million_objects_leave_no_memory(whole):
    def used():
        with open("/proc/self/statm", encoding="ascii") as file:
            return int(file.read().split()[1]) * os.sysconf("SC_PAGESIZE")

    def work(count):
        for _ in range(count):
            entry = de.Entry("ABCDEF01", publication=de.Publication(authors=["A.B.Smith"], year=1979))
            entry.publication.authors.append("C.Jones")
            entry.chemical_info = de.ChemicalInfo(synonyms=["rutile"])
            de.Atom(position=(0, 0, 0)).position
            entry.publication is entry.publication

    work(20_000)
    gc.collect()
    before = used()
    work(200_000)  # five objects each
    gc.collect()
    assert used() - before < 4_000_000


def test_threads_that_make_and_drop_objects_of_their_own(in_threads):
    def work():
        for _ in range(2000):
            entry = de.Entry("A", publication=de.Publication(year=1979))
            assert pickle.loads(pickle.dumps(entry)) == entry

    in_threads(work)


def test_objects_may_be_there_when_the_interpreter_ends():
    program = """
        import database_entry as de
        entry = de.Entry("A", publication=de.Publication())
        class Source(de.DataSource):
            pass
        source = Source()
        source.entry = de.DeferredEntry(source)
        db = de.connect("memory:")
        rows = db.select()
        archive = de.open("/proc/self/cmdline")
        snapshot = db.snapshot()
        snapshot.__enter__()
    """
    done = subprocess.run([sys.executable, "-c", textwrap.dedent(program)], capture_output=True, text=True)
    assert (done.returncode, done.stderr) == (0, "")
