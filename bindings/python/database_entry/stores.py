"""Stores of many entries, in the words that users of ase.db know: connect, select, get, count, put."""

import os

from . import _database_entry as _c
from .values import DatabaseEntryIdentifier


class Row:
    """One entry that was found: its columns are attributes (`row.id`, `row.formula`, `row.year`, `row.a`, ...; None
    where a value is not known), and so are the components of its entry, which is read when one is first wanted."""

    __slots__ = ("_columns", "_database", "_entry")

    def __init__(self, database, columns):
        self._database = database
        self._columns = columns
        self._entry = None

    def __getattr__(self, name):
        columns = self._columns
        if name in columns._short_names:
            return getattr(columns, columns._short_names[name])
        try:
            return getattr(columns, name)
        except AttributeError:
            return getattr(self.entry, name)

    @property
    def identifier(self):
        """The identifier of the entry."""
        return DatabaseEntryIdentifier(self._columns.identifier)

    id = identifier

    @property
    def entry(self):
        """The whole entry."""
        if self._entry is None:
            self._entry = self._database.get(self._columns.identifier)
        return self._entry

    def keys(self):
        """The names of the columns."""
        return list(self._columns._names)

    def __getitem__(self, name):
        return getattr(self, name)

    def __iter__(self):
        return iter(self.keys())

    def __dir__(self):
        return sorted({*object.__dir__(self), *self._columns._names, *self._columns._short_names})

    def __repr__(self):
        formula, year = self._columns.formula, self._columns.year
        return f"<Row {self._columns.identifier!r}: {formula or 'no formula'}{f', {year}' if year else ''}>"


def query(conditions="", *, filter=None, **values):
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


def _quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


class Database:
    """A store of entries. Several threads may use one; what they get is each thread's own."""

    def __init__(self, store):
        self._store = store

    @property
    def place(self):
        """Where the store is, without a password."""
        return self._store.place()

    @property
    def is_read_only(self):
        """Whether put and remove are refused, as by a stored archive."""
        return self._store.is_read_only()

    def get(self, identifier=None, **conditions):
        """The entry of an identifier; or the one that a query finds. Raises EntryNotFound, and ValueError where a
        query finds several."""
        if identifier is not None and not conditions:
            return self._store.entry(identifier)
        found = self._store.select(query(identifier or "", **conditions), None, 2)
        if not found:
            from .errors import EntryNotFound

            raise EntryNotFound(f"{self.place}: no entry is such")
        if len(found) > 1:
            raise ValueError(f"{self.place}: more than one entry is such")
        return self._store.entry(found[0])

    def get_atoms(self, identifier=None, **conditions):
        """The same as ase.Atoms."""
        from .convert import to_ase

        return to_ase(self.get(identifier, **conditions))

    def deferred(self, identifier, prefetch=False):
        """An entry that reads each component when it is first wanted."""
        return _c.CrystalStructureDeferredDatabaseEntry(self._store.source(identifier, prefetch))

    def select(self, conditions="", *, filter=None, limit=None, after=None, **values):
        """The rows that a query finds, in the order of their identifiers.

        >>> for row in db.select("Ti,O", year=(1960, 1990)):
        ...     print(row.id, row.formula, row.entry.cell.parameters)
        """
        rows = self._store.select_columns(query(conditions, filter=filter, **values), after, limit)
        return (Row(self, columns) for columns in rows)

    def identifiers(self, conditions="", *, filter=None, limit=None, after=None, **values):
        """The identifiers alone, the quickest answer."""
        return list(map(DatabaseEntryIdentifier,
                        self._store.select(query(conditions, filter=filter, **values), after, limit)))

    def count(self, conditions="", *, filter=None, **values):
        """How many entries a query finds."""
        return self._store.count(query(conditions, filter=filter, **values))

    def tally(self, column, conditions="", *, filter=None, **values):
        """How many entries have each value of a column, such as "element", "year" or "journal"."""
        return self._store.tally(column, query(conditions, filter=filter, **values))

    def put(self, entry, *, file="", block="", on_duplicate="replace"):
        """Stores an entry, or all of an iterable in one transaction.

        `file` and `block` say where it came from. `on_duplicate`: "keep", "replace" or "refuse", which raises
        EntryAlreadyStored. Gives "added", "replaced", "unchanged" or "kept", for an iterable a list of these.
        """
        if isinstance(entry, _c.CrystalStructureDatabaseEntry):
            return self._store.put_all([(entry, file, block)], on_duplicate)[0]
        return self._store.put_all([(each, file, block) for each in entry], on_duplicate)

    write = put

    def remove(self, identifier):
        """Takes an entry away. Raises EntryNotFound."""
        self._store.remove(identifier)

    def delete(self, identifiers):
        """Takes several entries away."""
        for identifier in identifiers:
            self.remove(identifier)

    def verify(self):
        """Reads everything and holds it against its hashes: entries, components, bytes, problems."""
        return self._store.verify()

    def reindex(self):
        """Makes the columns of every entry anew."""
        return self._store.reindex()

    def columns(self, identifier):
        """The EntryColumns of one entry."""
        return self._store.columns(identifier)

    def close(self):
        """Closes the store; entries that were got stay."""
        self._store.close()

    def __getitem__(self, identifier):
        return self._store.entry(identifier)

    def __delitem__(self, identifier):
        self.remove(identifier)

    def __contains__(self, identifier):
        return self._store.contains(identifier)

    def __len__(self):
        return self.count()

    def __iter__(self):
        for identifier in self._store.select(_c.EntryQuery(), None, None):
            yield self._store.entry(identifier)

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    def __repr__(self):
        return "<Database, closed>" if self._store.closed else f"<Database {self.place!r}>"


def connect(place, create=False):
    """Opens a store: a SQLite file, a stored archive (to be read only), "postgresql://...", or "memory:".

    With `create` a store is made where there is none; nothing else makes one, except "memory:", whose store goes
    with its object.
    """
    place = os.fspath(place)
    is_new = place == "memory:" or (create and "://" not in place and not os.path.exists(place))
    return Database(_c._Store(place, is_new))
