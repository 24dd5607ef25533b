#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// The root of the records, which are immutable where their classes do not say otherwise and may be
/// used from any thread. `Order`, `CoreOrder`, `Site` and `Customer` stand for one object of the
/// library each, as long as anyone holds them: the same object, wherever it is met. All others are
/// equal when their values are. Records are made by their own initialisers, never by `init`, unless
/// they say so.
@interface OvintaRecord : NSObject {
 @private
  void* native_;
}
- (instancetype)init NS_UNAVAILABLE;
@end

@interface OvintaRecord (Unavailable)
+ (instancetype)new NS_UNAVAILABLE;
@end

NS_ASSUME_NONNULL_END
