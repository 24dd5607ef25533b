#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::NotificationInfo;

@implementation NotificationInfo

- (instancetype)initWithTitle:(NSString*)title content:(NSString*)content data:(NSDictionary*)data {
  self = [self initWithNative:twins::initialising(self, [&] {
                 Cpp info{.title = twins::text(title), .content = twins::text(content)};
                 if (data) info.data = twins::dictionary(data);
                 return twins::wrap(std::move(info));
               })];
  if (self) given_ = [data copy];
  return self;
}

- (void)dealloc {
  [given_ release];
  [super dealloc];
}

OVINTA_GETTER(NSString*, title)
OVINTA_GETTER(NSString*, content)

- (NSDictionary*)data {
  return given_ ? [[given_ retain] autorelease] : twins::toObjC(twins::object<Cpp>(self).data);
}

@end
