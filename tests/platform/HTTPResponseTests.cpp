#include <gtest/gtest.h>

#include "platform/URLSession.h"

namespace ovinta::platform {
namespace {

TEST(HTTPResponse, FindsTheFirstFieldOfANameWithoutRegardToCase) {
  const HTTPResponse response{
      410, {{"Content-Type", "text/plain"}, {"X-A", "1"}, {"x-a", "2"}, {"X-Empty", ""}}};
  EXPECT_EQ(response.header("content-TYPE"), "text/plain");
  EXPECT_EQ(response.header("x-A"), "1");
  EXPECT_EQ(response.header("X-Empty"), "");
  EXPECT_EQ(response.header("X-"), std::nullopt);
  EXPECT_EQ(response.header("X-A "), std::nullopt);
}

}  // namespace
}  // namespace ovinta::platform
