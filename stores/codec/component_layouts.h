// The layouts of the six components that have no archive form of their own. docs/stores.md shows them with
// bytes. Internal: for entry_encoding.h.
//
// Each is the number of the layout, 1; the tables of the objects that live in the component; and what refers
// to them and to objects of other components. A text is that of an archive, and ends at its NUL when it is
// read.
#pragma once

#include <database_entry/entries/components.h>
#include <stores/codec/shared_objects.h>
#include <utilities/archive.h>

#include <functional>

// Write a component. Objects that have no place yet get one in it. Throw NullHandleError where there is none.
void write_layout(Archive& archive, SharedIndex& index, const ChemicalDiagram& diagram);
void write_layout(Archive& archive, SharedIndex& index, const CrystalDiagramMatch& match);
void write_layout(Archive& archive, SharedIndex& index, const ConnectivityDiagramMatch& match);
void write_layout(Archive& archive, SharedIndex& index, const CrystalConnectivityMatch& match);
void write_layout(Archive& archive, SharedIndex& index, const DisorderSelectors& selectors);
void write_layout(Archive& archive, SharedIndex& index, const PublishedGeometry& geometry);

// The objects that live in the component of a kind, which is fetched for that.
using FetchObjects = std::function<const SharedObjects&(int kind)>;

// Read a component, and the objects that live in it into `own`. Throw ArchiveError where the stream ends, and
// std::invalid_argument for another layout and for a reference to an object that is not there.
void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own, ChemicalDiagram& diagram);
void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own, CrystalDiagramMatch& match);
void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                 ConnectivityDiagramMatch& match);
void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                 CrystalConnectivityMatch& match);
void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                 DisorderSelectors& selectors);
void read_layout(Archive& archive, const FetchObjects& fetch, SharedObjects& own,
                 PublishedGeometry& geometry);
