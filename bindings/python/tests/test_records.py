"""Records: fields, enumerations, lists, sets and mappings."""

import datetime
import enum

import numpy
import pytest

import database_entry as de
from database_entry import records

ENUMERATIONS = [
    de.ExperimentalInfo.RadiationProbe, de.ExperimentalInfo.PowderStudy, de.ExperimentalInfo.IntensityMethod,
    de.EditorsInfo.EntryCategory, de.EditorsInfo.AserMatchFlag, de.EditorsInfo.AuthorCorrespondence,
    de.EditorsInfo.IgnoredErrors, de.DatabaseCrossReference.CrossReferenceType, de.DepositionInfo.DepositionType,
    de.ChemicalClassification.Classifier, de.Journal.State, de.BondType, de.RangeLimit.LimitCondition,
]
MEMBER_COUNTS = [5, 3, 4, 6, 6, 3, 3, 7, 12, 12, 3, 8, 3]


@pytest.mark.parametrize("kind, count", zip(ENUMERATIONS, MEMBER_COUNTS))
def test_an_enumeration_has_every_member_and_finds_it_by_number_text_and_name(kind, count):
    assert issubclass(kind, enum.IntEnum) and len(kind) == count
    for member in kind:
        assert kind(int(member)) is kind(member.text) is kind(member.name) is member


def test_texts_of_members_are_those_of_the_library():
    assert de.ExperimentalInfo.x_ray.text == "x-ray"
    assert de.ChemicalClassification.steroid.text == "Steroid"
    assert de.EditorsInfo.inapplicable == -1


def test_a_value_that_is_no_member_is_a_plain_number():
    editors = de.EditorsInfo(author_correspondence=77)
    assert editors.author_correspondence == 77 and type(editors.author_correspondence) is int


def test_fields_have_their_names_and_default_values():
    assert de.CrystalInfo._fields == (
        "z", "z_prime", "color", "habit", "analogues", "melting_point", "notes", "phase_transitions", "polymorph",
        "sensitivity", "recrystallisation_solvent", "disorder_details", "other_cell_details")
    assert de.CrystalInfo().z == 0.0 and de.CrystalInfo().color == ""


@pytest.mark.parametrize("field, value, message", [
    ("year", "1979", "Publication.year: expected int, not '1979' (str)"),
    ("year", 1.5, "Publication.year: expected int, not 1.5 (float)"),
    ("volume", 101, "Publication.volume: expected str, not 101 (int)"),
    ("authors", "A.B.Smith", "Publication.authors: expected a sequence of str, not 'A.B.Smith' (str)"),
    ("authors", [1], "Publication.authors: expected str, not 1 (int)"),
])
def test_a_value_of_another_type_names_the_field_and_changes_nothing(field, value, message):
    publication = de.Publication(authors=["A"])
    with pytest.raises(TypeError) as error:
        setattr(publication, field, value)
    assert str(error.value) == message
    assert publication == de.Publication(authors=["A"])


def test_a_number_of_more_than_32_bits_is_refused():
    with pytest.raises(OverflowError):
        de.Publication(year=2**31)


def test_an_unknown_field_is_refused():
    with pytest.raises(TypeError, match="Publication has no field 'yaer'"):
        de.Publication(yaer=1979)
    with pytest.raises(AttributeError):
        de.Publication().yaer = 1979


def test_bytes_that_are_no_text_come_back_as_they_were():
    text = b"caf\xe9".decode("utf-8", "surrogateescape")
    info = de.ChemicalInfo(name=text)
    assert info.name == text
    assert b"caf\xe9" in info.to_bytes()


def test_a_list_is_that_of_the_record():
    publication = de.Publication(authors=["A", "C"])
    authors = publication.authors
    authors.insert(1, "B")
    authors.append("D")
    authors[0] = "Z"
    del authors[-1]
    assert publication.authors is authors
    assert authors == ["Z", "B", "C"] and list(reversed(authors)) == ["C", "B", "Z"]
    assert authors[1:] == ["B", "C"] and authors.index("C") == 2 and repr(authors) == "['Z', 'B', 'C']"


def test_a_list_keeps_its_record_alive():
    authors = de.Publication(authors=["A"]).authors
    assert authors == ["A"]


@pytest.mark.parametrize("index", [2, -3])
def test_an_index_beyond_a_list_is_an_index_error(index):
    with pytest.raises(IndexError):
        de.Publication(authors=["A", "B"]).authors[index]


def test_a_slice_of_a_list_can_be_replaced():
    authors = de.Publication(authors=list("ABCD")).authors
    authors[1:3] = ["x"]
    assert authors == ["A", "x", "D"]
    authors[::2] = ["1", "2"]
    assert authors == ["1", "x", "2"]


def test_a_record_prints_as_in_the_library_and_shows_itself_in_one_line():
    publication = de.Publication(authors=["A.B.Smith"], journal=4, volume="101", year=1979, page="2345")
    assert str(publication) == "A.B.Smith, J.Am.Chem.Soc., 101, 2345, 1979"
    assert repr(de.CrystalInfo(z=2.0, color="red")) == "CrystalInfo(z=2.0, color='red')"
    assert "\n" not in repr(publication)


@pytest.mark.parametrize("name", sorted(records.RECORDS))
def test_help_of_a_record_tells_of_it_and_of_each_of_its_fields(name):
    record = records.RECORDS[name]
    assert record.__doc__
    for field in record._fields:
        assert ":" in getattr(record, field).__doc__, field


