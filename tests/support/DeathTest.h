#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace ovinta::test {

/// Has death tests run in a process of their own, whose fixtures are made anew. It ends before it
/// can put anything away: its temporary directories go with this object.
class DeathTest {
 public:
  DeathTest() {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    if (const char* before = std::getenv(kVariable)) before_ = before;
    setenv(kVariable, directory_.path().c_str(), 1);
  }
  ~DeathTest() { before_ ? setenv(kVariable, before_->c_str(), 1) : unsetenv(kVariable); }
  DeathTest(const DeathTest&) = delete;
  DeathTest& operator=(const DeathTest&) = delete;

 private:
  static constexpr const char* kVariable = "TMPDIR";

  TemporaryDirectory directory_;
  std::optional<std::string> before_;
};

}  // namespace ovinta::test
