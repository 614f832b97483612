// CIF files parsed by gemmi and forgotten: the work that no import can do without.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Gives the number of blocks of those that are CIF.
std::size_t parse_cif_files(const std::vector<std::string>& files);
