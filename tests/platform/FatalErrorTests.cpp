#include "platform/FatalError.h"

#include <gmock/gmock.h>

#include <csignal>

namespace ovinta::platform {
namespace {

TEST(FatalErrorTest, WritesOneLineAndAborts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(fatalError("broken", {"OvintaSDK/Ovinta", 155}), testing::KilledBySignal(SIGABRT),
              "^Fatal error: broken: file OvintaSDK/Ovinta, line 155\n$");
  EXPECT_EXIT(fatalError("broken"), testing::KilledBySignal(SIGABRT), "^Fatal error: broken\n$");
  EXPECT_EXIT(fatalError(), testing::KilledBySignal(SIGABRT), "^$");
}

}  // namespace
}  // namespace ovinta::platform
