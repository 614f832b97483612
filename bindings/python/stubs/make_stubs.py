#!/usr/bin/env python3
"""Types of the extension: the fields of its lists, and the methods of methods.pyi. Writes the stub to standard output.

    PYTHONPATH=build/release/python stubs/make_stubs.py > database_entry/_database_entry.pyi
"""

import enum
import pathlib
import re
import sys

from database_entry import _database_entry as module
from database_entry.values import Enumeration

METHODS = pathlib.Path(__file__).with_name("methods.pyi")

# What a field takes beside what it gives.
WIDER = {
    "int": "int", "float": "float", "bool": "bool", "str": "str",
    "DatabaseEntryIdentifier": "str",
    "numpy.ndarray": "ArrayLike",
    "Date": "Union[Date, datetime.date, str]",
    "Journal": "Union[Journal, int]",
    "ChemicalClassification": "Union[ChemicalClassification, int, str]",
    "UncertainValue": "Union[UncertainValue, float]",
    "CrystalSymmetryOperator": "Union[CrystalSymmetryOperator, str]",
}


# Components that most entries do not have.
NEVER_ARCHIVED = {"chemical_diagram", "crystal_diagram_match", "connectivity_diagram_match",
                  "crystal_connectivity_match", "disorder_selector", "published_geometry"}


def class_of(name):
    found = module
    for part in name.split("."):
        found = getattr(found, part, None)
    return found


def inner(name, outer):
    return name[len(outer) + 1:-1] if name.startswith(outer + "[") else None


def parts_of(text):
    """The parameters of Tuple[...], which nest."""
    parts, depth = [""], 0
    for letter in text:
        depth += (letter == "[") - (letter == "]")
        if letter == "," and depth == 0:
            parts.append("")
        else:
            parts[-1] += letter
    return [part.strip() for part in parts]


def given(name):
    """The type of a value that is read. A handle may be null, where its owner knows: users need not ask."""
    if text := inner(name, "Optional"):
        return f"Union[{given(text)}, Any]"
    for outer in ("Sequence", "Tuple"):
        if text := inner(name, outer):
            return f"{outer}[{', '.join(part if part == '...' else given(part) for part in parts_of(text))}]"
    if name == "numpy.ndarray":
        return "NDArray[numpy.float64]"
    if name not in WIDER and class_of(name) is None:
        raise SystemExit(f"make_stubs.py: nothing is bound as '{name}'")
    return name


def taken(name):
    """The type of a value that is assigned."""
    if text := inner(name, "Optional"):
        return f"Optional[{taken(text)}]"
    if text := inner(name, "Sequence"):
        return f"Iterable[{taken(text)}]"
    if text := inner(name, "Tuple"):
        parts = parts_of(text)
        if parts[-1] == "...":
            return f"Iterable[{taken(parts[0])}]"
        return f"Tuple[{', '.join(map(taken, parts))}]"
    cls = class_of(name)
    if isinstance(cls, type) and issubclass(cls, enum.Enum):
        return "Union[int, str]"
    if hasattr(cls, "_item_type"):
        return f"Iterable[{taken(cls._item_type)}]"
    return WIDER.get(name, name)


def fields_of(cls):
    for name in getattr(cls, "_fields", getattr(cls, "_components", ())):
        type_name, is_writable = cls._field_types[name]
        # A list of a record is given as what it is.
        got = class_name(type_name) or given(type_name)
        if name in NEVER_ARCHIVED and cls is module.CrystalStructureDatabaseEntry:
            got = type_name
        if not is_writable:
            yield f"    @property\n    def {name}(self) -> {got}: ..."
        elif (wanted := taken(type_name)) == got:
            yield f"    {name}: {got}"
        else:
            yield f"    {name}: _Field[{got}, {wanted}]"


def class_name(type_name):
    return type_name if type_name in vars(module) else None


def enumeration(cls, indent):
    yield f"{indent}class {cls.__name__}(Enumeration):"
    for member in cls:
        yield f"{indent}    {member.name} = {int(member)}"


def enumerations_in(cls):
    for value in vars(cls).values():
        if isinstance(value, type) and issubclass(value, Enumeration):
            yield from enumeration(value, "    ")
    for name, value in vars(cls).items():
        if isinstance(value, Enumeration):
            yield f"    {name}: ClassVar[{type(value).__qualname__}]"


def keywords(cls):
    """Of the constructor that takes every field that can be set."""
    names = getattr(cls, "_fields", getattr(cls, "_components", ()))
    wanted = [f"{name}: {taken(cls._field_types[name][0])} = ..." for name in names if cls._field_types[name][1]]
    if cls is module.CrystalStructureImmediateDatabaseEntry:
        rest = [f"{name}: {taken(cls._field_types[name][0])} = ..." for name in names if name != "crystal_maker"]
        return "identifier: str = ..., crystal_maker: Optional[CrystalMaker] = ..., *, " + ", ".join(rest)
    return "*, " + ", ".join(wanted)


