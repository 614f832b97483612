"""What help() says of classes and fields: meanings, units and shapes. The types come from the records themselves."""

_RECORD = """

Made with any of its fields as keywords; a field that is not given keeps its default. Compared by value (``==``),
copied and pickled, and turned into plain values by to_dict() and back by from_dict()."""

CLASSES = {
    "Publication": "The literature reference of an entry.\n\n"
                   ">>> de.Publication(authors=['A.B.Smith'], journal=4, volume='101', year=1979, page='2345')\n\n"
                   "Of the journals only the international CODENs are compared." + _RECORD,
    "Journal": "A journal of the list that is built in, made from its number: ``de.Journal(4).name``.\n\n"
               "Journals do not change; two are equal where number and texts are.",
    "ChemicalInfo": "The compound in words: formula, names, activity, source, classes. Empty is \"not known\"."
                    + _RECORD,
    "ChemicalClassification": "One chemical class of a compound, of a fixed list; made from a Classifier, its number or "
                              "its text: ``de.ChemicalClassification('Steroid')``.",
    "CrystalInfo": "The crystal as a specimen, and the contents of its unit cell in words. 0.0 is \"not known\"."
                   + _RECORD,
    "ExperimentalInfo": "How the structure was determined. 0.0, an empty text and the members \"unknown\" are \"not "
                        "known\".\n\nNumbers are compared within 1e-7, and a NaN is equal to everything." + _RECORD,
    "EditorsInfo": "What the editors of the database keep about an entry." + _RECORD,
    "Date": "A day of the Gregorian calendar, or no date: ``de.Date(2003, 5, 17)``, ``de.Date()``.\n\n"
            "Where one is wanted, datetime.date and '2003-05-17' are taken too. Days are ordered.",
    "Range": "A range of floats with a condition at each end. Compared within the tolerance of its comparator.",
    "RangeLimit": "Holds the conditions of the limits of a range.",
    "DoubleComparator": "\"Less than\" for floats that leaves room for rounding: the tolerance.",
    "UncertainValue": "A measured value with its standard uncertainty, both in the unit of the value.",
    "PublishedBond": "A bond length as the authors published it. Equal where the atoms are the same objects.",
    "PublishedGeometry": "The bond lengths that the authors of a structure published. No archive holds it.",
    "DatabaseCrossReference": "A typed pointer to other entries: a text in which their identifiers are in brackets.\n\n"
                              ">>> de.DatabaseCrossReference('isomer', 'Isomer of', 'ABCDEF').identifiers()",
    "CrossReferenceInfo": "All cross-references of an entry: a set without duplicates, ordered by type and text.\n\n"
                          "It has what every set of Python has; ``in``, ``add``, ``discard``, ``|`` and ``&``.",
    "DepositionInfo": "The deposition codes of a structure, a mapping of their types to their texts.\n\n"
                      ">>> info['VORN'] = 'VORN 123456'\n\n"
                      "Keys are members of DepositionType, their texts or numbers. Blanks at the ends of a text go.",
    "CrystalSymmetryOperator": "A symmetry operator in fractions of the cell's axes, made from a coordinate triplet: "
                               "``de.CrystalSymmetryOperator('-x,1/2+y,1/2-z')``. Operators do not change.",
    "Cell": "A unit cell: three lengths in angstrom, three angles in degrees, and the symmetry operators.\n\n"
            ">>> de.Cell(4.594, 4.594, 2.959, 90, 90, 90, ['x,y,z', '-x,-y,z'])\n\n"
            "0.0 is \"not known\". A cell does not change, but its list of operators may.",
    "CrystalMaker": "What a crystal is built from: a cell, and the atoms of its asymmetric unit.\n\n"
                    ">>> de.CrystalMaker(cell, [de.Atom(element='Ti', position=(0, 0, 0))])\n\n"
                    "Cell and atoms are shared. Compared by value.",
    "Atom": "An atom site of a crystal's asymmetric unit." + _RECORD,
    "Bond": "A bond between two atoms of a crystal. Equal where the atoms are the same objects." + _RECORD,
    "DiagramAtom": "An atom of a chemical diagram, where it is drawn." + _RECORD,
    "DiagramBond": "A bond of a chemical diagram. Equal where the atoms are the same objects." + _RECORD,
    "ChemicalDiagram": "The two-dimensional drawing of a compound. Compared as an object.",
    "ConnectivityAtom": "An atom of a chemical connectivity: what it is, not where." + _RECORD,
    "ConnectivityBond": "A bond of a chemical connectivity. Equal where the atoms are the same objects." + _RECORD,
    "Connectivity": "Which atoms of a compound are bonded to which. Compared by value, bonds by their atoms' places.",
    "ConnectivityInfo": "The connectivity of an entry, as it is archived.",
    "CrystalDiagramMatch": "Which atoms and bonds of the crystal are which of the diagram. Compared as an object.",
    "ConnectivityDiagramMatch": "Which atoms and bonds of the connectivity are which of the diagram.",
    "CrystalConnectivityMatch": "Which atoms and bonds of the crystal are which of the connectivity.",
    "DisorderSelector": "Which alternative of a disordered part of the structure is shown.",
    "CrystalStructureDatabaseEntry": "An identifier and sixteen components, each of which may be None.\n\n"
                                     "Two entries are equal where identifiers and all components are stored alike.",
    "CrystalStructureImmediateDatabaseEntry":
        "An entry that holds every component; de.Entry for short.\n\n"
        ">>> de.Entry('ABCDEF01', maker, publication=de.Publication(year=1979))\n\n"
        "pickle and copy.deepcopy keep all sixteen components, and which atoms they share; copy.copy shares them.",
    "CrystalStructureDeferredDatabaseEntry":
        "An entry that asks a data source for each component when it is first wanted, and keeps the answer. What the "
        "source raises passes through, and the component is asked for again. de.DeferredEntry for short.",
    "CrystalStructureDatabaseEntryDataSource":
        "Where a deferred entry gets its components from; de.DataSource for short. Derive from it and define those of "
        "its methods that you can answer: identifier(), publication(), cell(), ... Those here give None.",
    "ChemicalConnectivityDatabaseEntry": "A small entry that holds a chemical connectivity only.",
    "EntryColumns": "What an entry can be found by; None where a value is not known.",
    "EntryQuery": "A question to a store. Queries are joined by ``&``, ``|`` and ``~``.",
    "SpaceGroup": "The space group of a list of symmetry operators.",
    "Texts": "A list of str that is part of a record: a change of it is a change of the record.",
    "SymmetryOperators": "A list of operators, which cells may share.",
    "DisorderSelectors": "A list of DisorderSelector: a component of an entry.",
    "PublishedBonds": "A list of PublishedBond, which geometries may share.",
}

