#import "tests/bindings/objc/TwinFixture.h"

#include <mutex>

namespace objctest {
namespace {

/// Where a callback's thread leaves what the test's thread waits for.
struct Mailbox {
  std::mutex mutex;
  bool full = false;
  Outcome outcome;
};

class WorldsEnd : public testing::Environment {
  void TearDown() override { World::shared().stop(); }
};

[[maybe_unused]] const testing::Environment* const worldsEnd =
    testing::AddGlobalTestEnvironment(new WorldsEnd);

}  // namespace

TwinTest::TwinTest() : pool_([[NSAutoreleasePool alloc] init]) {
  [Ovinta configure:@{@"token" : @"the app's token"}];
  [UserDefaultsKey.apiBase setWithValue:@(world.baseURL().c_str())];
  [Ovinta.customer logout];
  Ovinta.pushToken = nil;
}

TwinTest::~TwinTest() { [pool_ drain]; }

Outcome TwinTest::await(const std::function<void(Report)>& start) {
  const auto mailbox = std::make_shared<Mailbox>();
  start(^(id result, NSError* error) {
    const std::lock_guard lock(mailbox->mutex);
    if (mailbox->full) return;
    mailbox->outcome = {.result = [result retain], .error = [error retain]};
    mailbox->full = true;
  });
  EXPECT_TRUE(world.waitUntil([&] {
    const std::lock_guard lock(mailbox->mutex);
    return mailbox->full;
  }));
  [mailbox->outcome.result autorelease];
  [mailbox->outcome.error autorelease];
  return mailbox->outcome;
}

CustomerInfo* TwinTest::info(NSString* name) {
  return [[[CustomerInfo alloc] initWithName:name
                                     carType:@"Van"
                                    carColor:@"Red"
                                licensePlate:nil
                                       phone:@"5"] autorelease];
}

Customer* TwinTest::becomeCustomer() {
  return await([](Report report) {
           [Ovinta.customer create:info() termsOfService:YES ageVerification:YES callback:report];
         })
      .result;
}

Order* TwinTest::placeOrder() {
  const Outcome created = await([](Report report) {
    [Ovinta.orders createWithSiteID:42
                  partnerIdentifier:@"A-1"
                       customerInfo:info()
                       pickupWindow:nil
                           callback:report];
  });
  fetchOrders();
  return created.result;
}

Outcome TwinTest::fetchOrders() {
  const Outcome fetched = await([](Report report) { [Ovinta.orders fetchWithCallback:report]; });
  // All answers come on one thread: this one's turn is after the rest of the fetch.
  await([](Report report) { [Ovinta.config fetchWithCallback:report]; });
  return fetched;
}

}  // namespace objctest
