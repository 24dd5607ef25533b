#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::SignUpInfo;

@implementation SignUpInfo

- (instancetype)initWithEmailAddress:(NSString*)emailAddress
                            password:(NSString*)password
                passwordConfirmation:(NSString*)passwordConfirmation {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{.emailAddress = twins::text(emailAddress),
                                        .password = twins::text(password),
                                        .passwordConfirmation = twins::text(passwordConfirmation)});
               })];
}

OVINTA_GETTER(NSString*, emailAddress)
OVINTA_GETTER(NSString*, password)
OVINTA_GETTER(NSString*, passwordConfirmation)

@end
