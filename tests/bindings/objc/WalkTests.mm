// Every selector of the table of twins, called. Those that take a block are called against the
// sandbox: when it serves, and when it cannot be reached and the device forbids.

#include <objc/runtime.h>

#include <sstream>

#import "bindings/objc/src/Conversion.h"
#import "tests/bindings/objc/TwinFixture.h"
#include "tests/bindings/objc/TwinTable.h"

namespace objctest {
namespace {

using Objects = std::map<std::string, id>;

/// The first word of a selector without what it is called by: "initWithName" is about "name".
std::string subject(std::string word) {
  for (const char* const prefix : {"initWith", "set"}) {
    if (word.starts_with(prefix) && !word.starts_with("setWith")) word.erase(0, strlen(prefix));
  }
  if (!word.empty()) word[0] = static_cast<char>(std::tolower(word[0]));
  return word;
}

class WalkTest : public TwinTest {
 protected:
  WalkTest() {
    fillInstances();
    fillSamples();
  }

  void fillInstances();
  void fillSamples();
  void walk(const std::string& className, const std::string& selector);
  id make(const std::string& className, const std::string& selector);
  id call(id target, const std::string& selector);

  /// The argument for a word of a selector: of the class's own, or for all classes. Words that are
  /// not here take themselves, as a text.
  id sample(const std::string& word) {
    for (const std::string& key : {className_ + "." + word, word}) {
      if (const auto found = samples_.find(key); found != samples_.end()) return found->second;
    }
    return @(word.c_str());
  }

  /// The arguments of the call, by what each is about.
  std::vector<std::string> words(const std::string& selector) {
    std::vector<std::string> words;
    std::istringstream stream(selector);
    for (std::string word; std::getline(stream, word, ':');) words.push_back(subject(word));
    return words;
  }

