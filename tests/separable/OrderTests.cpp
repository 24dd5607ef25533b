#include <gmock/gmock.h>

#include "OvintaSDK/OvintaSDK.h"
#include "OvintaSDK/core/OrderStoreContainer.h"
#include "tests/separable/SmallPlatform.h"
#include "tests/support/CannedRecords.h"

namespace ovinta::test {
namespace {

using namespace std::chrono_literals;
using platform::simulation::Answer;
using testing::HasSubstr;

TEST(SeparableTest, AnOrderIsMadeKeptAndFollowedOnAnotherPlatform) {
  auto& device = SmallPlatform::ofProcess();
  device.http->setService([](const platform::URLRequest& request) {
    if (request.url.text.ends_with("/events")) return Answer::json(200, "");
    const platform::Value order = requiredOrder();
    return Answer::json(200, dataText(request.method == "GET" ? platform::List{order} : order));
  });
  platform::services().settings->set(UserDefaultsKey::apiBase.rawValue(), "https://service.test");
  Ovinta::configure({{"token", "app"}});
  Ovinta::customer().setCurrent(std::make_shared<const Customer>(customer()));
  device.simulation.location().setAuthorizationStatus(3);

  OrderPtr made;
  Ovinta::orders().create({.siteID = 42, .partnerIdentifier = "P"},
                          [&made](const OrderPtr& order, const ErrorPtr&) { made = order; });
  device.drain();
  ASSERT_TRUE(made);
  EXPECT_EQ(made->id, 7);
  Ovinta::orders().fetch();
  device.drain();

  const auto context = makeOrderStoreContainer(platform::services())->newBackgroundContext();
  const auto kept = context->fetch(CoreOrder::fetchRequest());
  ASSERT_TRUE(kept) << kept.error().localizedDescription;
  ASSERT_EQ(kept->size(), 1U);
  EXPECT_EQ(kept->front().value("id"), platform::AttributeValue(std::int64_t{7}));

  const std::size_t before = device.http->requests().size();
  device.simulation.location().deliver({.coordinate = {.latitude = 41, .longitude = -74},
                                        .horizontalAccuracy = 5,
                                        .timestamp = device.simulation.time().now()});
  device.advance(3s);
  ASSERT_EQ(device.http->requests().size(), before + 1);
  EXPECT_THAT(device.http->requests().back().body,
              testing::Optional(HasSubstr(R"("event_type":"location_update","longitude":-74,)")));
}

}  // namespace
}  // namespace ovinta::test
