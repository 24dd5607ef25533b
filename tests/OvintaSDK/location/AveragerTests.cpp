#include "OvintaSDK/location/Averager.h"

#include <gtest/gtest.h>

#include <limits>

namespace ovinta {
namespace {

TEST(Averager, GivesSamplesAfterTheTenthATenthOfTheWeight) {
  // Whatever the greatest count is said to be.
  Averager averager{.maxCount = 2};
  float sum = 0;
  for (int i = 1; i <= 10; ++i) {
    const auto sample = static_cast<float>(i);
    sum += sample;
    averager.add(sample);
    EXPECT_FLOAT_EQ(averager.value, sum / sample) << "a plain mean";
  }
  averager.add(15.5);
  EXPECT_FLOAT_EQ(averager.value, 6.5);
  averager.add(-3.5);
  EXPECT_FLOAT_EQ(averager.value, 5.5);
  EXPECT_EQ(averager.count, 12);
}

TEST(AveragerDeathTest, EndsTheProcessWhenTheCountOverflows) {
  Averager averager{.count = std::numeric_limits<std::int64_t>::max()};
  EXPECT_DEATH(averager.add(1), "overflow");
}

}  // namespace
}  // namespace ovinta
