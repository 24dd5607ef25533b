#include <gtest/gtest.h>
#include <httplib.h>

#include <regex>

#include "platform/JSON.h"
#include "sandbox/Sandbox.h"
#include "tests/cli/Shell.h"
#include "tests/cli/Transcript.h"

namespace ovinta {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;

/// Asks each endpoint of the service at least once. `$service` is its address, `$code` the
/// redemption code of an order that is nobody's.
constexpr const char* kEveryOperation = R"bash(
home=$(mktemp -d)
ask() { $ovinta "$@" --data-dir $home > /dev/null 2>&1; }
ask config --base-url $service
ask customer create --name Alex --car-type Van --car-color Red --license-plate 'A 1' --phone 5550100
ask customer update --car-color Blue
ask customer sign-up --email a@example.com --password secret1
ask orders create --site 42 --partner-id P1 --name Alex --state delayed
ask orders fetch --push-token device
ask orders event 1002 --customer-state en_route
ask orders rate 1002 5 --comment 'Quick & friendly'
ask orders find $code
ask orders claim $code --name Alex --consent
ask sites search 'a & b' --page 2
ask sites region --latitude 40.7411 --longitude -73.9897 --radius 500 --per 5
ask customer request-password --email a@example.com
ask customer set-password --reset-token unknown --password secret2
ask customer login --email a@example.com --password secret1
ask customer login-token unknown
rm -r $home
)bash";

/// The record under "data" of the service's answer.
Value dataOf(const httplib::Result& answer) {
  const auto value = answer ? platform::parseJSON(answer->body) : std::nullopt;
  const auto* object = value ? value->as<Dictionary>() : nullptr;
  return object ? object->find("data")->second : Value();
}

/// The request as it came, but for the values of passwords, which the service does not list.
std::string textOf(const Dictionary& request) {
  const auto field = [](const Dictionary& record, const char* key) {
    return *platform::find<std::string>(record, key);
  };
  std::string text = field(request, "method") + " " + field(request, "path") + "\n";
  for (const Value& header : *platform::find<List>(request, "headers")) {
    const auto& line = *header.as<Dictionary>();
    text += field(line, "name") + ": " + field(line, "value") + "\n";
  }
  return text + "\n" + field(request, "body") + "\n\n";
}

TEST(Wire, everyOperationSendsTheSameBytesAsEver) {
  sandbox::Sandbox sandbox;
  ASSERT_EQ(sandbox.start(), std::nullopt);
  httplib::Client service(sandbox.baseURL());
  const Value offered = dataOf(
      service.Post("/sandbox/orders", R"({"data":{"site_id":42,"partner_identifier":"P2"}})", ""));
  ASSERT_TRUE(offered.as<Dictionary>());
  const auto* code = platform::find<std::string>(*offered.as<Dictionary>(), "redemption_code");

  test::shell("service=" + sandbox.baseURL() + " code=" + *code + kEveryOperation);
  std::string sent;
  const Value requests = dataOf(service.Get("/sandbox/requests"));
  for (const Value& request : *requests.as<List>()) sent += textOf(*request.as<Dictionary>());
  sent = std::regex_replace(sent, std::regex("Host: .*"), "Host: SERVICE");
  sent = std::regex_replace(sent, std::regex("SDK-Version: .*"), "SDK-Version: VERSION");
  EXPECT_EQ(sent, test::transcript("requests.txt"));
}

}  // namespace
}  // namespace ovinta
