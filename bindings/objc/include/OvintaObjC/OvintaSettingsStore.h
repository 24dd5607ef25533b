#import <OvintaObjC/UserDefaultsKey.h>

NS_ASSUME_NONNULL_BEGIN

/// The settings store that is installed. May be used from any thread.
@interface OvintaSettingsStore : NSObject
/// The only one.
@property(class, nonatomic, readonly) OvintaSettingsStore* standard;

/// The text stored under the key, or the registered default, or nil.
- (nullable NSString*)stringForKey:(UserDefaultsKey*)key;
@end

NS_ASSUME_NONNULL_END
