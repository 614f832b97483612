"""Stores of many entries, in the words that users of ase.db know: connect, select, get, count, put."""

from __future__ import annotations

import contextlib
import os
from typing import Any, Dict, Iterable, Iterator, List, Optional, Union, overload

from . import _database_entry as _c
from .files import Path
from .values import DatabaseEntryIdentifier

Conditions = Union[str, _c.EntryQuery]
Entry = _c.CrystalStructureDatabaseEntry


class Row:
    """One entry that was found: its columns are attributes (`row.id`, `row.formula`, `row.year`, `row.a`, ...; None
    where a value is not known), and so are the components of its entry. Both are read when they are first wanted:
    the columns of all rows of a select() at once, the entry by itself."""

    __slots__ = ("_database", "_entry", "_found", "_name", "_position")

    def __init__(self, database: Database, found: _c._Selection, position: int, name: str) -> None:
        self._database = database
        self._found = found
        self._position = position
        self._name = name
        self._entry: Optional[Entry] = None

    @property
    def columns(self) -> _c.EntryColumns:
        """All columns of the row."""
        return self._found.columns(self._position)

    def __getattr__(self, name: str) -> Any:
        columns = self.columns
        if name in columns._short_names:
            return getattr(columns, columns._short_names[name])
        try:
            return getattr(columns, name)
        except AttributeError:
            return getattr(self.entry, name)

    @property
    def identifier(self) -> DatabaseEntryIdentifier:
        """The identifier of the entry."""
        return DatabaseEntryIdentifier(self._name)

    @property
    def id(self) -> DatabaseEntryIdentifier:
        """The identifier of the entry."""
        return self.identifier

    @property
    def entry(self) -> Entry:
        """The whole entry."""
        if self._entry is None:
            self._entry = self._database.get(self._name)
        return self._entry

    def keys(self) -> List[str]:
        """The names of the columns."""
        return list(_c.EntryColumns._names)

    def __getitem__(self, name: str) -> Any:
        return getattr(self, name)

    def __iter__(self) -> Iterator[str]:
        return iter(self.keys())

    def __dir__(self) -> List[str]:
        return sorted({*object.__dir__(self), *_c.EntryColumns._names, *_c.EntryColumns._short_names})

    def __repr__(self) -> str:
        formula, year = self.columns.formula, self.columns.year
        return f"<Row {self._name!r}: {formula or 'no formula'}{f', {year}' if year else ''}>"


def query(conditions: Conditions = "", *, filter: Optional[str] = None, **values: Any) -> _c.EntryQuery:
    """An EntryQuery of a text in the short form, a filter, and values that columns have.

    >>> de.query("Ti,O", year=(1960, 1990), author="wyckoff")

    A pair of numbers is a range, both included; a text has to be equal, letters of either case alike.
    """
    if isinstance(conditions, _c.EntryQuery):
        made = conditions
    else:
        made = _c.EntryQuery.from_text(conditions or "") if conditions else _c.EntryQuery()
    parts = [made] if conditions else []
    if filter:
        parts.append(_c.EntryQuery.from_filter(filter))
    for name, value in values.items():
        if isinstance(value, (tuple, list)):
            lower, upper = value
            parts.append(_c.EntryQuery.between(name, lower, upper))
        elif isinstance(value, str):
            parts.append(_c.EntryQuery.from_text(f'{name}={_quoted(value)}'))
        else:
            parts.append(_c.EntryQuery.compare(name, "=", value))
    if not parts:
        return made
    result = parts[0]
    for part in parts[1:]:
        result = result & part
    return result


def _quoted(text: str) -> str:
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


