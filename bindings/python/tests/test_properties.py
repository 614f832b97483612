"""Round trips of records and entries of any content."""

import copy
import json
import pickle

from hypothesis import HealthCheck, given, settings
from hypothesis import strategies as st

import database_entry as de
from database_entry import records

# What an archive holds: any text without NUL, bytes that are no UTF-8 included.
texts = st.one_of(
    st.text(st.characters(blacklist_characters="\0", blacklist_categories=("Cs",)), max_size=20),
    st.binary(max_size=8).map(lambda b: b.replace(b"\0", b"").decode("utf-8", "surrogateescape")))
numbers = st.floats(allow_nan=False)
integers = st.integers(-2**31, 2**31 - 1)


def values(type_name):
    if type_name == "str":
        return texts
    if type_name == "float":
        return numbers
    if type_name == "int":
        return integers
    if type_name == "bool":
        return st.booleans()
    if type_name == "numpy.ndarray":
        return st.tuples(numbers, numbers, numbers)
    if type_name == "Texts":
        return st.lists(texts, max_size=3)
    if type_name == "ChemicalClassifications":
        return st.lists(st.integers(1, 11), max_size=3)
    if type_name == "Date":
        return st.dates().map(lambda day: de.Date(day.year, day.month, day.day))
    if type_name == "Journal":
        return st.integers(1, 2000).map(de.Journal)
    if type_name == "Range":
        return st.builds(de.Range, numbers, st.integers(0, 2), numbers, st.integers(0, 2))
    enumeration = de
    for part in type_name.split("."):
        enumeration = getattr(enumeration, part)
    return st.sampled_from(list(enumeration))


def records_of(cls):
    return st.fixed_dictionaries({}, optional={
        name: values(type_name) for name, (type_name, _) in cls._field_types.items()}).map(lambda fields: cls(**fields))


PLAIN = [de.Publication, de.ExperimentalInfo, de.EditorsInfo, de.ChemicalInfo, de.CrystalInfo, de.Atom,
         de.ConnectivityAtom, de.DiagramAtom]
any_record = st.one_of([records_of(cls) for cls in PLAIN])
quick = settings(max_examples=150, deadline=None, suppress_health_check=list(HealthCheck))


@quick
@given(any_record)
def test_a_record_comes_back_from_its_pickle(record):
    assert pickle.loads(pickle.dumps(record)) == record


@quick
@given(any_record)
def test_a_record_comes_back_from_its_copies(record):
    assert copy.copy(record) == record and copy.deepcopy(record) == record


@quick
@given(any_record)
def test_a_record_comes_back_from_its_dictionary(record):
    assert type(record).from_dict(json.loads(json.dumps(record.to_dict()))) == record


@quick
@given(any_record)
def test_a_record_comes_back_from_its_archive_form(record):
    if isinstance(record, de.DiagramAtom):
        return  # it has none
    read = type(record)()
    read._read_bytes(record.to_bytes())
    assert read == record


@quick
@given(any_record)
def test_a_record_shows_itself_in_one_line(record):
    assert "\n" not in repr(record)


entries = st.builds(
    lambda identifier, cell, atoms, components: de.Entry(
        identifier, de.CrystalMaker(de.Cell(*cell, ["x,y,z"]), atoms), **components),
    texts, st.tuples(*[numbers] * 6), st.lists(records_of(de.Atom), max_size=4),
    st.fixed_dictionaries({}, optional={
        "publication": records_of(de.Publication), "experimental_info": records_of(de.ExperimentalInfo),
        "editors_info": records_of(de.EditorsInfo), "chemical_info": records_of(de.ChemicalInfo),
        "crystal_info": records_of(de.CrystalInfo)}))


@quick
@given(entries)
def test_an_entry_comes_back_from_its_pickle(entry):
    assert pickle.loads(pickle.dumps(entry)) == entry


@quick
@given(entries)
def test_an_entry_comes_back_from_its_dictionary(entry):
    assert de.Entry.from_dict(entry.to_dict()) == entry


@quick
@given(st.lists(texts, max_size=6), st.data())
def test_a_list_of_texts_behaves_as_a_list_of_python(items, data):
    ours, theirs = de.Publication(authors=items).authors, list(items)
    for _ in range(5):
        index = data.draw(st.integers(-8, 8))
        for change in (lambda l: l.insert(index, "x"), lambda l: l.pop(index), lambda l: l.reverse(),
                       lambda l: l.__delitem__(index), lambda l: l.extend(["y"]), lambda l: l.remove("y")):
            results = []
            for sequence in (ours, theirs):
                try:
                    results.append(change(sequence))
                except (IndexError, ValueError) as error:
                    results.append(type(error))
            assert results[0] == results[1] and ours == theirs


def test_every_record_with_a_dictionary_is_covered():
    assert {cls.__name__ for cls in PLAIN} <= set(records.RECORDS)
