// Output streams that fail at a chosen character: what stood before it was written, the failure reaches the
// caller, and the object is as it was.
#include <gtest/gtest.h>
#include <reliability/support/heap.h>
#include <reliability/support/subject_test.h>

#include <sstream>
#include <streambuf>

namespace {

struct OutputFailure {};

// Takes `room` characters; the next one is a failure, which is not a std::exception.
class ThrowingBuffer : public std::streambuf {
 public:
  explicit ThrowingBuffer(std::size_t room) : room_(room) { taken_.reserve(room); }
  [[nodiscard]] const std::string& taken() const { return taken_; }

 protected:
  int_type overflow(int_type character) override {
    if (taken_.size() == room_) throw OutputFailure();
    taken_ += traits_type::to_char_type(character);
    return character;
  }

 private:
  std::size_t room_;
  std::string taken_;
};

using OntoABadStream = SubjectTest;

TEST_P(OntoABadStream, APrintPassesTheFailureAtAnyCharacterOn) {
  const auto object = full();
  const std::string text = printed(*object);
  for (std::size_t room = 0; room < text.size(); ++room) {
    const std::size_t live = heap::live_bytes();
    {
      ThrowingBuffer buffer(room);
      std::ostream os(&buffer);
      os.exceptions(std::ios::badbit);
      EXPECT_THROW(object->print(os), OutputFailure) << room;
      EXPECT_EQ(buffer.taken(), text.substr(0, room));
    }
    ASSERT_EQ(heap::live_bytes(), live) << room;
  }
  EXPECT_EQ(archived(*object), whole());
}

TEST_P(OntoABadStream, APrintOntoAStreamThatKeepsSilentEndsToo) {
  const auto object = full();
  ThrowingBuffer buffer(0);
  std::ostream os(&buffer);
  object->print(os);
  EXPECT_EQ(os.bad(), !printed(*object).empty());
}

INSTANTIATE_TEST_SUITE_P(Everything, OntoABadStream, testing::ValuesIn(subjects()),
                         testing::PrintToStringParamName());

}  // namespace
