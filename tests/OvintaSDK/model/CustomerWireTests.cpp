#include "OvintaSDK/model/wire/CustomerWire.h"

#include <gmock/gmock.h>

#include "tests/support/SDKFixture.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

using platform::Dictionary;
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

TEST_F(CustomerWireTest, CreationIsOneFlatObject) {
  const CustomerConsent consent{.termsOfService = true, .ageVerification = false};
  EXPECT_EQ(
      encoded(CreateCustomerInfo{.customerInfo = customer().info, .customerConsent = consent}),
      R"({"name":"Ann","car_type":"Van","car_color":"Red","license_plate":"ABC 123",)"
      R"("phone":"555","terms_of_service":true,"age_verification":false})");
  EXPECT_EQ(encoded(CreateCustomerInfo{.customerInfo = {.name = ""}, .customerConsent = {}}),
            R"({"name":"","terms_of_service":false,"age_verification":false})");
}

/// Writes the record, reads the text back, and writes it again; each field must be required.
template <class Record>
void checkTexts(const Record& record, const std::string& text) {
  EXPECT_EQ(encoded(record), text);
  EXPECT_EQ(encoded(decoded<Record>(text)), text);
  const auto fields = *platform::parseJSON(text)->as<Dictionary>();
  for (const auto& [key, value] : fields) {
    EXPECT_THAT(decodingFailure<Record>(platform::writeJSON(without(fields, key))),
                StartsWith("key not found"))
        << key;
  }
}

TEST_F(CustomerWireTest, AccountRequests) {
  checkTexts(SignUpInfo{.emailAddress = "a", .password = "b", .passwordConfirmation = "c"},
             R"({"email":"a","password":"b","password_confirmation":"c"})");
  checkTexts(LoginInfo{.emailAddress = "a", .password = ""}, R"({"email":"a","password":""})");
  checkTexts(RequestPasswordReset{.email = "a"}, R"({"email":"a"})");
  checkTexts(SetNewPassword{.resetPasswordToken = "a", .password = "b", .confirmation = "c"},
             R"({"reset_password_token":"a","password":"b","confirmation":"c"})");
  checkTexts(CustomerConsent{.termsOfService = true, .ageVerification = false},
             R"({"terms_of_service":true,"age_verification":false})");
}

TEST_F(CustomerWireTest, BadTextCannotBeWritten) {
  EXPECT_THAT(encodingFailure(LoginInfo{.emailAddress = "\xFF", .password = ""}),
              StartsWith("invalid value"));
}

}  // namespace
}  // namespace ovinta::test
