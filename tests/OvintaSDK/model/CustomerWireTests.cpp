#include "OvintaSDK/model/wire/CustomerWire.h"

#include <gmock/gmock.h>

#include "tests/support/SDKFixture.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

using ::testing::StartsWith;

using CustomerWireTest = SDKFixture;

TEST_F(CustomerWireTest, CustomerHoldsItsDetailsInTheSameObject) {
  EXPECT_EQ(decoded<Customer>(platform::writeJSON(customerRecord())), customer());
  EXPECT_EQ(encoded(customer().info), R"({"name":"Ann","car_type":"Van","car_color":"Red",)"
                                      R"("license_plate":"ABC 123","phone":"555"})");
  for (const auto& [key, value] : customerRecord()) {
    SCOPED_TRACE(key);
    const bool isRequired = key == "name" || key == "api_token";
    const auto absent = platform::writeJSON(without(customerRecord(), key));
    const auto null = platform::writeJSON(with(customerRecord(), {{key, nullptr}}));
    const auto wrong = platform::writeJSON(with(customerRecord(), {{key, 5}}));
    EXPECT_THAT(decodingFailure<Customer>(absent), StartsWith(isRequired ? "key not" : "none"));
    EXPECT_THAT(decodingFailure<Customer>(null), StartsWith(isRequired ? "value not" : "none"));
    EXPECT_THAT(decodingFailure<Customer>(wrong), StartsWith("type mismatch at " + key));
    if (!isRequired) {
      EXPECT_EQ(decoded<Customer>(absent), decoded<Customer>(null));
      EXPECT_NE(decoded<Customer>(absent), customer());
    }
  }
}

TEST_F(CustomerWireTest, IsRegisteredWithAnAddress) {
  const std::pair<platform::Value, bool> cases[] = {
      {nullptr, false}, {"", false}, {" ", true}, {"ann@example.org", true}};
  for (const auto& [email, registered] : cases) {
    const auto text = platform::writeJSON(with(customerRecord(), {{"email", email}}));
    EXPECT_EQ(decoded<Customer>(text).registered(), registered) << text;
  }
}

}  // namespace
}  // namespace ovinta::test
