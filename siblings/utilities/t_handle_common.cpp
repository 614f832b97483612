#include <utilities/t_handle_common.h>

#include <cstddef>
#include <stdexcept>

NullHandleError::NullHandleError() : std::logic_error("Null handle") {}

void THandleCommon::null_handle_error() {
  throw NullHandleError();
}

namespace {

struct CountsOfNulls {
  int left;  // counts that have handles, or wait for one
  HandleCount counts[NullHandles::most];
};

}  // namespace

NullHandles::NullHandles(int handles) {
  if (handles > most) throw std::length_error("NullHandles: more handles than one block has counts for");
  auto* const block = new CountsOfNulls{handles, {}};
  next_ = block->counts;
  end_ = next_ + handles;
  for (HandleCount* count = next_; count != end_; ++count) {
    count->place = HandleCount::among_nulls;
    count->index = static_cast<std::uint8_t>(count - next_);
  }
}

NullHandles::~NullHandles() {
  while (next_ != end_) let_go(next_++);
}

void NullHandles::let_go(HandleCount* count) noexcept {
  HandleCount* const first = count - count->index;
  auto* const block =
      reinterpret_cast<CountsOfNulls*>(reinterpret_cast<char*>(first) - offsetof(CountsOfNulls, counts));
  if (--block->left == 0) delete block;
}
