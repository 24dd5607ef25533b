// How blocks are kept and called.

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>

#import "tests/bindings/objc/TwinFixture.h"

/// Counts how many of it are alive.
@interface Probe : NSObject
@end

static std::atomic<int> probesAlive{0};

@implementation Probe
- (id)init {
  ++probesAlive;
  return [super init];
}
- (void)dealloc {
  --probesAlive;
  [super dealloc];
}
@end

/// Raises when it goes.
@interface Troublemaker : NSObject
@end

@implementation Troublemaker
- (void)dealloc {
  [super dealloc];
  [NSException raise:NSGenericException format:@"raised in a pool"];
}
@end

namespace objctest {
namespace {

using BlockTest = TwinTest;

// The runtime's own copying would leave a captured object without a reference.
TEST_F(BlockTest, KeepWhatTheyCaptureUntilTheLastCall) {
  std::atomic<int> calls{0};
  std::atomic<int>* const counter = &calls;
  std::atomic<int>* const alive = &probesAlive;
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
  Probe* const probe = [[[Probe alloc] init] autorelease];
  [Ovinta.config fetchWithCallback:^(NSDictionary*, OvintaError*) {
    if ([probe isKindOfClass:[Probe class]] && *alive == 1) ++*counter;
  }];
  [pool drain];
  EXPECT_TRUE(world.waitUntil([alive] { return *alive == 0; }));
  EXPECT_EQ(calls, 1);
}

// Not the main thread's: what is autoreleased inside must not wait for it.
TEST_F(BlockTest, RunInAPoolOfTheirOwn) {
  std::atomic<bool> called{false};
  std::atomic<bool>* const done = &called;
  NSThread* const mainThread = [NSThread currentThread];
  std::atomic<bool> isElsewhere{false};
  std::atomic<bool>* const elsewhere = &isElsewhere;
  [Ovinta.config fetchWithCallback:^(NSDictionary*, OvintaError*) {
    [[[Probe alloc] init] autorelease];
    *elsewhere = [NSThread currentThread] != mainThread;
    *done = true;
  }];
  EXPECT_TRUE(world.waitUntil([&] { return called && probesAlive == 0; }));
  EXPECT_TRUE(isElsewhere);
}

TEST_F(BlockTest, MayRaiseAndThrow) {
  [Ovinta.customer update:info()
                 callback:^(Customer*, OvintaError*) {
                   [NSException raise:NSGenericException format:@"raised in a block"];
                 }];
  [Ovinta.customer update:info()
                 callback:^(Customer*, OvintaError*) {
                   throw std::runtime_error("thrown in a block");
                 }];
  [Ovinta.customer update:info()
                 callback:^(Customer*, OvintaError*) {
                   @throw @"no exception";
                 }];
  [Ovinta.customer update:info()
                 callback:^(Customer*, OvintaError*) {
                   [[[Troublemaker alloc] init] autorelease];
                 }];
  for (const char* text :
       {"raised in a block", "thrown in a block", "no exception", "raised in a pool"}) {
    EXPECT_THAT(world.log().lines(), testing::Contains(testing::HasSubstr(text)));
  }
  [Ovinta.customer logout];
}

TEST_F(BlockTest, RaiseForWhatIsNoArgument) {
  const std::function<void()> kCalls[] = {
      [] { [Ovinta.customer update:(CustomerInfo* _Nonnull)nil callback:nil]; },
      [] { [Ovinta.customer update:(CustomerInfo*)(id) @"text" callback:nil]; },
      [] { [Ovinta updatePushToken:(NSString* _Nonnull)nil]; },
      [] { [Ovinta updateAPNPushToken:(NSData*)(id) @"text"]; },
      [] { Ovinta.orders.all = @[ (Order*)(id) @"text" ]; },
      [] { (void)[[CustomerInfo alloc] init]; },
      [] {
        [Ovinta.orders eventWithOrderID:1
                          customerState:static_cast<CustomerState>(99)
                               callback:nil];
      },
      [] { (void)[[BeaconRegion alloc] initWithUuid:[NSUUID UUID] major:@70000 minor:nil]; },
      [] { (void)[[BeaconRegion alloc] initWithUuid:[NSUUID UUID] major:nil minor:@1.9]; },
      [] {
        const unichar half = 0xd800;
        [Ovinta updatePushToken:[NSString stringWithCharacters:&half length:1]];
      },
  };
  for (const auto& call : kCalls) {
    BOOL raised = NO;
    @try {
      call();
    } @catch (NSException* exception) {
      raised = [[exception name] isEqualToString:NSInvalidArgumentException];
    }
    EXPECT_TRUE(raised) << "call " << &call - kCalls;
  }
}

/// A log that fails.
class ThrowingLog : public platform::Log {
 public:
  void write(std::string_view) override { throw std::runtime_error("the disk is full"); }
};

TEST_F(BlockTest, SeeNoExceptionOfTheLibrary) {
  const platform::Services services = platform::services();
  platform::Services broken = services;
  broken.log = std::make_shared<ThrowingLog>();
  platform::install(broken);
  NSString* reason = nil;
  @try {
    [Ovinta.customer update:info() callback:nil];
  } @catch (NSException* exception) {
    reason = [exception reason];
  }
  platform::install(services);
  EXPECT_EQ(text(reason), "the disk is full");
}

}  // namespace
}  // namespace objctest
