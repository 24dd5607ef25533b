#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::Customer;

@implementation Customer
OVINTA_GETTER(NSString*, token)
OVINTA_GETTER(NSString*, emailAddress)
OVINTA_GETTER(CustomerInfo*, info)
OVINTA_GETTER(BOOL, registered)
@end
