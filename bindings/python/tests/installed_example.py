"""A program of somebody else: uses the module from where it is installed. Prints where that is."""

import pathlib

import database_entry as de

package = pathlib.Path(de.__file__).parent
entry = de.Entry("ABCDEF01", publication=de.Publication(authors=["A.B.Smith"], journal=4, year=1979))
assert str(entry.publication) and de.Entry.from_json(entry.to_json()) == entry
assert {"py.typed", "_database_entry.pyi"} <= {path.name for path in package.iterdir()}
print(package)