class Database:
    """A store of entries. Several threads may use one; what they get is each thread's own."""

    def __init__(self, store: _c._Store) -> None:
        self._store = store

    @property
    def place(self) -> str:
        """Where the store is, without a password."""
        return self._store.place()

    @property
    def is_read_only(self) -> bool:
        """Whether put and remove are refused, as by a stored archive."""
        return self._store.is_read_only()

    def get(self, identifier: Optional[Conditions] = None, **conditions: Any) -> Entry:
        """The entry of an identifier; or the one that a query finds. Raises EntryNotFound, and ValueError where a
        query finds several.

        It is read whole, as it is now; each component is made of its bytes when it is first wanted.
        """
        if isinstance(identifier, str) and not conditions:
            return self._store.entry(identifier, True)
        found = self._store.select(query(identifier or "", **conditions), None, 2)
        if not found:
            from .errors import EntryNotFound

            raise EntryNotFound(f"{self.place}: no entry is such")
        if len(found) > 1:
            raise ValueError(f"{self.place}: more than one entry is such")
        return self._store.entry(found[0], True)

    def get_atoms(self, identifier: Optional[Conditions] = None, **conditions: Any) -> Any:
        """The same as ase.Atoms."""
        from .convert import to_ase

        return to_ase(self.get(identifier, **conditions))

    def deferred(self, identifier: str, prefetch: bool = False) -> _c.CrystalStructureDeferredDatabaseEntry:
        """An entry that reads each component from the store when it is first wanted. Where the entry was replaced
        meanwhile, that is a StoreError."""
        return self._store.entry(identifier, prefetch)

    def select(self, conditions: Conditions = "", *, filter: Optional[str] = None, limit: Optional[int] = None,
               after: Optional[str] = None, **values: Any) -> Iterator[Row]:
        """The rows that a query finds, in the order of their identifiers.

        >>> for row in db.select("Ti,O", year=(1960, 1990)):
        ...     print(row.id, row.formula, row.entry.cell.parameters)
        """
        found = _c._Selection(self._store, query(conditions, filter=filter, **values), after, limit)
        return (Row(self, found, position, name) for position, name in enumerate(found.identifiers()))

    def identifiers(self, conditions: Conditions = "", *, filter: Optional[str] = None, limit: Optional[int] = None,
                    after: Optional[str] = None, **values: Any) -> List[DatabaseEntryIdentifier]:
        """The identifiers alone, the quickest answer."""
        return list(map(DatabaseEntryIdentifier,
                        self._store.select(query(conditions, filter=filter, **values), after, limit)))

    def count(self, conditions: Conditions = "", *, filter: Optional[str] = None, **values: Any) -> int:
        """How many entries a query finds."""
        return self._store.count(query(conditions, filter=filter, **values))

    def tally(self, column: str, conditions: Conditions = "", *, filter: Optional[str] = None,
              **values: Any) -> Dict[str, int]:
        """How many entries have each value of a column, such as "element", "year" or "journal"."""
        return self._store.tally(column, query(conditions, filter=filter, **values))

    @overload
    def put(self, entry: Entry, *, file: str = "", block: str = "", on_duplicate: str = "replace") -> str: ...
    @overload
    def put(self, entry: Iterable[Entry], *, file: str = "", block: str = "",
            on_duplicate: str = "replace") -> List[str]: ...
    def put(self, entry: Union[Entry, Iterable[Entry]], *, file: str = "", block: str = "",
            on_duplicate: str = "replace") -> Union[str, List[str]]:
        """Stores an entry, or all of an iterable in one transaction.

        `file` and `block` say where it came from. `on_duplicate`: "keep", "replace" or "refuse", which raises
        EntryAlreadyStored. Gives "added", "replaced", "unchanged" or "kept", for an iterable a list of these.
        """
        if isinstance(entry, _c.CrystalStructureDatabaseEntry):
            return self._store.put_all([(entry, file, block)], on_duplicate)[0]
        return self._store.put_all([(each, file, block) for each in entry], on_duplicate)

    write = put

    def remove(self, identifier: str) -> None:
        """Takes an entry away. Raises EntryNotFound."""
        self._store.remove(identifier)

    def delete(self, identifiers: Iterable[str]) -> None:
        """Takes several entries away."""
        for identifier in identifiers:
            self.remove(identifier)

    def verify(self) -> Dict[str, Any]:
        """Reads everything and holds it against its hashes: entries, components, bytes, problems."""
        return self._store.verify()

    def reindex(self) -> Dict[str, Any]:
        """Makes the columns of every entry anew."""
        return self._store.reindex()

    def columns(self, identifier: str) -> _c.EntryColumns:
        """The EntryColumns of one entry."""
        return self._store.columns(identifier)

    @contextlib.contextmanager
    def snapshot(self) -> Iterator[Database]:
        """Within the block the store is read as it is now, whoever writes to it, and faster.

        >>> with db.snapshot():
        ...     entries = [db.get(identifier) for identifier in identifiers]
        """
        held = _c._Snapshot(self._store)
        try:
            yield self
        finally:
            held.close()

    def close(self) -> None:
        """Closes the store; entries that were got stay."""
        self._store.close()

    def __getitem__(self, identifier: str) -> Entry:
        return self._store.entry(identifier, True)

    def __delitem__(self, identifier: str) -> None:
        self.remove(identifier)

    def __contains__(self, identifier: str) -> bool:
        return self._store.contains(identifier)

    def __len__(self) -> int:
        return self.count()

    def __iter__(self) -> Iterator[Entry]:
        for identifier in self._store.select(_c.EntryQuery(), None, None):
            yield self._store.entry(identifier, True)

    def __enter__(self) -> Database:
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return "<Database, closed>" if self._store.closed else f"<Database {self.place!r}>"


def connect(place: Path, create: bool = False) -> Database:
    """Opens a store: a SQLite file, a stored archive (to be read only), "postgresql://...", or "memory:".

    With `create` a store is made where there is none; nothing else makes one, except "memory:", whose store goes
    with its object.
    """
    place = os.fspath(place)
    is_new = place == "memory:" or (create and "://" not in place and not os.path.exists(place))
    return Database(_c._Store(place, is_new))
