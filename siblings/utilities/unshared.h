// An object of one's own, held by a handle.
// Internal: for reading into objects that others may hold.
#pragma once

#include <utilities/t_handle.h>

// Makes sure that nobody else holds the object of `handle`: where somebody does, or there is none, the handle
// gets a new default one. Reading may then overwrite it unseen.
template <class T>
T& unshared(THandle<T>& handle) {
  if (handle.is_null() || handle.use_count() > 1) handle = THandle<T>::make();
  return *handle;
}
