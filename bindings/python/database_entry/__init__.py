"""Entries of a crystal-structure database.

    import database_entry as de

    for entry in de.read_cif("quartz.cif"):
        print(entry.identifier, entry.publication.year, entry.cell.parameters)

    with de.open("known.dbe", "w") as archive:
        archive.extend(entries)
    de.open("known.dbe")["ABCDEF01"]

An entry is an identifier and sixteen components, which are attributes; a component that is missing is None.
Components are shared: `entry.publication is entry.publication`, and what is assigned is the same object after.
Entries belong to one thread at a time. Failures are de.Error and its kinds.
"""

from . import errors, values  # before the extension, which uses them
from . import documentation as _documentation
from . import _database_entry
from . import records as _records
from .archives import Archive, ArchiveWriter, open
from .convert import frame, from_ase, from_gemmi, to_ase, to_gemmi
from .errors import *
from .exchange import (Entries, ImportResult, parse_cif, parse_json, read_cif, read_json, write_cif, write_json,
                       write_xyz)
from .perception import Finding, PerceptionReport, check, perceive, picture, save_picture
from .stores import Database, Row, connect, query
from .values import DatabaseEntryIdentifier

_records.prepare()
for _name, _value in vars(_database_entry).items():
    if not _name.startswith("_"):
        globals()[_name] = _value
del _name, _value

# Shorter names for what is written often.
Entry = CrystalStructureImmediateDatabaseEntry
DeferredEntry = CrystalStructureDeferredDatabaseEntry
DataSource = CrystalStructureDatabaseEntryDataSource

__version__ = "1.0.0"
