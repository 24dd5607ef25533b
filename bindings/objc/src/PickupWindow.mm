#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::PickupWindow;

@implementation PickupWindow

- (instancetype)initWithStart:(NSDate*)start end:(NSDate*)end {
  return [self initWithHeld:twins::initialising(self, [&] {
                 return twins::hold(Cpp(twins::date(start), twins::date(end)));
               })];
}

- (instancetype)init:(NSDate*)date {
  return [self
      initWithHeld:twins::initialising(self, [&] { return twins::hold(Cpp(twins::date(date))); })];
}

OVINTA_GETTER(NSDate*, start)
OVINTA_GETTER(NSDate*, end)

@end
