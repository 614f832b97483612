#include "exchange/cif/components.h"
#include "exchange/cif/letters.h"
#include "exchange/cif/numbers.h"

std::string CifSource::text(const char* name, CifTagRange tags) const {
  const auto value = values_.first(tags);
  if (!value) set_absent(name);
  return value ? value->text : "";
}

std::optional<double> CifSource::number(const char* name, CifTagRange tags) const {
  const auto value = values_.first(tags);
  if (!value || !has_digit(value->text)) {
    set_absent(name);
    return std::nullopt;
  }
  const auto number = cif_number(value->text);
  if (!number) {
    warn(value->line, "{} is not a number: '{}'", name, value->text);
    return std::nullopt;
  }
  return number->value();
}
