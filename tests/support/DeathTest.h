#pragma once

#include <gtest/gtest.h>

#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::test {

/// Has death tests run in a process of their own, whose fixtures are made anew. It ends before it
/// can put anything away: its temporary directories go with this object.
class DeathTest {
 public:
  DeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

 private:
  TemporaryDirectory directory_;
  ScopedVariable variable_{"TMPDIR", directory_.path().c_str()};
};

}  // namespace ovinta::test