_COMPONENTS = {
    "identifier": "any text",
    "crystal_maker": "cell and atoms; fixed when the entry is made",
    "cell": "the unit cell; fixed when the entry is made",
    "publication": "the literature reference",
    "experimental_info": "how the structure was determined",
    "editors_info": "what the editors keep",
    "chemical_info": "the compound in words",
    "crystal_info": "the crystal as a specimen",
    "chemical_diagram": "the drawing; fixed when the entry is made",
    "connectivity_info": "which atoms are bonded; fixed when the entry is made",
    "crystal_diagram_match": "crystal and diagram; fixed when the entry is made",
    "connectivity_diagram_match": "connectivity and diagram; fixed when the entry is made",
    "crystal_connectivity_match": "crystal and connectivity; fixed when the entry is made",
    "cross_reference_info": "references to other entries",
    "deposition_info": "deposition codes",
    "disorder_selector": "the alternatives that are shown",
    "published_geometry": "published bond lengths",
}

_FIELDS = {
    "Publication": {"journal": "the journal; its number is taken too", "authors": "in the order of publication",
                    "volume": "as printed", "year": "0 is not known", "page": "the first one, which may have letters"},
    "Journal": {"name": "the abbreviated title", "coden": "the number in the list, from 1",
                "international_coden": "six letters and digits as a rule"},
    "ChemicalInfo": {"formula": "\"C10 H8\"", "name": "of the compound", "bioactivity": "free text",
                     "conformer": "free text", "source": "where the compound comes from",
                     "peptide_sequence": "free text", "isomer": "free text",
                     "classifiers": "chemical classes", "synonyms": "other names"},
    "ChemicalClassification": {"classifier": "the class"},
    "CrystalInfo": {"z": "formula units in the unit cell", "z_prime": "formula units in the asymmetric unit",
                    "color": "free text", "habit": "the shape of the crystal", "analogues": "free text",
                    "melting_point": "free text with its unit", "notes": "free text",
                    "phase_transitions": "free text", "polymorph": "free text",
                    "sensitivity": "to air, light and so on", "recrystallisation_solvent": "free text",
                    "disorder_details": "free text", "other_cell_details": "free text"},
    "ExperimentalInfo": {"temperature": "in kelvin", "temperature_text": "as published", "pressure": "as published",
                         "experimental_density": "in grams per cubic centimetre",
                         "calculated_density": "in grams per cubic centimetre", "r_factor": "of the refinement",
                         "mean_cc_bond_sigma": "of the mean standard uncertainty of carbon-carbon bonds",
                         "probe": "the radiation", "radiation_source": "free text",
                         "absolute_configuration": "whether it was determined",
                         "diffraction_details": "free text", "powder": "a powder or a single crystal",
                         "refinement_details": "free text", "intensity_method": "how intensities were measured"},
    "EditorsInfo": {"accession_date": "when the entry came", "modification_date": "when it was changed last",
                    "category": "how much of a structure it is", "bonding_tolerance": "in angstrom",
                    "previous_refcode": "an older identifier", "aser_match_flag": "how a match went",
                    "connectivity_comment": "free text", "batch": "a number", "memo": "free text",
                    "remarks": "free text", "author_correspondence": "what was asked of the authors",
                    "ignored_errors": "which errors were let pass"},
    "Date": {"year": "0 where there is no date", "month": "1 to 12", "day": "1 to 31"},
    "Range": {"lower": "the lower limit", "lower_condition": "whether it belongs to the range",
              "upper": "the upper limit", "upper_condition": "whether it belongs to the range"},
    "UncertainValue": {"value": "the value", "standard_uncertainty": "0.0 where none is known"},
    "PublishedBond": {"first_atom": "shared", "second_atom": "shared", "length": "in angstrom; a float is taken too",
                      "first_flag": "its meaning is the caller's", "second_flag": "its meaning is the caller's"},
    "PublishedGeometry": {"bonds": "the list, which may be shared; None for no list",
                          "flag": "its meaning is the caller's"},
    "DatabaseCrossReference": {"type": "what the entries have to do with each other", "text": "with identifiers in it"},
    "CrossReferenceInfo": {"references": "the set, in its order"},
    "DepositionInfo": {"depositions": "pairs of type and text, all there are"},
    "CrystalSymmetryOperator": {"rotation": "nine ints, row by row", "translation": "three floats, fractions of axes"},
    "Cell": {"a": "in angstrom", "b": "in angstrom", "c": "in angstrom", "alpha": "in degrees", "beta": "in degrees",
             "gamma": "in degrees", "symmetry_operators": "all of them, the identity included; shared"},
    "CrystalMaker": {"cell": "shared", "atoms": "shared; the list itself does not change"},
    "Atom": {"label": "as published: \"C1\"", "element": "the symbol: \"Fe\"; empty when not known",
             "position": "(3,), in fractions of the cell's axes; a copy that cannot be written to",
             "occupancy": "the fraction of cells in which the site is taken"},
    "Bond": {"first": "shared", "second": "shared", "type": "of the bond"},
    "DiagramAtom": {"element": "the symbol", "label": "what is drawn beside it", "charge": "in elementary charges",
                    "x": "to the right, in usual bond lengths", "y": "upwards, in usual bond lengths"},
    "DiagramBond": {"first": "shared", "second": "shared", "type": "of the bond"},
    "ChemicalDiagram": {"atoms": "shared", "bonds": "shared"},
    "ConnectivityAtom": {"element": "the symbol", "label": "of the crystal's atom", "charge": "in elementary charges",
                         "hydrogen_count": "hydrogen atoms that are no atoms of the connectivity"},
    "ConnectivityBond": {"first": "shared", "second": "shared", "type": "of the bond"},
    "Connectivity": {"atoms": "shared", "bonds": "shared; their atoms are among the atoms"},
    "ConnectivityInfo": {"connectivity": "shared; never None"},
    "CrystalDiagramMatch": {"atoms": "pairs of atoms", "bonds": "pairs of bonds"},
    "ConnectivityDiagramMatch": {"atoms": "pairs of atoms", "bonds": "pairs of bonds"},
    "CrystalConnectivityMatch": {"atoms": "pairs of atoms", "bonds": "pairs of bonds"},
    "DisorderSelector": {"assembly": "the disordered part: \"A\"", "group": "the alternative: \"1\"",
                         "atoms": "those of that alternative; shared"},
    "CrystalStructureDatabaseEntry": _COMPONENTS,
}

FIELDS = {f"{name}.{field}": text for name, fields in _FIELDS.items() for field, text in fields.items()}
