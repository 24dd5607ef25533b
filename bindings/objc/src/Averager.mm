#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::Averager;

@implementation Averager

+ (instancetype)new {
  return [[self alloc] init];
}

- (instancetype)init {
  return [self initWithNative:twins::wrap(Cpp{})];
}

OVINTA_GETTER(int64_t, maxCount)
OVINTA_GETTER(int64_t, count)
OVINTA_GETTER(float, value)

- (void)setMaxCount:(int64_t)maxCount {
  twins::object<Cpp>(self).maxCount = maxCount;
}

- (void)setCount:(int64_t)count {
  twins::object<Cpp>(self).count = count;
}

- (void)setValue:(float)value {
  twins::object<Cpp>(self).value = value;
}

- (void)add:(float)sample {
  twins::object<Cpp>(self).add(sample);
}

@end
