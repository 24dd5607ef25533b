#pragma once

#import <OvintaObjC/OvintaObjC.h>
#include <gtest/gtest.h>

#include "tests/bindings/objc/World.h"

/// Apart from the library's namespace, whose classes have the same names as their twins.
namespace objctest {

namespace platform = ovinta::platform;
using ovinta::test::World;

/// What an operation reports, if it reports a result and an error: the twins, retained.
struct Outcome {
  id result = nil;
  NSError* error = nil;
};

/// Hands an outcome over; may be called from any thread.
using Report = void (^)(id result, NSError* error);

/// The library, configured through the twin, with the sandbox as its service and nobody signed in.
class TwinTest : public testing::Test {
 protected:
  TwinTest();
  ~TwinTest() override;

  /// Starts an operation and waits for what it reports first.
  Outcome await(const std::function<void(Report)>& start);
  /// Signs a new customer in.
  Customer* becomeCustomer();
  /// Creates an order at the sandbox's site and fetches the orders.
  Order* placeOrder();
  /// Fetches the orders; the fetch is over when this returns, not just its callback.
  Outcome fetchOrders();

  static CustomerInfo* info(NSString* name = @"Ann");
  static std::string text(NSString* string) { return string ? [string UTF8String] : "(nil)"; }

  World& world = World::shared();

 private:
  NSAutoreleasePool* pool_;
};

}  // namespace objctest
