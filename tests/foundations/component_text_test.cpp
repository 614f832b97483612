#include <database_entry/foundations/component_text.h>
#include <gtest/gtest.h>

#include <sstream>

namespace {

struct Printed {
  virtual ~Printed() = default;
  virtual void print(std::ostream& os) const { os << "base"; }
};

struct Derived : Printed {
  void print(std::ostream& os) const override { os << "derived"; }
};

struct Other {};

}  // namespace

template <>
inline constexpr bool is_printed_component<Printed> = true;

namespace {

template <class T>
concept HasHandleText = requires(std::ostream& os, const THandle<T>& handle) {
  os << handle;
};
static_assert(HasHandleText<Printed>);
static_assert(!HasHandleText<Other>);

std::string text_of(const THandle<Printed>& handle) {
  std::ostringstream os;
  os << handle << "|";
  return os.str();
}

TEST(ComponentText, IsTheComponentsOwnTextAndNothingAroundIt) {
  EXPECT_EQ(text_of(THandle<Printed>(new Printed)), "base|");
}

TEST(ComponentText, ComesFromTheMostDerivedComponent) {
  EXPECT_EQ(text_of(THandle<Printed>(new Derived)), "derived|");
}

TEST(ComponentText, OfANullHandleSaysSo) {
  EXPECT_EQ(text_of(THandle<Printed>()), "<zero handle>|");
}

}  // namespace
