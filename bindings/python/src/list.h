// A vector of C++ as a list of Python's that is the vector itself: what is appended is in the record.
// Internal: for the sources of the module.
//
// The methods here are those that collections.abc.MutableSequence builds all others on (records.py).
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "record.h"

// The position that a Python index means. Throws IndexError.
[[nodiscard]] std::size_t position_of(py::ssize_t index, std::size_t size);

template <class T>
void bind_list(py::module_& module, const char* name) {
  using List = std::vector<T>;
  using Place = typename List::difference_type;
  bound_name<List> = name;
  py::class_<List, THandle<List>> bound(module, name, class_documentation(name));
  bound.attr("_item_type") = Converter<T>::name();
  bound.def(py::init([](const py::iterable& items) {
              return THandle<List>(new List(Converter<List>::from(items)));
            }),
            py::arg("items") = py::tuple());
  bound.def("__len__", [](const List& list) { return list.size(); });
  bound.def("__getitem__", [](const List& list, py::ssize_t index) {
    return Converter<T>::to(list[position_of(index, list.size())]);
  });
  bound.def("__getitem__", [](const List& list, const py::slice& slice) {
    std::size_t start = 0, stop = 0, step = 0, length = 0;
    if (!slice.compute(list.size(), &start, &stop, &step, &length)) throw py::error_already_set();
    py::list items(length);
    for (std::size_t i = 0; i < length; ++i, start += step) items[i] = Converter<T>::to(list[start]);
    return items;
  });
  bound.def("__setitem__", [](List& list, py::ssize_t index, py::handle item) {
    auto value = Converter<T>::from(item);
    list[position_of(index, list.size())] = value;
  });
  bound.def("__setitem__", [](List& list, const py::slice& slice, const py::iterable& items) {
    std::size_t start = 0, stop = 0, step = 0, length = 0;
    const List values = Converter<List>::from(items);
    if (!slice.compute(list.size(), &start, &stop, &step, &length)) throw py::error_already_set();
    if (step == 1) {
      const auto first = list.begin() + static_cast<Place>(start);
      const auto next = list.erase(first, first + static_cast<Place>(length));
      list.insert(next, values.begin(), values.end());
      return;
    }
    if (values.size() != length) throw py::value_error("a slice with steps takes as many items as it has");
    for (const T& value : values) {
      list[start] = value;
      start += step;
    }
  });
  bound.def("__delitem__", [](List& list, py::ssize_t index) {
    list.erase(list.begin() + static_cast<Place>(position_of(index, list.size())));
  });
  bound.def("__delitem__", [](List& list, const py::slice& slice) {
    std::size_t start = 0, stop = 0, step = 0, length = 0;
    if (!slice.compute(list.size(), &start, &stop, &step, &length)) throw py::error_already_set();
    // A negative step wraps around as it should.
    std::vector<bool> is_kept(list.size(), true);
    for (std::size_t i = 0; i < length; ++i, start += step) is_kept[start] = false;
    List kept;
    for (std::size_t i = 0; i < list.size(); ++i)
      if (is_kept[i]) kept.push_back(list[i]);
    list = std::move(kept);
  });
  bound.def("insert", [](List& list, py::ssize_t index, py::handle item) {
    const auto size = static_cast<py::ssize_t>(list.size());
    const py::ssize_t place = std::clamp(index < 0 ? index + size : index, py::ssize_t(0), size);
    list.insert(list.begin() + static_cast<Place>(place), Converter<T>::from(item));
  });
  bound.def("append", [](List& list, py::handle item) { list.push_back(Converter<T>::from(item)); });
  bound.def("clear", [](List& list) { list.clear(); });
}
