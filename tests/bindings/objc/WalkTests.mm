// Every selector of the table of twins that takes no block, called; those that take one are called
// by the tests of calls.

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
      {"OvintaBeaconRegion", twins::toObjC(ovinta::platform::BeaconRegion{})},
      {"OrdersManager", Ovinta.orders},
      {"CustomerManager", Ovinta.customer},
      {"SitesManager", Ovinta.sites},
      {"NotifyManager", Ovinta.notify},
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
  for (const char* name :
       {"state", "customerState", "locationAuthStatus", "OrderEvent.customerRating", "siteID",
        "orderID", "major", "minor", "latitude", "longitude", "radius", "horizontalAccuracy",
        "speed", "etaSeconds", "count", "maxCount", "value", "add"}) {
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
      {"ageVerification", @(YES)},
      {"beacons", @[ twins::toObjC(ovinta::Beacon{}) ]},
      {"current", instances_["Customer"]},
      {"customerInfo", info()},
      {"distance", twins::toObjC(ovinta::Averager{.value = 2})},
      {"identifiers", twins::toObjC(ovinta::BeaconIdentifiers{})},
      {"pickupWindow", twins::toObjC(ovinta::PickupWindow(ovinta::platform::kDistantPast))},
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
  NSMethodSignature* const signature = [target methodSignatureForSelector:sel];
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

}  // namespace
}  // namespace objctest
