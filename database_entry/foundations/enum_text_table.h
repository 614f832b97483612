// Makes the mapping that a record's static text accessor hands out.
// Internal: callers want the accessors of the records.
//
//   constexpr EnumTextMapping<E>::Initialiser texts[] = {{E::first, "first"}, {E::second, "second"}};
//   return new_text_mapping<E>(texts);
#pragma once

#include <database_entry/foundations/enum_text_mapping.h>
#include <utilities/t_handle.h>

#include <cstddef>

template <class E, std::size_t count>
THandle<EnumTextMapping<E>> new_text_mapping(const typename EnumTextMapping<E>::Initialiser (&table)[count]) {
  return THandle<EnumTextMapping<E>>(new EnumTextMapping<E>(table, count));
}
