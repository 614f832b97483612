// What all handles share, whatever they point to.
#pragma once

#include <utilities/export.h>
#include <utilities/null_handle_error.h>

#include <cstdint>

// The count that the handles of one object share, on the free store. Begins with the plain int.
struct HandleCount {
  enum Place : std::uint8_t {
    alone,
    with_object,  // in one block, made and deleted together
    among_nulls   // in one block with the counts of other null handles
  };
  int handles = 1;
  Place place = alone;
  std::uint8_t index = 0;  // of one among nulls
};

class UTILITIES_EXPORT THandleCommon {
 public:
  // Throws NullHandleError.
  [[noreturn]] static void null_handle_error();
};

template <class T>
class THandle;

// Makes several null handles whose counts share one block of the free store.
//
//   NullHandles nulls(2);
//   THandle<Cell> cell = nulls.make<Cell>();
//   THandle<Publication> publication = nulls.make<Publication>();
//
// Each handle owns its count as any other. The block goes with the last of the counts.
class UTILITIES_EXPORT NullHandles {
 public:
  static constexpr int most = 16;

  // Throws std::length_error for more than `most` handles, and passes std::bad_alloc on.
  explicit NullHandles(int handles);
  NullHandles(const NullHandles&) = delete;
  NullHandles& operator=(const NullHandles&) = delete;
  // Lets the counts go that were not asked for.
  ~NullHandles();

  // To be called once for each of the handles.
  template <class T>
  [[nodiscard]] THandle<T> make() noexcept {
    return THandle<T>(nullptr, next_++);
  }

 private:
  template <class T>
  friend class THandle;

  // Lets one count among nulls go, of which no handle is left.
  static void let_go(HandleCount* count) noexcept;

  HandleCount* next_;
  HandleCount* end_;
};
