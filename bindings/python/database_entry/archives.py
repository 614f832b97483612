"""Stored archives: entries one after the other in a file."""

from __future__ import annotations

import collections.abc
import os
from types import TracebackType
from typing import Any, Dict, Iterable, Iterator, List, Literal, Optional, Type, Union, overload

from . import _database_entry as _c
from .files import Path, make_part
from .values import DatabaseEntryIdentifier

_BATCH = 256


Entry = _c.CrystalStructureImmediateDatabaseEntry


class Archive(collections.abc.Sequence[Entry]):
    """The entries of a stored archive, in their order: ``archive[3]``, ``archive[-2:]``, ``archive["ABCDEF01"]``.

    Entries are read when they are asked for, each time anew. The first question for the length or for an
    identifier reads the file once; after that both are known.
    """

    def __init__(self, path: Path) -> None:
        self.path = os.fspath(path)
        self._reader = _c._ArchiveReader(path)
        self._positions: Optional[Dict[str, int]] = None

    def __len__(self) -> int:
        return self._reader.size()

    def __iter__(self) -> Iterator[Entry]:
        first = 0
        count = 8
        while True:
            entries = self._reader.entries(first, count)
            yield from entries
            if len(entries) < count:
                return
            first += count
            count = _BATCH

    @overload
    def __getitem__(self, wanted: Union[int, str]) -> Entry: ...
    @overload
    def __getitem__(self, wanted: slice) -> List[Entry]: ...
    def __getitem__(self, wanted: Union[int, str, slice]) -> Union[Entry, List[Entry]]:
        if isinstance(wanted, slice):
            start, stop, step = wanted.indices(len(self))
            if step == 1:
                return self._reader.entries(start, max(0, stop - start))
            return [self._reader.entry(position) for position in range(start, stop, step)]
        if isinstance(wanted, str):
            return self._reader.entry(self._position(wanted))
        position = wanted.__index__()
        if position < 0:
            position += len(self)
            if position < 0:
                raise IndexError(f"entry {wanted} of {len(self)}")
        return self._reader.entry(position)

    def __contains__(self, identifier: object) -> bool:
        return identifier in self._index()

    def get(self, identifier: str, default: Any = None) -> Any:
        """The entry of an identifier, or the default."""
        return self[identifier] if identifier in self._index() else default

    def identifiers(self) -> List[DatabaseEntryIdentifier]:
        """All identifiers, in the order of the archive."""
        return [DatabaseEntryIdentifier(text) for text in self._reader.identifiers()]

    def _index(self) -> Dict[str, int]:
        if self._positions is None:
            positions: Dict[str, int] = {}
            for position, identifier in enumerate(self._reader.identifiers()):
                positions.setdefault(identifier, position)
            self._positions = positions
        return self._positions

    def _position(self, identifier: str) -> int:
        try:
            return self._index()[identifier]
        except KeyError:
            from .errors import EntryNotFound

            error = EntryNotFound(f"{self.path}: there is no entry {str(identifier)!r}")
            error.store, error.entry = str(self.path), str(identifier)
            raise error from None

    def close(self) -> None:
        """Closes the file; entries that were read stay."""
        self._reader.close()

    @property
    def closed(self) -> bool:
        """Whether the file is closed."""
        return self._reader.closed

    def __enter__(self) -> Archive:
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<Archive {str(self.path)!r}{', closed' if self.closed else ''}>"


class ArchiveWriter:
    """A stored archive that is being written. It gets its name when it is closed; where a ``with`` block ends in
    an exception, nothing is left of it."""

    def __init__(self, path: Path, append: bool = False) -> None:
        self.path = os.fspath(path)
        self._part = make_part(self.path)
        self.count = 0
        try:
            if append and os.path.exists(self.path):
                with open_file(self.path, "rb") as old, open_file(self._part, "wb") as new:
                    while block := old.read(1 << 20):
                        new.write(block)
            self._writer: Optional[_c._ArchiveWriter] = _c._ArchiveWriter(self._part, "ab")
        except BaseException:
            os.unlink(self._part)
            raise

    def append(self, entry: _c.CrystalStructureDatabaseEntry) -> None:
        """Writes an entry. All ten archived components must be there; otherwise nothing of it is written."""
        if self._writer is None:
            raise ValueError("the archive is closed")
        self._writer.write(entry)
        self.count += 1

    write = append

    def extend(self, entries: Iterable[_c.CrystalStructureDatabaseEntry]) -> None:
        """Writes many entries."""
        for entry in entries:
            self.append(entry)

    def close(self) -> None:
        """Finishes the file and gives it its name."""
        if self._writer is None:
            return
        writer, self._writer = self._writer, None
        try:
            writer.close()
            os.replace(self._part, self.path)
        except BaseException:
            if os.path.exists(self._part):
                os.unlink(self._part)
            raise

    def discard(self) -> None:
        """Closes without a trace; a file of that name stays as it was."""
        if self._writer is not None:
            writer, self._writer = self._writer, None
            try:
                writer.close()
            finally:
                os.unlink(self._part)

    def __enter__(self) -> ArchiveWriter:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        if kind is None:
            self.close()
        else:
            self.discard()

    def __del__(self) -> None:
        if getattr(self, "_writer", None) is not None:
            self.discard()

    def __repr__(self) -> str:
        return f"<ArchiveWriter {str(self.path)!r}: {self.count} entries>"


open_file = open


@overload
def open(path: Path) -> Archive: ...
@overload
def open(path: Path, mode: Literal["r"]) -> Archive: ...
@overload
def open(path: Path, mode: Literal["w", "x", "a"]) -> ArchiveWriter: ...
def open(path: Path, mode: str = "r") -> Union[Archive, ArchiveWriter]:
    """Opens a stored archive: "r" to read it, "w" to write a new one, "x" unless it is there, "a" to add to it.

    >>> with de.open("new.dbe", "w") as archive:
    ...     archive.append(entry)
    >>> de.open("new.dbe")[0]
    """
    if mode == "r":
        return Archive(path)
    if mode == "x" and os.path.exists(path):
        raise FileExistsError(f"{os.fspath(path)!r} is there already")
    if mode in ("w", "x", "a"):
        return ArchiveWriter(path, append=mode == "a")
    raise ValueError(f"the mode is 'r', 'w', 'x' or 'a', not {mode!r}")
