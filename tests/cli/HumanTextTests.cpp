#include "cli/client/HumanText.h"

#include <gtest/gtest.h>

#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

using namespace std::string_literals;

TEST(HumanText, showsWhatATerminalWouldActOn) {
  const std::pair<std::string, std::string> cases[] = {
      {"Zoë, 東京 \U0001F600", "Zoë, 東京 \U0001F600"},
      {"a\x1b[2J\a\r\n\0z"s, "a\\x1b[2J\\x07\\x0d\\x0a\\x00z"},
      {"\x1f \x7f \u0080\u009f\u00a0", "\\x1f \\x7f \\x80\\x9f\u00a0"},
      {"\u202e1.25\u202a\u2066\u2069", "\\u202e1.25\\u202a\\u2066\\u2069"},
      {"\u200e\u200f\u061c", "\\u200e\\u200f\\u061c"},
      {"\u200b\u200d\u2060\ufeff\u00ad", "\\u200b\\u200d\\u2060\\ufeff\\xad"},
      {"\u2027\u2028\u2029\u2030", "\u2027\\u2028\\u2029\u2030"},
      {"\U000e0041\U0001d173", "\\U000e0041\\U0001d173"},
      {"\u3164\uffa0\uff9f", "\\u3164\\uffa0\uff9f"},
      {"\xff \xe2\x80", "\\xff \\xe2\\x80"},
  };
  for (const auto& [text, visible] : cases) {
    EXPECT_EQ(visibleText(text), visible);
    EXPECT_EQ(visibleText(visible), visible);
  }
  EXPECT_EQ(visibleText("a\nb\r\u2028", true), "a\nb\\x0d\\u2028");
}

TEST(HumanText, losesNothingInJSON) {
  const platform::Value value = platform::Dictionary{
      {"\u202ekey", "Zoë \U0001F600 \\ \" \x1b \x7f \u0085\U000e0041\U0001d17a"}};
  const std::string text = visibleJSON(value);
  EXPECT_EQ(text,
            "{\"\\u202ekey\":\"Zoë \U0001F600 \\\\ \\\" \\u001b \\u007f "
            "\\u0085\\udb40\\udc41\\ud834\\udd7a\"}");
  EXPECT_EQ(platform::parseJSON(text), value);
}

}  // namespace
}  // namespace ovinta::cli
