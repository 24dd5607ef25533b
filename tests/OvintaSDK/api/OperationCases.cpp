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

const std::string kCode = "CODE7";

CustomerPtr currentCustomer() { return std::make_shared<const Customer>(customer()); }

std::vector<OperationCase> customerCases() {
  const CreateCustomerInfo newCustomer{.customerInfo = {.name = "Bob"},
                                       .customerConsent = {.termsOfService = true}};
  const SignUpInfo signUp{.emailAddress = "a", .password = "b", .passwordConfirmation = "c"};
  const SetNewPassword password{.resetPasswordToken = "a", .password = "b", .confirmation = "c"};
  const std::string answer = dataText(customerRecord());
  return {
      {.name = "CreateCustomer",
       .make = maker<CreateCustomerOperation>(newCustomer),
       .method = "POST",
       .path = "m/v1/customer",
       .body = R"({"data":{"name":"Bob","terms_of_service":true,"age_verification":false}})",
       .title = "Error Creating Profile",
       .answer = answer},
      {.name = "UpdateCustomer",
       .make = maker<UpdateCustomerOperation>(currentCustomer(), CustomerInfo{.name = "Bob"}),
       .method = "PATCH",
       .path = "m/v1/customer",
       .isAuthorized = true,
       .body = R"({"data":{"name":"Bob"}})",
       .title = "Error Updating Profile",
       .answer = answer},
      {.name = "GetCustomer",
       .make = maker<GetCustomerOperation>(customer().token),
       .method = "GET",
       .path = "m/v1/customer",
       .isAuthorized = true,
       .title = "Error Getting Customer",
       .answer = answer},
      {.name = "SignUp",
       .make = maker<SignUpOperation>(currentCustomer(), signUp),
       .method = "PATCH",
       .path = "m/v1/customer/sign_up",
       .isAuthorized = true,
       .body = R"({"data":{"email":"a","password":"b","password_confirmation":"c"}})",
       .title = "Error Signing Up",
       .answer = answer},
      {.name = "Login",
       .make = maker<LoginOperation>(std::string("a"), std::string("b")),
       .method = "POST",
       .path = "m/v1/customer/sign_in",
       .body = R"({"data":{"email":"a","password":"b"}})",
       .title = "Error Signing In",
       .answer = answer},
      {.name = "RequestPasswordReset",
       .make = maker<RequestPasswordResetOperation>(std::string("a")),
       .method = "POST",
       .path = "m/v1/customer/password",
       .body = R"({"data":{"email":"a"}})",
       .title = "Error Request New Password",
       .success = 202,
       .answer = "anything",
       .unreadable = {}},
      {.name = "SetNewPassword",
       .make = maker<SetNewPasswordOperation>(password),
       .method = "PATCH",
       .path = "m/v1/customer/password",
       .body = R"({"data":{"reset_password_token":"a","password":"b","confirmation":"c"}})",
       .title = "Error Signing In",
       .answer = answer},
  };
}

std::vector<OperationCase> orderCases() {
  const CreateOrderInfo newOrder{.siteID = 42, .partnerIdentifier = "P"};
  const std::string answer = dataText(requiredOrder());
  return {
      {.name = "GetOrders",
       .make = maker<GetOrdersOperation>(currentCustomer()),
       .method = "GET",
       .path = "m/v1/orders",
       .isAuthorized = true,
       .title = "Error Getting Orders",
       .answer = R"({"data":[]})",
       .logPrefix = "Unexpected error Getting Orders: "},
      {.name = "CreateOrder",
       .make = maker<CreateOrderOperation>(currentCustomer(), newOrder),
       .method = "POST",
       .path = "m/v1/orders",
       .isAuthorized = true,
       .body = R"({"data":{"site_id":42,"partner_identifier":"P"}})",
       .title = "Error Creating Order",
       .answer = answer},
      {.name = "CreateOrderEvent",
       .make =
           maker<CreateOrderEventOperation>(currentCustomer(), OrderEvent::rating(7, 5, "Fine")),
       .method = "POST",
       .path = "m/v1/events",
       .isAuthorized = true,
       .body = R"({"data":{"order_id":7,"event_type":"customer_rating",)"
               R"("customer_rating_value":5,"customer_rating_comments":"Fine"}})",
       .title = "Error Creating Order Event",
       .answer = "anything",
       .unreadable = {}},
      {.name = "GetOrderWithCode",
       .make = maker<GetOrderWithCodeOperation>(kCode),
       .method = "GET",
       .path = "m/v1/orders/CODE7/edit",
       .title = "Error Finding Redeem Code",
       .answer = answer},
      {.name = "ClaimOrderWithCode",
       .make = maker<ClaimOrderWithCodeOperation>(currentCustomer(), kCode, ClaimOrderInfo{}),
       .method = "PUT",
       .path = "m/v1/orders/CODE7",
       .isAuthorized = true,
       .body = R"({"data":{"push_token":null}})",
       .title = "Error Claiming Order",
       .answer = answer},
      {.name = "UpdateOrder",
       .make = maker<UpdateOrderOperation>(customer().token, kCode, std::string("token")),
       .method = "PUT",
       .path = "m/v1/orders/CODE7",
       .isAuthorized = true,
       .body = R"({"data":{"push_token":"token"}})",
       .title = "Error Updating Order",
       .answer = answer},
  };
}

std::vector<OperationCase> otherCases() {
  using Number = std::optional<std::int64_t>;
  using Text = std::optional<std::string>;
  const platform::Coordinate center{.latitude = 40.7, .longitude = -74};
  const OperationCase sites{.name = "GetSites",
                            .make = maker<GetSitesOperation>(Text(), Number()),
                            .method = "GET",
                            .path = "m/v1/sites?",
                            .title = "Error Getting Sites",
                            .answer = R"({"data":[],"pages":{"current":1,"count":1,"per":25}})",
                            .logPrefix = "Unexpected error Getting Sites: "};
  OperationCase search = sites;
  OperationCase region = sites;
  search.name = "GetSitesByQuery";
  search.make = maker<GetSitesOperation>(Text("b & c"), Number(2));
  search.path += "q=b%20%26%20c&page=2";
  region.name = "GetSitesForRegion";
  region.make = maker<GetSitesForRegionOperation>(center, 500.0, Number(), Number(25));
  region.path += "latitude=40.7&longitude=-74.0&radius=500.0&per=25";
  region.title = "Error Getting Sites For A Region";
  OperationCase regionPage = region;
  regionPage.name = "GetSitesForRegionByPage";
  regionPage.make = maker<GetSitesForRegionOperation>(center, 0.5, Number(3), Number(25));
  regionPage.path = "m/v1/sites?latitude=40.7&longitude=-74.0&radius=0.5&page=3&per=25";

  std::vector<OperationCase> cases{sites, search, region, regionPage};
  cases.push_back({.name = "GetAppInfo",
                   .make = maker<GetAppInfoOperation>(),
                   .method = "GET",
                   .path = "m/v1/app",
                   .title = "Error Getting Configuration",
                   .answer = R"({"data":{}})",
                   .unreadable = {"", "no JSON"}});
  return cases;
}

}  // namespace

std::vector<OperationCase> operationCases() {
  std::vector<OperationCase> all;
  for (const auto& cases : {customerCases(), orderCases(), otherCases()}) {
    all.insert(all.end(), cases.begin(), cases.end());
  }
  return all;
}

}  // namespace ovinta::test
