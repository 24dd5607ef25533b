#include <gtest/gtest.h>

#include "platform/UUID.h"
#include "platform/linux/text/TextServices.h"
#include "tests/support/Command.h"

namespace ovinta::platform::linuxos {
namespace {

TEST(TextTest, KnowsUppercaseAndTitlecaseLetters) {
  const auto text = makeText();
  for (const char32_t scalar : std::u32string_view(U"AZÀΩЖǅ𐐀")) {
    EXPECT_TRUE(text->isUppercaseLetter(scalar)) << std::uint32_t(scalar);
  }
  for (const char32_t scalar : std::u32string_view(U"aß1_ -中ªⅠ\U0010FFFF")) {
    EXPECT_FALSE(text->isUppercaseLetter(scalar)) << std::uint32_t(scalar);
  }
}

TEST(TextTest, CapitalizesWordByWord) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"getting Sites for a region", "Getting Sites For A Region"},
      {"error URL", "Error Url"},
      {"can't  stop\tNOW\n", "Can't  Stop\tNow\n"},
      {"(ÉTÉ) ǆungla straße", "(Été) ǅungla Straße"},
      {"i İstanbul", "I İstanbul"},
      {" x", " X"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(makeText()->capitalized(text), expected);
}

TEST(TextTest, ReadsDecimalTexts) {
  const std::pair<const char*, std::optional<double>> cases[] = {
      {"40.7", 40.7},     {"-73.98", -73.98}, {"+1", 1.0},    {".5", 0.5},    {"5.", 5.0},
      {"1.5e-3", 1.5e-3}, {"1E3", 1000.0},    {"-0", -0.0},   {"007", 7.0},   {"", {}},
      {"+", {}},          {"-", {}},          {".", {}},      {"+-1", {}},    {"--1", {}},
      {" 1", {}},         {"1 ", {}},         {"1,5", {}},    {"0x10", {}},   {"inf", {}},
      {"-nan", {}},       {"1e", {}},         {"1e999", {}},  {"-1e999", {}}, {"1.2.3", {}},
      {"e5", {}},         {"١", {}},          {"nan(1)", {}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(makeText()->decimal(text), expected) << text;
  EXPECT_EQ(makeText()->decimal(std::string_view("1\0", 2)), std::nullopt);
}

TEST(URLFormatTest, AcceptsTheGrammarOnly) {
  const auto urls = makeURLFormat();
  for (const char* text :
       {"https://api.example.com", "http://[::1]:8080/a?b=c#d", "https://h:/", "https://u@h:65535",
        "mailto:a@b", "m/v1/app", "//h/x", "https://h/%20", "HTTPS://H"}) {
    EXPECT_EQ(urls->parse(text), URL{text});
  }
  for (const char* text : {"", "https://a b", " https://h", "https://hé/", "1:x", "https://h:65536",
                           "https://h:x", "https://[::1]x", "https://h/%zz", "https://h/\n"}) {
    EXPECT_FALSE(urls->parse(text)) << text;
  }
}

TEST(URLFormatTest, SetsQueryItems) {
  const std::vector<URLQueryItem> items{{"q", "Zoë's +&=?/#%"}, {"a b", "-._~"}, {"page", ""}};
  const std::string query = "?q=Zo%C3%AB%27s%20%2B%26%3D%3F%2F%23%25&a%20b=-._~&page=";
  const std::tuple<const char*, std::vector<URLQueryItem>, std::string> cases[] = {
      {"https://h", items, "https://h" + query},
      {"https://h/p", {{"k", "v"}}, "https://h/p?k=v"},
      {"https://h/p/?old=1#f?g", items, "https://h/p/" + query + "#f?g"},
      {"https://h#f", {}, "https://h?#f"},
      {"https://h/p", {}, "https://h/p?"},
  };
  const auto urls = makeURLFormat();
  for (const auto& [url, given, expected] : cases) {
    const URL result = urls->withQueryItems({url}, given);
    EXPECT_EQ(result.text, expected);
    EXPECT_TRUE(urls->parse(result.text)) << result.text;
  }
}

TEST(URLFormatTest, AppendsPathComponents) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"https://h", "m/v1/app", "https://h/m/v1/app"},
      {"https://h", "/m/x", "https://h/m/x"},
      {"https://h/", "m/x", "https://h/m/x"},
      {"https://h/", "/m/x", "https://h//m/x"},
      {"https://", "m/x", "https:///m/x"},
      {"https://h/base", "m/x", "https://h/base/m/x"},
      {"https://h:1?q=/#f", "m", "https://h:1/m?q=/#f"},
      {"https://h/a?", "m", "https://h/a/m?"},
      {"https://h", "a b?c#d%é/.:@+", "https://h/a%20b%3Fc%23d%25%C3%A9/.:@+"},
  };
  const auto urls = makeURLFormat();
  for (const auto& [url, component, expected] : cases) {
    const URL result = urls->appendingPathComponent({url}, component);
    EXPECT_EQ(result.text, expected);
    EXPECT_TRUE(urls->parse(result.text)) << result.text;
  }
}

TEST(UUIDTest, ReadsOneFormAndWritesUpperCase) {
  const auto uuid = UUID::parse("e621e1f8-C36C-495A-93FC-0C247A3E6E5F");
  ASSERT_TRUE(uuid);
  EXPECT_EQ(uuid->bytes[0], 0xe6);
  EXPECT_EQ(uuid->bytes[15], 0x5f);
  EXPECT_EQ(uuid->text(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
  for (const char* text :
       {"", "E621E1F8C36C495A93FC0C247A3E6E5F", "{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}",
        "{621E1F8-C36C-495A-93FC-0C247A3E6E5}", "E621E1F8-C36C-495A-93FC-0C247A3E6E5G",
        "E621E1F8-C36C-495A-93FC-0C247A3E6E5", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F0",
        "E621E1F-8C36C-495A-93FC-0C247A3E6E5F", "E621E1F8-C36C-495A-93FC-0C24-A3E6E5F",
        " 621E1F8-C36C-495A-93FC-0C247A3E6E5F", "E621E1F8+C36C-495A-93FC-0C247A3E6E5F"}) {
    EXPECT_FALSE(UUID::parse(text)) << text;
  }
}

TEST(ExitingProcess, ReadsAndWritesValuesToTheVeryEnd) {
  for (int run = 0; run < 10; ++run) {
    const auto result = test::runCommand({OVINTA_VALUE_EXIT_HELPER});
    ASSERT_EQ(result.exitCode, 0) << "run " << run << ": " << result.output;
  }
}

TEST(GeodesyTest, MeasuresOnTheEllipsoid) {
  const auto geodesy = makeGeodesy();
  EXPECT_EQ(geodesy->distance({40.7, -74}, {40.7, -74}), 0);
  // A degree of the equator and of the meridian.
  EXPECT_NEAR(geodesy->distance({0, 0}, {0, 1}), 111319.491, 0.001);
  EXPECT_NEAR(geodesy->distance({0, 0}, {1, 0}), 110574.389, 0.001);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
