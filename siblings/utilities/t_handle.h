// A shared owner of one object on the free store, or of none.
//
//   THandle<Publication> publication(new Publication);
//   THandle<Publication> same = publication;      // both keep it alive
//   publication = THandle<Publication>::make();   // a new default one, in half the time of THandle(new ...)
//   if (!same.is_null()) same->print(std::cout);
//
// Handles made from one another share the object and a count of themselves; the last one to go deletes the
// object. A null handle owns a count too. Comparison is by identity of the object, never by its value.
// Threads: the count is a plain int, so an object and all its handles belong to one thread at a time.
#pragma once

#include <utilities/t_handle_common.h>

#include <memory>
#include <type_traits>
#include <utility>

template <class T>
class THandle {
 public:
  THandle() : THandle(nullptr) {}

  // Takes the object over. Deletes it when the count cannot be allocated, and passes std::bad_alloc on.
  explicit THandle(T* target) : target_(target), count_(new_count(target)) {}

  // A handle to a new T{arguments...}, a default one without arguments. The object and its count share one
  // block of the free store. Passes on what the constructor or the free store throws.
  template <class... Arguments>
  static THandle make(Arguments&&... arguments) {
    auto* const block = new Block(std::forward<Arguments>(arguments)...);
    return THandle(&block->object, block);
  }

  THandle(const THandle& other) noexcept : target_(other.target_), count_(other.count_) { ++count_->handles; }

  // Nothing happens when both already share their target, two null handles included.
  THandle& operator=(const THandle& other) {
    if (target_ == other.target_) return *this;
    // Taken first: `other` may live inside the object that is about to go, as in `h = h->next`.
    T* const target = other.target_;
    HandleCount* const count = other.count_;
    ++count->handles;
    T* const old_target = target_;
    HandleCount* const old_count = count_;
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
  [[nodiscard]] int use_count() const { return count_->handles; }

 private:
  // A count with its object.
  struct Block : HandleCount {
    // As `new T` makes it: {} would fill a large object with zeros first.
    Block() requires std::is_class_v<T> : HandleCount{.handles = 1, .place = with_object} {}
    template <class... Arguments>
    explicit Block(Arguments&&... arguments)
        : HandleCount{.handles = 1, .place = with_object}, object{std::forward<Arguments>(arguments)...} {}
    T object;
  };

  friend class NullHandles;
  THandle(T* target, HandleCount* count) : target_(target), count_(count) {}

  static HandleCount* new_count(T* target) {
    std::unique_ptr<T> guard(target);
    HandleCount* const count = new HandleCount;
    static_cast<void>(guard.release());
    return count;
  }

// Where one function holds two handles to an object, g++ takes the count for freed after the first; and it
// does not see that what was made in one block is not deleted as two.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuse-after-free"
#pragma GCC diagnostic ignored "-Wfree-nonheap-object"
#endif
  static void let_go(T* target, HandleCount* count) {
    if (--count->handles == 0) discard(target, count);
  }

  // Not inlined: handles come and go everywhere, objects seldom.
  [[gnu::noinline]] static void discard(T* target, HandleCount* count) {
    if constexpr (!std::is_abstract_v<T>) {
      if (count->place == HandleCount::with_object) {
        delete static_cast<Block*>(count);
        return;
      }
    }
    if (count->place == HandleCount::among_nulls) {
      NullHandles::let_go(count);
      return;
    }
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
  HandleCount* count_;
};
