#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::LoginInfo;

@implementation LoginInfo

- (instancetype)initWithEmailAddress:(NSString*)emailAddress password:(NSString*)password {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{.emailAddress = twins::text(emailAddress),
                                        .password = twins::text(password)});
               })];
}

OVINTA_GETTER(NSString*, emailAddress)
OVINTA_GETTER(NSString*, password)

@end
