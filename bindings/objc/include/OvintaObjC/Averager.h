#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// A running mean that keeps no samples: the plain mean of the first ten, from then on an
/// exponential smoothing in which each new sample weighs 1/10. Mutable; one thread at a time.
@interface Averager : OvintaRecord
/// No samples yet, and a `maxCount` of 10.
- (instancetype)init;
+ (instancetype)new;
/// After how many samples the smoothing begins; to change it has no effect.
@property(nonatomic) int64_t maxCount;
/// The number of samples folded in.
@property(nonatomic) int64_t count;
/// The mean, in the unit of the samples; 0 before the first.
@property(nonatomic) float value;

/// Folds one sample in. More than 2^63 - 1 samples are a fatal error.
- (void)add:(float)sample;
@end

NS_ASSUME_NONNULL_END
