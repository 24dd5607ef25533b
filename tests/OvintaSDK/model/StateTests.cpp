#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "OvintaSDK/model/CustomerState.h"
#include "OvintaSDK/model/LocationAuthStatus.h"
#include "OvintaSDK/model/OrderState.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

/// What is expected of one case: its integer, its text, whether it is open, its title.
template <class State>
struct Expectation {
  State state;
  std::int64_t rawValue;
  std::string wireString;
  bool isOpen = true;
  std::string title = {};
};

template <class State>
void check(const std::vector<Expectation<State>>& rows) {
  for (const auto& row : rows) {
    SCOPED_TRACE(row.wireString);
    EXPECT_EQ(rawValue(row.state), row.rawValue);
    EXPECT_EQ(stateFromRawValue<State>(row.rawValue), row.state);
    EXPECT_EQ(stateFromWireString<State>(row.wireString), row.state);
    EXPECT_EQ(decoded<State>('"' + row.wireString + '"'), row.state);
    EXPECT_EQ(encoded(row.state), '"' + row.wireString + '"');
    if constexpr (!std::is_same_v<State, LocationAuthStatus>) {
      EXPECT_EQ(isOpen(row.state), row.isOpen);
    }
    if constexpr (!std::is_same_v<State, OrderState>) {
      EXPECT_EQ(description(row.state), row.title);
    }
  }
  const auto end = static_cast<std::int64_t>(rows.size());
  for (const std::int64_t raw : {std::int64_t{-1}, end, end + (std::int64_t{1} << 32U)}) {
    EXPECT_EQ(stateFromRawValue<State>(raw), std::nullopt) << raw;
  }
  for (const char* text : {R"("")", R"(" created")", R"("Completed")", R"("enRoute")", R"("READY")",
                           R"("denied ")", R"("0")"}) {
    EXPECT_EQ(decodingFailure<State>(text), "value not found: Unknown Value") << text;
  }
  EXPECT_THAT(decodingFailure<State>("1"), testing::StartsWith("type mismatch"));
  EXPECT_THAT(decodingFailure<State>("null"), testing::StartsWith("value not found"));
  EXPECT_EQ(encodingFailure(static_cast<State>(end)), "invalid value: Invalid Value");
}

TEST(StateTest, OrderStates) {
  check<OrderState>({{OrderState::created, 0, "created", true},
                     {OrderState::ready, 1, "ready", true},
                     {OrderState::delayed, 2, "delayed", true},
                     {OrderState::cancelled, 3, "cancelled", false},
                     {OrderState::completed, 4, "completed", false},
                     {OrderState::gone, 5, "gone", false}});
}

TEST(StateTest, CustomerStates) {
  check<CustomerState>({{CustomerState::created, 0, "created", true, "Created"},
                        {CustomerState::enRoute, 1, "en_route", true, "En Route"},
                        {CustomerState::nearby, 2, "nearby", true, "Nearby"},
                        {CustomerState::arrived, 3, "arrived", true, "Arrived"},
                        {CustomerState::waiting, 4, "waiting", true, "Waiting"},
                        {CustomerState::completed, 5, "completed", false, "Completed"}});
}

TEST(StateTest, LocationPermissions) {
  using enum LocationAuthStatus;
  check<LocationAuthStatus>(
      {{notDetermined, 0, "not_determined", true, "not_determined"},
       {restricted, 1, "restricted", true, "restricted"},
       {denied, 2, "denied", true, "denied"},
       {authorizedAlways, 3, "authorized_always", true, "authorized_always"},
       {authorizedWhenInUse, 4, "authorized_when_in_use", true, "authorized_when_in_use"}});
}

TEST(StateDeathTest, AValueThatIsNoCaseEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(isOpen(static_cast<OrderState>(6)), "unexpected enumeration case");
  EXPECT_DEATH(isOpen(static_cast<CustomerState>(6)), "unexpected enumeration case");
  EXPECT_DEATH(description(static_cast<LocationAuthStatus>(5)), "unexpected enumeration case");
}

}  // namespace
}  // namespace ovinta::test
