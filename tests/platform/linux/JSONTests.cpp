#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "platform/JSON.h"

namespace ovinta::platform {
namespace {

constexpr auto kMaximum = std::numeric_limits<std::int64_t>::max();
constexpr auto kMinimum = std::numeric_limits<std::int64_t>::min();

TEST(JSONReadingTest, RefusesWhatIsNotJSON) {
  const std::string deep(2000, '[');
  // Whole texts of one value, of finite numbers and sound UTF-8; no comments, no byte order mark.
  for (const std::string_view text : {"",
                                      " ",
                                      "[1,]",
                                      "{'a':1}",
                                      "1 2",
                                      "NaN",
                                      "01",
                                      "\"a",
                                      "\"\xff\"",
                                      "\"\\ud800\"",
                                      "[1]x",
                                      "// c\n1",
                                      "\xef\xbb\xbf{}",
                                      "{\"a\"}",
                                      "123456789012345678901x",
                                      "[12345678901234567890.]",
                                      "[1e400,01]",
                                      "1e400e1",
                                      "[1e400,-]",
                                      "-",
                                      "[1e400,\"\\",
                                      "1.e400",
                                      "1e+",
                                      deep.c_str()}) {
    EXPECT_FALSE(JSONDocument::parse(text)) << text;
    EXPECT_FALSE(parseJSON(text)) << text;
  }
  EXPECT_FALSE(JSONDocument::parse(std::string_view("1\0", 2)));
}

TEST(JSONReadingTest, ReadsEveryKindOfValue) {
  const std::pair<const char*, Value> cases[] = {
      {"null", nullptr},
      {"-0", 0},
      {"9223372036854775807", kMaximum},
      {"-9223372036854775808", kMinimum},
      {"18446744073709551615", 18446744073709551615.0},
      {"1E+2", 100.0},
      {R"("a\"\\\/\b\f\n\r\t\u00e9\ud83d\ude00")", "a\"\\/\b\f\n\r\té😀"},
      {R"({"b":[1,[true,null],{"x":{}}],"a":"t","b2":-1.5})",
       Dictionary{{"a", "t"},
                  {"b", List{1, List{true, nullptr}, Dictionary{{"x", Dictionary{}}}}},
                  {"b2", -1.5}}},
      {R"({"a":1,"a":2})", Dictionary{{"a", 2}}},
      // Numbers of any size are JSON, and cost their neighbours nothing; digits inside strings stay
      // as they are.
      {R"(["\\\"123456789012345678901",123456789012345678901,-9223372036854775809,7,1e400,
           9223372036854775807,{"-1e400":-1e400,"1e999":0.5}])",
       List{"\\\"123456789012345678901", 123456789012345678901.0, -0x1p63, 7, nullptr, kMaximum,
            Dictionary{{"-1e400", nullptr}, {"1e999", 0.5}}}},
      // As a double where that holds it, or where the text may be a double's shortest.
      {"[0.5,9007199254740993.0,9007199254740994.0,1e16,9007199254740993.5,1.2345678901e18]",
       List{0.5, 9007199254740993, 9007199254740994.0, 1e16, 9007199254740994.0, 1.2345678901e18}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(parseJSON(text), expected) << text;
}

TEST(JSONReadingTest, TellsIntegersFromOtherNumbers) {
  const std::tuple<std::string, std::optional<std::int64_t>, std::optional<double>> cases[] = {
      {"7", 7, 7.0},
      {"5.0", 5, 5.0},
      {"1e3", 1000, 1000.0},
      {"5.5", {}, 5.5},
      {"9223372036854775807", kMaximum, 0x1p63},
      {"9223372036854775808", {}, 0x1p63},
      {"9223372036854775808.0", {}, 0x1p63},
      {"-9223372036854775808.0", kMinimum, -0x1p63},
      {"-9223372036854775809", {}, -0x1p63},
      {"-9223372036854775809.0", {}, -0x1p63},
      {"9007199254740993.0", 9007199254740993, 0x1p53},
      {"-90071992547409930000E-4", -9007199254740993, -0x1p53},
      {"9223372036854775807.00", kMaximum, 0x1p63},
      {"9007199254740993.5", {}, 9007199254740994.0},
      {std::string(400, '9'), {}, {}},
      {"1" + std::string(400, '0') + "e-400", 1, 1.0},
      {"0e99999999999999999999", 0, 0.0},
      {"1e-99999999999999999999", {}, 0.0},
      {"0.99999999999999999999", {}, 1.0},
      {"7.00000000000000000001", {}, 7.0},
      {"7.00000000000000000000", 7, 7.0},
      {"1e99999999999999999999", {}, {}},
      {"\"7\"", {}, {}},
  };
  for (const auto& [text, integer, number] : cases) {
    const auto document = JSONDocument::parse(text);
    ASSERT_TRUE(document) << text;
    EXPECT_EQ(document->root().integer(), integer) << text;
    EXPECT_EQ(document->root().number(), number) << text;
  }
}

TEST(JSONReadingTest, ReadsPastWhatIsNestedDeep) {
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '[') + "1e400" + std::string(depth, ']');
  };
  const auto document = JSONDocument::parse("{\"a\":" + nested(100'000) + ",\"b\":7}");
  ASSERT_TRUE(document);
  std::string_view key;
  JSONValue value;
  JSONObjectCursor cursor(document->root());
  ASSERT_TRUE(cursor.next(key, value) && cursor.next(key, value));
  EXPECT_EQ(value.integer(), 7);
  // The copy goes down to its limit; the parser's next text is as good as any.
  const Value copy = document->root().copy();
  EXPECT_EQ(*find<std::int64_t>(*copy.as<Dictionary>(), "b"), 7);
  std::size_t depth = 0;
  const Value* inner = &copy.as<Dictionary>()->at("a");
  for (; inner->as<List>(); ++depth) inner = &inner->as<List>()->at(0);
  EXPECT_EQ(depth, 1023u);
  EXPECT_FALSE(JSONDocument::parse(nested(2000) + "]"));
  EXPECT_TRUE(JSONDocument::parse(nested(10)));
}

TEST(JSONReadingTest, WalksMembersInTheOrderOfTheTextPastNestedValues) {
  auto parsed = JSONDocument::parse(R"({"z":{"in":[1,2]},"a":[[],{}],"z":"last"})");
  ASSERT_TRUE(parsed);
  const JSONDocument document = std::move(*parsed);  // values stay valid across a move
  JSONObjectCursor cursor(document.root());
  std::string seen;
  std::string_view key;
  JSONValue value;
  while (cursor.next(key, value)) seen += std::string(key) + writeJSON(value.copy()) + ";";
  EXPECT_EQ(seen, R"(z{"in":[1,2]};a[[],{}];z"last";)");

  const auto empty = JSONDocument::parse("[{},[]]");
  JSONArrayCursor elements(empty->root());
  ASSERT_TRUE(elements.next(value));
  EXPECT_FALSE(JSONObjectCursor(value).next(key, value));
  ASSERT_TRUE(elements.next(value));
  EXPECT_EQ(JSONArrayCursor(value).size(), 0u);
}

TEST(JSONReadingTest, DocumentsOutliveLaterOnesAndTheirThreads) {
  std::vector<JSONDocument> documents;
  for (const std::size_t size : {10u, 100'000u, 2'000'000u, 5u}) {
    std::thread([&] {
      documents.push_back(*JSONDocument::parse("[\"" + std::string(size, 'x') + "\"]"));
      EXPECT_TRUE(JSONDocument::parse(R"({"other":["text"]})"));
    }).join();
    JSONValue value;
    JSONArrayCursor(documents.back().root()).next(value);
    EXPECT_EQ(value.string(), std::string(size, 'x'));
  }
  EXPECT_EQ(documents.front().root().copy(), Value(List{std::string(10, 'x')}));
}

TEST(JSONReadingTest, ConsumesATextAsItReadsACopy) {
  EXPECT_FALSE(JSONDocument::consume(""));
  EXPECT_FALSE(JSONDocument::consume("[1"));
  EXPECT_EQ(JSONDocument::consume("[7.0]")->root().copy(), parseJSON("[7.0]"));
  // What a large text says of a number can be asked for as long as the document lives.
  for (const std::string number : {"7", "9007199254740993.0", "1e400", "18446744073709551615"}) {
    const std::string text = "[\"" + std::string(5'000'000, 'x') + "\"," + number + "]";
    const auto document = JSONDocument::consume(text);
    ASSERT_TRUE(document);
    JSONValue value;
    JSONArrayCursor cursor(document->root());
    ASSERT_TRUE(cursor.next(value) && value.string()->size() == 5'000'000 && cursor.next(value));
    const auto alone = JSONDocument::parse(number);
    EXPECT_EQ(value.integer(), alone->root().integer()) << number;
    EXPECT_EQ(value.number(), alone->root().number()) << number;
    EXPECT_EQ(value.copy(), alone->root().copy()) << number;
  }
}

TEST(JSONWritingTest, FindsWhatTakesAnEscapeWhereverItStands) {
  std::vector<std::string> characters{"é", "😀"};
  for (char c = 0; c < 0x7f; ++c) characters.emplace_back(1, c);
  for (const std::string& character : characters) {
    for (std::size_t length = 0; length < 20; ++length) {
      for (std::size_t place = 0; place <= length; ++place) {
        std::string text(length, 'a');
        text.insert(place, character);
        const std::string written = writeJSON(text);
        EXPECT_EQ(parseJSON(written), text);
        EXPECT_EQ(written.size() > text.size() + 2,
                  (static_cast<unsigned char>(character[0]) < 0x20 || character == "\"" ||
                   character == "\\"));
      }
    }
  }
}

TEST(JSONWritingTest, WritesTheShortestExactForm) {
  const std::pair<Value, const char*> cases[] = {
      {kMinimum, "-9223372036854775808"},
      {0.1, "0.1"},
      {100.0, "100"},
      {-0.0, "-0.0"},
      {std::numeric_limits<std::uint64_t>::max(), "18446744073709551616"},
      {-73.98765432109876, "-73.98765432109876"},
      {1e300, "1e+300"},
      {Dictionary{{"b", List{true, nullptr, List{}}}, {"a", Dictionary{}}},
       R"({"a":{},"b":[true,null,[]]})"},
      {List{Dictionary{{"a", 1}}, Dictionary{{"b", 2}}, "c"}, R"([{"a":1},{"b":2},"c"])"},
      {"a/\"\\\b\t\n\f\r\x01\x1f\x7fé😀", R"("a/\"\\\b\t\n\f\r\u0001\u001f)"
                                         "\x7fé😀\""},
      {std::string("\0x", 2), R"("\u0000x")"},
  };
  for (const auto& [value, expected] : cases) EXPECT_EQ(writeJSON(value), expected);
  JSONWriter writer;
  writer.number(-61.1f);
  EXPECT_EQ(writer.take(), "-61.1");
}

TEST(JSONWritingTest, RefusesWhatJSONCannotHold) {
  const Value values[] = {std::nan(""),   HUGE_VAL, -HUGE_VAL,        "\xff",
                          "\xed\xa0\x80", "\xc3",   List{"\xc0\xaf"}, Dictionary{{"\x80", 1}}};
  for (const Value& value : values) {
    try {
      ADD_FAILURE() << "written as " << writeJSON(value);
    } catch (const CodingError& error) {
      EXPECT_EQ(error.kind(), CodingError::Kind::invalidValue);
    }
  }
}

}  // namespace
}  // namespace ovinta::platform
