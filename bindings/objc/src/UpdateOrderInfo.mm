#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::UpdateOrderInfo;

@implementation UpdateOrderInfo

- (instancetype)initWithPushToken:(NSString*)pushToken {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{.pushToken = twins::text(pushToken)});
               })];
}

- (NSString*)pushToken {
  return twins::toObjC(twins::object<Cpp>(self).pushToken.get());
}

@end