  Objects samples_;
  Objects instances_;
  std::string className_;
};

void WalkTest::fillInstances() {
  instances_ = {
      {"Order", twins::toObjC(std::make_shared<ovinta::Order>(ovinta::OrderDetails{.id = 7},
                                                              ovinta::OrderProgress{}))},
      {"Site", twins::toObjC(std::make_shared<const ovinta::Site>())},
      {"Customer", twins::toObjC(std::make_shared<const ovinta::Customer>())},
      {"Geofence", twins::toObjC(ovinta::Geofence{})},
      {"Pagination", twins::toObjC(ovinta::Pagination{})},
      {"ErrorBody", twins::toObjC(ovinta::ErrorBody{})},
      {"OvintaBeaconRegion", twins::toObjC(ovinta::platform::IdentifiedBeaconRegion{})},
      {"OrdersManager", Ovinta.orders},
      {"CustomerManager", Ovinta.customer},
      {"SitesManager", Ovinta.sites},
      {"NotifyManager", Ovinta.notify},
      {"OvintaManagedObjectContext",
       [OvintaManagedObjectContext orderStoreContextWithError:nullptr]},
      {"OvintaSettingsStore", OvintaSettingsStore.standard},
  };
}

void WalkTest::fillSamples() {
  NSDictionary* const dictionary = @{@"token" : @"the app's token", @"list" : @[ @1 ]};
  int day = 0;
  for (const char* date : {"etaAt", "completedAt", "createdAt", "updatedAt", "scannedAt", "start",
                           "end", "init", "timestamp"}) {
    samples_[date] = [NSDate dateWithTimeIntervalSince1970:1e9 + 86400 * ++day];
  }
  // The first are cases of enumerations.
  int number = 0;
  for (const char* name : {"state",
                           "customerState",
                           "locationAuthStatus",
                           "OrderEvent.customerRating",
                           "siteID",
                           "CoreOrder.id",
                           "siteId",
                           "orderID",
                           "major",
                           "minor",
                           "latitude",
                           "longitude",
                           "radius",
                           "horizontalAccuracy",
                           "speed",
                           "etaSeconds",
                           "count",
                           "maxCount",
                           "value",
                           "add"}) {
    samples_[name] = @(++number);
  }
  for (const char* name : {"configure", "handleRemoteNotification", "updateOrderFromNotification",
                           "isOvintaNotifyUserInfo", "data"}) {
    samples_[name] = dictionary;
  }
  for (const char* name : {"OrdersManager.all", "open", "closed"}) {
    samples_[name] = @[ instances_["Order"] ];
  }
  for (const char* name : {"location", "distanceFrom", "siteDistanceFrom"}) {
    samples_[name] = [[[OvintaLocation alloc] initWithLatitude:1 longitude:2] autorelease];
  }
  samples_.insert({
      {"SitesManager.all", @[ instances_["Site"] ]},
      {"UserDefaultsKey.setWithValue", @"text"},
      {"stringForKey", UserDefaultsKey.apiBase},
      {"ageVerification", @(YES)},
      {"beacons", @[ twins::toObjC(ovinta::Beacon{}) ]},
      {"current", instances_["Customer"]},
      {"entity", twins::toObjC(ovinta::platform::EntityDescription{.name = "Order"})},
      {"executeFetchRequest", [CoreOrder fetchRequest]},
      {"insertIntoManagedObjectContext", (id)nil},
      {"customerInfo", info()},
      {"distance", twins::toObjC(ovinta::Averager{.value = 2})},
      {"identifiers", twins::toObjC(ovinta::BeaconIdentifiers{})},
      {"pickupWindow", twins::toObjC(ovinta::PickupWindow(ovinta::platform::Date()))},
      {"rawValue", @"API Base URL"},
      {"rssi", twins::toObjC(ovinta::Averager{.value = -60})},
      {"setWithBool", @(YES)},
      {"termsOfService", @(YES)},
      {"updateAPNPushToken", [NSData data]},
      {"uuid", twins::toObjC(ovinta::platform::UUID{})},
  });
}

/// Calls with a sample for each argument; what the call returned, if that is an object.
id WalkTest::call(id target, const std::string& selector) {
  const SEL sel = NSSelectorFromString(@(selector.c_str()));
  Method const method = class_getInstanceMethod(object_getClass(target), sel);
  if (!method) [NSException raise:NSGenericException format:@"is not there"];
  // The runtime cannot read its own sign for a block.
  std::string types = method_getTypeEncoding(method);
  std::erase(types, '?');
  NSMethodSignature* const signature = [NSMethodSignature signatureWithObjCTypes:types.c_str()];
  NSInvocation* const invocation = [NSInvocation invocationWithMethodSignature:signature];
  [invocation setSelector:sel];
  NSInteger index = 2;
  for (const std::string& word : words(selector)) {
    if (index == static_cast<NSInteger>([signature numberOfArguments])) break;
    id object = sample(word);
    double real = 0;
    float single = 0;
    std::int64_t whole = 0;
    void* argument = &object;
    switch (*[signature getArgumentTypeAtIndex:static_cast<NSUInteger>(index)]) {
      case '@':
        break;
      case 'd':
        real = [object doubleValue];
        argument = &real;
        break;
      case 'f':
        single = [object floatValue];
        argument = &single;
        break;
      default:
        whole = [object longLongValue];
        argument = &whole;
    }
    [invocation setArgument:argument atIndex:index++];
  }
  [invocation invokeWithTarget:target];
  id result = nil;
  if (*[signature methodReturnType] == '@') [invocation getReturnValue:&result];
  return result;
}

/// A new instance, whose properties are what it was made with.
id WalkTest::make(const std::string& className, const std::string& selector) {
  id const made = [call([NSClassFromString(@(className.c_str())) alloc], selector) autorelease];
  EXPECT_NE(made, nil);
  for (const std::string& word : words(selector)) {
    NSString* const key = @(word.c_str());
    if (word == "init" || ![made respondsToSelector:NSSelectorFromString(key)]) continue;
    EXPECT_TRUE([[made valueForKey:key] isEqual:sample(word)])
        << word << " is " << text([[made valueForKey:key] description]);
  }
  return made;
}

void WalkTest::walk(const std::string& className, const std::string& selector) {
  SCOPED_TRACE(className + " " + selector);
  className_ = className;
  const bool ofClass = selector.starts_with("+");
  id target = NSClassFromString(@(className.c_str()));
  if (!ofClass && !selector.starts_with("init")) target = instances_[className];
  ASSERT_NE(target, nil) << "no instance";
  @try {
    const std::string name = selector.substr(ofClass ? 1 : 0);
    if (selector.starts_with("init")) {
      instances_[className] = make(className, selector);
    } else {
      call(target, name);
    }
    if (!name.starts_with("set") || name.starts_with("setWith")) return;
    NSString* const key = @(subject(name.substr(0, name.size() - 1)).c_str());
    EXPECT_TRUE([[target valueForKey:key] isEqual:sample([key UTF8String])])
        << text([[target valueForKey:key] description]);
  } @catch (NSException* exception) {
    ADD_FAILURE() << text([exception reason]);
  }
}

TEST_F(WalkTest, EverySelectorWithoutABlockIsCalled) {
  auto table = ovinta::test::twinTable();
  // The example's program calls these: they replace the simulated device.
  table.erase("OvintaLinux");
  ASSERT_GT(table.size(), 40u);
  for (const bool initialisers : {true, false}) {
    for (const auto& [className, selectors] : table) {
      if (id error = NSClassFromString(@(className.c_str()));
          [error isSubclassOfClass:[NSError class]]) {
        instances_[className] = [error errorWithDomain:OvintaErrorDomain code:1 userInfo:nil];
      }
      for (const std::string& selector : selectors) {
        const bool takesBlock = selector.ends_with("allback:");
        if (!takesBlock && selector.starts_with("init") == initialisers) walk(className, selector);
      }
    }
  }
}

/// Those that take a block, in an order in which they succeed, and the class of what each reports;
/// none where it reports errors alone.
using Operations = std::vector<std::pair<const char*, const char*>>;
const std::pair<const char*, Operations> kOperations[] = {
    {"CustomerManager",
     {{"create:customerConsent:callback:", "Customer"},
      {"create:termsOfService:ageVerification:callback:", "Customer"},
      {"update:callback:", "Customer"},
      {"signUpWithEmailAddress:password:callback:", "Customer"},
      {"loginWithEmailAddress:password:callback:", "Customer"},
      {"loginWithTokenWithToken:callback:", "Customer"},
      {"requestNewPasswordWithEmailAddress:callback:", ""},
      {"setNewPasswordWithResetPasswordToken:password:confrimation:callback:", "Customer"}}},
    {"ConfigurationManager", {{"fetchWithCallback:", "NSDictionary"}}},
    {"OrdersManager",
     {{"createWithInfo:callback:", "Order"},
      {"createWithSiteID:partnerIdentifier:customerInfo:pickupWindow:state:callback:", "Order"},
      {"createWithSiteID:partnerIdentifier:customerInfo:pickupWindow:callback:", "Order"},
      {"fetchWithCallback:", "NSArray"},
      {"fetchWithRedemptionCode:callback:", "Order"},
      {"claimWithRedemptionCode:customerInfo:pickupType:callback:", "Order"},
      {"claimWithRedemptionCode:customerInfo:callback:", "Order"},
      {"claimWithRedemptionCode:claimOrderInfo:customerConsent:callback:", "Order"},
      {"eventWithOrder:customerState:callback:", "Order"},
      {"eventWithOrderID:customerState:callback:", "Order"},
      {"rateOrderWithOrderID:rating:comments:callback:", "Order"},
      {"eventWithOrderID:state:callback:", "Order"}}},
    {"SitesManager",
     {{"fetchWithQuery:page:callback:", "NSArray"},
      {"fetchAllWithQuery:callback:", "NSArray"},
      {"fetchWithRegion:page:callback:", "NSArray"},
      {"fetchWithRegion:page:per:callback:", "NSArray"}}},
    {"NotifyManager",
     {{"createForSites:notification:callback:", ""},
      {"createForSitesInRegion:notification:callback:", "NSArray"},
      {"clearWithCallback:", ""}}}};

class CallTest : public WalkTest {
 protected:
  CallTest();

