#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::NotificationInfo;

@implementation NotificationInfo

- (instancetype)initWithTitle:(NSString*)title content:(NSString*)content data:(NSDictionary*)data {
  return [self initWithHeld:twins::initialising(self, [&] {
                 Cpp info{.title = twins::text(title), .content = twins::text(content)};
                 if (data) info.data = twins::dictionary(data);
                 return twins::hold(std::move(info));
               })];
}

OVINTA_GETTER(NSString*, title)
OVINTA_GETTER(NSString*, content)
OVINTA_GETTER(NSDictionary*, data)

@end
