"""CIF, JSON and XYZ files, equal to what the program writes and reads."""

import json
import os
import subprocess

import pytest

import database_entry as de


@pytest.fixture(scope="module")
def archive(published, tmp_path_factory):
    """The published structures in a file, for the program."""
    file = tmp_path_factory.mktemp("exchange") / "published.dbe"
    with de.open(file, "w") as writer:
        writer.extend(published)
    return file


@pytest.mark.parametrize("form, write", [
    ("cif", de.write_cif),
    ("jsonl", de.write_json),
    ("json", lambda entries, path: de.write_json(entries, path, lines=False)),
    ("xyz", de.write_xyz),
])
def test_a_file_is_what_the_program_exports(archive, dbentry, tmp_path, form, write):
    theirs, ours = tmp_path / "theirs", tmp_path / "ours"
    subprocess.run([dbentry, "export", archive, "--to", form, "-o", theirs], check=True, capture_output=True)
    write(de.open(archive), ours)
    assert ours.read_bytes() == theirs.read_bytes()


def test_every_published_structure_comes_back_from_cif(published, tmp_path):
    de.write_cif(published, tmp_path / "all.cif")
    back = de.read_cif(tmp_path / "all.cif")
    assert len(back) == 506
    for entry, again in zip(published, back):
        assert again.to_bytes() == entry.to_bytes()


@pytest.mark.parametrize("lines", [True, False])
def test_every_published_structure_comes_back_from_json(published, tmp_path, lines):
    de.write_json(published, tmp_path / "all.json", lines=lines)
    assert de.read_json(tmp_path / "all.json") == published


def test_all_sixteen_components_come_back_from_json(whole):
    again = de.Entry.from_json(whole.to_json())
    assert again.to_json() == whole.to_json() and again.to_bytes() == whole.to_bytes()
    assert again.crystal_diagram_match.atoms[0][0] is again.crystal_maker.atoms[0]
    # Bonds of the crystal have no list of their own: each match has its own again.
    again.crystal_connectivity_match.bonds[0] = (
        again.crystal_diagram_match.bonds[0][0], again.crystal_connectivity_match.bonds[0][1])
    assert again == whole
    assert json.loads(whole.to_json(indent=1)) == json.loads(whole.to_json())


def test_a_missing_component_stays_missing_in_json(maker):
    again = de.Entry.from_json(de.Entry("A", maker).to_json())
    assert again.publication is None and again.identifier == "A"


def test_one_entry_is_a_cif_file_of_its_own(entry):
    text = entry.to_cif()
    assert "data_ABCDEF01" in text
    assert de.parse_cif(text)[0].to_bytes() == entry.to_bytes()


@pytest.mark.parametrize("text, reason", [
    ("{", "unnamed:1:2: "),
    ('{"identifier": 5}', "unnamed:1: identifier"),
    ('{"identifier": "A"}\n{"identifier": "B", "crystal_info": {"z": "x"}}', "unnamed:2: entry B: crystal_info.z"),
    ("", "the file is empty"),
    (b'{"identifier": "\xff"}', "no JSON"),
])
def test_a_wrong_json_text_says_where(text, reason):
    with pytest.raises(de.JsonError, match=reason):
        de.parse_json(text)


def test_entries_before_a_wrong_one_are_in_the_exception():
    with pytest.raises(de.JsonError) as error:
        de.parse_json('{"identifier": "A"}\n{"identifier": 5}\n')
    assert [entry.identifier for entry in error.value.entries] == ["A"] and error.value.line == 2


def test_json_of_one_entry_must_be_one():
    with pytest.raises(de.InvalidValue, match="no JSON of an entry"):
        de.Entry.from_json("[")
    with pytest.raises(de.InvalidValue, match="crystal_info.z"):
        de.Entry.from_json('{"identifier": "A", "crystal_info": {"z": "x"}}')


@pytest.mark.parametrize("write", [de.write_cif, de.write_json, de.write_xyz])
def test_nothing_is_left_of_a_file_that_cannot_be_written_whole(tmp_path, entry, write):
    file = tmp_path / "out"
    file.write_text("older")

    def entries():
        yield entry
        raise ZeroDivisionError

    with pytest.raises(ZeroDivisionError):
        write(entries(), file)
    assert os.listdir(tmp_path) == ["out"] and file.read_text() == "older"


def test_atoms_are_written_as_xyz(entry):
    assert entry.to_xyz().splitlines()[0] == "2"
    assert entry.to_xyz(cell=True).splitlines()[0] == "3"
