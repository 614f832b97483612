"""CIF files in."""

import os
from types import SimpleNamespace

from . import _database_entry as _c
from .errors import CifError
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


def parse_cif(text, *, identifier_from="code", name="unnamed"):
    """The entries in the text of a CIF file (str or bytes).

    `identifier_from`: "code" (the database's code, else the block's name), "name" or "file" (`name`).
    Raises CifError where the text cannot be read on; the entries before it are in the exception.
    """
    if isinstance(text, str):
        text = text.encode("utf-8", "surrogateescape")
    entries = Entries()
    entries.results = [ImportResult(**fields) for fields in _c._read_cif(bytes(text), identifier_from, name)]
    for result in entries.results:
        result.identifier = DatabaseEntryIdentifier(result.identifier)
        if result.status == "imported":
            entries.append(result.entry)
        elif result.status == "error":
            error = CifError(f"{name}:{result.line}:{result.column}: {result.reason}"
                             + (f" ({result.hint})" if result.hint else ""))
            error.line, error.column, error.hint, error.entries = (
                result.line, result.column, result.hint, tuple(entries))
            raise error
    return entries


def read_cif(path, *, identifier_from="code"):
    """The entries of a CIF file, as parse_cif() gives them."""
    with open(path, "rb") as file:
        text = file.read()
    stem = os.path.splitext(os.path.basename(os.fspath(path)))[0]
    try:
        return parse_cif(text, identifier_from=identifier_from, name=stem)
    except CifError as error:
        named = CifError(f"{os.fspath(path)}{str(error)[len(stem):]}")
        named.__dict__.update(error.__dict__)
        raise named from None
