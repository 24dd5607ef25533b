// The typical order, through the Objective-C twin alone: a customer, an order, the way to the site,
// the rating. The argument is the base URL of a service, e.g. of `ovinta sandbox`.

#import <OvintaObjC/OvintaLinux.h>
#import <OvintaObjC/OvintaObjC.h>
#include <stdio.h>

/// Prints what becomes of the order; the notifications come on the thread that posts them.
@interface Observer : NSObject
- (void)orderUpdated:(NSNotification*)notification;
@end

@implementation Observer

- (void)orderUpdated:(NSNotification*)notification {
  Order* const order = [notification object];
  if (order.customerRating) {
    printf("rated: %s\n", [order.customerRating UTF8String]);
  } else {
    printf("customer: %s\n", [CustomerStateDescription(order.customerState) UTF8String]);
  }
}

@end

typedef void (^Done)(NSError* error);

/// Starts an operation and waits until it is done; an error ends the program.
static void await(void (^start)(Done done)) {
  NSConditionLock* const finished = [[NSConditionLock alloc] initWithCondition:NO];
  start(^(NSError* error) {
    if (error) {
      fprintf(stderr, "%s\n", [[error localizedDescription] UTF8String]);
      exit(1);
    }
    [finished lock];
    [finished unlockWithCondition:YES];
  });
  [finished lockWhenCondition:YES];
  [finished unlock];
  [finished release];
}

static void createOrder(void) {
  CustomerInfo* const customer = [[CustomerInfo alloc] initWithName:@"Alex"
                                                            carType:@"Hatchback"
                                                           carColor:@"Green"
                                                       licensePlate:nil
                                                              phone:nil];
  await(^(Done done) {
    [Ovinta.customer create:customer
             termsOfService:YES
            ageVerification:YES
                   callback:^(Customer* created, OvintaError* error) {
                     if (created) printf("customer created\n");
                     done(error);
                   }];
  });
  await(^(Done done) {
    [Ovinta.orders createWithSiteID:42
                  partnerIdentifier:@"order-1001"
                       customerInfo:customer
                       pickupWindow:nil
                           callback:^(Order* order, OvintaError* error) {
                             if (order) printf("order created\n");
                             done(error);
                           }];
  });
  [customer release];
}

static void fetchOrders(void) {
  await(^(Done done) {
    [Ovinta.orders fetchWithCallback:^(NSArray* orders, OvintaError* error) {
      for (Order* order in orders) {
        printf("%s order at %s\n", [order isOpen] ? "open" : "closed", [order.siteName UTF8String]);
      }
      done(error);
    }];
  });
}

static void pickUp(Order* order) {
  for (int64_t state = CustomerStateEnRoute; state <= CustomerStateCompleted; ++state) {
    await(^(Done done) {
      [Ovinta.orders eventWithOrder:order
                      customerState:(CustomerState)state
                           callback:^(Order* changed, OvintaError* error) {
                             (void)changed;
                             done(error);
                           }];
    });
  }
  await(^(Done done) {
    [Ovinta.orders rateOrderWithOrderID:order.id
                                 rating:5
                               comments:@"Quick"
                               callback:^(Order* rated, OvintaError* error) {
                                 (void)rated;
                                 done(error);
                               }];
  });
}

int main(int argc, const char* argv[]) {
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
  if (argc != 2) {
    fprintf(stderr, "usage: %s BASE-URL\n", argv[0]);
    return 2;
  }
  [OvintaLinux installWithApplicationID:@"org.example.pickup-objc"];
  [Ovinta configure:[NSDictionary dictionaryWithObject:@"the token of your app" forKey:@"token"]];
  [UserDefaultsKey.apiBase setWithValue:[NSString stringWithUTF8String:argv[1]]];

  Observer* const observer = [[Observer alloc] init];
  NSNotificationCenter* const center = [NSNotificationCenter defaultCenter];
  [center addObserver:observer
             selector:@selector(orderUpdated:)
                 name:Ovinta.orderUpdated
               object:nil];

  createOrder();
  fetchOrders();
  pickUp([Ovinta.orders.open lastObject]);
  fetchOrders();

  [center removeObserver:observer];
  [observer release];
  [pool drain];
  return 0;
}
