#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::UpdateOrderInfo;

@implementation UpdateOrderInfo

- (instancetype)initWithPushToken:(NSString*)pushToken {
  return [self initWithHeld:twins::initialising(self, [&] {
                 return twins::hold(Cpp{.pushToken = twins::text(pushToken)});
               })];
}

- (NSString*)pushToken {
  return twins::toObjC(twins::object<Cpp>(self).pushToken.get());
}

@end
