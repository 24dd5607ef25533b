#import "bindings/objc/src/IdentityMap.h"
#import "bindings/objc/src/OvintaRecord+Held.h"

@implementation OvintaRecord

- (instancetype)init {
  [self autorelease];
  [self doesNotRecognizeSelector:_cmd];
  return nil;
}

- (instancetype)initWithHeld:(std::unique_ptr<twins::Held>)held {
  if ((self = [super init])) held_ = held.release();
  return self;
}

- (void)dealloc {
  delete static_cast<twins::Held*>(held_);
  [super dealloc];
}

- (twins::Held&)held {
  return *static_cast<twins::Held*>(held_);
}

- (oneway void)release {
  const void* const object = held_ ? static_cast<twins::Held*>(held_)->identity() : nullptr;
  std::unique_lock<std::mutex> lock;
  if (object) lock = twins::IdentityMap::shared().beginRelease(self, object);
  [super release];
}

- (BOOL)isEqual:(id)other {
  return other == self ||
         ([other isMemberOfClass:[self class]] && [self held].equals([(OvintaRecord*)other held]));
}

- (NSUInteger)hash {
  return [self held].hash();
}

@end
