#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::SetNewPassword;

@implementation SetNewPassword

- (instancetype)initWithResetPasswordToken:(NSString*)resetPasswordToken
                                  password:(NSString*)password
                              confirmation:(NSString*)confirmation {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{.resetPasswordToken = twins::text(resetPasswordToken),
                                        .password = twins::text(password),
                                        .confirmation = twins::text(confirmation)});
               })];
}

OVINTA_GETTER(NSString*, resetPasswordToken)
OVINTA_GETTER(NSString*, password)
OVINTA_GETTER(NSString*, confirmation)

@end
