#include <gtest/gtest.h>
#include <utilities/vorn_log.h>

#include <iostream>
#include <sstream>

#include "support/streams.h"

namespace {

// What the log was set to before any test.
TEST(VORNLogAtStart, WritesToStandardError) {
  testing::internal::CaptureStderr();
  VORNLog::start_debug_line(0) << "first";
  VORNLog::end_debug_line();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "first\n");
}

class VORNLogTest : public testing::Test {
 protected:
  ~VORNLogTest() override {
    VORNLog::level_ = 0;
    VORNLog::minimum_level_ = 0;
    VORNLog::set_stream(std::cerr);
  }
};

TEST_F(VORNLogTest, StartsWithBothLevelsAtZero) {
  EXPECT_EQ(VORNLog::level_, 0);
  EXPECT_EQ(VORNLog::minimum_level_, 0);
}

TEST_F(VORNLogTest, WritesTheLineAndEndsIt) {
  std::ostringstream log;
  VORNLog::set_stream(log);
  VORNLog::start_debug_line(1) << "text";
  VORNLog::end_debug_line();
  EXPECT_EQ(log.str(), "text\n");
}

TEST_F(VORNLogTest, FlushesTheLineWhenItEnds) {
  NotedStream log;
  VORNLog::set_stream(log);
  VORNLog::start_debug_line(1) << "text";
  EXPECT_TRUE(log.flushes().empty());
  VORNLog::end_debug_line();
  EXPECT_EQ(log.flushes(), std::vector<std::size_t>{5});
}

TEST_F(VORNLogTest, IsActiveBetweenTheTwoLevels) {
  VORNLog::level_ = 3;
  VORNLog::minimum_level_ = 2;
  EXPECT_FALSE(VORNLog::active(1));
  EXPECT_TRUE(VORNLog::active(2));
  EXPECT_TRUE(VORNLog::active(3));
  EXPECT_FALSE(VORNLog::active(4));
}

}  // namespace