def list_class(cls):
    item = given(re.sub(r"Optional\[(\w+)\]", r"\1", cls._item_type))
    wanted = taken(cls._item_type)
    yield f"class {cls.__name__}(MutableSequence[{item}]):"
    yield f"    def __init__(self, items: Iterable[{wanted}] = ...) -> None: ..."
    yield "    def __len__(self) -> int: ..."
    yield f"    @overload\n    def __getitem__(self, index: int) -> {item}: ..."
    yield f"    @overload\n    def __getitem__(self, index: slice) -> List[{item}]: ..."
    yield f"    @overload\n    def __setitem__(self, index: int, value: {wanted}) -> None: ..."
    yield f"    @overload\n    def __setitem__(self, index: slice, value: Iterable[{wanted}]) -> None: ..."
    yield "    def __delitem__(self, index: Union[int, slice]) -> None: ..."
    yield f"    def insert(self, index: int, value: {wanted}) -> None: ..."
    yield f"    def append(self, value: {wanted}) -> None: ..."
    yield f"    def extend(self, values: Iterable[{wanted}]) -> None: ..."
    yield "    def index(self, value: Any, start: int = ..., stop: Optional[int] = ...) -> int: ..."
    yield "    def __copy__(self) -> Self: ..."
    yield "    __hash__: ClassVar[None]  # type: ignore[assignment]"


def bound_class(cls, head, body):
    is_record = hasattr(cls, "_fields")
    if "(" not in head:
        head += "(_Record)" if is_record else "(metaclass=_Bound)"
    yield head + ":"
    lines = list(enumerations_in(cls)) + list(fields_of(cls) if "_field_types" in vars(cls) else [])
    if cls is module.CrystalStructureDatabaseEntryDataSource:
        entry = module.CrystalStructureDatabaseEntry
        lines += [f"    def {name}(self) -> {entry._field_types[name][0]}: ..." for name in entry._components]
    if is_record:
        names = ", ".join(f'Literal["{name}"]' for name in cls._fields)
        lines.append(f"    __match_args__: ClassVar[Tuple[{names}]]")
        if "(" in head and "(_Record)" not in head:
            lines += ["    def to_dict(self) -> Dict[str, Any]: ...",
                      "    @classmethod\n    def from_dict(cls, fields: Mapping[str, Any]) -> Self: ...",
                      "    def _repr_html_(self) -> str: ...", "    def __copy__(self) -> Self: ..."]
        if "to_bytes" in vars(cls):
            lines.append("    def to_bytes(self) -> bytes: ...")
    if "__init__" in vars(cls) and "__init__" not in body and (
            is_record or cls is module.CrystalStructureImmediateDatabaseEntry):
        lines.append(f"    def __init__(self, {keywords(cls)}) -> None: ...")
    if isinstance(cls.__init__, type(object.__init__)):  # nobody makes one
        lines.append("    def __init__(self, *args: NoReturn, **kwargs: NoReturn) -> None: ...")
    if vars(cls).get("__hash__", 0) is None:
        lines.append("    __hash__: ClassVar[None]  # type: ignore[assignment]")
    if cls is module.EntryColumns:
        lines += [f"    @property\n    def {name}(self) -> {text}: ..." for name, text in cls._types.items()]
    yield from lines
    if body:
        yield body
    if not lines and not body:
        yield "    ..."


def main():
    header, *chunks = re.split(r"^(?=class |def )", METHODS.read_text(encoding="utf-8"), flags=re.MULTILINE)
    written, functions = {}, []
    for chunk in chunks:
        head, _, body = chunk.partition(":\n")
        if chunk.startswith("def "):
            functions.append(chunk.rstrip())
        else:
            # Comments and blank lines before the next class go with the header.
            body = re.sub(r"\n\n#.*\Z|\s+\Z", "", body, flags=re.DOTALL)
            written[re.match(r"class (\w+)", head).group(1)] = (head, body)
    out = ["# Made by make_stubs.py from the lists of fields and methods.pyi; ./dev python stubs makes it anew.",
           header[header.index("import "):].rstrip().replace("Iterator, List,", "Iterator, List, Literal,"),
           "_str = str\n_bytes = bytes"]
    for name in ("_Field", "_Bound", "_Record"):
        head, body = written.pop(name)
        out.append(f"{head}:\n{body}")
    for name, cls in vars(module).items():
        if not isinstance(cls, type):
            continue
        head, body = written.pop(name, (f"class {name}", ""))
        if issubclass(cls, Enumeration):
            out.append("\n".join(enumeration(cls, "")))
        elif hasattr(cls, "_item_type"):
            out.append("\n".join(list_class(cls)))
        else:
            out.append("\n".join(bound_class(cls, head, body)))
    if written:
        raise SystemExit(f"make_stubs.py: methods.pyi has classes that are not bound: {', '.join(written)}")
    out.append("\n".join(functions))
    sys.stdout.write("\n\n".join(out) + "\n")


if __name__ == "__main__":
    main()
