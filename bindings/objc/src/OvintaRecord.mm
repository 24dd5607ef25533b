#import "bindings/objc/src/IdentityMap.h"
#import "bindings/objc/src/OvintaRecord+Native.h"

@implementation OvintaRecord

- (instancetype)init {
  [self autorelease];
  [self doesNotRecognizeSelector:_cmd];
  return nil;
}

- (instancetype)initWithNative:(std::unique_ptr<twins::Native>)native {
  if ((self = [super init])) native_ = native.release();
  return self;
}

- (void)dealloc {
  delete static_cast<twins::Native*>(native_);
  [super dealloc];
}

- (twins::Native&)native {
  return *static_cast<twins::Native*>(native_);
}

- (oneway void)release {
  const void* const object = native_ ? static_cast<twins::Native*>(native_)->identity() : nullptr;
  std::unique_lock<std::mutex> lock;
  if (object) lock = twins::IdentityMap::shared().beginRelease(self, object);
  [super release];
}

- (BOOL)isEqual:(id)other {
  return other == self || ([other isMemberOfClass:[self class]] &&
                           [self native].equals([(OvintaRecord*)other native]));
}

- (NSUInteger)hash {
  return [self native].hash();
}

@end
