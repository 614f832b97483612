// Entries and questions to them by the thousand, the same in every run: engines are held against the plain
// scan.
#pragma once

#include <stores/entry_query.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// What entries could have: every column known in some and missing in others, few different values, so that
// questions find something, and texts with quotes, capitals, characters beyond ASCII and bytes that are no
// UTF-8. The identifiers differ.
[[nodiscard]] std::vector<EntryColumns> random_columns(std::size_t count, std::uint64_t seed);

// Filters of the whole language, nested a few levels, about values that the columns have and about others.
[[nodiscard]] std::vector<std::string> random_filters(const std::vector<EntryColumns>& columns,
                                                      std::size_t count, std::uint64_t seed);
// The same in the short form.
[[nodiscard]] std::vector<std::string> random_texts(const std::vector<EntryColumns>& columns,
                                                    std::size_t count, std::uint64_t seed);
// Both, one after the other, and questions for cells.
[[nodiscard]] std::vector<EntryQuery> random_queries(const std::vector<EntryColumns>& columns,
                                                     std::size_t count, std::uint64_t seed);

// The identifiers of the columns that a query finds, in their order as bytes.
[[nodiscard]] std::vector<std::string> found_by_scan(const std::vector<EntryColumns>& columns,
                                                     const EntryQuery& query);
