"""CIF and JSON in and out."""

from __future__ import annotations

import os
from types import SimpleNamespace
from typing import Any, Dict, Iterable, List, Type, Union

from . import _database_entry as _c
from .errors import CifError, JsonError, ReadError
from .files import Path, written
from .values import DatabaseEntryIdentifier


Text = Union[str, bytes]
OneOrMore = Union[_c.CrystalStructureDatabaseEntry, Iterable[_c.CrystalStructureDatabaseEntry]]


class ImportResult(SimpleNamespace):
    """What became of one block of a file.

    `status` is "imported", "skipped" or "error"; `entry` is None unless imported; `identifier`, `block`, `line`;
    `reason` and `hint` of what gave no entry; `absent` is what the file does not say, `not_kept` the tags that no
    record has room for, `warnings` are pairs of a line and a text.
    """


class Entries(List[_c.CrystalStructureImmediateDatabaseEntry]):
    """The entries of a file. `results` has a line for every block, those included that gave no entry."""

    results: List[ImportResult] = []


def _bytes_of(text: Text) -> bytes:
    return text.encode("utf-8", "surrogateescape") if isinstance(text, str) else bytes(text)


def _collected(rows: List[Dict[str, Any]], error_type: Type[ReadError], name: str) -> Entries:
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


def parse_cif(text: Text, *, identifier_from: str = "code", name: str = "unnamed") -> Entries:
    """The entries in the text of a CIF file (str or bytes).

    `identifier_from`: "code" (the database's code, else the block's name), "name" or "file" (`name`).
    Raises CifError where the text cannot be read on; the entries before it are in the exception.
    """
    return _collected(_c._read_cif(_bytes_of(text), identifier_from, name), CifError, name)


def parse_json(text: Text, *, name: str = "unnamed") -> Entries:
    """The entries in a JSON text (str or bytes): one object, a list of objects, or an object a line.

    `name` is the identifier of an object that has none. Raises JsonError where an object is no entry; the entries
    before it are in the exception.
    """
    return _collected(_c._read_json(_bytes_of(text), "code", name), JsonError, name)


def _read(path: Path, parse: Any, **options: str) -> Entries:
    path = os.fspath(path)
    with open(path, "rb") as file:
        text = file.read()
    stem = os.path.splitext(os.path.basename(path))[0]
    try:
        entries: Entries = parse(text, name=stem, **options)
        return entries
    except (CifError, JsonError) as error:
        named = type(error)(f"{path}{str(error)[len(stem):]}")
        named.__dict__.update(error.__dict__)
        raise named from None


def read_cif(path: Path, *, identifier_from: str = "code") -> Entries:
    """The entries of a CIF file, as parse_cif() gives them."""
    return _read(path, parse_cif, identifier_from=identifier_from)


def read_json(path: Path) -> Entries:
    """The entries of a JSON file, as parse_json() gives them."""
    return _read(path, parse_json)


def _each(entries: OneOrMore) -> Iterable[_c.CrystalStructureDatabaseEntry]:
    return [entries] if isinstance(entries, _c.CrystalStructureDatabaseEntry) else entries


def write_cif(entries: OneOrMore, path: Path) -> None:
    """Writes an entry, or all of an iterable, as a CIF file, a data block each. What is read back from it has equal
    components. Nothing is left of a file that cannot be written whole."""
    writer = _c._CifWriter()
    with written(path) as file:
        for entry in _each(entries):
            file.write(writer.write(entry))


def write_json(entries: OneOrMore, path: Path, *, lines: bool = True) -> None:
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


def write_xyz(entries: OneOrMore, path: Path, *, cell: bool = False) -> None:
    """Writes the atoms of an entry, or of each of an iterable, as extended XYZ: those that are stored, or with
    cell=True all of the cell."""
    with written(path) as file:
        for entry in _each(entries):
            file.write(entry.to_xyz(cell=cell).encode("utf-8", "surrogateescape"))
