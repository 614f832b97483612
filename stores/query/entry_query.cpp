#include <stores/entry_query.h>

EntryQueryError::EntryQueryError(const std::string& message, std::size_t column)
    : std::invalid_argument(message), column_(column) {}
EntryQueryError::~EntryQueryError() = default;

struct EntryQuery::Condition {};

EntryQuery::EntryQuery() = default;
EntryQuery::EntryQuery(const EntryQuery&) = default;
EntryQuery& EntryQuery::operator=(const EntryQuery&) = default;
EntryQuery::~EntryQuery() = default;

bool EntryQuery::matches(const EntryColumns& /*columns*/) const {
  return true;
}

SqlCondition EntryQuery::sql(SqlDialect /*dialect*/, int /*first_parameter*/) const {
  return {};
}
