// The fields of a record by name and member, so that what is done with each of them is written once.
//
//   class Point {
//    public:
//     double x = 0.0;
//     double y = 0.0;
//
//     // In archive order.
//     static constexpr auto fields() { return std::tuple{Field{"x", &Point::x}, Field{"y", &Point::y}}; }
//     static constexpr bool archived_by_fields = true;
//   };
//
//   for_each_field(point, [](const char* name, auto& value) { std::cout << name << " = " << value << '\n';
//   });
//
// A record says with archived_by_fields that its archive form is its fields, each after the other, and
// nothing else; a function `void check() const` of such a record throws what reading refuses, and is called
// when all fields have been read. Any other record is archived by its own operations.
#pragma once

#include <tuple>
#include <type_traits>
#include <utility>

struct FieldAccess;

// A public data member. The label is what summaries call it; the name, where none is given.
template <class Record, class Value>
struct Field {
  using Type = Value;

  constexpr Field(const char* field_name, Value Record::*field_member, const char* field_label = nullptr)
      : name(field_name), label(field_label == nullptr ? field_name : field_label), member(field_member) {}

  [[nodiscard]] constexpr Value& of(Record& record) const { return record.*member; }
  [[nodiscard]] constexpr const Value& of(const Record& record) const { return record.*member; }

  const char* name;
  const char* label;
  Value Record::*member;
};

// A private one: anyone may look at it through this list, only the archive fills it.
template <class Record, class Value>
class ReadOnlyField {
 public:
  using Type = Value;

  constexpr ReadOnlyField(const char* field_name, Value Record::*member)
      : name(field_name), label(field_name), member_(member) {}

  [[nodiscard]] constexpr const Value& of(const Record& record) const { return record.*member_; }

  const char* name;
  const char* label;

 private:
  friend FieldAccess;
  Value Record::*member_;
};

// Calls `visit(name, value)` for each field in archive order. The value may be changed where the field is
// public and the record is not const.
template <class Record, class Visit>
constexpr void for_each_field(Record& record, Visit&& visit) {
  std::apply([&](const auto&... field) { (visit(field.name, field.of(record)), ...); },
             std::remove_const_t<Record>::fields());
}

template <class Record>
concept ArchivedByFields = Record::archived_by_fields;

// The fields as one std::tuple of references, for comparing, writing and reading them.
// Internal: callers want for_each_field.
struct FieldAccess {
  // All fields.
  template <class Record>
  static constexpr auto tie(Record& record) {
    return std::apply([&](const auto&... field) { return std::tie(of(field, record)...); },
                      std::remove_const_t<Record>::fields());
  }

  // As they are archived: a field that is archived by its own fields, and refuses nothing, is replaced by
  // those.
  template <class Record>
  static constexpr auto tie_archived(Record& record) {
    return std::apply([&](const auto&... field) { return std::tuple_cat(flat(of(field, record))...); },
                      std::remove_const_t<Record>::fields());
  }

  // The same with each enumeration of the record replaced by the one of its type in `aside`.
  template <class Record, class... Enumerations>
  static constexpr auto tie_archived(Record& record, std::tuple<Enumerations...>& aside) {
    const auto replaced = [&](auto& value) {
      using Value = std::remove_cvref_t<decltype(value)>;
      if constexpr (std::is_enum_v<Value>) {
        return std::tie(std::get<Value>(aside));
      } else {
        return flat(value);
      }
    };
    return std::apply([&](const auto&... field) { return std::tuple_cat(replaced(of(field, record))...); },
                      Record::fields());
  }

  // A zero for each enumeration among the fields, as a std::tuple.
  template <class Record>
  static constexpr auto enumerations() {
    const auto if_enumeration = [](const auto& field) {
      using Value = typename std::remove_cvref_t<decltype(field)>::Type;
      if constexpr (std::is_enum_v<Value>) {
        return std::tuple<Value>();
      } else {
        return std::tuple<>();
      }
    };
    return std::apply([&](const auto&... field) { return std::tuple_cat(if_enumeration(field)...); },
                      Record::fields());
  }

  template <class Record>
  static void check(const Record& record) {
    if constexpr (requires { record.check(); }) record.check();
  }

 private:
  template <class Owner, class Value, class Record>
  static constexpr auto& of(const Field<Owner, Value>& field, Record& record) {
    return record.*field.member;
  }
  template <class Owner, class Value, class Record>
  static constexpr auto& of(const ReadOnlyField<Owner, Value>& field, Record& record) {
    return record.*field.member_;
  }

  template <class Value>
  static constexpr auto flat(Value& value) {
    if constexpr (ArchivedByFields<std::remove_const_t<Value>> && !requires { value.check(); }) {
      return tie_archived(value);
    } else {
      return std::tie(value);
    }
  }
};

// Whether all fields are equal, in the order of the list.
template <class Record>
[[nodiscard]] constexpr bool equal_fields(const Record& a, const Record& b) {
  return FieldAccess::tie(a) == FieldAccess::tie(b);
}
