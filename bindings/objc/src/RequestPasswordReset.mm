#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::RequestPasswordReset;

@implementation RequestPasswordReset

- (instancetype)initWithEmail:(NSString*)email {
  return [self initWithHeld:twins::initialising(self, [&] {
                 return twins::hold(Cpp{.email = twins::text(email)});
               })];
}

OVINTA_GETTER(NSString*, email)

@end
