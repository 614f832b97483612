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

from . import errors as errors, values as values  # before the extension, which uses them
from . import documentation as _documentation
from . import records as _records
from ._database_entry import *
from ._database_entry import (
    CrystalStructureDatabaseEntryDataSource, CrystalStructureDeferredDatabaseEntry,
    CrystalStructureImmediateDatabaseEntry)
from .archives import Archive as Archive, ArchiveWriter as ArchiveWriter, open as open
from .convert import (
    frame as frame, from_ase as from_ase, from_gemmi as from_gemmi, to_ase as to_ase, to_gemmi as to_gemmi)
from .errors import *
from .exchange import (
    Entries as Entries, ImportResult as ImportResult, parse_cif as parse_cif, parse_json as parse_json,
    read_cif as read_cif, read_json as read_json, write_cif as write_cif, write_json as write_json,
    write_xyz as write_xyz)
from .perception import (
    Finding as Finding, PerceptionReport as PerceptionReport, check as check, perceive as perceive,
    picture as picture, save_picture as save_picture)
from .stores import Database as Database, Row as Row, connect as connect, query as query
from .values import DatabaseEntryIdentifier as DatabaseEntryIdentifier

_records.prepare()

# Shorter names for what is written often.
Entry = CrystalStructureImmediateDatabaseEntry
DeferredEntry = CrystalStructureDeferredDatabaseEntry
DataSource = CrystalStructureDatabaseEntryDataSource

__version__ = "1.0.0"
