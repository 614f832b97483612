// A shared owner of one object on the free store, or of none.
//
//   THandle<Publication> publication(new Publication);
//   THandle<Publication> same = publication;      // both keep it alive
//   if (!same.is_null()) same->print(std::cout);
//
// Handles made from one another share the object and a count of themselves; the last one to go deletes the
// object. A null handle owns a count too. Comparison is by identity of the object, never by its value.
// Threads: the count is a plain int, so an object and all its handles belong to one thread at a time.
#pragma once

#include <utilities/t_handle_common.h>

#include <memory>

template <class T>
class THandle {
 public:
  THandle() : THandle(nullptr) {}

  // Takes the object over. Deletes it when the count cannot be allocated, and passes std::bad_alloc on.
  explicit THandle(T* target) : target_(target), count_(new_count(target)) {}

  THandle(const THandle& other) noexcept : target_(other.target_), count_(other.count_) { ++*count_; }

  // Nothing happens when both already share their target, two null handles included.
  THandle& operator=(const THandle& other) {
    if (target_ == other.target_) return *this;
    // Taken first: `other` may live inside the object that is about to go, as in `h = h->next`.
    T* const target = other.target_;
    int* const count = other.count_;
    ++*count;
    T* const old_target = target_;
    int* const old_count = count_;
    target_ = target;
    count_ = count;
    let_go(old_target, old_count);
    return *this;
  }

  ~THandle() { let_go(target_, count_); }

  // Both throw NullHandleError when there is no object.
  T& operator*() const { return *checked(); }
  T* operator->() const { return checked(); }

  friend bool operator==(const THandle& a, const THandle& b) { return a.target_ == b.target_; }
  friend bool operator!=(const THandle& a, const THandle& b) { return a.target_ != b.target_; }

  [[nodiscard]] T* get() const { return target_; }
  [[nodiscard]] bool is_null() const { return target_ == nullptr; }
  [[nodiscard]] int use_count() const { return *count_; }

 private:
  static int* new_count(T* target) {
    std::unique_ptr<T> guard(target);
    int* const count = new int(1);
    static_cast<void>(guard.release());
    return count;
  }

// Where one function holds two handles to an object, g++ takes the count for freed after the first.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuse-after-free"
#endif
  static void let_go(T* target, int* count) {
    if (--*count != 0) return;
    delete count;
    delete target;
  }
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

  T* checked() const {
    if (target_ == nullptr) [[unlikely]] {
      THandleCommon::null_handle_error();
    }
    return target_;
  }

  T* target_;
  int* count_;
};
