#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::CustomerConsent;

@implementation CustomerConsent

- (instancetype)initWithTermsOfService:(BOOL)termsOfService ageVerification:(BOOL)ageVerification {
  return [self initWithNative:twins::wrap(Cpp{.termsOfService = termsOfService != NO,
                                              .ageVerification = ageVerification != NO})];
}

OVINTA_GETTER(BOOL, termsOfService)
OVINTA_GETTER(BOOL, ageVerification)

@end
