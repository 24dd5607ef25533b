#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::RequestPasswordReset;

@implementation RequestPasswordReset

- (instancetype)initWithEmail:(NSString*)email {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{.email = twins::text(email)});
               })];
}

OVINTA_GETTER(NSString*, email)

@end