  void refreshSamples();
  /// Starts all of them without a block.
  void startAll();
  void expectAll(bool succeed);

  void start(const char* className, const std::string& selector, id block) {
    refreshSamples();
    samples_[words(selector).back()] = block;
    call(instances_[className], selector);
    started_.insert(className + selector);
  }

  /// The names of class and selector of all that was started.
  std::set<std::string> started_;
};

CallTest::CallTest() {
  instances_["ConfigurationManager"] = Ovinta.config;
  id const region = [[[OvintaCircularRegion alloc] initWithLatitude:40.74
                                                          longitude:-73.99
                                                             radius:5000
                                                         identifier:@"here"] autorelease];
  samples_["create"] = samples_["update"] = info();
  for (const char* name : {"signUp", "login", "requestNewPassword"}) {
    samples_[name + std::string("WithEmailAddress")] = @"ann@example.com";
  }
  for (const char* name : {"createWithSiteID", "page", "per", "rating"}) samples_[name] = @1;
  samples_["createWithSiteID"] = samples_["siteID"] = @42;
  samples_["confrimation"] = @"password";
  samples_["customerConsent"] = make("CustomerConsent", "initWithTermsOfService:ageVerification:");
  samples_["createWithInfo"] = make(
      "CreateOrderInfo", "initWithSiteID:partnerIdentifier:customerInfo:pushToken:pickupWindow:");
  samples_["claimOrderInfo"] = make("ClaimOrderInfo", "initWithCustomerInfo:pushToken:pickupType:");
  samples_["fetchWithQuery"] = nil;
  samples_["fetchAllWithQuery"] = @"new";
  samples_["fetchWithRegion"] = samples_["createForSitesInRegion"] = region;
  samples_["notification"] = make("NotificationInfo", "initWithTitle:content:data:");
}

/// What is new for each call, or comes of those before.
void CallTest::refreshSamples() {
  Customer* const customer = Ovinta.customer.current;
  Order* const order = [Ovinta.orders.all lastObject];
  samples_["loginWithTokenWithToken"] = customer ? customer.token : @"none";
  samples_["newPasswordWithResetPasswordToken"] = @(world.resetToken("ann@example.com").c_str());
  samples_["fetchWithRedemptionCode"] = @(world.offerOrder().c_str());
  samples_["claimWithRedemptionCode"] = @(world.offerOrder().c_str());
  samples_["eventWithOrder"] = order;
  samples_["eventWithOrderID"] = samples_["rateOrderWithOrderID"] = @(order.id);
  samples_["createForSites"] = Ovinta.sites.all;
}

void CallTest::startAll() {
  for (const auto& [className, operations] : kOperations) {
    for (const auto& [selector, result] : operations) start(className, selector, nil);
  }
}

void CallTest::expectAll(bool succeed) {
  for (const auto& [className, operations] : kOperations) {
    for (const auto& [name, result] : operations) {
      const std::string selector = name;
      Class const resultClass = NSClassFromString(@(result));
      const Outcome outcome = await([&, className = className](Report report) {
        const ErrorCallback errors = ^(OvintaError* error) {
          report(nil, error);
        };
        const SitesPageCallback page =
            ^(NSArray<Site*>* sites, Pagination* pagination, OvintaError* error) {
              report(pagination.currentPage == 1 ? sites : nil, error);
            };
        const bool isPage = selector.starts_with("fetchWithQuery");
        start(className, selector, isPage ? (id)page : resultClass ? (id)report : (id)errors);
      });
      if (succeed || selector == "clearWithCallback:") {
        EXPECT_EQ(outcome.error, nil) << selector << ": " << text([outcome.error description]);
        EXPECT_TRUE(resultClass ? [outcome.result isKindOfClass:resultClass] : !outcome.result)
            << selector;
      } else {
        EXPECT_TRUE([outcome.error isKindOfClass:[OvintaError class]]) << selector;
      }
    }
  }
}

TEST_F(CallTest, EverySelectorWithABlockSucceedsAndFails) {
  expectAll(true);
  EXPECT_GT([Ovinta.sites.all count], 1u);

  Ovinta.sites.all = [NSArray array];
  startAll();
  EXPECT_TRUE(world.waitUntil([] { return !ovinta::Ovinta::sites().all()->empty(); }));
  await([](Report report) { [Ovinta.config fetchWithCallback:report]; });

  [UserDefaultsKey.apiBase setWithValue:@"http://127.0.0.1:1"];
  world.device().location().setLocationServicesEnabled(false);
  expectAll(false);
  startAll();
  world.device().location().setLocationServicesEnabled(true);

  for (const auto& [className, selectors] : ovinta::test::twinTable()) {
    for (const std::string& selector : selectors) {
      const bool takesBlock = selector.ends_with("allback:");
      EXPECT_EQ(started_.contains(className + selector), takesBlock) << className << selector;
    }
  }
}

}  // namespace
}  // namespace objctest
