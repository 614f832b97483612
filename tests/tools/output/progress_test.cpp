#include "tools/output/progress.h"

#include <gtest/gtest.h>

#include <sstream>
#include <thread>

namespace {

// Longer than the shortest time between two updates.
void wait_for_the_next_update() {
  std::this_thread::sleep_for(std::chrono::milliseconds(110));
}

struct Watched {
  std::ostringstream out;
  std::ostringstream messages;
  Terminal terminal{out, messages, true, true};
};

TEST(Progress, IsShownWhenThereHasBeenTimeToRead) {
  Watched watched;
  Progress progress(watched.terminal, 510, "files");
  progress.show(1);
  EXPECT_EQ(watched.messages.str(), "");
  wait_for_the_next_update();
  progress.show(17);
  progress.show(18);
  EXPECT_EQ(watched.messages.str(), "\r17/510 files");
}

TEST(Progress, IsWipedOutOnce) {
  Watched watched;
  Progress progress(watched.terminal, 2, "files");
  progress.clear();
  EXPECT_EQ(watched.messages.str(), "");
  wait_for_the_next_update();
  progress.show(1);
  progress.clear();
  progress.clear();
  EXPECT_EQ(watched.messages.str(), "\r1/2 files\r\x1b[K");
}

TEST(Progress, LeavesNoLineWhenItGoes) {
  Watched watched;
  {
    Progress progress(watched.terminal, 2, "files");
    wait_for_the_next_update();
    progress.show(1);
  }
  EXPECT_EQ(watched.messages.str(), "\r1/2 files\r\x1b[K");
}

TEST(Progress, IsNotForFiles) {
  Watched watched;
  watched.terminal.messages_are_terminal = false;
  Progress progress(watched.terminal, 2, "files");
  wait_for_the_next_update();
  progress.show(1);
  progress.clear();
  EXPECT_EQ(watched.messages.str(), "");
}

}  // namespace
