// Lets the archive see a class's own list of its fields.
//
//   class Point {
//    private:
//     friend FieldsOf;
//     template <class Self>
//     static auto fields(Self& self) { return std::tie(self.x_, self.y_); }
//   };
//
// A list of such objects is written and read without a call for each. What an archive may hold and the class
// refuses is refused by a function check() const, called when all fields have been read, which throws.
#pragma once

#include <type_traits>

struct FieldsOf {
  template <class Object>
  static constexpr auto list(Object& object) -> decltype(std::remove_const_t<Object>::fields(object)) {
    return std::remove_const_t<Object>::fields(object);
  }

  template <class Object>
  static void check(const Object& object) {
    if constexpr (requires { object.check(); }) object.check();
  }
};
