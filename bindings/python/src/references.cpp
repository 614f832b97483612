// Cross-references as a set, depositions as a mapping. The methods here are those that the classes of
// collections.abc build all others on (records.py).
#include <database_entry/references/cross_reference_info.h>
#include <database_entry/references/deposition_info.h>

#include "record.h"

// The set as a tuple, in its order.
template <>
struct Converter<CrossReferenceInfo::CrossReferences> {
  static std::string name() { return "Tuple[DatabaseCrossReference, ...]"; }
  static py::object to(const CrossReferenceInfo::CrossReferences& references) {
    py::tuple items(references.size());
    std::size_t i = 0;
    for (const DatabaseCrossReference& each : references)
      items[i++] = Converter<DatabaseCrossReference>::to(each);
    return items;
  }
};

namespace {

// Each type that has a text, once.
py::list types_in(const DepositionInfo& info) {
  py::list types;
  for (const EnumerationMember& member : enumeration_members<DepositionInfo::DepositionType>()) {
    const auto type = static_cast<DepositionInfo::DepositionType>(member.value);
    if (info.has_text(type)) types.append(enumeration_object(type));
  }
  return types;
}

py::object identifiers_of(const std::vector<DatabaseEntryIdentifier>& identifiers) {
  py::list list;
  for (const DatabaseEntryIdentifier& identifier : identifiers)
    list.append(Converter<DatabaseEntryIdentifier>::to(identifier));
  return list;
}

void bind_cross_reference(py::module_& module) {
  using Reference = DatabaseCrossReference;
  auto bound = bind_fields<Reference>(module, "DatabaseCrossReference");
  bind_enumeration<Reference::CrossReferenceType>(bound);
  bound.def(py::init([] { return THandle<Reference>::make(); }), "Of type unknown, without text.");
  bound.def(py::init([](py::handle type, const std::string& text, const py::args& identifiers) {
              const auto kind = enumeration_value<Reference::CrossReferenceType>(type);
              if (identifiers.empty()) return THandle<Reference>(new Reference(kind, text));
              const py::handle first = identifiers[0];
              const bool is_list = !PyUnicode_Check(first.ptr());
              return THandle<Reference>(new Reference(
                  kind, text,
                  Converter<std::vector<DatabaseEntryIdentifier>>::from(is_list ? first : identifiers)));
            }),
            py::arg("type"), py::arg("text") = "",
            "A text, after which the identifiers come in brackets: (type, \"Isomer of\", \"ABCDEF\").");
  bound.def(
      "identifiers",
      [](const Reference& self) {
        std::vector<DatabaseEntryIdentifier> found;
        self.identifiers(found);
        return identifiers_of(found);
      },
      "The identifiers in brackets in the text: six-letter ones first, repeated ones too.");
  bound.def_static(
      "scope",
      [](py::handle type) {
        return Reference::scope(enumeration_value<Reference::CrossReferenceType>(type));
      },
      py::arg("type"), "Whether the type relates different forms of one compound.");
}

void bind_cross_references(py::module_& module) {
  auto bound = bind_fields<CrossReferenceInfo>(module, "CrossReferenceInfo");
  const auto add = [](CrossReferenceInfo& self, py::handle reference) {
    self.insert(Converter<DatabaseCrossReference>::from(reference));
  };
  const auto erase = [](CrossReferenceInfo& self, py::handle reference) {
    return self.erase(Converter<DatabaseCrossReference>::from(reference));
  };
  bound.def(py::init([](const py::iterable& references) {
              auto info = THandle<CrossReferenceInfo>::make();
              for (const py::handle each : references)
                info->insert(Converter<DatabaseCrossReference>::from(each));
              return info;
            }),
            py::arg("references") = py::tuple());
  bound.def("add", add, py::arg("reference"), "Adds a copy, unless one of the same type and text is there.");
  bound.def("insert", add, py::arg("reference"), "The same as add().");
  bound.def(
      "discard", [erase](CrossReferenceInfo& self, py::handle reference) { erase(self, reference); },
      py::arg("reference"));
  bound.def("erase", erase, py::arg("reference"), "The number removed, 0 or 1.");
  bound.def("clear", &CrossReferenceInfo::clear);
  bound.def("__len__", &CrossReferenceInfo::size);
  bound.def("__contains__", [](const CrossReferenceInfo& self, py::handle reference) {
    if (!py::isinstance<DatabaseCrossReference>(reference)) return false;
    const auto& wanted = object_of<DatabaseCrossReference>(reference.ptr());
    for (const DatabaseCrossReference& each : self)
      if (each == wanted) return true;
    return false;
  });
  bound.def("__iter__", [](const CrossReferenceInfo& self) {
    py::list references;
    for (const DatabaseCrossReference& each : self)
      references.append(Converter<DatabaseCrossReference>::to(each));
    return py::iter(references);
  });
  bound.def(
      "cross_related_identifiers",
      [](const CrossReferenceInfo& self) {
        std::vector<DatabaseEntryIdentifier> found;
        self.cross_related_identifiers(found);
        return identifiers_of(found);
      },
      "The identifiers in all references, in the order of the set.");
}

void bind_depositions(py::module_& module) {
  using Type = DepositionInfo::DepositionType;
  auto bound = bind_fields<DepositionInfo>(module, "DepositionInfo");
  bind_enumeration<Type>(bound);
  bound.def(py::init([](const py::dict& texts) {
              auto info = THandle<DepositionInfo>::make();
              for (const auto& [type, text] : texts)
                info->set_text(enumeration_value<Type>(type), Converter<std::string>::from(text));
              return info;
            }),
            py::arg("texts") = py::dict());
  bound.def_static("_from_fields", [](const py::tuple& fields) {
    const auto depositions = Converter<std::vector<DepositionInfo::Deposition>>::from(fields[0]);
    const std::string bytes = archived_bytes([&](Archive& archive) {
      archive << static_cast<int>(depositions.size());
      for (const DepositionInfo::Deposition& each : depositions) archive << each;
    });
    auto info = THandle<DepositionInfo>::make();
    read_archived_bytes(bytes, [&](Archive& archive) { info->read(archive); });
    return info;
  });
  bound.def("__len__", [](const DepositionInfo& self) { return py::len(types_in(self)); });
  bound.def("__iter__", [](const DepositionInfo& self) { return py::iter(types_in(self)); });
  bound.def("__getitem__", [](const DepositionInfo& self, py::handle type) {
    const Type wanted = enumeration_value<Type>(type);
    if (!self.has_text(wanted)) throw py::key_error(py::cast<std::string>(py::repr(type)));
    return Converter<std::string>::to(self.text(wanted));
  });
  bound.def("__setitem__", [](DepositionInfo& self, py::handle type, py::handle text) {
    const Type wanted = enumeration_value<Type>(type);
    const std::string value = Converter<std::string>::from(text);
    while (self.has_text(wanted)) self.set_text(wanted, "");
    self.set_text(wanted, value);
  });
  bound.def("__delitem__", [](DepositionInfo& self, py::handle type) {
    const Type wanted = enumeration_value<Type>(type);
    if (!self.has_text(wanted)) throw py::key_error(py::cast<std::string>(py::repr(type)));
    while (self.has_text(wanted)) self.set_text(wanted, "");
  });
  bound.def(
      "set_text",
      [](DepositionInfo& self, py::handle type, py::handle text) {
        self.set_text(enumeration_value<Type>(type), Converter<std::string>::from(text));
      },
      py::arg("type"), py::arg("text"),
      "As in C++: a text that is there stays in front; an empty text removes it.");
  bound.def(
      "has_text",
      [](const DepositionInfo& self, py::handle type) {
        return self.has_text(enumeration_value<Type>(type));
      },
      py::arg("type"));
  bound.def(
      "text",
      [](const DepositionInfo& self, py::handle type) {
        return Converter<std::string>::to(self.text(enumeration_value<Type>(type)));
      },
      py::arg("type"), "The first text of the type; empty when there is none.");
  bound.def(
      "deposition_numbers",
      [](const DepositionInfo& self, py::handle type) {
        std::vector<std::string> numbers;
        self.deposition_numbers(enumeration_value<Type>(type), numbers);
        return py::list(Converter<std::vector<std::string>>::to(numbers));
      },
      py::arg("type"), "The numbers in that text.");
  bound.def_static(
      "validate_deposition_code",
      [](py::handle type, py::handle code) {
        return DepositionInfo::validate_deposition_code(enumeration_value<Type>(type),
                                                        Converter<std::string>::from(code));
      },
      py::arg("type"), py::arg("code"), "Whether the code has the form of its kind.");
}

}  // namespace

void bind_references(py::module_& module) {
  bind_cross_reference(module);
  bind_cross_references(module);
  bind_depositions(module);
}
