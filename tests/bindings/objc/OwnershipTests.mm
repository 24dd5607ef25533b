// Which twin is met where, and how many there are.

#import <Foundation/Foundation.h>
#include <malloc.h>

#include <array>
#include <thread>

#import "bindings/objc/src/IdentityMap.h"
#import "tests/bindings/objc/TwinFixture.h"

// Foundation always has them, but its header hides them under NDEBUG.
extern "C" BOOL GSDebugAllocationActive(BOOL active);
extern "C" int GSDebugAllocationCount(Class counted);

/// Keeps what it is notified of.
@interface Observer : NSObject {
 @public
  NSMutableArray* objects;
}
- (void)note:(NSNotification*)notification;
@end

@implementation Observer
- (id)init {
  if ((self = [super init])) {
    objects = [[NSMutableArray alloc] init];
  }
  return self;
}
- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [objects release];
  [super dealloc];
}
- (void)note:(NSNotification*)notification {
  @synchronized(self) {
    [objects addObject:[notification object] ? [notification object] : [NSNull null]];
  }
}
@end

namespace objctest {
namespace {

Observer* observe(NSString* name) {
  Observer* const observer = [[[Observer alloc] init] autorelease];
  [[NSNotificationCenter defaultCenter] addObserver:observer
                                           selector:@selector(note:)
                                               name:name
                                             object:nil];
  return observer;
}

TEST(OwnershipOfNotificationsTest, BeginsBeforeTheLibraryIsConfigured) {
  World::shared();
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
  Observer* const errors = observe(Ovinta.ordersError);
  [Ovinta.orders fetchWithCallback:nil];
  EXPECT_EQ([errors->objects count], 1u);
  [pool drain];
}

using OwnershipTest = TwinTest;

TEST_F(OwnershipTest, OneOrderHasOneTwin) {
  becomeCustomer();
  const int64_t orderID = placeOrder().id;
  Observer* const updates = observe(Ovinta.orderUpdated);
  Observer* const lists = observe(Ovinta.ordersUpdated);
  Order* const order = [Ovinta.orders.all lastObject];

  const Outcome moved = await([orderID](Report report) {
    [Ovinta.orders eventWithOrderID:orderID customerState:CustomerStateNearby callback:report];
  });
  EXPECT_EQ(moved.result, order);
  EXPECT_EQ([Ovinta.orders.open lastObject], order);
  EXPECT_EQ([updates->objects lastObject], order);
  EXPECT_EQ(order.customerState, CustomerStateNearby);

  NSArray* const fetched = fetchOrders().result;
  EXPECT_NE([fetched lastObject], order);
  EXPECT_EQ([Ovinta.orders.all lastObject], [fetched lastObject]);
  EXPECT_EQ([lists->objects count], 1u);
  EXPECT_EQ([[lists->objects lastObject] lastObject], [fetched lastObject]);
}

TEST_F(OwnershipTest, NotificationsBringTwins) {
  [UserDefaultsKey.apiBase setWithValue:@"http://127.0.0.1:1"];
  Observer* const errors = observe(Ovinta.ordersError);
  const Outcome refused = fetchOrders();
  EXPECT_TRUE([[errors->objects lastObject] isEqual:refused.error]);

  const ovinta::platform::Location position{.coordinate = {.latitude = 1, .longitude = 2}};
  Observer* const positions = observe(Ovinta.locationUpdate);
  Observer* const permissions = observe(Ovinta.locationAuthorizationChanged);
  const auto& center = *platform::services().notificationCenter;
  const_cast<platform::NotificationCenter&>(center).post(
      {.name = {"locationUpdate"}, .object = position});
  const_cast<platform::NotificationCenter&>(center).post(
      {.name = {"locationAuthorizationChanged"}, .object = {}});
  EXPECT_EQ([(OvintaLocation*)[positions->objects lastObject] longitude], 2);
  EXPECT_EQ([permissions->objects lastObject], [NSNull null]);
}

/// Reads orders and has a request refused at once, with an error, through a block.
void work(int times) {
  for (int i = 0; i < times; ++i) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    for (Order* order in Ovinta.orders.all) (void)[order.siteName length];
    NSDictionary* const data = @{@"k" : @[ @1 ]};
    NotificationInfo* const info = [[[NotificationInfo alloc] initWithTitle:@"t"
                                                                    content:@"c"
                                                                       data:data] autorelease];
    [Ovinta.notify createForSites:@[]
                     notification:info
                         callback:^(OvintaError* error) {
                           (void)[error.title length];
                         }];
    [pool drain];
  }
}

std::array<int, 6> objectCounts() {
  const auto count = [](Class twin) { return GSDebugAllocationCount(twin); };
  return {count([Order class]),       count([NotificationInfo class]),
          count([Customer class]),    count([NotifyManagerError class]),
          count([OvintaError class]), count([OvintaLocation class])};
}

TEST_F(OwnershipTest, MemoryIsStable) {
  GSDebugAllocationActive(YES);
  becomeCustomer();
  placeOrder();
  world.device().location().setLocationServicesEnabled(false);
  work(1000);
  const auto objectsBefore = objectCounts();
  const std::size_t twinsBefore = twins::IdentityMap::shared().size();
  const std::size_t bytesBefore = mallinfo2().uordblks;
  work(100'000);
  EXPECT_EQ(objectCounts(), objectsBefore);
  EXPECT_EQ(twins::IdentityMap::shared().size(), twinsBefore);
  // Less than a byte for each call. (A sanitizer's own allocator counts nothing here.)
  EXPECT_LT(mallinfo2().uordblks, bytesBefore + 100'000);
  world.device().location().setLocationServicesEnabled(true);
}

TEST_F(OwnershipTest, NothingIsLeftOfARefusedRecord) {
  GSDebugAllocationActive(YES);
  for (const bool badState : {false, true}) {
    @try {
      (void)[[CreateOrderInfo alloc] initWithSiteID:42
                                  partnerIdentifier:badState ? @"p" : (NSString* _Nonnull)nil
                                       customerInfo:info()
                                          pushToken:nil
                                              state:static_cast<OrderState>(99)
                                       pickupWindow:nil];
      ADD_FAILURE() << "not refused";
    } @catch (NSException*) {
    }
  }
  EXPECT_EQ(GSDebugAllocationCount([CreateOrderInfo class]), 0);
}

TEST_F(OwnershipTest, ThreadsMeetTheSameTwin) {
  becomeCustomer();
  placeOrder();
  std::atomic<int> strangers{0};
  const auto race = [&strangers] {
    for (int i = 0; i < 5000; ++i) {
      NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
      Order* const order = [Ovinta.orders.all lastObject];
      if ([Ovinta.orders.open lastObject] != order) ++strangers;
      [pool drain];
    }
  };
  std::thread other(race);
  race();
  other.join();
  EXPECT_EQ(strangers, 0);
}

}  // namespace
}  // namespace objctest
