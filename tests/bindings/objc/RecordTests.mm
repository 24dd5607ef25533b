// What records, errors and values become on the way from one language to the other and back.

#import "bindings/objc/src/Conversion.h"
#import "tests/bindings/objc/TwinFixture.h"

extern "C" BOOL OvintaPlainHeadersWork(void);

namespace objctest {
namespace {

using RecordTest = TwinTest;

TEST_F(RecordTest, PlainObjectiveCUsesTheHeaders) { EXPECT_TRUE(OvintaPlainHeadersWork()); }

TEST_F(RecordTest, ValuesComeBackAsTheyWent) {
  NSDictionary* const values = @{
    @"text" : @"Gr\u00fc\u00dfe",
    @"yes" : @(YES),
    @"integer" : @9007199254740993LL,
    @"one" : @1,
    @"real" : @0.5,
    @"list" : @[ @"a", @[ @2 ], [NSNull null] ],
    @"inner" : @{@"k" : @"v"}
  };
  EXPECT_TRUE([twins::toObjC(twins::dictionary(values)) isEqual:values]);
  const platform::Dictionary read = twins::dictionary(
      @{@"flag" : @(NO),
        @"huge" : @18446744073709551615ULL,
        @"one" : @1});
  EXPECT_EQ(read, (platform::Dictionary{{"flag", false}, {"huge", 0x1p64}, {"one", 1}}));

  const platform::Date date{std::chrono::microseconds(1614889800123456)};
  EXPECT_EQ(twins::date(twins::toObjC(date)), date);
  EXPECT_GT(twins::date([NSDate distantFuture]), date);
  const auto uuid = *platform::UUID::parse("e621e1f8-c36c-495a-93fc-0c247a3e6e5f");
  EXPECT_EQ(twins::uuid(twins::toObjC(uuid)), uuid);
  const std::string withNull("a\0b", 3);
  EXPECT_EQ(twins::text(twins::toObjC(withNull)), withNull);
  EXPECT_EQ([twins::toObjC(std::string_view("\xff")) length], 1u);
}

TEST_F(RecordTest, InitialisersConvertTheirArguments) {
  OrderEvent* const event = [[[OrderEvent alloc] initWithOrderID:7
                                                   customerState:CustomerStateNearby
                                                      etaSeconds:@90.9] autorelease];
  EXPECT_EQ(text(event.eventType), text(OrderEventType.stateChange));
  EXPECT_EQ([event.etaSeconds integerValue], 90);
  EXPECT_EQ([event.customerState integerValue], CustomerStateNearby);
  EXPECT_EQ(event.state, nil);
  OrderEvent* const distant = [[[OrderEvent alloc] initWithOrderID:7
                                                     customerState:CustomerStateNearby
                                                        etaSeconds:@9007199254740993] autorelease];
  EXPECT_EQ([distant.etaSeconds longLongValue], 9007199254740993) << "no double holds it";
  ClaimOrderInfo* const claim = [[[ClaimOrderInfo alloc] initWithCustomerInfo:info()
                                                                    pushToken:@"token"
                                                                   pickupType:nil] autorelease];
  EXPECT_EQ(claim.pickupType, nil);
  EXPECT_EQ(text(claim.pushToken), "token");
  BeaconRegion* const region = [[[BeaconRegion alloc] initWithUuid:[NSUUID UUID]
                                                             major:@65535
                                                             minor:nil] autorelease];
  EXPECT_EQ(text([region region].identifier), "siteBeaconRegion");
  EXPECT_EQ([[region region].major integerValue], 65535);
  EXPECT_TRUE([[region region].proximityUUID isEqual:region.uuid]);
}

TEST_F(RecordTest, DictionariesKeepWhatJSONCanHold) {
  const unichar pair[] = {0xd83d, 0xde00};
  NSString* const broken = [[NSString stringWithCharacters:pair length:2] substringToIndex:1];
  ASSERT_NE(broken, nil);
  NSDictionary* const given = @{
    @"date" : [NSDate dateWithTimeIntervalSince1970:1614889800.1239],
    @"data" : [NSData dataWithBytes:"\xff\x00" length:2],
    @"list" : @[ @1, [[[NSObject alloc] init] autorelease], broken, @2 ],
    @"broken" : broken,
    @"late" : [NSDate dateWithTimeIntervalSince1970:2e12],
    @3 : @"no text"
  };
  const platform::Dictionary expected{{"date", "2021-03-04T20:30:00.123Z"},
                                      {"data", "/wA="},
                                      {"list", platform::List{1, nullptr, nullptr, 2}}};
  EXPECT_EQ(twins::dictionary(given), expected);
  NotificationInfo* const notification =
      [[[NotificationInfo alloc] initWithTitle:@"" content:@"" data:given] autorelease];
  EXPECT_TRUE([notification.data isEqual:given]);

  NSString* const source = NotifyManager.kSourceName;
  EXPECT_FALSE([Ovinta.notify isOvintaNotifyUserInfo:@{source : broken}]);
  EXPECT_TRUE(([Ovinta.notify
      isOvintaNotifyUserInfo:@{source : NotifyManager.kOvintaNotify, @"broken" : broken}]));
}

TEST_F(RecordTest, EqualValuesAreEqual) {
  EXPECT_TRUE([info() isEqual:info()]);
  EXPECT_EQ([info() hash], [info() hash]);
  EXPECT_FALSE([info() isEqual:info(@"Bob")]);
  EXPECT_FALSE([info() isEqual:@"Ann"]);
  EXPECT_TRUE([UserDefaultsKey.apiBase
      isEqual:[[[UserDefaultsKey alloc] initWithRawValue:@"API Base URL"] autorelease]]);
  EXPECT_EQ([[UserDefaultsKey alloc] initWithRawValue:@"no key"], nil);
}

TEST_F(RecordTest, SettingsAreKept) {
  UserDefaultsKey* const key = UserDefaultsKey.customerPhone;
  [key setWithValue:@"YES"];
  EXPECT_TRUE([key boolValue]);
  EXPECT_EQ(text([OvintaSettingsStore.standard stringForKey:key]), "YES");
  [key setWithBool:NO];
  EXPECT_EQ(text([key stringValue]), "NO");
  [key delete];
  EXPECT_EQ([key stringValue], nil);
}

TEST_F(RecordTest, OrdersAreWhatTheServiceSent) {
  becomeCustomer();
  placeOrder();
  Order* const order = [Ovinta.orders.all lastObject];
  EXPECT_EQ(order.siteID, 42);
  EXPECT_EQ(text(order.customerName), "Ann");
  EXPECT_TRUE([order isOpen]);
  EXPECT_NE([order.createdAt timeIntervalSince1970], 0);
  EXPECT_NE([[order jsonText] rangeOfString:@"\"site_id\":42"].length, 0u);
  EXPECT_LT([[order siteDistanceFrom:[order siteLocation]] doubleValue], 1);
  order.state = OrderStateGone;
  EXPECT_FALSE([order isOpen]);
}

TEST_F(RecordTest, TheOrderStoreIsReadAndWritten) {
  NSError* error = nil;
  OvintaManagedObjectContext* context =
      [OvintaManagedObjectContext orderStoreContextWithError:&error];
  ASSERT_NE(context, nil) << text([error localizedDescription]);
  const NSUInteger before = [[context executeFetchRequest:[CoreOrder fetchRequest]
                                                    error:nullptr] count];
  OvintaEntityDescription* const entity =
      [[[OvintaEntityDescription alloc] initWithName:@"Order"] autorelease];
  CoreOrder* const summary = [[[CoreOrder alloc] initWithEntity:entity
                                 insertIntoManagedObjectContext:context] autorelease];
  EXPECT_EQ(summary.siteId, 0);
  summary.id = 70001;
  summary.siteId = 42;
  summary.partnerIdentifier = @"P";
  summary.state = OrderStateGone;
  summary.customerState = CustomerStateWaiting;
  ASSERT_TRUE([context save:&error]) << text([error localizedDescription]);

  context = [OvintaManagedObjectContext orderStoreContextWithError:nullptr];
  NSArray* const stored = [context executeFetchRequest:[CoreOrder fetchRequest] error:nullptr];
  ASSERT_EQ([stored count], before + 1);
  for (CoreOrder* order in stored) {
    if (order.id != 70001) continue;
    EXPECT_EQ(text(order.partnerIdentifier), "P");
    EXPECT_EQ(order.siteId, 42);
    EXPECT_EQ(order.customerState, CustomerStateWaiting);
    EXPECT_EQ(order.state, OrderStateGone);
  }
}

TEST_F(RecordTest, CommandsDoWhatTheySay) {
  becomeCustomer();
  placeOrder();
  Order* const order = [Ovinta.orders.open lastObject];

  Ovinta.pushToken = @"first";
  [Ovinta.orders updateOrdersWithNoPushToken];
  EXPECT_EQ(text(order.pushToken), "first");
  [Ovinta.orders updatePushTokensWithNewPushToken:@"second"];
  EXPECT_EQ(text(order.pushToken), "second");
  [Ovinta updatePushToken:@"third"];
  EXPECT_EQ(text(Ovinta.pushToken), "third");
  const uint8_t bytes[] = {0x00, 0x0a, 0xff};
  [Ovinta updateAPNPushToken:[NSData dataWithBytes:bytes length:sizeof bytes]];
  EXPECT_EQ(text(Ovinta.pushToken), "000aff");

  NSString* const orderID = [NSString stringWithFormat:@"%lld", (long long)order.id];
  [Ovinta handleRemoteNotification:@{@"order_id" : orderID, @"order_state" : @"ready", @1 : @2}];
  EXPECT_EQ(order.state, OrderStateReady);
  [Ovinta.orders
      updateOrderFromNotification:@{@"order_id" : orderID, @"customer_state" : @"waiting"}];
  EXPECT_EQ(order.customerState, CustomerStateWaiting);

  Ovinta.orders.all = nil;
  Ovinta.sites.all = nil;
  EXPECT_FALSE(Ovinta.orders.all || Ovinta.sites.all);
  [Ovinta.customer signOut];
  EXPECT_EQ(Ovinta.customer.current, nil);
  EXPECT_TRUE([Ovinta.notify
      isOvintaNotifyUserInfo:@{NotifyManager.kSourceName : NotifyManager.kOvintaNotify}]);
}

TEST_F(RecordTest, RefusalsTellWhatTheServiceSaid) {
  const Outcome refused = await([](Report report) {
    [Ovinta.customer create:info(@"") termsOfService:NO ageVerification:YES callback:report];
  });
  ASSERT_TRUE([refused.error isKindOfClass:[OvintaAPIError class]]);
  OvintaAPIError* const error = (OvintaAPIError*)refused.error;
  EXPECT_EQ(text([error domain]), text(OvintaErrorDomain));
  EXPECT_EQ([error code], OvintaErrorCodeAPI);
  EXPECT_EQ(text(error.title), "Error Creating Profile");
  EXPECT_EQ([error.statusCode integerValue], HTTPStatusCodeUnprocessableEntity);
  EXPECT_EQ([[error.errors objectForKey:@"name"] count], 1u);
  EXPECT_EQ(text([error.body message]), text([error localizedDescription]));
  EXPECT_EQ(error.appUpgradeURL, nil);

  world.ask("PUT", "/sandbox/minimum-app-version/9.0");
  const Outcome outdated = await([](Report report) { [Ovinta.config fetchWithCallback:report]; });
  world.ask("DELETE", "/sandbox/minimum-app-version");
  EXPECT_NE([[outdated.error userInfo] objectForKey:OvintaErrorAppUpgradeURLKey], nil);
}

TEST_F(RecordTest, ManagersTellWhyTheyRefuse) {
  const Outcome customer =
      await([](Report report) { [Ovinta.customer update:info() callback:report]; });
  EXPECT_EQ([(CustomerManagerError*)customer.error type], CustomerManagerErrorTypeLoadingCustomer);
  EXPECT_EQ(text(CustomerManagerErrorTypeRawValue(CustomerManagerErrorTypeLoadingCustomer)),
            text([customer.error localizedDescription]));

  const Outcome orders = await([](Report report) { [Ovinta.orders fetchWithCallback:report]; });
  EXPECT_EQ([orders.error code], OvintaErrorCodeOrdersManager);
  EXPECT_EQ([(OrdersManagerError*)orders.error type], OrdersManagerErrorTypeLoadingCustomer);

  await([](Report report) { [Ovinta.sites fetchAllWithQuery:nil callback:report]; });
  Site* const site = [Ovinta.sites.all lastObject];
  EXPECT_NE([site location], nil);
  EXPECT_GT(site.geofence.radiusMeters, 0);
  const Outcome notify = await([site](Report report) {
    [Ovinta.notify createForSites:@[ site, site, site, site, site, site ]
                     notification:[[[NotificationInfo alloc] initWithTitle:@"" content:@""
                                                                      data:nil] autorelease]
                         callback:^(OvintaError* error) {
                           report(nil, error);
                         }];
  });
  EXPECT_EQ([(NotifyManagerError*)notify.error type],
            NotifyManagerErrorTypeReachedTheMaxNumberOfSites);
  EXPECT_EQ(text([(NotifyManagerError*)notify.error detail]),
            "Too many sites. No more than allowed.");
}

// The functions of one enumeration stand for the like ones of the others.
TEST_F(RecordTest, StatesHaveNames) {
  EXPECT_EQ([OrderStateFromWireString(@"gone") integerValue], OrderStateGone);
  EXPECT_EQ([OrderStateFromRawValue(2) integerValue], OrderStateDelayed);
  EXPECT_EQ(LocationAuthStatusFromRawValue(5), nil);
  EXPECT_FALSE(CustomerStateIsOpen(CustomerStateCompleted));
  EXPECT_EQ(text(LocationAuthStatusDescription(LocationAuthStatusAuthorizedWhenInUse)),
            "authorized_when_in_use");
  EXPECT_EQ([HTTPStatusCodeFromNumber(425) integerValue], HTTPStatusCodeAppUpgradeRequired);
  EXPECT_EQ(text(HTTPStatusCodeDefaultMessage(HTTPStatusCodeNotFound)), "Not found");
}

}  // namespace
}  // namespace objctest
