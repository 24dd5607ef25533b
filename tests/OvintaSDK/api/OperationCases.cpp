#include "tests/OvintaSDK/api/OperationCases.h"

#include <utility>

#include "OvintaSDK/api/CreateCustomerOperation.h"
#include "OvintaSDK/api/CreateOrderEventOperation.h"
#include "OvintaSDK/api/CreateOrderOperation.h"
#include "OvintaSDK/api/GetOrdersOperation.h"
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
        report(static_cast<bool>(result), error);
      };
    }
    return std::make_shared<Operation>(std::move(apiURL), inputs..., std::move(callback));
  };
}

}  // namespace

std::vector<OperationCase> operationCases() {
  const auto current = std::make_shared<const Customer>(customer());
  const CreateCustomerInfo newCustomer{.customerInfo = {.name = "Bob"},
                                       .customerConsent = {.termsOfService = true}};
  const CreateOrderInfo newOrder{.siteID = 42, .partnerIdentifier = "P"};
  const std::string order = dataText(requiredOrder());
  return {
      {.name = "CreateCustomer",
       .make = maker<CreateCustomerOperation>(newCustomer),
       .method = "POST",
       .path = "m/v1/customer",
       .body = R"({"data":{"name":"Bob","terms_of_service":true,"age_verification":false}})",
       .title = "Error Creating Profile",
       .answer = dataText(customerRecord())},
      {.name = "GetOrders",
       .make = maker<GetOrdersOperation>(current),
       .method = "GET",
       .path = "m/v1/orders",
       .isAuthorized = true,
       .title = "Error Getting Orders",
       .answer = R"({"data":[]})"},
      {.name = "CreateOrder",
       .make = maker<CreateOrderOperation>(current, newOrder),
       .method = "POST",
       .path = "m/v1/orders",
       .isAuthorized = true,
       .body = R"({"data":{"site_id":42,"partner_identifier":"P"}})",
       .title = "Error Creating Order",
       .answer = order},
      {.name = "CreateOrderEvent",
       .make = maker<CreateOrderEventOperation>(current, OrderEvent::rating(7, 5, "Fine")),
       .method = "POST",
       .path = "m/v1/events",
       .isAuthorized = true,
       .body = R"({"data":{"order_id":7,"event_type":"customer_rating",)"
               R"("customer_rating_value":5,"customer_rating_comments":"Fine"}})",
       .title = "Error Creating Order Event",
       .answer = "anything",
       .readsAnswer = false},
      {.name = "UpdateOrder",
       .make =
           maker<UpdateOrderOperation>(current->token, std::string("CODE7"), std::string("token")),
       .method = "PUT",
       .path = "m/v1/orders/CODE7",
       .isAuthorized = true,
       .body = R"({"data":{"push_token":"token"}})",
       .title = "Error Updating Order",
       .answer = order},
  };
}

}  // namespace ovinta::test
