"""CIF and JSON in and out."""

import os
from types import SimpleNamespace

from . import _database_entry as _c
from .errors import CifError, JsonError
from .files import written
from .values import DatabaseEntryIdentifier


class ImportResult(SimpleNamespace):
    """What became of one block of a file.

    `status` is "imported", "skipped" or "error"; `entry` is None unless imported; `identifier`, `block`, `line`;
    `reason` and `hint` of what gave no entry; `absent` is what the file does not say, `not_kept` the tags that no
    record has room for, `warnings` are pairs of a line and a text.
    """


class Entries(list):
    """The entries of a file. `results` has a line for every block, those included that gave no entry."""

    results: list = []


def _bytes_of(text):
    return text.encode("utf-8", "surrogateescape") if isinstance(text, str) else bytes(text)


def _collected(rows, error_type, name):
    entries = Entries()
    entries.results = [ImportResult(**fields) for fields in rows]
    for result in entries.results:
        result.identifier = DatabaseEntryIdentifier(result.identifier)
        if result.status == "imported":
            entries.append(result.entry)
        elif result.status == "error":
            column = f":{result.column}" if result.column else ""
            error = error_type(f"{name}:{result.line}{column}: {result.reason}"
                               + (f" ({result.hint})" if result.hint else ""))
            error.line, error.column, error.hint, error.entries = (
                result.line, result.column, result.hint, tuple(entries))
            raise error
    return entries


def parse_cif(text, *, identifier_from="code", name="unnamed"):
    """The entries in the text of a CIF file (str or bytes).

    `identifier_from`: "code" (the database's code, else the block's name), "name" or "file" (`name`).
    Raises CifError where the text cannot be read on; the entries before it are in the exception.
    """
    return _collected(_c._read_cif(_bytes_of(text), identifier_from, name), CifError, name)


def parse_json(text, *, name="unnamed"):
    """The entries in a JSON text (str or bytes): one object, a list of objects, or an object a line.

    `name` is the identifier of an object that has none. Raises JsonError where an object is no entry; the entries
    before it are in the exception.
    """
    return _collected(_c._read_json(_bytes_of(text), "code", name), JsonError, name)


def _read(path, parse, **options):
    path = os.fspath(path)
    with open(path, "rb") as file:
        text = file.read()
    stem = os.path.splitext(os.path.basename(path))[0]
    try:
        return parse(text, name=stem, **options)
    except (CifError, JsonError) as error:
        named = type(error)(f"{path}{str(error)[len(stem):]}")
        named.__dict__.update(error.__dict__)
        raise named from None


def read_cif(path, *, identifier_from="code"):
    """The entries of a CIF file, as parse_cif() gives them."""
    return _read(path, parse_cif, identifier_from=identifier_from)


def read_json(path):
    """The entries of a JSON file, as parse_json() gives them."""
    return _read(path, parse_json)


def _each(entries):
    return [entries] if isinstance(entries, _c.CrystalStructureDatabaseEntry) else entries


def write_cif(entries, path):
    """Writes an entry, or all of an iterable, as a CIF file, a data block each. What is read back from it has equal
    components. Nothing is left of a file that cannot be written whole."""
    writer = _c._CifWriter()
    with written(path) as file:
        for entry in _each(entries):
            file.write(writer.write(entry))


def write_json(entries, path, *, lines=True):
    """Writes an entry, or all of an iterable, as `dbentry export` does: an object a line, or with lines=False a list
    of them."""
    count = 0
    with written(path) as file:
        for entry in _each(entries):
            if not lines:
                file.write(b",\n" if count else b"[\n")
            file.write(entry.to_json().encode() + (b"\n" if lines else b""))
            count += 1
        if not lines:
            file.write(b"\n]\n" if count else b"[]\n")


def write_xyz(entries, path, *, cell=False):
    """Writes the atoms of an entry, or of each of an iterable, as extended XYZ: those that are stored, or with
    cell=True all of the cell."""
    with written(path) as file:
        for entry in _each(entries):
            file.write(entry.to_xyz(cell=cell).encode("utf-8", "surrogateescape"))
