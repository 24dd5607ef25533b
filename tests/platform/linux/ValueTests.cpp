#include <gtest/gtest.h>

#include "platform/UUID.h"
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

TEST(ExitingProcess, ReadsAndWritesValuesToTheVeryEnd) {
  for (int run = 0; run < 10; ++run) {
    const auto result = test::runCommand({OVINTA_VALUE_EXIT_HELPER});
    ASSERT_EQ(result.exitCode, 0) << "run " << run << ": " << result.output;
  }
}

}  // namespace
}  // namespace ovinta::platform::linuxos
