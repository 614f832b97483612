"""Archives, CIF files, JSON: equality with the program over all published structures."""

import json
import os
import subprocess

import pytest

import database_entry as de


@pytest.fixture
def path(tmp_path, entry):
    file = tmp_path / "three.dbe"
    with de.open(file, "w") as archive:
        for name in ("FIRSTT", "SECOND", "THIRDD"):
            entry.identifier = name
            archive.append(entry)
    return file


def test_an_archive_is_a_sequence(path):
    archive = de.open(path)
    assert len(archive) == 3
    assert [entry.identifier for entry in archive] == archive.identifiers() == ["FIRSTT", "SECOND", "THIRDD"]
    assert archive[-1].identifier == archive[2].identifier == archive["THIRDD"].identifier == "THIRDD"
    assert [entry.identifier for entry in archive[::-2]] == ["THIRDD", "FIRSTT"]
    assert [entry.identifier for entry in archive[1:]] == ["SECOND", "THIRDD"]
    assert "SECOND" in archive and "OTHERR" not in archive and archive.get("OTHERR") is None


def test_entries_are_read_anew_in_any_order(path):
    archive = de.open(path)
    assert archive[1] == archive[1] and archive[1] is not archive[1]
    assert archive[0].identifier == "FIRSTT"


@pytest.mark.parametrize("index", [3, -4])
def test_an_index_beyond_an_archive_is_an_index_error(path, index):
    with pytest.raises(IndexError):
        de.open(path)[index]


def test_an_unknown_identifier_is_not_found(path):
    with pytest.raises(de.EntryNotFound, match="'OTHERR'") as error:
        de.open(path)["OTHERR"]
    assert isinstance(error.value, KeyError)


def test_a_cut_archive_says_file_entry_and_offset(path):
    data = path.read_bytes()
    path.write_bytes(data[:-5])
    archive = de.open(path)
    assert archive[1].identifier == "SECOND"
    with pytest.raises(de.ArchiveError, match=r"three.dbe: entry 2 \(THIRDD\): .* offset \d+"):
        list(archive)


def test_an_archive_that_is_not_there_is_the_usual_error(tmp_path):
    with pytest.raises(FileNotFoundError):
        de.open(tmp_path / "none.dbe")


def test_nothing_is_left_of_an_archive_whose_writing_failed(tmp_path, entry):
    file = tmp_path / "new.dbe"
    with pytest.raises(ZeroDivisionError):
        with de.open(file, "w") as archive:
            archive.append(entry)
            1 / 0
    assert os.listdir(tmp_path) == []


def test_an_entry_that_cannot_be_archived_leaves_the_others(tmp_path, entry):
    with de.open(tmp_path / "new.dbe", "w") as archive:
        archive.append(entry)
        with pytest.raises(de.NullHandleError):
            archive.append(de.Entry("EMPTY"))
    assert de.open(tmp_path / "new.dbe").identifiers() == ["ABCDEF01"]


def test_an_archive_can_be_added_to(path, entry):
    with de.open(path, "a") as archive:
        entry.identifier = "FOURTH"
        archive.append(entry)
    assert len(de.open(path)) == 4
    with pytest.raises(FileExistsError):
        de.open(path, "x")


def test_the_published_structures_are_read_as_the_program_reads_them(published, dbentry, tmp_path):
    theirs, ours = tmp_path / "theirs.dbe", tmp_path / "ours.dbe"
    subprocess.run([dbentry, "import", "/usr/share/avogadro2/crystals", "-o", theirs], stderr=subprocess.DEVNULL)
    with de.open(ours, "w") as archive:
        archive.extend(published)
    theirs_by_bytes = sorted(entry.to_bytes() for entry in de.open(theirs))
    assert theirs_by_bytes == sorted(entry.to_bytes() for entry in de.open(ours))
    assert len(theirs_by_bytes) == 506


def test_json_is_what_the_program_writes(published, dbentry, tmp_path):
    file = tmp_path / "published.dbe"
    with de.open(file, "w") as archive:
        archive.extend(published)
    shown = subprocess.run([dbentry, "show", file, "-f", "jsonl"], capture_output=True, check=True).stdout
    lines = shown.decode("utf-8").splitlines()
    assert len(lines) == 506
    for line, entry in zip(lines, de.open(file)):
        assert entry.to_json() == line
        assert json.loads(entry.to_json(indent=2)) == json.loads(line)


def test_the_published_structures_come_back_from_pickles_and_dictionaries(published):
    import pickle

    for entry in published:
        assert pickle.loads(pickle.dumps(entry)) == entry
        assert de.Entry.from_dict(json.loads(json.dumps(entry.to_dict()))) == entry


def test_a_cif_file_tells_what_became_of_each_block():
    entries = de.parse_cif("data_one\n_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n"
                           "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\ndata_two\n_audit_block_code x\n")
    assert [entry.identifier for entry in entries] == ["one"]
    assert [result.status for result in entries.results] == ["imported", "skipped"]


def test_a_broken_cif_file_says_file_line_and_column(tmp_path):
    file = tmp_path / "broken.cif"
    file.write_text("data_x\n_cell_length_a 5\n0.3333\n")
    with pytest.raises(de.CifError, match="broken.cif:3:1: ") as error:
        de.read_cif(file)
    assert (error.value.line, error.value.column) == (3, 1)
