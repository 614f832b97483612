"""Values that Python has a good form of already: identifiers are str, enumerations are enum.IntEnum."""

from __future__ import annotations

import datetime
import enum
from typing import Any, Sequence, Tuple


class DatabaseEntryIdentifier(str):
    """The identifier of an entry: any text, kept as it came. It is a str, and `text` is its plain text."""

    __slots__ = ()

    @property
    def text(self) -> str:
        """The identifier as a plain str."""
        return str.__str__(self)

    def __repr__(self) -> str:
        return f"DatabaseEntryIdentifier({str.__repr__(self)})"

    __str__ = str.__str__


class Enumeration(enum.IntEnum):
    """An enumeration of the library. `text` is how the library writes a member; a member is found by its
    number, or by its text: ``ExperimentalInfo.RadiationProbe("neutron")``."""

    def __new__(cls, value: int, text: str) -> Enumeration:
        member: Any = int.__new__(cls, value)
        member._value_ = value
        member._text = text
        return member  # type: ignore[no-any-return]

    @property
    def text(self) -> str:
        """As the library writes it."""
        return str(getattr(self, "_text"))

    @classmethod
    def _missing_(cls, value: object) -> Any:
        for member in cls:
            if value == member.text or value == member.name:
                return member
        return None

    __str__ = enum.Enum.__str__


def make_enumeration(name: str, qualified_name: str, rows: Sequence[Tuple[str, Tuple[int, str]]]) -> Any:
    """The class with these (name, (value, text)); called by the extension."""
    functional: Any = Enumeration
    made = functional(name, rows, module="database_entry", qualname=qualified_name)
    texts = ", ".join(f"{member.name} = {int(member)} ({member.text})" for member in made)
    made.__doc__ = f"An enum.IntEnum: {texts}."
    return made


def date_from(value: object, date_type: Any) -> Any:
    """A Date from datetime.date or "2003-05-17"."""
    if isinstance(value, datetime.date):
        return date_type(value.year, value.month, value.day)
    if isinstance(value, str):
        parts = value.split("-")
        if len(parts) == 3 and all(part.isdigit() for part in parts):
            year, month, day = map(int, parts)
            return date_type(year, month, day) if year or month or day else date_type()
    raise TypeError(f"expected Date, datetime.date or 'year-month-day', not {value!r} ({type(value).__name__})")
