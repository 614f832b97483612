"""What all records have alike, by their lists of fields: repr, dictionaries, pickling, copying."""

from __future__ import annotations

import collections.abc
import enum
from typing import Any, Dict

from . import _database_entry
from .notebook import entry_html, record_html
from .values import DatabaseEntryIdentifier, Enumeration

# The classes get their methods here, which no checker follows.
_c: Any = _database_entry

_classes: Any = [value for name, value in vars(_c).items() if isinstance(value, type) and not name.startswith("_")]

RECORDS = {cls.__name__: cls for cls in _classes if hasattr(cls, "_fields")}
LISTS = {cls.__name__: cls for cls in _classes if hasattr(cls, "_item_type")}
ENTRIES = {
    cls.__name__: cls for cls in _classes if issubclass(cls, _c.CrystalStructureDatabaseEntry)
}

_MOST_SHOWN = 3


def _is_blank(value: Any) -> bool:
    return value is None or (isinstance(value, (str, int, float)) and not value) or (
        isinstance(value, collections.abc.Sized) and not isinstance(value, str) and len(value) == 0)


def _shown(value: Any) -> str:
    if isinstance(value, enum.Enum):
        return str(value)
    if isinstance(value, DatabaseEntryIdentifier):
        return repr(str(value))
    if isinstance(value, str) and len(value) > 60:
        return repr(value[:57] + "...")
    if type(value).__name__ == "ndarray":
        return "[" + ", ".join(f"{number:g}" for number in value.flat) + "]"
    if isinstance(value, (tuple, list)) or type(value) in LISTS.values():
        items = [_shown(item) for item in value[:_MOST_SHOWN]]
        if len(value) > _MOST_SHOWN:
            items.append(f"... {len(value)} in all")
        return "[" + ", ".join(items) + "]"
    return repr(value)


def _record_repr(self: Any) -> str:
    parts = []
    for name in self._fields:
        value = getattr(self, name)
        if not _is_blank(value):
            parts.append(f"{name}={_shown(value)}")
    return f"{type(self).__name__}({', '.join(parts)})"


def _entry_repr(self: Any) -> str:
    there = [name for name in self._components if getattr(self, name) is not None]
    return f"<{type(self).__name__} {str(self.identifier)!r}: {', '.join(there) or 'no components'}>"


def _deferred_repr(self: Any) -> str:
    """Nothing is asked for."""
    return f"<{type(self).__name__} {str(self.identifier)!r}>"


def _entry_copy(self: Any) -> Any:
    """Another entry that shares every component."""
    return _c._gathered(self)


# Dictionaries. An object that is met again, as the atoms of a match are, becomes {"$ref": "/path/to/it"}.


class _ToPlain:
    def __init__(self) -> None:
        self.paths: Dict[int, str] = {}
        self.kept: Any = []

    def plain(self, value: Any, path: str) -> Any:
        if value is None or isinstance(value, (bool, float)):
            return value
        if isinstance(value, Enumeration):
            return value.text
        if isinstance(value, int):
            return int(value)
        if isinstance(value, str):
            return str.__str__(value)
        if type(value).__name__ == "ndarray":
            return value.tolist()
        if isinstance(value, (tuple, list)):
            return [self.plain(item, f"{path}/{i}") for i, item in enumerate(value)]
        if isinstance(value, _c.Date):
            return str(value)
        is_shared = type(value).__name__ in _SHARED
        if is_shared:
            if id(value) in self.paths:
                return {"$ref": self.paths[id(value)]}
            self.paths[id(value)] = path
            self.kept.append(value)
        if type(value).__name__ in LISTS:
            return [self.plain(item, f"{path}/{i}") for i, item in enumerate(value)]
        if isinstance(value, _c.CrystalSymmetryOperator):
            return value.xyz()
        if isinstance(value, _c.ChemicalClassification):
            return self.plain(value.classifier, path)
        return {name: self.plain(getattr(value, name), f"{path}/{name}") for name in value._fields}


# Objects that several others may hold by handles; their identity is kept in dictionaries.
_SHARED = {
    "Atom", "Bond", "DiagramAtom", "DiagramBond", "ConnectivityAtom", "ConnectivityBond", "Cell", "Connectivity",
    "SymmetryOperators", "PublishedBond", "PublishedBonds", "DisorderSelector",
}


def _type_of(text: str) -> Any:
    """The class that a field's type names: "Optional[Cell]" is Cell."""
    if text.startswith(("Optional[", "Sequence[")):
        text = text[9:-1]
    return getattr(_c, text, None) or (DatabaseEntryIdentifier if text == "DatabaseEntryIdentifier" else None)


