#include "OvintaSDK/core/TextHelpers.h"

#include <gtest/gtest.h>

#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using TextHelpersTest = SDKFixture;

TEST_F(TextHelpersTest, CamelCaseFallsIntoWordsBeforeEachCapital) {
  const std::pair<const char*, const char*> cases[] = {
      {"ABC", "A B C"},
      {"GetCustomerOperation", "Get Customer Operation"},
      {"already Two", "already  Two"},
      {"grünÄpfel", "grün Äpfel"},
      {"aǅ", "a ǅ"},
      {"a𝐀", "a 𝐀"},
      // Bytes that are not UTF-8, also a sequence that is cut off, pass through.
      {"a\xC3", "a\xC3"},
      {"\xFF\x41", "\xFF A"},
  };
  for (const auto& [text, words] : cases) EXPECT_EQ(wordsFromCamelCase(text), words) << text;
}

}  // namespace
}  // namespace ovinta::test
