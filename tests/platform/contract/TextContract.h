#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/Location.h"
#include "platform/Text.h"
#include "platform/URL.h"

namespace ovinta::platform::contract {

/// What every `Text` promises. A rig is a fixture with `text_`, a pointer.
template <class Rig>
class TextContract : public Rig {};
TYPED_TEST_SUITE_P(TextContract);

TYPED_TEST_P(TextContract, KnowsUppercaseAndTitlecaseLetters) {
  for (const char32_t scalar : std::u32string_view(U"AZÀΩЖǅ𐐀")) {
    EXPECT_TRUE(this->text_->isUppercaseLetter(scalar)) << std::uint32_t(scalar);
  }
  for (const char32_t scalar : std::u32string_view(U"aß1_ -中ªⅠ\U0010FFFF")) {
    EXPECT_FALSE(this->text_->isUppercaseLetter(scalar)) << std::uint32_t(scalar);
  }
}

TYPED_TEST_P(TextContract, CapitalizesWordByWord) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"getting Sites for a region", "Getting Sites For A Region"},
      {"error URL", "Error Url"},
      {"can't  stop\tNOW\n", "Can't  Stop\tNow\n"},
      {"(ÉTÉ) ǆungla straße", "(Été) ǅungla Straße"},
      {"i İstanbul", "I İstanbul"},
      {" x", " X"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(this->text_->capitalized(text), expected);
}

TYPED_TEST_P(TextContract, ReadsDecimalTexts) {
  const std::pair<const char*, std::optional<double>> cases[] = {
      {"40.7", 40.7},     {"-73.98", -73.98}, {"+1", 1.0},    {".5", 0.5},    {"5.", 5.0},
      {"1.5e-3", 1.5e-3}, {"1E3", 1000.0},    {"-0", -0.0},   {"007", 7.0},   {"", {}},
      {"+", {}},          {"-", {}},          {".", {}},      {"+-1", {}},    {"--1", {}},
      {" 1", {}},         {"1 ", {}},         {"1,5", {}},    {"0x10", {}},   {"inf", {}},
      {"-nan", {}},       {"1e", {}},         {"1e999", {}},  {"-1e999", {}}, {"1.2.3", {}},
      {"e5", {}},         {"١", {}},          {"nan(1)", {}},
  };
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(this->text_->decimal(text), expected) << text;
  EXPECT_EQ(this->text_->decimal(std::string_view("1\0", 2)), std::nullopt);
}

REGISTER_TYPED_TEST_SUITE_P(TextContract, KnowsUppercaseAndTitlecaseLetters, CapitalizesWordByWord,
                            ReadsDecimalTexts);

/// What every URL format promises. A rig is a fixture with `urls_`, a pointer.
template <class Rig>
class URLFormatContract : public Rig {};
TYPED_TEST_SUITE_P(URLFormatContract);

TYPED_TEST_P(URLFormatContract, AcceptsTheGrammarOnly) {
  for (const char* text :
       {"https://api.example.com", "http://[::1]:8080/a?b=c#d", "https://h:/", "https://u@h:65535",
        "mailto:a@b", "m/v1/app", "//h/x", "https://h/%20", "HTTPS://H"}) {
    EXPECT_EQ(this->urls_->parse(text), URL{text});
  }
  for (const char* text : {"", "https://a b", " https://h", "https://hé/", "1:x", "https://h:65536",
                           "https://h:x", "https://[::1]x", "https://h/%zz", "https://h/\n"}) {
    EXPECT_FALSE(this->urls_->parse(text)) << text;
  }
}

TYPED_TEST_P(URLFormatContract, SetsQueryItems) {
  const std::vector<URLQueryItem> items{{"q", "Zoë's +&=?/#%"}, {"a b", "-._~"}, {"page", ""}};
  const std::string query = "?q=Zo%C3%AB%27s%20%2B%26%3D%3F%2F%23%25&a%20b=-._~&page=";
  const std::tuple<const char*, std::vector<URLQueryItem>, std::string> cases[] = {
      {"https://h", items, "https://h" + query},
      {"https://h/p", {{"k", "v"}}, "https://h/p?k=v"},
      {"https://h/p/?old=1#f?g", items, "https://h/p/" + query + "#f?g"},
      {"https://h#f", {}, "https://h?#f"},
      {"https://h/p", {}, "https://h/p?"},
  };
  for (const auto& [url, given, expected] : cases) {
    const URL result = this->urls_->withQueryItems({url}, given);
    EXPECT_EQ(result.text, expected);
    EXPECT_TRUE(this->urls_->parse(result.text)) << result.text;
  }
}

TYPED_TEST_P(URLFormatContract, AppendsPathComponents) {
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
  for (const auto& [url, component, expected] : cases) {
    const URL result = this->urls_->appendingPathComponent({url}, component);
    EXPECT_EQ(result.text, expected);
    EXPECT_TRUE(this->urls_->parse(result.text)) << result.text;
  }
}

REGISTER_TYPED_TEST_SUITE_P(URLFormatContract, AcceptsTheGrammarOnly, SetsQueryItems,
                            AppendsPathComponents);

/// What every geodesy promises. A rig is a fixture with `geodesy_`, a pointer.
template <class Rig>
class GeodesyContract : public Rig {};
TYPED_TEST_SUITE_P(GeodesyContract);

TYPED_TEST_P(GeodesyContract, MeasuresOnTheEllipsoid) {
  EXPECT_EQ(this->geodesy_->distance({40.7, -74}, {40.7, -74}), 0);
  // A degree of the equator and of the meridian.
  EXPECT_NEAR(this->geodesy_->distance({0, 0}, {0, 1}), 111319.491, 0.001);
  EXPECT_NEAR(this->geodesy_->distance({0, 0}, {1, 0}), 110574.389, 0.001);
}

REGISTER_TYPED_TEST_SUITE_P(GeodesyContract, MeasuresOnTheEllipsoid);

}  // namespace ovinta::platform::contract