class _FromPlain:
    def __init__(self) -> None:
        self.known: Dict[str, Any] = {}

    def value(self, plain: Any, type_name: str, path: str) -> Any:
        if plain is None:
            return None
        if isinstance(plain, dict) and set(plain) == {"$ref"}:
            return self.known[plain["$ref"]]
        if type_name.startswith("Tuple[") and not type_name.endswith("...]"):
            types = type_name[6:-1].split(", ")
            return tuple(self.value(item, kind, f"{path}/{i}") for i, (item, kind) in enumerate(zip(plain, types)))
        if type_name.startswith("Tuple["):
            inner = type_name[6:-6]
            return tuple(self.value(item, inner, f"{path}/{i}") for i, item in enumerate(plain))
        if type_name.startswith("Sequence["):
            return [self.value(item, type_name[9:-1], f"{path}/{i}") for i, item in enumerate(plain)]
        cls = _type_of(type_name)
        if cls is None or not hasattr(cls, "_fields") and not hasattr(cls, "_item_type"):
            return plain
        if hasattr(cls, "_item_type"):
            made = cls([self.value(item, cls._item_type, f"{path}/{i}") for i, item in enumerate(plain)])
        elif isinstance(plain, dict):
            made = self.record(cls, plain, path)
        else:
            made = _from_text(cls, plain)
        self.known[path] = made
        return made

    def record(self, cls: Any, plain: Any, path: str) -> Any:
        unknown = set(plain) - set(cls._fields)
        if unknown:
            raise TypeError(f"{cls.__name__} has no field '{sorted(unknown)[0]}' ({path or '/'})")
        fields = {
            name: self.value(plain[name], cls._field_types[name][0], f"{path}/{name}")
            for name in cls._fields if name in plain
        }
        return _make(cls, fields)


def _from_text(cls: Any, plain: Any) -> Any:
    if cls is _c.Date:
        year, month, day = map(int, plain.rsplit("-", 2))
        return cls._from_fields((year, month, day))
    if cls is _c.ChemicalClassification:
        return cls(plain)
    return cls(plain)


# Records that an archive can hold in more states than their constructors make.
_OF_FIELDS = (_c.Date, _c.Journal, _c.CrystalSymmetryOperator, _c.DepositionInfo)


def _make(cls: Any, fields: Any) -> Any:
    """A record of all its fields, those included that only an archive can fill."""
    if cls in _OF_FIELDS:
        return cls._from_fields(tuple(fields[name] for name in cls._fields))
    if cls is _c.DatabaseCrossReference and fields.get("type") in (0, _c.DatabaseCrossReference.unknown.text):
        return cls()
    return cls(**fields)


def _restore_record(cls: Any, values: Any) -> Any:
    made = _make(cls if cls.__name__ in RECORDS else _bound(cls), dict(zip(cls._fields, values)))
    return made


def _bound(cls: Any) -> Any:
    return next(base for base in cls.__mro__ if base.__name__ in RECORDS)


def _record_reduce(self: Any, protocol: Any) -> Any:
    values = []
    for name in self._fields:
        value = getattr(self, name)
        if type(value).__name__ == "ndarray":
            value = value.tolist()
        elif type(value).__name__ in LISTS and self._field_types[name][1] and not self._field_types[
                name][0].startswith("Optional["):
            value = list(value)
        values.append(value)
    return _restore_record, (type(self), tuple(values))


def _list_reduce(self: Any, protocol: Any) -> Any:
    return type(self), (list(self),)


def _restore_entry(cls: Any, stored: Any) -> Any:
    return _c._entry_from_stored_bytes(stored)


def _entry_reduce(self: Any, protocol: Any) -> Any:
    return _restore_entry, (type(self), self._stored_bytes())


def _record_copy(self: Any) -> Any:
    """A record of its own that shares what this one holds by handles."""
    return _make(_bound(type(self)), {name: getattr(self, name) for name in self._fields})


def _record_to_dict(self: Any) -> Any:
    """The fields as a dictionary of plain values, which JSON can hold; enumerations by their texts."""
    walk = _ToPlain()
    plain = {}
    for name in self._fields:
        plain[name] = walk.plain(getattr(self, name), f"/{name}")
    return plain


def _record_from_dict(cls: Any, fields: Any) -> Any:
    """The record of a dictionary that to_dict() made; a field that is not there keeps its default."""
    return _FromPlain().record(cls, fields, "")


def _entry_to_dict(self: Any) -> Any:
    """Identifier and all sixteen components as plain values; None for a component that is missing."""
    walk = _ToPlain()
    plain = {"identifier": str(self.identifier)}
    # What a source in Python raises passes through as it is, StopIteration too.
    for name in self._components:
        plain[name] = walk.plain(getattr(self, name), f"/{name}")
    return plain


