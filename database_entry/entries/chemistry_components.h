// The components that come from the chemistry library: which of them an archive and a summary take.
#pragma once

#include <chemistry/cell.h>
#include <chemistry/chemical_diagram.h>
#include <chemistry/connectivity_info.h>
#include <chemistry/crystal_maker.h>
#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>

template <>
inline constexpr bool is_archived_component<CrystalMaker> = true;
template <>
inline constexpr bool is_archived_component<Cell> = true;
template <>
inline constexpr bool is_archived_component<ConnectivityInfo> = true;

template <>
inline constexpr bool is_printed_component<CrystalMaker> = true;
template <>
inline constexpr bool is_printed_component<ChemicalDiagram> = true;
template <>
inline constexpr bool is_printed_component<ConnectivityInfo> = true;
