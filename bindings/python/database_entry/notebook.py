"""What a notebook shows of an entry: its picture and a table."""

from __future__ import annotations

import html
from typing import Any, Iterator, Tuple

from . import _database_entry as _c
from .errors import Error


def _picture(entry: _c.CrystalStructureDatabaseEntry) -> str:
    for kind in ("diagram", "cell"):
        if kind == "diagram" and not (entry.chemical_diagram and entry.chemical_diagram.atoms):
            continue
        try:
            svg = _c._picture(entry, kind, "svg", "", False, 360, 270).decode()
        except Error:
            continue
        return svg[svg.index("<svg"):]
    return ""


def _rows(entry: _c.CrystalStructureDatabaseEntry) -> Iterator[Tuple[str, str]]:
    chemical, publication, cell = entry.chemical_info, entry.publication, entry.cell
    if chemical is not None:
        yield "formula", chemical.formula
        yield "name", chemical.name
    if publication is not None:
        yield "publication", str(publication)
    if cell is not None:
        yield "cell", "{:g} {:g} {:g} Å, {:g} {:g} {:g}°".format(*cell.parameters)
        if cell.symmetry_operators:
            group = _c.SpaceGroup(cell.symmetry_operators)
            yield "space group", group.hermann_mauguin if group.is_known else ""
    maker = entry.crystal_maker
    if maker is not None:
        yield "atoms", str(len(maker.atoms))


def entry_html(entry: _c.CrystalStructureDatabaseEntry) -> str:
    """The picture, where one can be drawn, beside a table of what is known."""
    rows = "".join(
        f"<tr><th style='text-align:left'>{name}</th><td>{html.escape(text)}</td></tr>"
        for name, text in _rows(entry) if text.strip(", 0"))
    return (f"<div><b>{html.escape(str(entry.identifier))}</b>"
            f"<div style='display:flex;gap:1em'><div>{_picture(entry)}</div><table>{rows}</table></div></div>")


def record_html(record: Any) -> str:
    """A table of the fields that say something."""
    from .records import _is_blank, _shown

    rows = []
    for name in record._fields:
        value = getattr(record, name)
        if not _is_blank(value):
            text = value if isinstance(value, str) else _shown(value)
            rows.append(f"<tr><th style='text-align:left'>{name}</th><td>{html.escape(text)}</td></tr>")
    return f"<table><caption>{type(record).__name__}</caption>{''.join(rows)}</table>"
