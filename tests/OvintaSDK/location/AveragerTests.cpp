#include "OvintaSDK/location/Averager.h"

#include <gtest/gtest.h>

#include <limits>

namespace ovinta {
namespace {

TEST(Averager, IsAPlainMeanOfTheFirstTenSamples) {
  Averager averager;
  float sum = 0;
  for (int i = 1; i <= 10; ++i) {
    const auto sample = static_cast<float>(i * i);
    sum += sample;
    averager.add(sample);
    EXPECT_FLOAT_EQ(averager.value, sum / static_cast<float>(i));
    EXPECT_EQ(averager.count, i);
  }
}

TEST(Averager, GivesLaterSamplesATenthOfTheWeight) {
  Averager averager;
  for (int i = 0; i < 10; ++i) averager.add(-60);
  averager.add(-70);
  EXPECT_FLOAT_EQ(averager.value, -61);
  averager.add(-61);
  averager.add(39);
  EXPECT_FLOAT_EQ(averager.value, -51);
  EXPECT_EQ(averager.count, 13);
}

TEST(Averager, IgnoresMaxCount) {
  Averager averager{.maxCount = 2};
  for (const float sample : {3.0F, 6.0F, 9.0F}) averager.add(sample);
  EXPECT_FLOAT_EQ(averager.value, 6);
}

TEST(AveragerDeathTest, EndsTheProcessWhenTheCountOverflows) {
  Averager averager{.count = std::numeric_limits<std::int64_t>::max()};
  EXPECT_DEATH(averager.add(1), "overflow");
}

}  // namespace
}  // namespace ovinta
