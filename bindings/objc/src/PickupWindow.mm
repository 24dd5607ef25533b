#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::PickupWindow;

@implementation PickupWindow

- (instancetype)initWithStart:(NSDate*)start end:(NSDate*)end {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp(twins::date(start), twins::date(end)));
               })];
}

- (instancetype)init:(NSDate*)date {
  return [self initWithNative:twins::initialising(
                                  self, [&] { return twins::wrap(Cpp(twins::date(date))); })];
}

OVINTA_GETTER(NSDate*, start)
OVINTA_GETTER(NSDate*, end)

@end
