"""What the atoms of an entry say of its other components, checks of an entry, and pictures."""

from __future__ import annotations

import datetime
import os
from types import SimpleNamespace
from typing import Any, List, NamedTuple, Optional, Tuple

from . import _database_entry as _c
from .files import Path, written

class Finding(NamedTuple):
    """What a check has found: a number that never changes, where in the entry, and what was seen."""

    number: int
    where: str
    sentence: str


class PerceptionReport(SimpleNamespace):
    """`filled`: the components that were made; `notes`: what was not made, and why; `moieties`: triples of formula,
    dimension (0 for molecules) and number in the cell; `bonds` of one cell; `z` and `z_prime`, 0.0 if not known."""


def perceive(entry: _c.CrystalStructureDatabaseEntry, *, draw: bool = True, frameworks: bool = False,
             ) -> Tuple[_c.CrystalStructureImmediateDatabaseEntry, PerceptionReport]:
    """Another entry with connectivity, diagram, matches and disorder from its atoms, and a PerceptionReport.

    What the entry has stays. `draw=False` leaves the diagram out; `frameworks=True` gives a connectivity to what is
    not made of molecules too.
    """
    perceived, report = _c._perceive(entry, draw, frameworks)
    return perceived, PerceptionReport(**report)


def check(entry: _c.CrystalStructureDatabaseEntry, year: Optional[int] = None) -> List[Finding]:
    """What an editor would ask before the entry is accepted, as a list of Finding. `year` is the present one."""
    return [Finding(*row) for row in _c._check(entry, datetime.date.today().year if year is None else year)]


def picture(entry: _c.CrystalStructureDatabaseEntry, kind: str = "diagram", format: str = "svg", *, view: str = "",
            labels: bool = False, width: int = 800, height: int = 600) -> bytes:
    """The picture of an entry as bytes: its "diagram", its "cell" or a "molecule"; "svg", "png" or "pdf".

    `view` is "a", "b", "c" or "x,y,z", the lattice vector along which one looks. Width and height are pixels of a
    PNG and points of the others. Raises PerceptionError where there is nothing to draw.
    """
    return _c._picture(entry, kind, format, view, labels, width, height)


def save_picture(entry: _c.CrystalStructureDatabaseEntry, path: Path, kind: str = "diagram", **options: Any) -> None:
    """Writes the picture to a file, whose ending says the format."""
    format = os.path.splitext(os.fspath(path))[1].lstrip(".").lower()
    drawn = picture(entry, kind, format, **options)
    with written(path) as file:
        file.write(drawn)
