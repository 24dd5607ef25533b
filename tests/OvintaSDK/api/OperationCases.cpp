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
#include "OvintaSDK/core/facade/Library.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/CannedRecords.h"

namespace ovinta::test {
namespace {

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
    return std::make_shared<Operation>(APIClient(Library::process().context(), std::move(apiURL)),
                                       inputs..., std::move(callback));
  };
}

std::vector<OperationCase> customerCases(const OperationInputs& inputs) {
  const auto customer = std::make_shared<const Customer>(inputs.customer);
  const std::string answer = dataText(customerRecord());
  return {
      {"CreateCustomer", maker<CreateCustomerOperation>(inputs.newCustomer), Title::createCustomer,
       answer},
      {"UpdateCustomer", maker<UpdateCustomerOperation>(customer, CustomerInfo{.name = "Bob"}),
       Title::updateCustomer, answer},
      {"GetCustomer", maker<GetCustomerOperation>(inputs.customer.token), Title::getCustomer,
       answer},
      {"SignUp", maker<SignUpOperation>(customer, inputs.signUp), Title::signUp, answer},
      {"Login", maker<LoginOperation>(inputs.login.emailAddress, inputs.login.password),
       Title::signIn, answer},
      {"RequestPasswordReset", maker<RequestPasswordResetOperation>(inputs.login.emailAddress),
       Title::resetPassword, "anything", 202, kReadsNoBody},
      {"SetNewPassword", maker<SetNewPasswordOperation>(inputs.newPassword), Title::signIn, answer},
  };
}

std::vector<OperationCase> orderCases(const OperationInputs& inputs) {
  const auto customer = std::make_shared<const Customer>(inputs.customer);
  const std::string answer = dataText(requiredOrder());
  return {
      {"GetOrders", maker<GetOrdersOperation>(customer), Title::getOrders, R"({"data":[]})", 200,
       kUnreadable, "Unexpected error Getting Orders: "},
      {"CreateOrder", maker<CreateOrderOperation>(customer, inputs.newOrder), Title::createOrder,
       answer},
      {"CreateOrderEvent",
       maker<CreateOrderEventOperation>(customer, inputs.event, [](const OrderEvent&) {}),
       Title::createEvent, "anything", 200, kReadsNoBody},
      {"GetOrderWithCode", maker<GetOrderWithCodeOperation>(inputs.claimCode), Title::lookUp,
       answer},
      {"ClaimOrderWithCode",
       maker<ClaimOrderWithCodeOperation>(customer, inputs.claimCode,
                                          ClaimOrderInfo{.pushToken = "token"}),
       Title::claimOrder, answer},
      {"UpdateOrder",
       maker<UpdateOrderOperation>(inputs.customer.token, inputs.code, std::string("token")),
       "Error Updating Order", answer},
  };
}

std::vector<OperationCase> otherCases() {
  using Number = std::optional<std::int64_t>;
  using Text = std::optional<std::string>;
  const platform::Coordinate center{.latitude = 40.7, .longitude = -74};
  const char* const page = R"({"data":[],"pages":{"current":1,"count":1,"per":25}})";
  return {
      {"GetSites", maker<GetSitesOperation>(Text("b & c"), Number(2)), Title::getSites, page, 200,
       kUnreadable, "Unexpected error Getting Sites: "},
      {"GetSitesForRegion", maker<GetSitesForRegionOperation>(center, 0.5, Number(3), Number(25)),
       Title::getSitesForRegion, page, 200, kUnreadable, "Unexpected error Getting Sites: "},
      {"GetAppInfo", maker<GetAppInfoOperation>(), Title::getConfiguration, R"({"data":{}})", 200,
       std::vector<std::string>{"", "no JSON"}},
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
