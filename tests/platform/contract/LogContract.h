#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <thread>
#include <vector>

#include "platform/Log.h"

namespace ovinta::platform::contract {

/// What every log promises. A rig is a fixture with `log_`, a pointer, and `read(count)`, which
/// waits for so many lines and gives them, without newlines.
template <class Rig>
class LogContract : public Rig {};
TYPED_TEST_SUITE_P(LogContract);

TYPED_TEST_P(LogContract, WritesEachLineOnceAndWholeWhateverOtherThreadsWrite) {
  const std::vector<std::string> lines{"one", "", "\xC3\xA9\t\"two\" %s", "one"};
  for (const auto& line : lines) this->log_->write(line);
  EXPECT_EQ(this->read(lines.size()), lines);

  constexpr int kThreads = 4, kLines = 100;
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    // Longer than a pipe takes at once, so that writes are cut up.
    threads.emplace_back([this, thread] {
      for (int line = 0; line < kLines; ++line) {
        this->log_->write(std::string(6000 + line, static_cast<char>('a' + thread)));
      }
    });
  }
  std::map<char, int> next;
  for (const auto& line : this->read(kThreads * kLines)) {
    ASSERT_EQ(line, std::string(6000 + next[line.c_str()[0]]++, line.c_str()[0]));
  }
}

REGISTER_TYPED_TEST_SUITE_P(LogContract, WritesEachLineOnceAndWholeWhateverOtherThreadsWrite);

}  // namespace ovinta::platform::contract
