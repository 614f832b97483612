// What has to hold of every query that is taken, in whichever language it was written.
#pragma once

#include <stores/entry_query.h>

#include <algorithm>
#include <optional>
#include <string>

#include "entry_point.h"

// An entry with some columns known and others not.
inline EntryColumns some_columns() {
  EntryColumns columns;
  columns.identifier = "RUTILE01";
  columns.elements = {{"O", 2.0}, {"Ti", 1.0}};
  columns.element_count = 2;
  columns.formula = "O2 Ti";
  columns.names = {"rutile", "titanium(IV) oxide"};
  columns.surnames = {"Wyckoff"};
  columns.year = 1960;
  columns.a = columns.b = columns.reduced_b = columns.reduced_c = 4.594;
  columns.c = columns.reduced_a = 2.959;
  columns.reduced_alpha = columns.reduced_beta = columns.reduced_gamma = 90.0;
  columns.reduced_volume = 62.45;
  columns.stored_at = "2007-04-05T14:30:20Z";
  return columns;
}

template <class Read>
void take_query(const std::string& text, const Read& read) {
  std::optional<EntryQuery> query;
  try {
    query = read();
  } catch (const EntryQueryError& error) {
    require(error.column() >= 1 && static_cast<std::size_t>(error.column()) <= text.size() + 1,
            "the error lies outside the query");
    return;
  }
  const EntryColumns columns = some_columns();
  const bool matches = query->matches(columns);
  require(!matches || !(!*query).matches(columns), "an entry matches a query and its negation");
  for (const SqlDialect dialect : {SqlDialect::sqlite, SqlDialect::postgresql}) {
    const SqlCondition sql = query->sql(dialect);
    require(!sql.where.empty(), "a condition is empty");
    require(sql.parameters.size() <= 30'000, "more parameters than a database takes");
    // Values are parameters: no quote, no control character, nothing beyond ASCII.
    require(std::all_of(sql.where.begin(), sql.where.end(),
                        [](char letter) {
                          return letter >= ' ' && letter <= '~' && letter != '\'' && letter != ';';
                        }),
            "a condition holds what is not its own");
  }
  if (const auto filter = query->filter()) {
    require(EntryQuery::from_filter(*filter) == *query, "the filter reads back as another query: " + *filter);
  }
  if (const auto short_form = query->text()) {
    require(EntryQuery::from_text(*short_form) == *query,
            "the short form reads back as another query: " + *short_form);
  }
}
