#include <gtest/gtest.h>

#include <sstream>

#include "OvintaSDK/OvintaSDK.h"
#include "platform/linux/Diagnosis.h"

namespace {

using namespace ovinta;

/// What streams show of the values, from outside of the library's namespaces.
std::string shown(const auto&... values) {
  std::ostringstream stream;
  ((stream << values << ", "), ...);
  return stream.str();
}

TEST(NamesTest, AnApplicationLogsEveryEnumerationThatItMeets) {
  using namespace platform;
  EXPECT_EQ(shown(OrderState::gone, CustomerState::enRoute, LocationAuthStatus::authorizedAlways),
            "gone, en_route, authorized_always, ");
  EXPECT_EQ(shown(HTTPStatusCode::noContent, OrdersManagerErrorType::alreadyFetching,
                  CustomerManagerErrorType::loadingCustomer, SitesManagerErrorType::loadingApiUrl,
                  NotifyManagerErrorType::noLocationPermission),
            "no content, Already fetching orders, Could not load customer, Could not load API url, "
            "Location permission is missing, ");
  EXPECT_EQ(shown(BatteryState::full, CodingError::Kind::typeMismatch, linuxos::Condition::limited,
                  linuxos::PositionSource::gpsd, linuxos::MainThreadError::noDescriptor),
            "full, type mismatch, limited, gpsd, The system has no descriptor left., ");
  EXPECT_EQ(shown(static_cast<OrderState>(-1), static_cast<HTTPStatusCode>(500),
                  static_cast<SitesManagerErrorType>(1), static_cast<BatteryState>(4)),
            "invalid, invalid, invalid, invalid, ");
  EXPECT_EQ(shown(URL{"https://api.test/m/v1"}), "https://api.test/m/v1, ");
  EXPECT_EQ(std::string(name(CustomerState::nearby)), ovinta::name(CustomerState::nearby));
}

/// An application's own enumeration keeps its own text.
enum class Fruit { apple };
std::string_view name(Fruit /*fruit*/) { return "an apple"; }
std::ostream& operator<<(std::ostream& stream, Fruit fruit) { return stream << name(fruit); }

TEST(NamesTest, AnApplicationsOwnEnumerationsAreItsOwn) {
  EXPECT_EQ(shown(Fruit::apple), "an apple, ");
}

}  // namespace
