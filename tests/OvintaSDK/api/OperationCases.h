#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "OvintaSDK/api/APIOperation.h"
#include "OvintaSDK/model/CreateCustomerInfo.h"
#include "OvintaSDK/model/CreateOrderInfo.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/LoginInfo.h"
#include "OvintaSDK/model/OrderEvent.h"
#include "OvintaSDK/model/SetNewPassword.h"
#include "OvintaSDK/model/SignUpInfo.h"
#include "tests/support/CannedRecords.h"

namespace ovinta::test {

/// Receives whether there is a result, and the error.
using Report = std::function<void(bool hasResult, const ErrorPtr& error)>;

/// Bodies of success answers that no operation can read which asks for a record.
inline const std::vector<std::string> kUnreadable{"",
                                                  "no JSON",
                                                  "5",
                                                  "[]",
                                                  "{}",
                                                  R"({"data":null})",
                                                  R"({"data":5})",
                                                  R"({"data":[{}]})",
                                                  R"({"data":{}})"};

/// What the operations are built from; by default what no service would know.
struct OperationInputs {
  Customer customer = test::customer();
  CreateCustomerInfo newCustomer{.customerInfo = {.name = "Bob"},
                                 .customerConsent = {.termsOfService = true}};
  SignUpInfo signUp{.emailAddress = "a", .password = "b", .passwordConfirmation = "c"};
  LoginInfo login{.emailAddress = "a", .password = "b"};
  SetNewPassword newPassword{.resetPasswordToken = "a", .password = "b", .confirmation = "c"};
  CreateOrderInfo newOrder{.siteID = 42, .partnerIdentifier = "P"};
  OrderEvent event = OrderEvent::rating(7, 5, {});
  std::string code = "CODE7";
  std::string claimCode = "CODE7";
};

/// One endpoint of the service, and what is expected of the operation that asks it.
struct OperationCase {
  std::string name;
  /// Makes the operation for a base URL; an empty report gives one without a callback.
  std::function<std::shared_ptr<APIOperation>(std::string apiURL, Report report)> make;
  /// The title of its errors.
  std::string_view title;
  /// A body that it accepts as a success.
  std::string answer;
  int success = 200;
  /// Bodies of success answers that it cannot read; none for one that reads no body.
  std::vector<std::string> unreadable = kUnreadable;
  /// How the log line about such a body begins; empty when there is none.
  std::string_view logPrefix = {};
};

/// One case for each endpoint.
std::vector<OperationCase> operationCases(const OperationInputs& inputs = {});

}  // namespace ovinta::test
