#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// A key under which the library keeps a text in the settings store. There are nine. All operations
/// work on the installed settings store.
@interface UserDefaultsKey : OvintaRecord
/// What is kept of the signed-in customer: the token, a secret; then the fields of the customer as
/// they came from the service. A logout removes the token alone.
@property(class, nonatomic, readonly) UserDefaultsKey* customerToken;
@property(class, nonatomic, readonly) UserDefaultsKey* customerName;
@property(class, nonatomic, readonly) UserDefaultsKey* customerEmail;
@property(class, nonatomic, readonly) UserDefaultsKey* customerVehicleType;
@property(class, nonatomic, readonly) UserDefaultsKey* customerVehicleColor;
@property(class, nonatomic, readonly) UserDefaultsKey* customerLicensePlate;
@property(class, nonatomic, readonly) UserDefaultsKey* customerPhone;
/// The base URL of the service; an application may store its own to point the library elsewhere.
@property(class, nonatomic, readonly) UserDefaultsKey* apiBase;
/// The location permission last reported to the service, as a decimal number. For the library's own
/// use.
@property(class, nonatomic, readonly) UserDefaultsKey* lastKnownAuthStatus;

/// The key whose text is `rawValue`, compared exactly; nil when none of the nine is.
- (nullable instancetype)initWithRawValue:(NSString*)rawValue;

/// The key in the settings store.
@property(nonatomic, readonly, copy) NSString* rawValue;

/// The stored text, or the registered default, or nil.
- (nullable NSString*)stringValue;
/// YES exactly when the text is "YES".
- (BOOL)boolValue;

/// Stores the text; nil removes the entry.
- (void)setWithValue:(nullable NSString*)value;
/// Stores "YES" or "NO".
- (void)setWithBool:(BOOL)value;
/// Removes the stored text; a registered default shows again.
- (void)delete;
@end

NS_ASSUME_NONNULL_END
