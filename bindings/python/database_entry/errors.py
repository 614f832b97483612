"""What goes wrong, as exceptions. All of them are de.Error, and what Python calls such a failure as well."""

from __future__ import annotations

from typing import Any, Tuple


class Error(Exception):
    """Any failure of the library. The text names the file, the entry and the field, as far as they are known."""


class NullHandleError(Error, ValueError):
    """A component was wanted where there is none."""


class InvalidValue(Error, ValueError):
    """A value that the library refuses, such as an enumeration value that is no member."""


class ArchiveError(Error, OSError):
    """A stored archive cannot be read or written. The text has the file, the entry and the offset."""


class ReadError(Error, ValueError):
    """A file that cannot be read to its end.

    `line` and `column` count from 1; `hint` is a way out; `entries` are those before the error.
    """

    line = 0
    column = 0
    hint = ""
    entries: Tuple[Any, ...] = ()


class CifError(ReadError):
    """A CIF file that cannot be read to its end."""


class JsonError(ReadError):
    """A JSON text that cannot be read, or of which an object is no entry."""


class StoreError(Error):
    """A failure of a store. `store`, `entry` and `component` say where, `reason` why."""

    store = ""
    entry = ""
    component = ""
    reason = ""


class EntryNotFound(StoreError, KeyError):
    """There is no entry of that identifier; `nearest` is the one that looks most like it."""

    nearest = ""
    __str__ = Exception.__str__


class EntryAlreadyStored(StoreError):
    """An entry is there already and was to be refused."""


class DamagedStore(StoreError):
    """What is stored is not what was put."""


class QueryError(Error, ValueError):
    """A query that cannot be understood. `column` counts characters from 1, `problem` is the text without it."""

    column = 0
    problem = ""


class LatticeError(Error, ValueError):
    """A cell that is none, or operators that are none."""


class PerceptionError(Error, ValueError):
    """An entry in which nothing can be perceived."""
