#include "tests/OvintaSDK/api/OperationCases.h"

#include <utility>

#include "OvintaSDK/api/ClaimOrderWithCodeOperation.h"
#include "OvintaSDK/api/CreateCustomerOperation.h"
#include "OvintaSDK/api/CreateOrderEventOperation.h"
#include "OvintaSDK/api/CreateOrderOperation.h"
#include "OvintaSDK/api/GetAppInfoOperation.h"
#include "OvintaSDK/api/GetCustomerOperation.h"
#include "OvintaSDK/api/GetOrderWithCodeOperation.h"
#include "OvintaSDK/api/GetOrdersOperation.h"
#include "OvintaSDK/api/GetSitesForRegionOperation.h"
#include "OvintaSDK/api/GetSitesOperation.h"
#include "OvintaSDK/api/LoginOperation.h"
#include "OvintaSDK/api/RequestPasswordResetOperation.h"
#include "OvintaSDK/api/SetNewPasswordOperation.h"
#include "OvintaSDK/api/SignUpOperation.h"
#include "OvintaSDK/api/UpdateCustomerOperation.h"
#include "OvintaSDK/api/UpdateOrderOperation.h"
#include "tests/support/CannedRecords.h"

namespace ovinta::test {
namespace {

constexpr std::nullopt_t kNoBody = std::nullopt;
const std::vector<std::string> kReadsNoBody;

/// A maker of operations that are built from a base URL, the inputs and a callback.
template <class Operation, class... Inputs>
auto maker(Inputs... inputs) {
  return [=](std::string apiURL, Report report) -> std::shared_ptr<APIOperation> {
    typename Operation::Callback callback;
    if (report) {
      callback = [report = std::move(report)](const auto& result, const ErrorPtr& error) {
        if constexpr (requires { static_cast<bool>(result); }) {
          report(static_cast<bool>(result), error);
        } else {
          report(error == nullptr, error);
        }
      };
    }
    return std::make_shared<Operation>(std::move(apiURL), inputs..., std::move(callback));
  };
}

std::vector<OperationCase> customerCases(const OperationInputs& inputs) {
  const auto customer = std::make_shared<const Customer>(inputs.customer);
  const std::string answer = dataText(customerRecord());
  return {
      {"CreateCustomer", maker<CreateCustomerOperation>(inputs.newCustomer), "POST m/v1/customer",
       false, R"({"data":{"name":"Bob","terms_of_service":true,"age_verification":false}})",
       "Error Creating Profile", answer},
      {"UpdateCustomer", maker<UpdateCustomerOperation>(customer, CustomerInfo{.name = "Bob"}),
       "PATCH m/v1/customer", true, R"({"data":{"name":"Bob"}})", "Error Updating Profile", answer},
      {"GetCustomer", maker<GetCustomerOperation>(inputs.customer.token), "GET m/v1/customer", true,
       kNoBody, "Error Getting Customer", answer},
      {"SignUp", maker<SignUpOperation>(customer, inputs.signUp), "PATCH m/v1/customer/sign_up",
       true, R"({"data":{"email":"a","password":"b","password_confirmation":"c"}})",
       "Error Signing Up", answer},
      {"Login", maker<LoginOperation>(inputs.login.emailAddress, inputs.login.password),
       "POST m/v1/customer/sign_in", false, R"({"data":{"email":"a","password":"b"}})",
       "Error Signing In", answer},
      {"RequestPasswordReset", maker<RequestPasswordResetOperation>(inputs.login.emailAddress),
       "POST m/v1/customer/password", false, R"({"data":{"email":"a"}})",
       "Error Request New Password", "anything", 202, kReadsNoBody},
      {"SetNewPassword", maker<SetNewPasswordOperation>(inputs.newPassword),
       "PATCH m/v1/customer/password", false,
       R"({"data":{"reset_password_token":"a","password":"b","confirmation":"c"}})",
       "Error Signing In", answer},
  };
}

std::vector<OperationCase> orderCases(const OperationInputs& inputs) {
  const auto customer = std::make_shared<const Customer>(inputs.customer);
  const std::string answer = dataText(requiredOrder());
  return {
      {"GetOrders", maker<GetOrdersOperation>(customer), "GET m/v1/orders", true, kNoBody,
       "Error Getting Orders", R"({"data":[]})", 200, kUnreadable,
       "Unexpected error Getting Orders: "},
      {"CreateOrder", maker<CreateOrderOperation>(customer, inputs.newOrder), "POST m/v1/orders",
       true, R"({"data":{"site_id":42,"partner_identifier":"P"}})", "Error Creating Order", answer},
      {"CreateOrderEvent", maker<CreateOrderEventOperation>(customer, inputs.event),
       "POST m/v1/events", true,
       R"({"data":{"order_id":7,"event_type":"customer_rating","customer_rating_value":5}})",
       "Error Creating Order Event", "anything", 200, kReadsNoBody},
      {"GetOrderWithCode", maker<GetOrderWithCodeOperation>(inputs.claimCode),
       "GET m/v1/orders/CODE7/edit", false, kNoBody, "Error Finding Redeem Code", answer},
      {"ClaimOrderWithCode",
       maker<ClaimOrderWithCodeOperation>(customer, inputs.claimCode, ClaimOrderInfo{}),
       "PUT m/v1/orders/CODE7", true, R"({"data":{"push_token":null}})", "Error Claiming Order",
       answer},
      {"UpdateOrder",
       maker<UpdateOrderOperation>(inputs.customer.token, inputs.code, std::string("token")),
       "PUT m/v1/orders/CODE7", true, R"({"data":{"push_token":"token"}})", "Error Updating Order",
       answer},
  };
}

std::vector<OperationCase> otherCases() {
  using Number = std::optional<std::int64_t>;
  using Text = std::optional<std::string>;
  const platform::Coordinate center{.latitude = 40.7, .longitude = -74};
  const auto sites = [](const char* name, auto make, std::string query, const char* title) {
    return OperationCase{name,
                         make,
                         "GET m/v1/sites?" + query,
                         false,
                         kNoBody,
                         title,
                         R"({"data":[],"pages":{"current":1,"count":1,"per":25}})",
                         200,
                         kUnreadable,
                         "Unexpected error Getting Sites: "};
  };
  return {
      sites("GetSites", maker<GetSitesOperation>(Text("b & c"), Number(2)), "q=b%20%26%20c&page=2",
            "Error Getting Sites"),
      sites("GetSitesForRegion",
            maker<GetSitesForRegionOperation>(center, 0.5, Number(3), Number(25)),
            "latitude=40.7&longitude=-74.0&radius=0.5&page=3&per=25",
            "Error Getting Sites For A Region"),
      {"GetAppInfo",
       maker<GetAppInfoOperation>(),
       "GET m/v1/app",
       false,
       kNoBody,
       "Error Getting Configuration",
       R"({"data":{}})",
       200,
       {"", "no JSON"}},
  };
}

}  // namespace

std::vector<OperationCase> operationCases(const OperationInputs& inputs) {
  std::vector<OperationCase> all;
  for (const auto& cases : {customerCases(inputs), orderCases(inputs), otherCases()}) {
    all.insert(all.end(), cases.begin(), cases.end());
  }
  return all;
}

}  // namespace ovinta::test
