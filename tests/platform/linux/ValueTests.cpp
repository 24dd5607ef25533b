#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <boost/url/parse.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cctype>
#include <random>
#include <stdexcept>

#include "platform/UUID.h"
#include "platform/linux/text/BoostURLFormat.h"
#include "tests/support/Command.h"

namespace ovinta::platform::linuxos {
namespace {

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

TEST(UUIDTest, IsReadAndWrittenAsBoostDoesIt) {
  std::mt19937 random(3);
  const auto boostReads = [](const std::string& text) -> std::optional<UUID> {
    try {
      const auto read = boost::uuids::string_generator()(text);
      return std::bit_cast<UUID>(read);
    } catch (const std::runtime_error&) {
      return std::nullopt;
    }
  };
  for (int i = 0; i < 20'000; ++i) {
    boost::uuids::uuid uuid;
    for (auto& byte : uuid) byte = static_cast<std::uint8_t>(random());
    std::string text = boost::uuids::to_string(uuid);
    EXPECT_EQ(UUID::parse(text), std::bit_cast<UUID>(uuid));
    std::string upper = text;
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    EXPECT_EQ(std::bit_cast<UUID>(uuid).text(), upper);
    // One byte is another one; the generator's other forms are of other lengths.
    text[random() % text.size()] = static_cast<char>(random());
    EXPECT_EQ(UUID::parse(text), boostReads(text)) << text;
  }
}

/// What the path is extended by must stand where Boost sees the path's end.
TEST(URLFormatTest, AppendsWhereBoostSeesTheEndOfThePath) {
  const linuxos::BoostURLFormat format;
  const std::vector<std::string_view> parts[] = {
      {"", "a:", "http:", "a+b.c-1:"},
      {"", "//", "//h", "//u:p@h:1", "//[::1]:", "///"},
      {"", "/", "x", "/x", "/x/", "x/y", "x:y", "/x:y/", "//x/"},
      {"", "?", "?/q:/", "?q#"},
      {"", "#", "#/f:/"}};
  std::vector<std::string> texts{""};
  for (const auto& choices : parts) {
    std::vector<std::string> longer;
    for (const std::string& text : texts) {
      for (const std::string_view choice : choices) longer.push_back(text + std::string(choice));
    }
    texts = std::move(longer);
  }
  int accepted = 0;
  for (const std::string& text : texts) {
    const auto url = format.parse(text);
    if (!url) continue;
    ++accepted;
    const auto view = boost::urls::parse_uri_reference(text).value();
    const bool hasSlash = std::string_view(view.encoded_path()).ends_with('/');
    std::string expected = text;
    expected.insert(std::min(text.find_first_of("?#"), text.size()), hasSlash ? "c%20" : "/c%20");
    EXPECT_EQ(format.appendingPathComponent(*url, "c ").text, expected) << text;
  }
  EXPECT_GT(accepted, 500);
}

TEST(ExitingProcess, ReadsAndWritesValuesToTheVeryEnd) {
  for (int run = 0; run < 10; ++run) {
    const auto result = test::runCommand({OVINTA_VALUE_EXIT_HELPER});
    ASSERT_EQ(result.exitCode, 0) << "run " << run << ": " << result.output;
  }
}

}  // namespace
}  // namespace ovinta::platform::linuxos
