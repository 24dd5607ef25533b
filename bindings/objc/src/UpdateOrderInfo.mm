#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::UpdateOrderInfo;

@implementation UpdateOrderInfo

- (instancetype)initWithPushToken:(NSString*)pushToken {
  return [self initWithHeld:twins::initialising(self, [&] {
                 return twins::hold(Cpp{.pushToken = twins::text(pushToken)});
               })];
}

OVINTA_GETTER(NSString*, pushToken)

@end