def test_journals_are_those_of_the_list():
    journal = de.Journal(4)
    assert (journal.name, journal.international_coden, journal.state) == ("J.Am.Chem.Soc.", "JACSAT", de.Journal.current)
    assert de.Journal.max_vorn_coden() == 1418
    with pytest.raises(de.Error, match="Invalid VORN coden"):
        de.Journal(0)


@pytest.mark.parametrize("given", [de.Date(2003, 5, 17), datetime.date(2003, 5, 17), "2003-05-17"])
def test_a_date_is_taken_in_three_forms(given):
    assert str(de.EditorsInfo(accession_date=given).accession_date) == "2003-05-17"


def test_a_day_that_is_none_is_refused():
    with pytest.raises(de.InvalidValue):
        de.Date(2003, 2, 30)


def test_an_identifier_is_a_text():
    identifier = de.DatabaseEntryIdentifier("ABCDEF01")
    assert identifier == "ABCDEF01" and identifier.text == "ABCDEF01" and {identifier: 1}["ABCDEF01"] == 1
    assert repr(identifier) == "DatabaseEntryIdentifier('ABCDEF01')"


def test_cross_references_are_an_ordered_set():
    first = de.DatabaseCrossReference("racemate", "Racemate of", "ABCDEF01")
    second = de.DatabaseCrossReference("isomer", "Isomer of", ["GHIJKL", "MNOPQR02"])
    info = de.CrossReferenceInfo([second, first, second])
    assert list(info) == [first, second] and len(info) == 2 and first in info
    assert second.text == "Isomer of [GHIJKL], [MNOPQR02]"
    assert info.cross_related_identifiers() == ["ABCDEF01", "GHIJKL", "MNOPQR02"]
    info.remove(first)
    assert info == de.CrossReferenceInfo({second}) and info & {first} == set()
    with pytest.raises(KeyError):
        info.remove(first)


def test_a_cross_reference_of_no_type_is_refused():
    with pytest.raises(de.InvalidValue):
        de.DatabaseCrossReference(7, "x")


def test_depositions_are_a_mapping():
    info = de.DepositionInfo({"VORN": " VORN 123456 "})
    vorn = de.DepositionInfo.vorn
    assert dict(info) == {vorn: "VORN 123456"} and info.deposition_numbers(vorn) == ["123456"]
    info[vorn] = "VORN 7"
    assert info[vorn] == "VORN 7" and len(info) == 1
    del info[vorn]
    assert not info and info.get(vorn, "none") == "none"
    with pytest.raises(KeyError):
        info[vorn]


def test_set_text_keeps_the_older_text_in_front():
    info = de.DepositionInfo({0: "VORN 1"})
    info.set_text(0, "VORN 2")
    assert info.text(0) == "VORN 1" and info.depositions == ((0, "VORN 1"), (0, "VORN 2"))


def test_positions_are_copies_that_cannot_be_written_to():
    atom = de.Atom(position=[0.1, 0.2, 0.3])
    with pytest.raises(ValueError):
        atom.position[0] = 1.0
    assert atom.position.tolist() == [0.1, 0.2, 0.3]


@pytest.mark.parametrize("position", [(1, 2), "123", 5, None])
def test_a_position_is_three_numbers(position):
    with pytest.raises(TypeError):
        de.Atom(position=position)


def test_numbers_of_a_crystal_are_arrays(maker):
    assert maker.positions.tolist() == [[0, 0, 0], [0.305, 0.305, 0]]
    assert maker.occupancies.tolist() == [1.0, 0.5]
    assert maker.cell.parameters.tolist() == [4.594, 4.594, 2.959, 90, 90, 90]
    assert maker.cell.rotations.shape == (2, 3, 3) and maker.cell.translations.shape == (2, 3)
    numpy.testing.assert_allclose(maker.cell.matrix, numpy.diag([4.594, 4.594, 2.959]), atol=1e-12)


def test_an_operator_moves_a_point():
    screw = de.CrystalSymmetryOperator("-x,1/2+y,1/2-z")
    numpy.testing.assert_allclose(screw.apply([0.1, 0.2, 0.3]), [-0.1, 0.7, 0.2])
    numpy.testing.assert_allclose(screw.matrix @ [0.1, 0.2, 0.3, 1], [-0.1, 0.7, 0.2, 1])
    with pytest.raises(de.InvalidValue, match="x,y"):
        de.CrystalSymmetryOperator("x,y")


def test_a_list_of_operators_is_shared_by_the_cells_that_hold_it():
    operators = de.SymmetryOperators(["x,y,z"])
    one, other = de.Cell(symmetry_operators=operators), de.Cell(symmetry_operators=operators)
    one.symmetry_operators.append("-x,-y,-z")
    assert one.symmetry_operators is other.symmetry_operators is operators and len(operators) == 2


def test_equality_is_that_of_the_library():
    assert de.ExperimentalInfo(temperature=295.0) == de.ExperimentalInfo(temperature=295.00000001)
    assert de.CrystalInfo(z=float("nan")) != de.CrystalInfo(z=float("nan"))
    assert de.Publication() != "a publication"
    with pytest.raises(TypeError):
        hash(de.Publication())


@pytest.mark.parametrize("where", [slice(1, 3), slice(None), slice(None, None, 2), slice(4, 0, -2), slice(-2, None),
                                   slice(3, 1), slice(0, 99, 3), slice(None, None, -1)])
def test_slices_are_deleted_as_from_a_list(where):
    plain = ["a", "b", "c", "d", "e"]
    texts = de.Texts(plain)
    del texts[where]
    del plain[where]
    assert texts == plain
