// Component handles in a summary: the component's own text, or "<zero handle>".
#pragma once

#include <utilities/t_handle.h>

#include <ostream>

// Set to true beside each of the ten component types that an entry's summary shows.
template <class Component>
inline constexpr bool is_printed_component = false;

template <class Component>
requires is_printed_component<Component> std::ostream& operator<<(std::ostream& os,
                                                                  const THandle<Component>& component) {
  if (component.is_null()) return os << "<zero handle>";
  component->print(os);
  return os;
}