def _entry_from_dict(cls: Any, plain: Any) -> Any:
    """The entry of a dictionary that to_dict() made; a component that is not there is None."""
    walk = _FromPlain()
    components = {
        name: walk.value(plain.get(name), cls._field_types[name][0], f"/{name}") for name in cls._components
    }
    maker, cell = components.pop("crystal_maker"), components.pop("cell")
    return _c.CrystalStructureImmediateDatabaseEntry(plain["identifier"], maker, cell=cell, **components)


def _json(self: Any, indent: Any = None) -> str:
    """The stored form of the entry as JSON, as `dbentry show -f json` writes it; one line unless indented."""
    return str(_c._json(self, -1 if indent is None else indent))


def _from_json(cls: Any, text: Any) -> Any:
    """The entry of what to_json() made (str or bytes). A component that is not there has its defaults; null is None."""
    return _c._entry_from_json(text.encode("utf-8", "surrogatepass") if isinstance(text, str) else bytes(text))


def _to_cif(self: Any) -> str:
    """The entry as a CIF file of one data block."""
    return bytes(_c._CifWriter().write(self)).decode("utf-8", "surrogateescape")


def _to_xyz(self: Any, *, cell: Any = False) -> str:
    """The atoms as extended XYZ: those that are stored, or with cell=True all of the cell."""
    return str(_c._xyz(self, cell))


def _record_html(self: Any) -> str:
    """A table of the fields that say something."""
    return record_html(self)


def _entry_html(self: Any) -> str:
    """The picture, where one can be drawn, beside a table of what is known."""
    return entry_html(self)


def _list_repr(self: Any) -> str:
    return repr(list(self))


def _list_eq(self: Any, other: Any) -> Any:
    if isinstance(other, (list, tuple)) or type(other).__name__ in LISTS:
        return len(self) == len(other) and all(a == b for a, b in zip(self, other))
    return NotImplemented


def _value_hash(self: Any) -> Any:
    return hash(tuple(getattr(self, name) for name in self._fields))


def _mix_in(cls: Any, abstract: Any) -> None:
    """Gives a class of the extension the methods of one of collections.abc."""
    for base in abstract.__mro__:
        for name, member in vars(base).items():
            wanted = not name.startswith("_") or name in (
                "__contains__", "__reversed__", "__iadd__", "__iter__", "__and__", "__or__", "__sub__", "__xor__",
                "__rand__", "__ror__", "__rsub__", "__rxor__", "__le__", "__lt__", "__ge__", "__gt__", "__ior__",
                "__iand__", "__isub__", "__ixor__")
            if wanted and name not in vars(cls) and base is not object:
                setattr(cls, name, member)
    abstract.register(cls)


def _set_from_iterable(cls: Any, references: Any) -> Any:
    return set(references)


def prepare() -> None:
    """Called once, when the package is imported."""
    for cls in _classes:
        cls.__module__ = "database_entry"
    for cls in RECORDS.values():
        cls.__repr__ = _record_repr
        cls.__reduce_ex__ = _record_reduce
        cls.__copy__ = _record_copy
        cls.to_dict = _record_to_dict
        cls.from_dict = classmethod(_record_from_dict)
        cls._repr_html_ = _record_html
    for cls in LISTS.values():
        _mix_in(cls, collections.abc.MutableSequence)
        cls.__repr__ = _list_repr
        cls.__eq__ = _list_eq
        cls.__hash__ = None
        cls.__reduce_ex__ = _list_reduce
        cls.__copy__ = lambda self: type(self)(list(self))
    for cls in (_c.Date, _c.Journal, _c.CrystalSymmetryOperator, _c.UncertainValue, _c.ChemicalClassification,
                _c.DatabaseCrossReference):
        cls.__hash__ = _value_hash
    _mix_in(_c.CrossReferenceInfo, collections.abc.MutableSet)
    _c.CrossReferenceInfo._from_iterable = classmethod(_set_from_iterable)
    _mix_in(_c.DepositionInfo, collections.abc.MutableMapping)

    entry = _c.CrystalStructureDatabaseEntry
    entry.__repr__ = _entry_repr
    entry._repr_html_ = _entry_html
    entry.__copy__ = _entry_copy
    entry.__reduce_ex__ = _entry_reduce
    entry.to_dict = _entry_to_dict
    entry.from_dict = classmethod(_entry_from_dict)
    entry.to_json = _json
    entry.from_json = classmethod(_from_json)
    entry.to_cif = _to_cif
    entry.to_xyz = _to_xyz
    _c.CrystalStructureDeferredDatabaseEntry.__repr__ = _deferred_repr
