#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "sandbox/Sandbox.h"
#include "tests/support/Command.h"

namespace ovinta {
namespace {

using test::CommandResult;
using testing::HasSubstr;

/// A sandbox and a data directory that commands share, as calls from one shell do.
class ClientTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(service_.start(), std::nullopt);
    std::string name = (std::filesystem::temp_directory_path() / "ovinta-cli-XXXXXX").string();
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    directory_ = name;
  }
  void TearDown() override { std::filesystem::remove_all(directory_); }

  CommandResult run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), OVINTA_COMMAND);
    arguments.insert(arguments.end(),
                     {"--data-dir", directory_.string(), "--base-url", service_.baseURL()});
    return test::runCommand(arguments);
  }

  sandbox::Sandbox service_;
  std::filesystem::path directory_;
};

struct Call {
  std::vector<std::string> arguments;
  int exitCode;
  std::string output;
};

TEST_F(ClientTest, OneCallsCustomerIsTheNextOnes) {
  const Call calls[] = {
      {{"orders", "event", "1001", "--customer-state", "arrived"}, 3, "by design: there is no"},
      {{"orders", "fetch"}, 1, "Error with Orders Manager: Could not load customer"},
      {{"customer", "create", "--name", "Alex", "--no-terms"}, 1, "status: 422"},
      {{"orders", "create", "--site", "42", "--partner-id", "P", "--name", "Alex"}, 0, "id: 1001"},
      {{"customer", "show", "--json"}, 0, "\"name\":\"Alex\""},
      {{"orders", "fetch", "--json"}, 0, "\"id\":1001"},
      {{"orders", "event", "1001", "--customer-state", "arrived"}, 0, ""},
      {{"orders", "event", "1001", "--customer-state", "gone"}, 2, "not in"},
      {{"orders", "event", "1001"}, 2, "required"},
      {{"orders", "rate", "1001", "9", "--json"}, 1, "\"status\":422"},
      {{"orders", "rate", "1001", "5"}, 0, ""},
      {{"config"}, 0, "Ovinta sandbox"},
      {{"customer", "logout"}, 0, ""},
      {{"customer", "show"}, 1, ""},
  };
  for (const Call& call : calls) {
    const CommandResult result = run(call.arguments);
    EXPECT_EQ(result.exitCode, call.exitCode) << testing::PrintToString(call.arguments);
    EXPECT_THAT(result.output, HasSubstr(call.output)) << testing::PrintToString(call.arguments);
  }
}

}  // namespace
}  // namespace ovinta
