#include "OvintaSDK/api/ErrorBody.h"
#include "OvintaSDK/model/wire/CustomerWire.h"
#include "OvintaSDK/model/wire/OrderRequestWire.h"
#include "OvintaSDK/model/wire/OrderWire.h"
#include "OvintaSDK/model/wire/SiteWire.h"
#include "fuzz/Platform.h"
#include "fuzz/Target.h"
#include "tests/support/WireText.h"

namespace ovinta::fuzz {
namespace {

template <class Record>
void check(const platform::JSONValue& value) {
  std::string text;
  try {
    const Record record = wire::decode<Record>(value, Library::process().context()->dates());
    text = test::encoded(record);
  } catch (const platform::CodingError& error) {
    require(error.kind() != platform::CodingError::Kind::invalidValue,
            "a record that was read can be written");
    return;
  }
  require(test::encoded(test::decoded<Record>(text)) == text, "a record reads back as written");
  if (text.size() <= 2 || text.front() != '{') return;
  const std::string more = R"({"unknown":[1e400,-123456789012345678901],)" + text.substr(1);
  require(test::encoded(test::decoded<Record>(more)) == text, "unknown keys do not count");
}

template <class... Records>
void checkAll(const platform::JSONValue& value) {
  (check<Records>(value), ...);
}

void run(std::string_view input) {
  Platform::shared();
  if (const auto refusal = ErrorBody::parse(input)) (void)refusal->message();
  const auto document = platform::JSONDocument::parse(input);
  if (!document) return;
  checkAll<OrderPtr, std::vector<OrderPtr>, SitePtr, SitesResponse, Customer, CustomerInfo,
           CustomerConsent, CreateCustomerInfo, SignUpInfo, LoginInfo, RequestPasswordReset,
           SetNewPassword, CreateOrderInfo, ClaimOrderInfo, UpdateOrderInfo, BeaconRegion,
           BeaconIdentifiers>(document->root());
}

const Target kTarget("records", run);

}  // namespace
}  // namespace ovinta::fuzz
