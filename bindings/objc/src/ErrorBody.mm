#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::ErrorBody;

@implementation ErrorBody

+ (ErrorBody*)parse:(NSString*)text {
  return twins::toObjC(Cpp::parse(twins::text(text)));
}

OVINTA_GETTER(NSDictionary*, errors)
OVINTA_GETTER(NSString*, message)

@end
